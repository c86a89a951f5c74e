// The `color` subcommand.

#include "color_names.h"
#include "commands.h"
#include "console.h"
#include "json_text.h"

#include <verra_sdk/color_route.h>
#include <verra_sdk/colorconfig.h>

#include <fmt/format.h>

namespace colorconfig {

namespace sdk = orv::verra_sdk;

ExitCode runColor(Context const& context)
{
    std::vector<std::string> const& words = context.options.positionals;
    double channels[4] = {0.0, 0.0, 0.0, 1.0};
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!parseNumber(words[i], channels[i])) {
            console::error("'{}' is not a number", words[i]);
            console::errorText("Run 'colorconfig color --help' for more.\n");
            return ExitCode::Usage;
        }
    }
    orv::String const from = resolveColorSpace(context.options.from, context.config.ocio);
    orv::String const to = resolveColorSpace(context.options.to, context.config.ocio);
    if (from.isEmpty() || to.isEmpty()) {
        return ExitCode::Failure;
    }
    // The transform returns an impossible conversion unchanged and silently,
    // so the route is asked first.
    sdk::ColorRoute const route = sdk::colorRoute(from, to);
    if (route == sdk::ColorRoute::None) {
        console::error("cannot convert from '{}' to '{}' with this config", from.view(), to.view());
        return ExitCode::Failure;
    }
    if (context.options.verbose) {
        console::note("route from '{}' to '{}': {}", from.view(), to.view(), sdk::colorRouteName(route));
    }
    orv::math::RgbaT<double> const converted =
        sdk::ColorConfig::transform({channels[0], channels[1], channels[2], channels[3]}, from, to);
    if (context.options.json) {
        std::vector<double> input(channels, channels + words.size());
        std::vector<double> output{converted.r, converted.g, converted.b, converted.a};
        output.resize(words.size());
        printJson({{"from", from.view()},
                   {"to", to.view()},
                   {"route", sdk::colorRouteName(route)},
                   {"input", input},
                   {"output", output}});
        return ExitCode::Success;
    }
    // 17 significant digits read back as the same double.
    std::string line = fmt::format("{:.17g} {:.17g} {:.17g}", converted.r, converted.g, converted.b);
    if (words.size() == 4) {
        line += fmt::format(" {:.17g}", converted.a);
    }
    console::out(line);
    return ExitCode::Success;
}

} // namespace colorconfig
