#pragma once
// Many file jobs at once: the frames of a sequence, or a list of files,
// converted by several threads, each frame read, operated on and written
// safely as `runFileJob` does, with progress, a resumable `update` mode and a
// summary of what was converted, skipped and failed, and why.
//
// Example:
//
//     kit::BatchRequest request;
//     request.files = kit::planSequence("in/plate.#.exr", "out/plate.#.exr", "1001-1100").files;
//     request.from = "ACEScg";
//     request.makeOperation = [](std::string const& from, std::string&) {
//         return kit::conversionOperation(from, "sRGB - Texture");
//     };
//     kit::BatchSummary const summary = kit::runBatch(request, {});
//     for (kit::BatchItem const& item : summary.items)
//         if (item.state == kit::FrameState::Failed) std::fprintf(stderr, "%s\n", item.reason.c_str());
//
// Threading: call it from one thread at a time (it runs the module's
// conversions). Its threads read, decode, encode and write frames at once;
// the operations run one at a time, under one lock, so that the pixels are
// the same as one `runFileJob` after another. Every thread it starts has
// ended when it returns. Failures are values; nothing is thrown or printed.

#include <verra_sdk/kit/file_job.h>
#include <verra_sdk/kit/frame_sequence.h>

#include <functional>
#include <string>
#include <vector>

namespace orv::verra_sdk::kit {

/// Makes the operation for files whose pixels are in the colour space
/// `from`; an empty function, with the reason in `error`, when there is none
/// (the configuration cannot convert from there). Called on the calling
/// thread, once per colour space.
using OperationMaker = std::function<ImageOperation(std::string const& from, std::string& error)>;

/// What a batch does.
struct BatchRequest {
    /// The files, in order (see `planSequence`).
    std::vector<FramePair> files;
    /// The colour space of the inputs, or "auto": each file's own, as
    /// `colorSpaceOfFile` finds it.
    std::string from;
    OperationMaker makeOperation;
    /// The model of each job: its precision, first image only, alpha and
    /// output choices (its input, output and operation are the batch's).
    FileJob model;
};

struct BatchProgress;

/// How a batch runs.
struct BatchOptions {
    /// Frames at once; 0 for as many as `threads`.
    unsigned jobs = 0;
    /// The threads of the whole batch, its frames' and OpenImageIO's, as
    /// oiiotool's --threads: 0 for one per core. Each frame gets
    /// `threads / jobs` of OpenImageIO's threads (at least one).
    unsigned threads = 0;
    /// As `cp --update`: a frame whose output exists and is not older than
    /// its input is skipped.
    bool update = false;
    /// Called on the calling thread after each frame ends (skipped ones
    /// included), never at once.
    std::function<void(BatchProgress const&)> progress;
};

/// How a frame ended.
enum class FrameState { Converted, Skipped, Failed };

/// One frame (or file) of a batch.
struct BatchItem {
    FramePair files;
    /// The job as run: `files` with the request's model and operation.
    FileJob job;
    FrameState state = FrameState::Failed;
    /// The colour space converted from, and how it was found when the
    /// request's was "auto" (`FileColorSpace::source`; empty otherwise).
    std::string from;
    std::string fromSource;
    /// How the job ended; `result.failure` is None for skipped frames.
    JobResult result;
    /// Why a frame failed (`jobFailureText`) or was skipped; empty otherwise.
    std::string reason;
};

/// Where a batch is, for a progress line.
struct BatchProgress {
    /// Frames ended, skipped or refused ones included.
    std::size_t done = 0;
    /// Frames ended that were worked on (read, converted, written or failed
    /// on the way): the rate's.
    std::size_t worked = 0;
    std::size_t total = 0;
    /// Seconds since the batch started.
    double seconds = 0.0;
    /// The frame that just ended.
    BatchItem const* item = nullptr;
};

/// "37/120 frames  4.1/s  0:20 left": frames ended of the total, the rate of
/// those worked on, and the time left at that rate (shown once a frame was
/// worked on).
std::string progressText(BatchProgress const& progress);

/// What a batch did.
struct BatchSummary {
    /// One per requested file, in the request's order.
    std::vector<BatchItem> items;
    std::size_t converted = 0;
    std::size_t skipped = 0;
    std::size_t failed = 0;
    /// Temporary files that killed runs left beside the targets, removed
    /// (`removeStaleTemporaries`).
    std::size_t removedTemporaries = 0;
    /// Frames run at once, and OpenImageIO's threads per frame.
    unsigned jobs = 0;
    unsigned threadsPerJob = 0;

    bool ok() const { return failed == 0; }
};

/// Runs `request`: first, on the calling thread and in order, refuses
/// outputs that would replace an input or an earlier output (as
/// `runFileJob`), removes the temporary files killed runs left beside each
/// target, skips up-to-date frames (`options.update`), finds each file's
/// colour space ("auto") and makes the operations; then runs the remaining
/// frames on `jobs` threads, one frame per thread at a time, so that memory
/// peaks at `jobs` frames. A frame that fails does not stop the others.
/// OpenImageIO's "threads" and "exr_threads" attributes are set for the run
/// and restored after it.
BatchSummary runBatch(BatchRequest const& request, BatchOptions const& options);

} // namespace orv::verra_sdk::kit
