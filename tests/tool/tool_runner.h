#pragma once
// Runs the built colorconfig program in a child process with an explicit
// environment, and collects what it printed and how it ended.

#include <string>
#include <utility>
#include <vector>

namespace verra_test {

/// How a run of the program ended.
struct ToolResult {
    /// The exit status, or -1 when the program did not exit normally.
    int exitCode = -1;
    /// The signal that ended the program, or 0.
    int signal = 0;
    /// Everything written to standard output.
    std::string out;
    /// Everything written to standard error (through a terminal when asked,
    /// which turns each line end into "\r\n").
    std::string err;
};

/// The environment of a child: each entry "NAME=value".
using Environment = std::vector<std::string>;

/// The path of the program under test, fixed by the build.
std::string toolPath();

/// Runs the program with `args` in the environment `env`, standard input
/// from /dev/null, standard output to a pipe and standard error to a pipe,
/// or to a pseudo-terminal when `stderrIsTerminal` is true. Waits for it to
/// end. Fails the current test when the child cannot be started.
ToolResult runTool(std::vector<std::string> const& args, Environment const& env, bool stderrIsTerminal = false);

/// Runs the program `argv[0]` (a path) as `runTool` runs the tool.
ToolResult runProgram(std::vector<std::string> argv, Environment const& env, bool stderrIsTerminal = false);

} // namespace verra_test
