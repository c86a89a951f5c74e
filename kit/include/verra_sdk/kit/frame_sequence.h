#pragma once
// Frame sequences: file names with a frame number pattern in them, the frame
// ranges that pick their frames, and the pairs of input and output files a
// sequence turns into. Patterns are written as oiiotool writes them, in the
// file name (not its folder):
//   "#"      four digits: "plate.#.exr" is plate.0001.exr ("##" is eight)
//   "@"      one digit each: "plate.@@@.exr" is plate.001.exr
//   "%0Nd"   printf-style: "plate.%04d.exr" is plate.0001.exr ("%d" unpadded)
//
// Example:
//
//     kit::SequencePlan const plan = kit::planSequence("in/plate.#.exr", "out/plate.%05d.png", "1001-1100x2");
//     if (!plan.error.empty()) std::fprintf(stderr, "%s\n", plan.error.c_str());
//     for (kit::FramePair const& pair : plan.files) ...
//     // pair.input "in/plate.1001.exr", pair.output "out/plate.01001.png"; then 1003, 1005...
//
// Ranges and patterns are parsed by OpenImageIO's file-sequence helpers.
// Pure functions but for the folder scan of `planSequence`; any thread.
// Failures are values; nothing is thrown or printed.

#include <string>
#include <vector>

namespace orv::verra_sdk::kit {

/// `path` with its file name's frame pattern in printf form
/// ("in/plate.%04d.exr"), or empty when the file name has none.
std::string sequencePattern(std::string const& path);

/// The frames of `text`, in its order: single frames, ranges and stepped
/// ranges, separated by commas ("1001", "1001-1100", "1001-1100x2",
/// "1001,1005,1010-1020"). False, with `error` naming the text, when it is
/// malformed or empty.
bool parseFrames(std::string const& text, std::vector<int>& frames, std::string& error);

/// `frames` (sorted, without repeats) as a short text: runs of consecutive
/// frames as ranges ("1003-1004,1010"). Empty for no frames.
std::string framesText(std::vector<int> const& frames);

/// One frame of a sequence: its number, the file read, the file written.
/// A single file outside any sequence has `frame` -1.
struct FramePair {
    int frame = -1;
    std::string input;
    std::string output;
};

/// The frames missing from a sequence on disk.
struct SequenceGap {
    /// The input, as given (a pattern).
    std::string input;
    /// The frames between the first and the last on disk that are missing,
    /// ascending.
    std::vector<int> frames;
};

/// Each of `inputs` (file names or patterns) paired with the file of the
/// same name in `folder`.
std::vector<FramePair> intoFolder(std::vector<std::string> const& inputs, std::string const& folder);

/// The files of one input (a file name or a pattern) and its output.
struct SequencePlan {
    /// In frame order: the frames of the range asked for, or else those on
    /// disk in ascending order.
    std::vector<FramePair> files;
    /// Without a range: the gap in the frames on disk, if there is one.
    std::vector<SequenceGap> missing;
    /// Why there is no plan: a malformed range, an output with a pattern for
    /// an input without one or the other way round, a range without a
    /// pattern, a pattern that matches no file on disk. Empty otherwise.
    std::string error;
};

/// Pairs the frames of `input` with those of `output`. Without patterns,
/// one pair of the two names. With patterns in both (their padding and
/// format may differ), the frames of `frames` when it is not empty, else the
/// frames found on disk that match `input`'s pattern. Costs one scan of the
/// input's folder when `frames` is empty.
SequencePlan planSequence(std::string const& input, std::string const& output, std::string const& frames);

/// `planSequence` of each pair's input and output, their files and gaps one
/// after the other; the first error ends it.
SequencePlan planSequences(std::vector<FramePair> const& pairs, std::string const& frames);

} // namespace orv::verra_sdk::kit
