#pragma once
// The command line as a whole: global options, choice of subcommand, usage
// errors.

#include "exit_code.h"

#include <string>
#include <vector>

namespace colorconfig {

/// Runs the program on the words that follow its name and returns its exit
/// status. Lets exceptions of the libraries through (main catches them).
ExitCode runCli(std::vector<std::string> const& words);

} // namespace colorconfig
