#pragma once
// What a subcommand is given when it runs.

#include "exit_code.h"
#include "session.h"

#include <string>
#include <vector>

namespace colorconfig {

/// The options and arguments of one command line, as the parser (cli.cpp)
/// found them. Each subcommand reads the members it declares.
struct Options {
    /// --config: whether it was given, and its value.
    bool hasConfig = false;
    std::string config;
    /// --verbose.
    bool verbose = false;
    /// --json of info, find, guess, color and check.
    bool json = false;
    /// guess's --no-fallback.
    bool noFallback = false;
    /// --from and --to of color, convert and preview (preview's defaults).
    std::string from = "linear";
    std::string to = "sRGB";
    /// view's --display, --view and --look (empty: the config's defaults,
    /// no looks).
    std::string display;
    std::string view;
    std::string looks;
    /// convert's --out-dir: whether it was given, and its value.
    bool hasOutDir = false;
    std::string outDir;
    /// The positional arguments, in order.
    std::vector<std::string> positionals;
};

/// What a subcommand is given when it runs.
struct Context {
    Options const& options;
    /// The configuration loaded for it, and what is wrong with it.
    LoadedConfig const& config;
};

/// A subcommand's entry point.
using RunCommand = ExitCode (*)(Context const& context);

/// Reads a number as strtod does (the whole word, no blanks; "inf", "-inf"
/// and "nan" included) into `value`. False for anything else.
bool parseNumber(std::string const& word, double& value);

} // namespace colorconfig
