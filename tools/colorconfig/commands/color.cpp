// The `color` subcommand: one colour converted between two colour spaces.

#include "command.h"

namespace colorconfig {

namespace sdk = orv::verra_sdk;

Subcommand addColor(CLI::App& program, CommonOptions& common)
{
    CLI::App* app = newSubcommand(
        program, "color", "Convert one colour between two colour spaces",
        "Converts the colour R G B (and ALPHA, which is printed unchanged) and prints the result with 17 "
        "significant digits, enough to read back the exact double. Negative values are accepted as they are "
        "(-0.5, -inf), as are inf and nan. With --verbose, standard error also tells the route: 'built-in curve' "
        "(the module's own sRGB and Rec709 curves, used between linear and those two whatever the config says), "
        "'processor' (the config's), or 'same'. --json prints {errors, from, to, route, input, output}, with null "
        "for nan and infinities, and null or empty members when the config has errors.");
    struct ColorOptions {
        kit::ColorTransform transform;
        std::vector<std::string> channels;
    };
    auto options = std::make_shared<ColorOptions>();
    addJsonFlag(*app, common, "Print the result as a JSON object.");
    addFromTo(*app, options->transform.from, options->transform.to, true, "The colour space of the given colour.",
              "The colour space to convert into.");
    addContext(*app, options->transform.context);
    app->add_option("R_G_B_[ALPHA]", options->channels, "The colour's channels")
        ->type_name("")
        ->expected(3, 4)
        ->required();
    auto const run = [options, &common] {
        std::vector<std::string> const& words = options->channels;
        double channels[4] = {0.0, 0.0, 0.0, 1.0};
        for (std::size_t i = 0; i < words.size(); ++i) {
            if (!parseNumber(words[i], channels[i])) {
                return usageError("'" + words[i] + "' is not a number", "color");
            }
        }
        kit::ColorTransform transform = options->transform;
        orv::math::RgbaT<double> result{channels[0], channels[1], channels[2], channels[3]};
        sdk::ColorRoute route = sdk::ColorRoute::None;
        std::string message;
        if (!kit::convertColor(transform, result, route, message)) {
            return failure(message);
        }
        if (common.verbose) {
            console::note("route from '{}' to '{}': {}", transform.from, transform.to, sdk::colorRouteName(route));
        }
        std::vector<double> output{result.r, result.g, result.b, result.a};
        output.resize(words.size());
        if (common.json) {
            printJson({{"errors", Json::array()},
                       {"from", transform.from},
                       {"to", transform.to},
                       {"route", sdk::colorRouteName(route)},
                       {"input", std::vector<double>(channels, channels + words.size())},
                       {"output", output}});
        } else {
            // 17 significant digits read back as the same double.
            console::out(fmt::format("{:.17g}", fmt::join(output, " ")));
        }
        return ExitCode::Success;
    };
    return {app, run, false, R"({"errors": [], "from": null, "to": null, "route": null, "input": [], "output": []})"};
}

} // namespace colorconfig
