// The `guess` subcommand.

#include "commands.h"
#include "console.h"
#include "json_text.h"

#include <verra_sdk/colorconfig.h>

namespace colorconfig {

ExitCode runGuess(Context const& context)
{
    std::vector<std::string> const& files = context.options.positionals;
    bool const fallback = !context.options.noFallback;
    bool const prefixed = files.size() > 1;
    Json results = Json::array();
    ExitCode code = ExitCode::Success;
    for (std::string const& file : files) {
        orv::String const space = orv::verra_sdk::ColorConfig::parseColorSpace(orv::String(file), fallback);
        if (space.isEmpty()) {
            code = ExitCode::Failure;
        }
        if (context.options.json) {
            results.push_back({{"file", file}, {"colorSpace", space.isEmpty() ? Json() : Json(space.view())}});
        } else if (space.isEmpty()) {
            console::error("no colour space found for '{}'", file);
        } else {
            console::out(prefixed ? file + ": " + std::string(space.view()) : std::string(space.view()));
        }
    }
    if (context.options.json) {
        printJson(results);
    }
    return code;
}

} // namespace colorconfig
