#include "file_jobs.h"

namespace colorconfig {

void addFileOptions(CLI::App& app, FileOptions& options, CommonOptions& common, bool converts)
{
    if (converts) {
        app.add_flag("--unassociated-alpha", options.unassociatedAlpha,
                     "The input's colours are not multiplied by alpha, whatever its format says.");
    }
    auto const frames = [](std::string const& text) {
        std::vector<int> unused;
        std::string error;
        return kit::parseFrames(text, unused, error) ? std::string() : error;
    };
    app.add_option("--frames", options.frames, "Frames: 1001-1100, 1001-1100x2,1200")
        ->option_text("LIST")
        ->check(frames);
    app.add_option("--jobs", options.batch.jobs, "Files at once (default: --threads).")->option_text("N");
    app.add_option("--threads", options.batch.threads, "Threads in all (0: all cores).")->option_text("N");
    app.add_flag("--update", options.batch.update, "Convert only outputs missing or older than inputs.");
    addJsonFlag(app, common, "Print a summary {errors, converted, skipped, failed, missing} as JSON.");
    if (converts) {
        app.add_option("-d,--data-type", options.output.dataType, "The data type written.")
            ->check(CLI::IsMember(kit::outputDataTypes()));
        app.add_flag("--dither", options.output.dither, "Dither values written in 8 bits from wider data.");
    }
    app.add_option("--compression", options.output.compression, "Compression (zip, piz, dwaa, lzw...).");
    app.add_option("--quality", options.output.quality, "JPEG quality.")->check(CLI::Range(1, 100));
}

ExitCode filesFailure(std::string const& message, CommonOptions const& common)
{
    if (common.json) {
        Json json = Json::parse(kFilesJson);
        json["errors"].push_back(message);
        printJson(json);
    }
    return failure(message);
}

ExitCode runFiles(std::vector<kit::FramePair> const& words, kit::BatchRequest request, FileOptions const& options,
                  CommonOptions const& common, std::string const& done)
{
    kit::SequencePlan const plan = kit::planSequences(words, options.frames);
    Json summary = Json::parse(kFilesJson);
    for (kit::SequenceGap const& gap : plan.missing) {
        console::note("warning: '{}' misses the frames {}", gap.input, kit::framesText(gap.frames));
        summary["missing"].push_back({{"input", gap.input}, {"frames", gap.frames}});
    }
    if (!plan.error.empty()) {
        return filesFailure(plan.error, common);
    }
    request.files = plan.files;
    request.model.choices = options.output;
    request.model.alphaUnassociated = options.unassociatedAlpha;
    kit::BatchOptions batch = options.batch;
    batch.progress = [&common, &done](kit::BatchProgress const& progress) {
        kit::BatchItem const& item = *progress.item;
        if (common.verbose && !item.fromSource.empty()) {
            console::note("'{}': {} ({})", item.files.input, item.from, item.fromSource);
        }
        if (item.state == kit::FrameState::Converted && !common.json) {
            console::out(item.files.input + " -> " + item.files.output + done);
        }
        if (item.job.firstImageOnly && item.result.images > 1) {
            console::note("'{}' holds {} images; the preview shows the first", item.files.input, item.result.images);
        }
        console::status(kit::progressText(progress));
    };
    kit::BatchSummary const result = kit::runBatch(request, batch);
    console::clearStatus();
    for (kit::BatchItem const& item : result.items) {
        if (item.state == kit::FrameState::Failed) {
            console::error("{}", item.reason);
        }
        char const* const state[] = {"converted", "skipped", "failed"};
        Json& list = summary[state[static_cast<int>(item.state)]];
        list.push_back({{"frame", item.files.frame}, {"input", item.files.input}, {"output", item.files.output}});
        list.back().update({{"from", item.from}, {"from_source", item.fromSource}, {"reason", item.reason}});
    }
    if (common.json) {
        printJson(summary);
    }
    return result.ok() ? ExitCode::Success : ExitCode::Failure;
}

} // namespace colorconfig
