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

int main(int argc, char** argv)
{
    colorconfig::ExitCode code = colorconfig::ExitCode::Failure;
    orv::verra_sdk::kit::installWriteGuards();
    try {
        code = colorconfig::runCli({argv + (argc > 0 ? 1 : 0), argv + argc});
    } catch (std::exception const& exception) {
        colorconfig::console::error("{}", exception.what());
    } catch (...) {
        colorconfig::console::error("unexpected failure");
    }
    std::fflush(stdout);
    return static_cast<int>(code);
}
