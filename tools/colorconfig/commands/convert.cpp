// The `convert` subcommand: images converted between two colour spaces.

#include "file_jobs.h"

#include <filesystem>

namespace colorconfig {

Subcommand addConvert(CLI::App& program, CommonOptions& common)
{
    CLI::App* app = newSubcommand(
        program, "convert", "Convert images between two colour spaces",
        "Converts IN into OUT, or, with --out-dir, each IN into a file of the same name in DIR. Each image is "
        "written in the format that the output's extension names; its colour channels are converted. Everything "
        "else is kept as the format allows: the data type, every subimage and MIP level, windows, pixel aspect, "
        "tiling, compression and attributes, and every channel other than R, G and B (alpha, depth, others) "
        "untouched; 'oiio:ColorSpace' names the new space. Grey comes out as RGB. 8-bit pixels written to an "
        "8-bit format go through the module's RGBA8 transform; every other case is computed in float. A format "
        "that cannot hold every subimage or MIP level is refused. Each output is written beside its target and "
        "renamed into place only once complete, so a failed or interrupted run leaves existing files as they "
        "were, and no output ever replaces an input. IN and OUT may be frame patterns (#: four digits, @: one "
        "digit each, %0Nd), converted at once on every core; a progress line is shown while standard error "
        "is a terminal. --from auto takes each file's 'oiio:ColorSpace' when the config knows it, "
        "else the file rules' guess.");
    struct ConvertOptions {
        kit::ColorTransform transform;
        std::string outDir;
        std::vector<std::string> files;
        FileOptions batch;
    };
    auto options = std::make_shared<ConvertOptions>();
    addFromTo(*app, options->transform.from, options->transform.to, false, "The colour space of the input pixels.",
              "The colour space to convert into.");
    app->add_option("--look", options->transform.looks, "Looks to apply between --from and --to, separated by commas.")
        ->option_text("L[,L2]");
    app->add_option("--lut", options->transform.lutFile, "Apply this LUT file (any OpenColorIO reads).")
        ->option_text("FILE");
    app->add_flag("--invert", options->transform.invert, "Apply the LUT file inverted.")->needs("--lut");
    addContext(*app, options->transform.context);
    app->add_option("--out-dir", options->outDir, "Write every output into this existing folder.")->option_text("DIR");
    addFileOptions(*app, options->batch, common, true);
    app->add_option("IN_OUT|IN", options->files, "The input and output images, or the inputs")
        ->type_name("")
        ->required();
    auto const run = [app, options, &common] {
        std::vector<std::string> const& words = options->files;
        bool const toFolder = app->count("--out-dir") > 0;
        if (!toFolder && words.size() != 2) {
            return usageError("'convert' needs IN and OUT, or --out-dir DIR and one or more IN", "convert");
        }
        std::error_code ignored;
        if (toFolder && !std::filesystem::is_directory(options->outDir, ignored)) {
            return filesFailure("output folder '" + options->outDir + "' does not exist or is not a folder", common);
        }
        kit::ColorTransform const& transform = options->transform;
        if (transform.lutFile.empty() && (transform.from.empty() || transform.to.empty())) {
            return usageError("'convert' needs --from and --to, or --lut", "convert");
        }
        auto const pairs =
            toFolder ? kit::intoFolder(words, options->outDir) : std::vector<kit::FramePair>{{-1, words[0], words[1]}};
        kit::BatchRequest request;
        std::string message;
        return kit::colorTransformBatch(transform, request, message)
                   ? runFiles(pairs, request, options->batch, common, "")
                   : filesFailure(message, common);
    };
    return {app, run, false, kFilesJson};
}

} // namespace colorconfig
