#include <verra_sdk/kit/file_job.h>

#include <verra_sdk/kit/safe_output.h>

#include <filesystem>

namespace orv::verra_sdk::kit {

namespace {

namespace stdfs = std::filesystem;

/// True when writing `output` would replace one of `inputs`.
bool replacesInput(std::string const& output, std::vector<std::string> const& inputs)
{
    for (std::string const& input : inputs) {
        std::error_code ignored;
        if (stdfs::equivalent(input, output, ignored)) {
            return true;
        }
    }
    return false;
}

/// True when the format that `output`'s name asks for stores 8-bit values.
bool storesBytes(std::string const& output)
{
    std::string const format = formatForPath(output);
    return format.empty() || formatStoresBytes(format);
}

} // namespace

JobResult runFileJob(FileJob const& job, FileLedger& ledger)
{
    JobResult result;
    if (replacesInput(job.output, ledger.inputs) || replacesInput(job.output, {job.input})) {
        result.failure = JobFailure::ReplacesInput;
        return result;
    }
    // The same file by any path: through "..", symbolic links, the current folder.
    std::error_code failed;
    std::string target = stdfs::weakly_canonical(job.output, failed).string();
    if (failed) {
        target = stdfs::path(job.output).lexically_normal().string();
    }
    if (ledger.written.count(target) != 0) {
        result.failure = JobFailure::WrittenBefore;
        return result;
    }
    ReadOptions options;
    options.precision =
        job.precision == Precision::KeepBytes && storesBytes(job.output) ? Precision::KeepBytes : Precision::Float;
    options.alphaUnassociated = job.alphaUnassociated;
    ImageFile file;
    if (!readImageFile(job.input, options, file, result.message)) {
        result.failure = JobFailure::Read;
        return result;
    }
    result.images = file.levels.size();
    if (job.firstImageOnly) {
        file.levels.resize(1);
        file.subimages = 1;
        file.mipmapped = false;
    }
    for (ImageLevel& level : file.levels) {
        if (!job.operation(level, result.message)) {
            result.failure = JobFailure::Operation;
            return result;
        }
    }
    if (!writeImageFile(job.output, file, result.message)) {
        result.failure = JobFailure::Write;
        return result;
    }
    ledger.written.insert(target);
    return result;
}

} // namespace orv::verra_sdk::kit
