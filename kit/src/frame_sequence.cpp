#include <verra_sdk/kit/frame_sequence.h>

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/strutil.h>

#include <algorithm>
#include <filesystem>
#include <numeric>

namespace orv::verra_sdk::kit {

namespace {

namespace stdfs = std::filesystem;

/// The printf form of the pattern in `path`'s file name, and the frame
/// range written into it ("plate.1-10#.exr"), if any.
bool patternOf(std::string const& path, std::string& pattern, std::string& embeddedFrames)
{
    stdfs::path const whole(path);
    std::string name;
    if (!OIIO::Filesystem::parse_pattern(whole.filename().string().c_str(), 0, name, embeddedFrames)) {
        return false;
    }
    pattern = (whole.parent_path() / name).string();
    return true;
}

/// The names of `frames` in the printf `pattern`.
std::vector<std::string> namesOf(std::string const& pattern, std::vector<int> const& frames)
{
    std::vector<std::string> names;
    OIIO::Filesystem::enumerate_file_sequence(pattern, frames, names);
    return names;
}

/// The frames whose files `pattern` names in its folder: a file name with
/// the pattern's text around a number that the pattern writes back the same
/// ("%04d" takes 0012 and 12345, not 012).
std::vector<int> framesOnDisk(std::string const& pattern)
{
    stdfs::path const whole(pattern);
    std::string const name = whole.filename().string();
    std::size_t const start = name.find('%');
    std::size_t const end = name.find('d', start);
    std::string const prefix = name.substr(0, start), suffix = name.substr(end + 1);
    std::vector<int> frames;
    std::error_code failed;
    stdfs::path const folder = whole.has_parent_path() ? whole.parent_path() : stdfs::path(".");
    for (stdfs::directory_iterator entry(folder, failed), last; !failed && entry != last; entry.increment(failed)) {
        std::string const found = entry->path().filename().string();
        if (found.size() <= prefix.size() + suffix.size() || !OIIO::Strutil::starts_with(found, prefix) ||
            !OIIO::Strutil::ends_with(found, suffix)) {
            continue;
        }
        OIIO::string_view digits(found.data() + prefix.size(), found.size() - prefix.size() - suffix.size());
        int frame = 0;
        if (OIIO::Strutil::string_is_int(digits) && OIIO::Strutil::parse_int(digits, frame) &&
            stdfs::path(namesOf(pattern, {frame}).front()).filename() == found) {
            frames.push_back(frame);
        }
    }
    return frames;
}

} // namespace

std::string sequencePattern(std::string const& path)
{
    std::string pattern, frames;
    return patternOf(path, pattern, frames) ? pattern : std::string();
}

bool parseFrames(std::string const& text, std::vector<int>& frames, std::string& error)
{
    frames.clear();
    if (text.find_first_not_of("0123456789-,xy ") != std::string::npos ||
        !OIIO::Filesystem::enumerate_sequence(text, frames) || frames.empty()) {
        frames.clear();
        error = "malformed frame range '" + text + "' (examples: 1001-1100, 1001-1100x2, 1001,1005,1010-1020)";
        return false;
    }
    return true;
}

std::string framesText(std::vector<int> const& frames)
{
    std::string text;
    for (std::size_t first = 0; first < frames.size();) {
        std::size_t last = first;
        while (last + 1 < frames.size() && frames[last + 1] == frames[last] + 1) {
            ++last;
        }
        text += (text.empty() ? "" : ",") + std::to_string(frames[first]) +
                (last > first ? "-" + std::to_string(frames[last]) : std::string());
        first = last + 1;
    }
    return text;
}

std::vector<FramePair> intoFolder(std::vector<std::string> const& inputs, std::string const& folder)
{
    std::vector<FramePair> pairs;
    for (std::string const& input : inputs) {
        pairs.push_back({-1, input, (stdfs::path(folder) / stdfs::path(input).filename()).string()});
    }
    return pairs;
}

SequencePlan planSequence(std::string const& input, std::string const& output, std::string const& frames)
{
    SequencePlan plan;
    std::string inPattern, outPattern, embedded, unused;
    bool const inSequence = patternOf(input, inPattern, embedded);
    bool const outSequence = patternOf(output, outPattern, unused);
    if (inSequence != outSequence) {
        plan.error = inSequence
                         ? "'" + output + "' needs a frame pattern (#, @ or %0Nd) as its input '" + input + "' has"
                         : "'" + output + "' has a frame pattern and its input '" + input + "' has none";
        return plan;
    }
    if (!inSequence) {
        if (!frames.empty()) {
            plan.error = "a frame range needs a frame pattern (#, @ or %0Nd) in '" + input + "'";
        } else {
            plan.files.push_back({-1, input, output});
        }
        return plan;
    }
    std::vector<int> numbers;
    std::string const range = frames.empty() ? embedded : frames;
    if (!range.empty()) {
        if (!parseFrames(range, numbers, plan.error)) {
            return plan;
        }
    } else {
        numbers = framesOnDisk(inPattern);
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
        if (numbers.empty()) {
            plan.error = "no file matches '" + input + "'";
            return plan;
        }
        std::vector<int> every(static_cast<std::size_t>(numbers.back() - numbers.front()) + 1);
        std::iota(every.begin(), every.end(), numbers.front());
        SequenceGap gap{input, {}};
        std::set_difference(every.begin(), every.end(), numbers.begin(), numbers.end(), std::back_inserter(gap.frames));
        if (!gap.frames.empty()) {
            plan.missing.push_back(std::move(gap));
        }
    }
    std::vector<std::string> const inputs = namesOf(inPattern, numbers);
    std::vector<std::string> const outputs = namesOf(outPattern, numbers);
    for (std::size_t i = 0; i < numbers.size() && i < inputs.size() && i < outputs.size(); ++i) {
        plan.files.push_back({numbers[i], inputs[i], outputs[i]});
    }
    return plan;
}

SequencePlan planSequences(std::vector<FramePair> const& pairs, std::string const& frames)
{
    SequencePlan all;
    for (FramePair const& pair : pairs) {
        SequencePlan plan = planSequence(pair.input, pair.output, frames);
        if (!plan.error.empty()) {
            return plan;
        }
        all.files.insert(all.files.end(), plan.files.begin(), plan.files.end());
        all.missing.insert(all.missing.end(), plan.missing.begin(), plan.missing.end());
    }
    return all;
}

} // namespace orv::verra_sdk::kit
