#include <verra_sdk/kit/file_job.h>

#include <verra_sdk/kit/safe_output.h>

#include <OpenImageIO/imageio.h>
#include <OpenImageIO/strutil.h>

#include <filesystem>

namespace orv::verra_sdk::kit {

namespace {

namespace stdfs = std::filesystem;

/// The entry of `inputs` that writing `output` would replace, or null.
std::string const* replacedInput(std::string const& output, std::vector<std::string> const& inputs)
{
    for (std::string const& input : inputs) {
        std::error_code ignored;
        if (stdfs::equivalent(input, output, ignored)) {
            return &input;
        }
    }
    return nullptr;
}

/// True when the format that `output`'s name asks for stores 8-bit values.
bool storesBytes(std::string const& output)
{
    std::string const format = formatForPath(output);
    return format.empty() || formatStoresBytes(format);
}

/// The type stored for `name`, one of `outputDataTypes`; UNKNOWN otherwise.
OIIO::TypeDesc dataTypeNamed(std::string const& name)
{
    return name == "uint8"                        ? OIIO::TypeDesc::UINT8
           : name == "uint10" || name == "uint16" ? OIIO::TypeDesc::UINT16
           : name == "half"                       ? OIIO::TypeDesc::HALF
           : name == "float"                      ? OIIO::TypeDesc::FLOAT
                                                  : OIIO::TypeDesc::UNKNOWN;
}

/// Applies `choices` to the description of `level` that is written to `output`.
bool applyChoices(OutputChoices const& choices, std::string const& output, ImageLevel& level, std::string& error)
{
    OIIO::ImageSpec& spec = level.fileSpec;
    if (!choices.dataType.empty()) {
        OIIO::TypeDesc const type = dataTypeNamed(choices.dataType);
        if (type == OIIO::TypeDesc::UNKNOWN) {
            error = "unknown data type '" + choices.dataType + "'";
            return false;
        }
        spec.set_format(type);
        spec.channelformats.clear();
        spec.erase_attribute("oiio:BitsPerSample");
        if (choices.dataType == "uint10") {
            spec.attribute("oiio:BitsPerSample", 10);
        }
    }
    if (!choices.compression.empty()) {
        spec.attribute("compression", choices.compression);
    }
    if (choices.quality > 0) {
        // The quality goes with the compression asked for, else JPEG's in a
        // JPEG file, else the input's compression.
        std::string const compression = !choices.compression.empty() ? choices.compression
                                        : formatForPath(output) == "jpeg"
                                            ? std::string("jpeg")
                                            : std::string(spec.get_string_attribute("compression"));
        std::string const name = compression.substr(0, compression.find(':'));
        spec.attribute("CompressionQuality", choices.quality);
        if (!name.empty()) {
            spec.attribute("compression", name + ":" + std::to_string(choices.quality));
        }
    }
    if (choices.dither) {
        // oiiotool's seed: the hash of the output's name as given (0 would
        // turn dithering off).
        auto const seed = static_cast<int>(OIIO::Strutil::strhash(output));
        spec.attribute("oiio:dither", seed != 0 ? seed : 1);
    }
    return true;
}

} // namespace

std::vector<std::string> const& outputDataTypes()
{
    static std::vector<std::string> const names{"uint8", "uint10", "uint16", "half", "float"};
    return names;
}

JobResult checkFileJob(FileJob const& job, FileLedger const& ledger, std::string& target)
{
    JobResult result;
    std::vector<std::string> const own{job.input};
    std::string const* replaced = replacedInput(job.output, own);
    replaced = replaced != nullptr ? replaced : replacedInput(job.output, ledger.inputs);
    if (replaced != nullptr) {
        result.failure = JobFailure::ReplacesInput;
        result.message = *replaced;
        return result;
    }
    // The same file by any path: through "..", symbolic links, the current folder.
    std::error_code failed;
    target = stdfs::weakly_canonical(job.output, failed).string();
    if (failed) {
        target = stdfs::path(job.output).lexically_normal().string();
    }
    if (ledger.written.count(target) != 0) {
        result.failure = JobFailure::WrittenBefore;
    }
    return result;
}

JobResult processFileJob(FileJob const& job)
{
    JobResult result;
    bool const bytesKept = job.choices.dataType.empty() || job.choices.dataType == "uint8";
    ReadOptions options;
    options.precision = job.precision == Precision::KeepBytes && storesBytes(job.output) && bytesKept
                            ? Precision::KeepBytes
                            : Precision::Float;
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
        if (!applyChoices(job.choices, job.output, level, result.message)) {
            result.failure = JobFailure::Write;
            return result;
        }
    }
    if (!writeImageFile(job.output, file, result.message)) {
        result.failure = JobFailure::Write;
    }
    return result;
}

JobResult runFileJob(FileJob const& job, FileLedger& ledger)
{
    std::string target;
    JobResult result = checkFileJob(job, ledger, target);
    if (!result.ok()) {
        return result;
    }
    result = processFileJob(job);
    if (result.ok()) {
        ledger.written.insert(target);
    }
    return result;
}

std::string jobFailureText(FileJob const& job, JobResult const& result, bool oneInput)
{
    switch (result.failure) {
    case JobFailure::None:
        return {};
    case JobFailure::ReplacesInput:
        return "'" + job.output + "' would replace " +
               (oneInput ? "its own input" : "the input '" + result.message + "'") + "; choose another output";
    case JobFailure::WrittenBefore:
        return "'" + job.output + "' was already written by an earlier input; '" + job.input + "' is skipped";
    case JobFailure::Read:
        return "cannot read '" + job.input + "': " + result.message;
    case JobFailure::Operation:
        return "'" + job.input + "' was not converted: " + result.message;
    case JobFailure::Write:
        break;
    }
    return "cannot write '" + job.output + "': " + result.message;
}

} // namespace orv::verra_sdk::kit
