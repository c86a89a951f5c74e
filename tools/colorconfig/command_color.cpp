// The `color` subcommand.

#include "color_names.h"
#include "commands.h"
#include "console.h"
#include "help.h"

#include <verra_sdk/color_route.h>
#include <verra_sdk/colorconfig.h>

#include <cstdio>

namespace colorconfig {

namespace {

namespace sdk = orv::verra_sdk;

std::string formatNumber(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

} // namespace

ExitCode runColor(Context const& context)
{
    std::vector<std::string> const& words = context.args.positionals();
    double channels[4] = {0.0, 0.0, 0.0, 1.0};
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!parseNumber(words[i], channels[i])) {
            console::error("'%s' is not a number", words[i].c_str());
            console::errorText(usageHint(findCommand("color")));
            return ExitCode::Usage;
        }
    }
    orv::String const from = resolveColorSpace(context.args.value("--from"));
    orv::String const to = resolveColorSpace(context.args.value("--to"));
    if (from.isEmpty() || to.isEmpty()) {
        return ExitCode::Failure;
    }
    // The transform returns an impossible conversion unchanged and silently,
    // so the route is asked first.
    sdk::ColorRoute const route = sdk::colorRoute(from, to);
    if (route == sdk::ColorRoute::None) {
        console::error("cannot convert from '%s' to '%s' with this config", from.buf(), to.buf());
        return ExitCode::Failure;
    }
    if (context.args.has("--verbose")) {
        console::note("route from '%s' to '%s': %s", from.buf(), to.buf(), sdk::colorRouteName(route));
    }
    orv::math::RgbaT<double> const converted =
        sdk::ColorConfig::transform({channels[0], channels[1], channels[2], channels[3]}, from, to);
    std::string line = formatNumber(converted.r) + " " + formatNumber(converted.g) + " " + formatNumber(converted.b);
    if (words.size() == 4) {
        line += " " + formatNumber(converted.a);
    }
    console::out(line);
    return ExitCode::Success;
}

} // namespace colorconfig
