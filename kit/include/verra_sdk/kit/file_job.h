#pragma once
// One image file in, one out, with an operation on each of its images: the
// pipeline of converting, viewing and previewing files. Checks that the
// output replaces no input, reads every subimage and MIP level, operates on
// each, and writes the result safely (`writeImageFile`): a failure at any
// step leaves every existing file as it was.
//
// Example:
//
//     kit::FileLedger ledger{{"a.png"}, {}};
//     kit::FileJob job{"a.png", "a.exr", kit::Precision::KeepBytes, false,
//                      [](kit::ImageLevel& level, std::string& error) {
//                          return kit::convertLevel(level, "sRGB", "linear", error);
//                      }};
//     kit::JobResult const result = kit::runFileJob(job, ledger);
//     if (!result.ok()) std::fprintf(stderr, "%s\n", result.message.c_str());
//
// Threading: the operation decides (the module's conversions are for one
// thread at a time). Never throws or prints.

#include <verra_sdk/kit/image_file.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace orv::verra_sdk::kit {

/// What a job does to each image it read; false, with the reason in its
/// second argument, when it fails. It may replace the level's pixels and
/// ImageSpec (a preview becomes 8-bit RGBA).
using ImageOperation = std::function<bool(ImageLevel& level, std::string& error)>;

/// What a job changes in the output's description of each image; the
/// defaults keep the input's.
struct OutputChoices {
    /// The data type the output stores: "uint8", "uint10" (16-bit values
    /// marked as 10 bits, as DPX and PNG writers take them), "uint16", "half"
    /// or "float" (`outputDataTypes`); empty keeps each image's own. Other
    /// than "uint8", the operation runs in FLOAT.
    std::string dataType;
    /// OpenImageIO's compression name for the format ("zip", "piz", "dwaa",
    /// "lzw", "jpeg"...); empty keeps the input's. Writers take the names
    /// they know and pass over the others.
    std::string compression;
    /// The quality of lossy compression (JPEG), 1 to 100; 0 keeps the
    /// writer's default.
    int quality = 0;
    /// True to dither values that are quantised to 8 bits or fewer from wider
    /// data while they are written, as oiiotool's --dither does: the pattern
    /// seeded by the output's name, the same on every run.
    bool dither = false;
};

/// The names `OutputChoices::dataType` takes.
std::vector<std::string> const& outputDataTypes();

/// One file to turn into another.
struct FileJob {
    std::string input;
    std::string output;
    /// How pixels are held while the operation runs: with `KeepBytes`, 8-bit
    /// images stay 8-bit only when the output's format stores 8 bits and
    /// nothing needs float (see `readImageFile`); otherwise FLOAT.
    Precision precision = Precision::Float;
    /// True to read and write only the first image of the input.
    bool firstImageOnly = false;
    ImageOperation operation;
    /// True when the input's colour values are not multiplied by alpha,
    /// whatever its format stores (a file written that way by mistake): they
    /// are converted as they are, and written in the form the output's format
    /// holds (`ReadOptions::alphaUnassociated`, `writeImageFile`).
    bool alphaUnassociated = false;
    /// What changes in the output's description.
    OutputChoices choices = {};
};

/// The step at which a job failed.
enum class JobFailure {
    None,
    /// The output is one of the run's inputs (the same file, by any path);
    /// `JobResult::message` is that input.
    ReplacesInput,
    /// An earlier job of the run wrote the same output (by any path).
    WrittenBefore,
    /// The input cannot be read (`readImageFile`).
    Read,
    /// The operation failed on one of the images.
    Operation,
    /// The output cannot be written (`writeImageFile`).
    Write,
};

/// How a job ended.
struct JobResult {
    JobFailure failure = JobFailure::None;
    /// The reason, from OpenImageIO, OpenColorIO or the operation; empty on
    /// success.
    std::string message;
    /// How many images (subimages and MIP levels) the input holds; 0 when it
    /// was not read.
    std::size_t images = 0;

    bool ok() const { return failure == JobFailure::None; }
};

/// What a run of several jobs has seen: every input of the run (no output
/// may replace one) and the outputs written so far (no two jobs write the
/// same file). The caller owns it and passes it to each job.
struct FileLedger {
    std::vector<std::string> inputs;
    std::set<std::string> written;
};

/// What went wrong with `job`, as one line that names its files:
///   ReplacesInput  "'OUT' would replace the input 'IN'; choose another output"
///                  ("its own input" in place of "the input 'IN'" when
///                  `oneInput` is true)
///   WrittenBefore  "'OUT' was already written by an earlier input; 'IN' is skipped"
///   Read           "cannot read 'IN': <reason>"
///   Operation      "'IN' was not converted: <reason>"
///   Write          "cannot write 'OUT': <reason>"
/// Empty for a job that succeeded.
std::string jobFailureText(FileJob const& job, JobResult const& result, bool oneInput);

/// The checks `runFileJob` makes before it reads anything: ReplacesInput or
/// WrittenBefore against `ledger`, or None; `target` becomes the output's
/// canonical path, the key of `ledger.written`. Costs a few file-system
/// lookups.
JobResult checkFileJob(FileJob const& job, FileLedger const& ledger, std::string& target);

/// Reads, operates and writes `job` without `checkFileJob`'s checks: for a
/// caller that made them itself. Jobs with different outputs may run at
/// once from several threads when their operations may.
JobResult processFileJob(FileJob const& job);

/// Runs `job`: refuses an output that is one of `ledger.inputs` or already
/// in `ledger.written`, reads the input, applies the operation to each
/// image, writes the output, and adds it to `ledger.written`.
JobResult runFileJob(FileJob const& job, FileLedger& ledger);

} // namespace orv::verra_sdk::kit
