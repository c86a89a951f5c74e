#include "file_jobs.h"

#include "console.h"

namespace colorconfig {

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
            console::error("{}", kit::jobFailureText(job, result, oneInput));
            code = ExitCode::Failure;
        }
    }
    console::clearStatus();
    return code;
}

} // namespace colorconfig
