// colorconfig: the command-line face of the colour-configuration module.
//
// Everything that touches colour, images or the configuration goes through
// the module and its toolkit; this program parses the command line and
// prints.

#include "cli.h"
#include "console.h"

#include <verra_sdk/kit/safe_output.h>

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

int main(int argc, char** argv)
{
    using colorconfig::ExitCode;
    ExitCode code = ExitCode::Failure;
    orv::verra_sdk::kit::installWriteGuards();
    try {
        std::vector<std::string> const words(argv + (argc > 0 ? 1 : 0), argv + argc);
        code = colorconfig::runCli(words);
    } catch (std::exception const& exception) {
        colorconfig::console::error("{}", exception.what());
    } catch (...) {
        colorconfig::console::error("unexpected failure");
    }
    std::fflush(stdout);
    return static_cast<int>(code);
}
