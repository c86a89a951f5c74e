// The `view` subcommand: images through a display and view of the config.

#include "file_jobs.h"

namespace colorconfig {

Subcommand addView(CLI::App& program, CommonOptions& common)
{
    CLI::App* app = newSubcommand(
        program, "view", "Show images through a display and view of the config",
        "Applies the config's display/view transform (with looks, if given) to the colour channels of every image "
        "of IN, computed in float, and writes OUT in the format that its extension names, at the input's data "
        "type. Alpha and the other channels are kept, colours are not divided by alpha, and 'oiio:ColorSpace' "
        "names the view's colour space. Without --display and --view, the config's default display and its "
        "default view. File safety, frame patterns and --from auto as for convert.");
    struct ViewOptions {
        kit::DisplayViewRequest request;
        std::vector<std::string> files;
        FileOptions batch;
    };
    auto options = std::make_shared<ViewOptions>();
    app->add_option("--from", options->request.from, "The colour space of the input pixels.")
        ->option_text("NAME")
        ->required();
    addDisplayView(*app, options->request.display, options->request.view);
    app->add_option("--look", options->request.looks, "Looks to apply, separated by commas.")->option_text("L[,L2]");
    app->add_flag("--inverse", options->request.inverse,
                  "Take display-referred IN back to --from through the inverse of the view and looks.");
    addContext(*app, options->request.context);
    addFileOptions(*app, options->batch, common, true);
    app->add_option("IN_OUT", options->files, "The image and its result")->type_name("")->expected(2)->required();
    auto const run = [options, &common] {
        kit::BatchRequest request;
        kit::DisplayView chosen;
        std::string message;
        if (!kit::displayViewBatch(options->request, chosen, request, message)) {
            return filesFailure(message, common);
        }
        std::string const looks =
            (chosen.looks.empty() ? "" : ", looks " + chosen.looks) + (chosen.inverse ? ", inverted" : "");
        return runFiles({{-1, options->files[0], options->files[1]}}, request, options->batch, common,
                        " (" + chosen.display + " / " + chosen.view + looks + ")");
    };
    return {app, run, false, kFilesJson};
}

} // namespace colorconfig
