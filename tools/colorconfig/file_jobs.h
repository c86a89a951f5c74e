#pragma once
// The file work of `convert`, `view` and `preview`: their shared options for
// sequences, batches and output choices, and the messages of a batch run
// through the toolkit.

#include "command.h"

#include <verra_sdk/kit/image_operations.h>

namespace colorconfig {

/// The options `addFileOptions` declares.
struct FileOptions {
    bool unassociatedAlpha = false;
    std::string frames;
    kit::BatchOptions batch;
    kit::OutputChoices output;
};

/// Adds --frames, --jobs, --threads, --update, --json, --compression and
/// --quality to `app`; with `converts` (convert and view), also
/// --unassociated-alpha, -d/--data-type and --dither.
void addFileOptions(CLI::App& app, FileOptions& options, CommonOptions& common, bool converts);

/// The summary --json prints, empty: what a run that cannot start prints
/// with its errors.
inline constexpr char const* kFilesJson =
    R"({"errors": [], "converted": [], "skipped": [], "failed": [], "missing": []})";

/// Prints `message` as an error and, with --json, the empty summary with it
/// in "errors"; returns Failure.
ExitCode filesFailure(std::string const& message, CommonOptions const& common);

/// Expands each pair of `words` (file names or frame patterns) with
/// --frames, runs them as one batch of `request` (whose files, output
/// choices and alpha it fills), and
/// prints "IN -> OUT<done>" for each file converted (with a progress line
/// on a terminal, which the console shows only there), each file's colour space with --verbose when it was
/// "auto", then an error per failed file, or with --json the summary
/// {errors, converted, skipped, failed, missing} of items {frame, input, output, from,
/// from_source, reason}. Failure when a pattern is refused or a file failed.
ExitCode runFiles(std::vector<kit::FramePair> const& words, kit::BatchRequest request, FileOptions const& options,
                  CommonOptions const& common, std::string const& done);

} // namespace colorconfig
