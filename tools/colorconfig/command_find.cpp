// The `find` subcommand.

#include "color_names.h"
#include "commands.h"
#include "console.h"

#include <verra_sdk/colorconfig.h>

namespace colorconfig {

ExitCode runFind(Context const& context)
{
    std::vector<std::string> const& names = context.options.positionals;
    bool const prefixed = names.size() > 1;
    ExitCode code = ExitCode::Success;
    for (std::string const& name : names) {
        orv::String const listed = orv::verra_sdk::ColorConfig::findColorSpace(orv::String(name));
        if (listed.isEmpty()) {
            reportUnknownColorSpace(name);
            code = ExitCode::Failure;
            continue;
        }
        console::out(prefixed ? name + ": " + std::string(listed.view()) : std::string(listed.view()));
    }
    return code;
}

} // namespace colorconfig
