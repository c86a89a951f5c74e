// colorconfig: the command-line face of the colour-configuration module.
//
// Everything that touches colour goes through the module's public interface;
// this program parses the command line, reads and writes files, and prints.

#include "cli.h"
#include "console.h"
#include "safe_output.h"

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

int main(int argc, char** argv)
{
    using colorconfig::ExitCode;
    ExitCode code = ExitCode::Failure;
    colorconfig::installWriteGuards();
    try {
        std::vector<std::string> const words(argv + (argc > 0 ? 1 : 0), argv + argc);
        code = colorconfig::runCli(words);
    } catch (std::exception const& exception) {
        colorconfig::console::error("{}", exception.what());
        code = ExitCode::Failure;
    } catch (...) {
        colorconfig::console::error("unexpected failure");
        code = ExitCode::Failure;
    }
    std::fflush(stdout);
    return static_cast<int>(code);
}
