// The `convert` subcommand.

#include "color_names.h"
#include "commands.h"
#include "console.h"
#include "convert_level.h"
#include "image_file.h"
#include "safe_output.h"

#include <fmt/format.h>

#include <filesystem>
#include <set>

namespace colorconfig {

namespace {

namespace stdfs = std::filesystem;

/// One input file and where its result goes.
struct Job {
    std::string input;
    std::string output;
};

/// The jobs of `convert IN OUT` or `convert --out-dir DIR IN...`; false after
/// a message when the command line does not name them properly.
bool planJobs(Options const& options, std::vector<Job>& jobs, ExitCode& failure)
{
    std::vector<std::string> const& words = options.positionals;
    if (!options.hasOutDir) {
        if (words.size() != 2) {
            console::error("'convert' needs IN and OUT, or --out-dir DIR and one or more IN");
            console::errorText("Run 'colorconfig convert --help' for more.\n");
            failure = ExitCode::Usage;
            return false;
        }
        jobs.push_back({words[0], words[1]});
        return true;
    }
    std::string const& folder = options.outDir;
    std::error_code ignored;
    if (!stdfs::is_directory(folder, ignored)) {
        console::error("output folder '{}' does not exist or is not a folder", folder);
        failure = ExitCode::Failure;
        return false;
    }
    for (std::string const& input : words) {
        jobs.push_back({input, (stdfs::path(folder) / stdfs::path(input).filename()).string()});
    }
    return true;
}

/// The input among `jobs` that writing `output` would replace, or null.
std::string const* inputReplacedBy(std::string const& output, std::vector<Job> const& jobs)
{
    for (Job const& job : jobs) {
        std::error_code ignored;
        if (stdfs::equivalent(job.input, output, ignored)) {
            return &job.input;
        }
    }
    return nullptr;
}

/// True when the format that `output`'s name asks for stores 8-bit values,
/// so that 8-bit pixels can stay 8-bit on their way through.
bool storesBytes(std::string const& output)
{
    std::string const format = formatForPath(output);
    return format.empty() || formatStoresBytes(format);
}

bool convertOne(Job const& job, std::vector<Job> const& jobs, orv::String const& from, orv::String const& to,
                std::set<std::string>& written)
{
    if (std::string const* input = inputReplacedBy(job.output, jobs)) {
        console::error("'{}' would replace the input '{}'; choose another output", job.output,
                       *input);
        return false;
    }
    std::string const target = stdfs::path(job.output).lexically_normal().string();
    if (written.count(target) != 0) {
        console::error("'{}' was already written by an earlier input; '{}' is skipped", job.output,
                       job.input);
        return false;
    }
    // 8-bit pixels stay 8-bit only when the output stores 8 bits: the
    // module's RGBA8 transform then gives colorconvert's own bytes. Any
    // other output gets pixels computed in float.
    Precision const precision = storesBytes(job.output) ? Precision::KeepBytes : Precision::Float;
    ImageFile file;
    std::string message;
    if (!readImageFile(job.input, precision, file, message)) {
        console::error("cannot read '{}': {}", job.input, message);
        return false;
    }
    for (ImageLevel& level : file.levels) {
        if (!convertLevel(level, from, to, message)) {
            console::error("'{}' was not converted: {}", job.input, message);
            return false;
        }
    }
    if (!writeImageFile(job.output, file, message)) {
        console::error("cannot write '{}': {}", job.output, message);
        return false;
    }
    written.insert(target);
    return true;
}

} // namespace

ExitCode runConvert(Context const& context)
{
    std::vector<Job> jobs;
    ExitCode failure = ExitCode::Success;
    if (!planJobs(context.options, jobs, failure)) {
        return failure;
    }
    orv::String const from = resolveColorSpace(context.options.from, context.config.ocio);
    orv::String const to = resolveColorSpace(context.options.to, context.config.ocio);
    if (from.isEmpty() || to.isEmpty()) {
        return ExitCode::Failure;
    }
    bool const showProgress = jobs.size() > 1;
    std::set<std::string> written;
    ExitCode code = ExitCode::Success;
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        if (showProgress) {
            console::status(fmt::format("[{}/{}] converting {}", i + 1, jobs.size(), jobs[i].input));
        }
        if (convertOne(jobs[i], jobs, from, to, written)) {
            console::out(jobs[i].input + " -> " + jobs[i].output);
        } else {
            code = ExitCode::Failure;
        }
    }
    console::clearStatus();
    return code;
}

} // namespace colorconfig
