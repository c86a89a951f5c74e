#pragma once
// The fixture of the tool's tests: the colorconfig command line run in this
// process, or the built program run by a shell, in a folder and environment
// of the test's own where no configuration is found unless the test adds one.

#include "support/module_env.h"

#include <OpenImageIO/imagebuf.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace verra_test {

/// How a command line ended and what it printed.
struct Outcome {
    int code = -1;
    std::string out;
    std::string err;
};

class ToolTest : public ::testing::Test {
protected:
    /// Runs the command line `words` (without the program's name) in this
    /// process, capturing standard output and standard error.
    Outcome run(std::vector<std::string> const& words) const;
    /// Runs the shell `script` with the built program's path as $1 and
    /// `args` after it, in this process's environment; `code` is the
    /// script's exit status.
    Outcome shell(std::string const& script, std::vector<std::string> const& args = {}) const;
    /// The path of `name` in the test's folder.
    std::string file(std::string const& name) const { return m_env.dir().file(name); }
    /// Writes a config with the colour spaces lin, raw and srgb_tex (the
    /// sRGB curve), the displays Monitor (views Standard, Raw) and Projector
    /// (Film), the look Warm and the roles scene_linear and default, plus
    /// `extra` lines at its end; returns its path.
    std::string sampleConfig(std::string const& extra = "") const;

    ModuleEnv m_env;
};

/// Writes `pixels` (floats, `channels` per pixel) to `path` stored as
/// `type`. Fails the test on error.
void writeImage(std::string const& path, int width, int height, int channels, OIIO::TypeDesc type,
                std::vector<float> const& pixels);
/// A `width` × `height` × `channels` ramp from -0.25 to 2 (alpha, every
/// fourth channel, within 0 to 1), on the 8-bit grid when `bytes` is true.
std::vector<float> ramp(int width, int height, int channels, bool bytes);
/// Subimage `subimage` of the file at `path`, read whole as floats, alpha
/// not multiplied in; and the pixels of an image as floats.
OIIO::ImageBuf readImage(std::string const& path, int subimage = 0);
std::vector<float> floatsOf(OIIO::ImageBuf const& image);

} // namespace verra_test
