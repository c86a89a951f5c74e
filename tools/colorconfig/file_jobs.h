#pragma once
// The messages of `convert`, `view` and `preview`: each runs its files
// through the toolkit's file-job pipeline and says how each ended.

#include "exit_code.h"

#include <verra_sdk/kit/file_job.h>

#include <string>
#include <vector>

namespace colorconfig {

namespace kit = orv::verra_sdk::kit;

/// Runs `jobs` in order through `kit::runFileJob`, every input of them in one
/// ledger, with a progress line on a terminal while there are several.
/// Prints "IN -> OUT<done>" for each that succeeds and
/// "colorconfig: error: ..." for each that fails; a job that reads only the
/// first image of several says so. `oneInput` words an output that would
/// replace the input as "its own input". Failure when any job failed.
ExitCode runJobs(std::vector<kit::FileJob> const& jobs, std::string const& done, bool oneInput);

} // namespace colorconfig
