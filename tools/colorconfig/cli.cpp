#include "cli.h"

#include "command.h"
#include "console.h"
#include "help.h"
#include "session.h"

#include <cstdio>

namespace colorconfig {

namespace {

ExitCode usageError(Command const* command, std::string const& message)
{
    console::error("%s", message.c_str());
    console::errorText(usageHint(command));
    return ExitCode::Usage;
}

void printText(std::string const& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
}

ExitCode runHelpSubcommand(std::vector<std::string> const& words)
{
    if (words.size() == 1) {
        printText(programHelp());
        return ExitCode::Success;
    }
    Command const* command = findCommand(words[1]);
    if (command == nullptr || words.size() > 2) {
        return usageError(nullptr, "'help' takes one subcommand name, e.g. 'colorconfig help convert'");
    }
    printText(commandHelp(*command));
    return ExitCode::Success;
}

ExitCode runCommand(Command const& command, std::vector<std::string> const& words)
{
    if (asksForHelp(words)) {
        printText(commandHelp(command));
        return ExitCode::Success;
    }
    ParseOutcome const parsed = parseArgs(allOptions(command), words);
    if (!parsed.error.empty()) {
        return usageError(&command, parsed.error);
    }
    std::size_t const given = parsed.args.positionals().size();
    if (given < command.minPositionals) {
        std::size_t const needed = command.minPositionals;
        std::string const count = (needed == command.maxPositionals ? "" : "at least ") + std::to_string(needed) +
                                  (needed == 1 ? " argument" : " arguments");
        return usageError(&command, "missing argument: '" + std::string(command.name) + "' needs " + count);
    }
    if (given > command.maxPositionals) {
        return usageError(&command, "too many arguments: '" + std::string(command.name) + "' takes at most " +
                                        std::to_string(command.maxPositionals) + ", got " + std::to_string(given));
    }
    ErrorLogToStderr const errorLog;
    LoadedConfig const config = loadConfiguration(parsed.args, !command.printsReport);
    for (std::string const& problem : config.problems) {
        console::error("%s", problem.c_str());
    }
    if (config.problems.empty()) {
        return command.run(Context{parsed.args, config});
    }
    // A configuration asked for and not had: only info, which shows what is
    // wrong, still runs.
    return command.printsReport ? worse(command.run(Context{parsed.args, config}), ExitCode::Failure)
                                : ExitCode::Failure;
}

} // namespace

ExitCode runCli(std::vector<std::string> const& words)
{
    if (words.empty()) {
        return usageError(nullptr, "no subcommand given");
    }
    std::string const& first = words[0];
    if (first == "--help" || first == "-h") {
        printText(programHelp());
        return ExitCode::Success;
    }
    if (first == "--version") {
        printText(versionText());
        return ExitCode::Success;
    }
    if (first == "help") {
        return runHelpSubcommand(words);
    }
    Command const* command = findCommand(first);
    if (command == nullptr) {
        bool const isOption = first.size() > 1 && first[0] == '-';
        return usageError(nullptr, (isOption ? "unknown option '" : "unknown subcommand '") + first + "'");
    }
    return runCommand(*command, std::vector<std::string>(words.begin() + 1, words.end()));
}

} // namespace colorconfig
