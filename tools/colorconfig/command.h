#pragma once
// What the subcommands share: how each declares itself and its options to
// the parser (one source file each, under commands/), and the messages about
// colour-space names that several of them print.

#include "exit_code.h"

#include <verra_sdk/kit/color_transform.h>
#include <verra_sdk/kit/file_guess.h>
#include <verra_sdk/kit/names.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace colorconfig {

namespace kit = orv::verra_sdk::kit;

/// The options that every subcommand takes, and --json of those that have it.
struct CommonOptions {
    std::string config;
    bool verbose = false;
    bool json = false;
};

/// One subcommand as the parser knows it.
struct Subcommand {
    /// Its parser, owned by the program's.
    CLI::App* app = nullptr;
    /// Runs it once the configuration is loaded.
    std::function<ExitCode()> run;
    /// True for `info` and `check`, which show what is wrong with the
    /// configuration themselves: they run whatever it is.
    bool showsConfigErrors = false;
    /// What --json prints instead of running when the configuration has
    /// `errors`; null for a subcommand without --json.
    std::function<void(std::vector<std::string> const& errors)> jsonOnError;
};

/// Each subcommand: declares it and its own options on `program`. The
/// common options are in `common`.
using AddSubcommand = Subcommand (*)(CLI::App& program, CommonOptions& common);
Subcommand addInfo(CLI::App& program, CommonOptions& common);
Subcommand addCheck(CLI::App& program, CommonOptions& common);
Subcommand addFind(CLI::App& program, CommonOptions& common);
Subcommand addGuess(CLI::App& program, CommonOptions& common);
Subcommand addColor(CLI::App& program, CommonOptions& common);
Subcommand addConvert(CLI::App& program, CommonOptions& common);
Subcommand addPreview(CLI::App& program, CommonOptions& common);
Subcommand addView(CLI::App& program, CommonOptions& common);
Subcommand addBake(CLI::App& program, CommonOptions& common);

/// A new subcommand `name` of `program`, its help ending with
/// `description` and the exit codes.
CLI::App* newSubcommand(CLI::App& program, char const* name, char const* summary, std::string_view description);

/// An option's help, wrapped to fit beside the option column.
std::string optionHelp(std::string_view text);

/// Adds --json, with `help`, to `app`.
void addJsonFlag(CLI::App& app, CommonOptions& common, char const* help);

/// Adds --from and --to (NAME) to `app`, with their help.
void addFromTo(CLI::App& app, std::string& from, std::string& to, bool required, char const* fromHelp,
               char const* toHelp);

/// Adds --display and --view (NAME) to `app`: the config's defaults when
/// not given.
void addDisplayView(CLI::App& app, std::string& display, std::string& view);

/// Adds --context KEY=VALUE, repeatable, to `app`: each adds a variable to
/// `variables`; a word without "=" is a usage error.
void addContext(CLI::App& app, kit::ContextVariables& variables);

/// Adds --unassociated-alpha (of `convert` and `view`) to `app`.
void addUnassociatedAlpha(CLI::App& app, bool& value);

/// Prints "colorconfig: error: <message>" and the hint to `command`'s help;
/// returns ExitCode::Usage.
ExitCode usageError(std::string const& message, std::string const& command);

/// Reads a number as strtod does (the whole word, no blanks; "inf", "-inf"
/// and "nan" included) into `value`. False for anything else.
bool parseNumber(std::string const& word, double& value);

/// How `guess` found its colour space: "file rule 'R'" or the step's word,
/// and in `note`, when another step answered after a rule matched, "rule 'R'
/// names [the role ]'X'" (empty otherwise).
std::string guessStep(kit::FileGuess const& guess, std::string& note);

/// Each hidden name with why the list hides it, in words.
std::vector<std::pair<std::string, std::string>> hiddenPairs(std::vector<kit::HiddenName> const& hidden);

/// Each role with its colour space.
std::vector<std::pair<std::string, std::string>> rolePairs(std::vector<kit::RoleSpace> const& roles);

} // namespace colorconfig
