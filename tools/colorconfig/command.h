#pragma once
// The subcommands: their names, options, help texts and entry points.

#include "args.h"
#include "exit_code.h"
#include "session.h"

#include <orv/string.h>

#include <cstddef>
#include <string_view>
#include <vector>

namespace colorconfig {

/// What a subcommand is given when it runs.
struct Context {
    /// Its options and positional arguments, already checked against its
    /// table entry.
    ParsedArgs const& args;
    /// The configuration loaded for it, and what is wrong with it.
    LoadedConfig const& config;
};

/// A subcommand's entry point.
using RunCommand = ExitCode (*)(Context const& context);

/// No upper limit on the number of positional arguments.
constexpr std::size_t kUnlimited = static_cast<std::size_t>(-1);

/// One subcommand.
struct Command {
    /// The word that selects it, e.g. "convert".
    char const* name;
    /// One line for the program's help.
    char const* summary;
    /// The forms of its command line, each without "colorconfig <name>".
    std::vector<char const*> forms;
    /// What it does, in sentences; wrapped for the help text.
    char const* description;
    /// Its own options; `allOptions` adds the ones every subcommand takes.
    std::vector<OptionSpec> options;
    /// The fewest positional arguments it accepts.
    std::size_t minPositionals;
    /// The most positional arguments it accepts, or `kUnlimited`.
    std::size_t maxPositionals;
    /// True when it prints the configuration report and its problems itself
    /// (only `info`); the other subcommands do not run when the configuration
    /// has a problem.
    bool printsReport;
    /// Its entry point.
    RunCommand run;
};

/// The options every subcommand takes: --config, --verbose, --help.
std::vector<OptionSpec> const& commonOptions();

/// `command`'s own options followed by the common ones.
std::vector<OptionSpec> allOptions(Command const& command);

/// Every subcommand, in the order the help lists them.
std::vector<Command> const& commands();

/// The subcommand called `name`, or null.
Command const* findCommand(std::string_view name);

} // namespace colorconfig
