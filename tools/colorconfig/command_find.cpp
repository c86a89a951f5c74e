// The `find` subcommand.

#include "color_names.h"
#include "commands.h"
#include "console.h"
#include "json_text.h"

namespace colorconfig {

ExitCode runFind(Context const& context)
{
    std::vector<std::string> const& names = context.options.positionals;
    bool const prefixed = names.size() > 1;
    Json results = Json::array();
    ExitCode code = ExitCode::Success;
    for (std::string const& name : names) {
        ResolvedName const resolved = resolveName(name, context.config.ocio);
        if (resolved.name.empty()) {
            code = ExitCode::Failure;
        }
        if (context.options.json) {
            results.push_back({{"name", name},
                               {"colorSpace", resolved.name.empty() ? Json() : Json(resolved.name)},
                               {"how", resolved.name.empty() || !resolved.how.empty() ? resolved.how : "listed"},
                               {"closest", resolved.name.empty() ? closestColorSpaces(name, context.config.ocio)
                                                                 : std::vector<std::string>()}});
        } else if (resolved.name.empty()) {
            reportUnknownColorSpace(name, context.config.ocio);
        } else {
            console::out(prefixed ? name + ": " + resolved.name : resolved.name);
            if (!resolved.how.empty()) {
                console::note("'{}': {}", name, resolved.how);
            }
        }
    }
    if (context.options.json) {
        printJson(results);
    }
    return code;
}

} // namespace colorconfig
