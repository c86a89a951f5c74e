// The `bake` subcommand: a LUT file of a conversion or a display/view.

#include "command.h"

#include <verra_sdk/kit/lut_bake.h>

namespace colorconfig {

Subcommand addBake(CLI::App& program, CommonOptions& common)
{
    CLI::App* app = newSubcommand(
        program, "bake", "Bake a LUT file of a conversion or a display/view",
        "Bakes the transform from --from to --to, or through --display and --view (their defaults when not "
        "given), with --look, into OUT through OpenColorIO's baker. OUT's extension names the format (the first "
        "listed for it; --format chooses another): " +
            kit::lutFormatNames() +
            ". OpenColorIO then reads OUT back, and the largest difference from the exact transform, over [0, 1] or "
            "the range of --shaper, is printed on standard error. File safety as for convert.");
    auto request = std::make_shared<kit::LutBake>();
    auto output = std::make_shared<std::string>();
    addFromTo(*app, request->from, request->to, false, "The colour space of the LUT's input (required).",
              "The colour space of its output (else a display and view).");
    app->get_option("--from")->required();
    addDisplayView(*app, request->display, request->view);
    app->get_option("--to")->excludes("--display")->excludes("--view");
    app->add_option("--look", request->looks, "Looks to apply, separated by commas.")->option_text("L[,L2]");
    app->add_option("--shaper", request->shaper, "The colour space of a 1D shaper before the cube.")
        ->option_text("NAME");
    app->add_option("--size", request->size, "The cube's size (the format's own if not given).")->option_text("N");
    app->add_option("--format", request->format, "The LUT format, by its name below.")->option_text("NAME");
    addContext(*app, request->context);
    addJsonFlag(*app, common, "Also print {errors, output, format, largest_error, samples} on standard output.");
    app->add_option("OUT", *output, "The LUT file")->type_name("")->required();
    auto const run = [request, output, &common] {
        kit::BakeReport report;
        std::string message;
        if (!kit::bakeLut(*request, *output, report, message)) {
            return failure(message);
        }
        std::string const error = fmt::format("largest error {:.3g} against the exact transform, over {} colours",
                                              report.largestError, report.samples);
        console::note("'{}' ({}): {}", *output, report.format, report.unmeasured.empty() ? error : report.unmeasured);
        if (common.json) {
            printJson({{"errors", Json::array()},
                       {"output", *output},
                       {"format", report.format},
                       {"largest_error", report.unmeasured.empty() ? Json(report.largestError) : Json()},
                       {"samples", report.samples}});
        }
        return ExitCode::Success;
    };
    return {app, run, false, R"({"errors": [], "output": null, "format": null, "largest_error": null})"};
}

} // namespace colorconfig
