#include <verra_sdk/kit/batch.h>

#include <verra_sdk/kit/file_guess.h>
#include <verra_sdk/kit/safe_output.h>

#include <OpenImageIO/imageio.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

namespace orv::verra_sdk::kit {

namespace {

namespace stdfs = std::filesystem;

/// True when `output` exists and is not older than `input`, as `cp --update`
/// sees it.
bool upToDate(std::string const& input, std::string const& output)
{
    std::error_code failed;
    auto const written = stdfs::last_write_time(output, failed);
    if (failed) {
        return false;
    }
    auto const read = stdfs::last_write_time(input, failed);
    return !failed && written >= read;
}

/// Sets OpenImageIO's thread attributes for a batch and restores them.
class OiioThreads {
public:
    /// `perJob` threads for each frame's work, `total` in all.
    OiioThreads(int perJob, int total)
    {
        OIIO::getattribute("threads", m_threads);
        OIIO::getattribute("exr_threads", m_exrThreads);
        OIIO::attribute("threads", perJob);
        // OpenEXR's pool is one for the process: with a thread per frame,
        // each frame (de)compresses on its own thread (-1: no pool), else the
        // frames share a pool of them all.
        OIIO::attribute("exr_threads", perJob == 1 ? -1 : total);
    }
    ~OiioThreads()
    {
        OIIO::attribute("threads", m_threads);
        OIIO::attribute("exr_threads", m_exrThreads);
    }
    OiioThreads(OiioThreads const&) = delete;
    OiioThreads& operator=(OiioThreads const&) = delete;

private:
    int m_threads = 0;
    int m_exrThreads = 0;
};

/// The frames that finished on the worker threads, for the calling thread.
struct Finished {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::size_t> items;
};

/// Why `item` failed: an output that would replace the job's own input says
/// "its own input".
std::string failureText(BatchItem const& item)
{
    return jobFailureText(item.job, item.result, item.result.message == item.job.input);
}

/// Marks `item` failed with the reason of `result`.
void fail(BatchItem& item, JobResult result)
{
    item.state = FrameState::Failed;
    item.result = std::move(result);
    item.reason = failureText(item);
}

/// The first pass, on the calling thread: the checks, the skips, the colour
/// spaces and the operations. Returns the items left to run.
std::vector<std::size_t> prepare(BatchRequest const& request, BatchOptions const& options, BatchSummary& summary,
                                 std::mutex& operationLock)
{
    FileLedger ledger;
    for (FramePair const& pair : request.files) {
        ledger.inputs.push_back(pair.input);
    }
    std::vector<std::string> targets;
    for (FramePair const& pair : request.files) {
        targets.push_back(pair.output);
    }
    summary.removedTemporaries = removeStaleTemporaries(targets);
    std::map<std::string, ImageOperation> operations;
    std::vector<std::size_t> pending;
    for (std::size_t i = 0; i < request.files.size(); ++i) {
        BatchItem& item = summary.items[i];
        item.files = request.files[i];
        item.job = request.model;
        item.job.input = item.files.input;
        item.job.output = item.files.output;
        std::string target;
        JobResult checked = checkFileJob(item.job, ledger, target);
        if (!checked.ok()) {
            fail(item, std::move(checked));
            continue;
        }
        ledger.written.insert(target);
        if (options.update && upToDate(item.job.input, item.job.output)) {
            item.state = FrameState::Skipped;
            item.reason = "'" + item.job.output + "' is not older than '" + item.job.input + "'";
            continue;
        }
        item.from = request.from;
        if (request.from == "auto") {
            FileColorSpace const found = colorSpaceOfFile(item.job.input);
            if (found.colorSpace.empty()) {
                fail(item, {JobFailure::Read, found.error, 0});
                continue;
            }
            item.from = found.colorSpace;
            item.fromSource = found.source;
        }
        auto made = operations.find(item.from);
        if (made == operations.end()) {
            std::string error;
            made = operations.emplace(item.from, request.makeOperation(item.from, error)).first;
            if (!made->second) {
                made->second = [error](ImageLevel&, std::string& reason) { return (reason = error).empty(); };
            }
        }
        // The module's conversions are for one thread at a time.
        item.job.operation = [operation = made->second, &operationLock](ImageLevel& level, std::string& error) {
            std::lock_guard<std::mutex> const lock(operationLock);
            return operation(level, error);
        };
        pending.push_back(i);
    }
    return pending;
}

} // namespace

std::string progressText(BatchProgress const& progress)
{
    char text[128];
    int length = std::snprintf(text, sizeof text, "%zu/%zu frames", progress.done, progress.total);
    if (progress.seconds > 0.0 && progress.worked > 0) {
        double const rate = static_cast<double>(progress.worked) / progress.seconds;
        auto const left = static_cast<long long>(static_cast<double>(progress.total - progress.done) / rate + 0.5);
        length += std::snprintf(text + length, sizeof text - static_cast<std::size_t>(length),
                                "  %.1f/s  %lld:%02lld left", rate, left / 60, left % 60);
    }
    return std::string(text, static_cast<std::size_t>(length));
}

BatchSummary runBatch(BatchRequest const& request, BatchOptions const& options)
{
    auto const start = std::chrono::steady_clock::now();
    BatchSummary summary;
    summary.items.resize(request.files.size());
    std::mutex operationLock;
    std::vector<std::size_t> const pending = prepare(request, options, summary, operationLock);

    unsigned const cores = std::max(1u, std::thread::hardware_concurrency());
    unsigned const threads = options.threads > 0 ? options.threads : cores;
    unsigned const wanted = options.jobs > 0 ? std::min(options.jobs, threads) : threads;
    summary.jobs = std::max(1u, std::min(wanted, static_cast<unsigned>(std::max<std::size_t>(pending.size(), 1))));
    summary.threadsPerJob = std::max(1u, threads / summary.jobs);

    BatchProgress progress{0, 0, request.files.size(), 0.0, nullptr};
    auto const report = [&](BatchItem const& item) {
        ++progress.done;
        progress.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        progress.item = &item;
        if (options.progress) {
            options.progress(progress);
        }
    };
    for (BatchItem const& item : summary.items) {
        if (item.state == FrameState::Skipped || !item.reason.empty()) {
            report(item);
        }
    }

    Finished finished;
    std::atomic<std::size_t> next{0};
    auto const work = [&]() {
        for (std::size_t n = next++; n < pending.size(); n = next++) {
            BatchItem& item = summary.items[pending[n]];
            try {
                item.result = processFileJob(item.job);
            } catch (std::exception const& error) {
                item.result = {JobFailure::Operation, error.what(), 0};
            } catch (...) {
                item.result = {JobFailure::Operation, "unknown error", 0};
            }
            std::lock_guard<std::mutex> const lock(finished.mutex);
            finished.items.push_back(pending[n]);
            finished.changed.notify_one();
        }
    };
    {
        OiioThreads const oiio(static_cast<int>(summary.threadsPerJob), static_cast<int>(threads));
        std::vector<std::thread> workers;
        try {
            for (unsigned t = 0; t < summary.jobs && t < pending.size(); ++t) {
                workers.emplace_back(work);
            }
        } catch (std::system_error const&) {
            // Fewer threads: those started do the work.
        }
        // Without any, the calling thread works alone and reports at the end.
        if (workers.empty()) {
            work();
        }
        for (std::size_t reported = 0; reported < pending.size(); ++reported) {
            std::unique_lock<std::mutex> lock(finished.mutex);
            finished.changed.wait(lock, [&finished] { return !finished.items.empty(); });
            std::size_t const index = finished.items.front();
            finished.items.pop_front();
            lock.unlock();
            BatchItem& item = summary.items[index];
            item.state = item.result.ok() ? FrameState::Converted : FrameState::Failed;
            item.reason = failureText(item);
            ++progress.worked;
            report(item);
        }
        for (std::thread& worker : workers) {
            worker.join();
        }
    }
    for (BatchItem const& item : summary.items) {
        summary.converted += item.state == FrameState::Converted ? 1 : 0;
        summary.skipped += item.state == FrameState::Skipped ? 1 : 0;
        summary.failed += item.state == FrameState::Failed ? 1 : 0;
    }
    return summary;
}

} // namespace orv::verra_sdk::kit
