#pragma once
// The help texts, built from the command table so that they always list
// what the parser accepts.

#include "command.h"

#include <string>

namespace colorconfig {

/// "colorconfig <version>" and a line end.
std::string versionText();

/// The program's help: its forms, the subcommands, the common options, how
/// the config is chosen, and the exit codes.
std::string programHelp();

/// The help of one subcommand: its forms, description, options and the exit
/// codes.
std::string commandHelp(Command const& command);

/// The two-line hint printed after a usage error: the short usage of
/// `command` (or of the program when null) and where to find more.
std::string usageHint(Command const* command);

} // namespace colorconfig
