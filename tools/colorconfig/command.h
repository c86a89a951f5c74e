#pragma once
// What the subcommands share: how each declares itself and its options to
// the parser (one source file each, under commands/), the options and
// messages that several of them have, and what every one of them includes.

#include "exit_code.h"
#include "json_text.h"

#include <verra_sdk/kit/color_transform.h>
#include <verra_sdk/kit/file_guess.h>
#include <verra_sdk/kit/names.h>

#include <CLI/CLI.hpp>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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
    /// The object --json prints, with the configuration's `errors` in its
    /// member "errors", instead of running when there are some; null for a
    /// subcommand without --json.
    char const* jsonOnError = nullptr;
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

/// Prints "colorconfig: error: <message>" and the hint to `command`'s help;
/// returns ExitCode::Usage.
ExitCode usageError(std::string const& message, std::string const& command);

/// Prints "colorconfig: error: <message>"; returns ExitCode::Failure.
ExitCode failure(std::string const& message);

/// What `find` or `guess` says of one word the user typed.
struct Answer {
    /// Its member of the --json "results".
    Json json;
    /// The colour space found; empty when none.
    std::string found;
    /// For standard error: a note on how it was found (none when empty), or
    /// the error when nothing was.
    std::string text;
};

/// Prints the answer of each of `words`: with --json, the object {errors,
/// results}; else "FOUND", or "WORD: FOUND" for several words, with
/// "colorconfig: 'WORD': <note>" on standard error, or the error. Failure
/// when a word has no answer.
ExitCode printAnswers(std::vector<std::string> const& words, bool json,
                      std::function<Answer(std::string const& word)> const& answer);

/// Reads a number as strtod does (the whole word, no blanks; "inf", "-inf"
/// and "nan" included) into `value`. False for anything else.
bool parseNumber(std::string const& word, double& value);

/// How `guess` found its colour space (`kit::guessStepText`), and in `note`
/// the rule passed over (`kit::passedRuleText`).
std::string guessStep(kit::FileGuess const& guess, std::string& note);

/// Each hidden name with why the list hides it, in words.
std::vector<std::pair<std::string, std::string>> hiddenPairs(std::vector<kit::HiddenName> const& hidden);

/// Each role with its colour space.
std::vector<std::pair<std::string, std::string>> rolePairs(std::vector<kit::RoleSpace> const& roles);

} // namespace colorconfig
