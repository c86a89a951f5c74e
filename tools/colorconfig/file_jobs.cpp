#include "file_jobs.h"

#include "console.h"

namespace colorconfig {

namespace {

/// What went wrong with `job`.
std::string failure(kit::FileJob const& job, kit::JobResult const& result, bool oneInput)
{
    switch (result.failure) {
    case kit::JobFailure::ReplacesInput:
        return "'" + job.output + "' would replace " +
               (oneInput ? "its own input" : "the input '" + result.message + "'") + "; choose another output";
    case kit::JobFailure::WrittenBefore:
        return "'" + job.output + "' was already written by an earlier input; '" + job.input + "' is skipped";
    case kit::JobFailure::Read:
        return "cannot read '" + job.input + "': " + result.message;
    case kit::JobFailure::Operation:
        return "'" + job.input + "' was not converted: " + result.message;
    case kit::JobFailure::Write:
    case kit::JobFailure::None:
        break;
    }
    return "cannot write '" + job.output + "': " + result.message;
}

} // namespace

ExitCode runJobs(std::vector<kit::FileJob> const& jobs, std::string const& done, bool oneInput)
{
    kit::FileLedger ledger;
    for (kit::FileJob const& job : jobs) {
        ledger.inputs.push_back(job.input);
    }
    ExitCode code = ExitCode::Success;
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        kit::FileJob const& job = jobs[i];
        if (jobs.size() > 1) {
            console::status(fmt::format("[{}/{}] converting {}", i + 1, jobs.size(), job.input));
        }
        kit::JobResult const result = kit::runFileJob(job, ledger);
        if (job.firstImageOnly && result.images > 1) {
            console::note("'{}' holds {} images; the preview shows the first", job.input, result.images);
        }
        if (result.ok()) {
            console::out(job.input + " -> " + job.output + done);
        } else {
            console::error("{}", failure(job, result, oneInput));
            code = ExitCode::Failure;
        }
    }
    console::clearStatus();
    return code;
}

} // namespace colorconfig
