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

/// Runs `job`: refuses an output that is one of `ledger.inputs` or already
/// in `ledger.written`, reads the input, applies the operation to each
/// image, writes the output, and adds it to `ledger.written`.
JobResult runFileJob(FileJob const& job, FileLedger& ledger);

} // namespace orv::verra_sdk::kit
