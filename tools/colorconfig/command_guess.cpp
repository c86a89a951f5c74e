// The `guess` subcommand.

#include "commands.h"
#include "console.h"

#include <verra_sdk/colorconfig.h>

namespace colorconfig {

ExitCode runGuess(Context const& context)
{
    std::vector<std::string> const& files = context.options.positionals;
    bool const fallback = !context.options.noFallback;
    bool const prefixed = files.size() > 1;
    ExitCode code = ExitCode::Success;
    for (std::string const& file : files) {
        orv::String const space = orv::verra_sdk::ColorConfig::parseColorSpace(orv::String(file), fallback);
        if (space.isEmpty()) {
            console::error("no colour space found for '{}'", file);
            code = ExitCode::Failure;
            continue;
        }
        console::out(prefixed ? file + ": " + std::string(space.view()) : std::string(space.view()));
    }
    return code;
}

} // namespace colorconfig
