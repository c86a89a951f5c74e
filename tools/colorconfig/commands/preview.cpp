// The `preview` subcommand: an image as an opaque 8-bit preview.

#include "file_jobs.h"

namespace colorconfig {

Subcommand addPreview(CLI::App& program, CommonOptions& common)
{
    CLI::App* app = newSubcommand(
        program, "preview", "Turn an image into an opaque 8-bit preview",
        "Reads the first image of IN as float pixels in the colour space --from, converts its colour channels "
        "(grey is spread over RGB, alpha is dropped) into the colour space --to, and writes an opaque 8-bit image "
        "to OUT in the format that its extension names (RGBA, or RGB for a format without alpha). Float-only "
        "formats (exr, hdr) are refused. OUT is written beside its target and renamed into place once complete, "
        "and never replaces IN. Frame patterns and --from auto as for convert.");
    struct PreviewOptions {
        std::string from = "linear";
        std::string to = "sRGB";
        std::vector<std::string> files;
        FileOptions batch;
        kit::ContextVariables context;
    };
    auto options = std::make_shared<PreviewOptions>();
    addFromTo(*app, options->from, options->to, false, "The colour space of the input pixels (linear when not given).",
              "The colour space of the preview (sRGB when not given).");
    addContext(*app, options->context);
    addFileOptions(*app, options->batch, common, false);
    app->add_option("IN_OUT", options->files, "The image and its preview")->type_name("")->expected(2)->required();
    auto const run = [options, &common] {
        kit::BatchRequest request;
        std::string message;
        return kit::previewBatch(options->from, options->to, options->files[1], options->context, request, message)
                   ? runFiles({{-1, options->files[0], options->files[1]}}, request, options->batch, common, "")
                   : filesFailure(message, common);
    };
    return {app, run, false, kFilesJson};
}

} // namespace colorconfig
