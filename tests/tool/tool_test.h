#pragma once
// The fixture of the program's tests: the colorconfig command line run in
// this process, or the built program run by a shell, in a folder and an
// environment of the test's own where no configuration is found unless the
// test adds one.

#include "cli.h"
#include "support/kit_env.h"

#include <sys/wait.h>

#include <cstdio>

namespace verra_test {

namespace Strutil = OIIO::Strutil;
using Words = std::vector<std::string>;

/// How a command line ended and what it printed: exit code, standard output, standard error.
using Outcome = std::tuple<int, std::string, std::string>;

class ToolTest : public KitTest {
protected:
    /// Runs the command line `words` (without the program's name) in this
    /// process, capturing standard output and standard error.
    Outcome run(Words const& words) const
    {
        internal::CaptureStdout();
        internal::CaptureStderr();
        int const code = static_cast<int>(colorconfig::runCli(words));
        std::string out = internal::GetCapturedStdout();
        return {code, std::move(out), internal::GetCapturedStderr()};
    }

    /// Runs the shell `script` with the built program's path as $1 and `args`
    /// after it; `code` is the script's exit status.
    Outcome shell(std::string const& script, Words const& args = {}) const
    {
        auto const quoted = [](std::string const& word) {
            return "'" + Strutil::replace(word, "'", "'\\''", true) + "'";
        };
        std::string command = "/bin/sh -c " + quoted(script) + " sh " + quoted(VERRA_COLORCONFIG_EXE);
        for (std::string const& arg : args) {
            command += " " + quoted(arg);
        }
        command += " >" + quoted(file("out.txt")) + " 2>" + quoted(file("err.txt")) + " </dev/null";
        int const status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(file("out.txt")), readFile(file("err.txt"))};
    }

    /// `text` with each "$D" replaced by the test's folder.
    std::string inDir(std::string const& text) const { return Strutil::replace(text, "$D", m_env.dir().path(), true); }
};

} // namespace verra_test
