#pragma once
// The fixture of the tool's tests: the colorconfig command line run in this
// process, or the built program run by a shell, in a folder and environment
// of the test's own where no configuration is found unless the test adds one;
// and image files.

#include "cli.h"
#include "support/module_env.h"

#include <OpenImageIO/imagebufalgo.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace verra_test {

namespace Strutil = OIIO::Strutil;
using Words = std::vector<std::string>;

/// How a command line ended and what it printed.
struct Outcome {
    int code = -1;
    std::string out;
    std::string err;
    bool operator==(Outcome const& b) const
    {
        return code == b.code && out == b.out && err == b.err;
    }
};

inline void PrintTo(Outcome const& o, std::ostream* os)
{
    *os << "exit " << o.code << ", out \"" << o.out << "\", err \"" << o.err << "\"";
}

class ToolTest : public ::testing::Test {
protected:
    /// Runs the command line `words` (without the program's name) in this
    /// process, capturing standard output and standard error.
    Outcome run(Words const& words) const
    {
        std::fflush(nullptr);
        int const saved[] = {::dup(1), ::dup(2)};
        for (int fd : {1, 2}) {
            std::string const path = file(fd == 1 ? "out.txt" : "err.txt");
            int const opened = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            ::dup2(opened, fd);
            ::close(opened);
        }
        int const code = static_cast<int>(colorconfig::runCli(words));
        std::fflush(nullptr);
        for (int fd : {1, 2}) {
            ::dup2(saved[fd - 1], fd);
            ::close(saved[fd - 1]);
        }
        return {code, readFile(file("out.txt")), readFile(file("err.txt"))};
    }

    /// Runs the shell `script` with the built program's path as $1 and `args`
    /// after it; `code` is the script's exit status.
    Outcome shell(std::string const& script, Words const& args = {}) const
    {
        auto const quoted = [](std::string const& word) {
            return "'" + Strutil::replace(word, "'", "'\\''", true) + "'";
        };
        std::string command = "/bin/sh -c " + quoted(script);
        command += " sh " + quoted(VERRA_COLORCONFIG_EXE);
        for (std::string const& arg : args) {
            command += " " + quoted(arg);
        }
        command += " >" + quoted(file("out.txt")) + " 2>" + quoted(file("err.txt")) + " </dev/null";
        int const status = std::system(command.c_str());
        int const code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return {code, readFile(file("out.txt")), readFile(file("err.txt"))};
    }

    /// The path of `name` in the test's folder.
    std::string file(std::string const& name) const { return m_env.dir().file(name); }

    /// Writes a config of the colour spaces lin (aliases scene, linear_rec709),
    /// raw, srgb_tex (the sRGB curve; alias srgb_texture), SRGB (which the
    /// built-in sRGB hides), old (inactive) and tone (a tone-mapping display
    /// space); the display Monitor (views Tone, Standard, Raw), the look
    /// Bright (doubles), three roles; `extra` is appended. Returns its path.
    std::string sampleConfig(std::string const& extra = "") const
    {
        return m_env.dir().write("sample.ocio", R"(ocio_profile_version: 2.1
roles: {default: lin, scene_linear: lin, color_picking: srgb_tex}
displays:
  Monitor: [!<View> {name: Tone, colorspace: tone}, !<View> {name: Standard, colorspace: srgb_tex},
            !<View> {name: Raw, colorspace: raw}]
active_displays: []
active_views: []
looks:
  - !<Look>
    name: Bright
    process_space: lin
    transform: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1]}
inactive_colorspaces: [old]
colorspaces:
  - !<ColorSpace> {name: lin, aliases: [scene, linear_rec709]}
  - !<ColorSpace> {name: raw, isdata: true}
  - !<ColorSpace> {name: srgb_tex, aliases: [srgb_texture],
                   to_scene_reference: !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055}}
  - !<ColorSpace> {name: SRGB, to_scene_reference: !<ExponentTransform> {value: 2.2}}
  - !<ColorSpace> {name: old, to_scene_reference: !<ExponentTransform> {value: 1.8}}
  - !<ColorSpace>
    name: tone
    from_scene_reference: !<GroupTransform>
      children:
        - !<BuiltinTransform> {style: "ACES-OUTPUT - ACES2065-1_to_CIE-XYZ-D65 - SDR-VIDEO_1.0"}
        - !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055, direction: inverse}
)" + extra);
    }

    ModuleEnv m_env;
};

/// Writes a `size` square of `channels` channels of uniform noise, over
/// [-0.25, 2] (or [0, 1] in integer formats), as `type`.
inline void writeNoise(std::string const& path, int size, int channels, OIIO::TypeDesc type)
{
    bool const integer = type == OIIO::TypeDesc::UINT8 || type == OIIO::TypeDesc::UINT16;
    OIIO::ImageBuf noise(OIIO::ImageSpec(size, size, channels, OIIO::TypeDesc::FLOAT));
    OIIO::ImageBufAlgo::noise(noise, "uniform", integer ? 0 : -0.25f, integer ? 1 : 2, false);
    noise.set_write_format(type);
    ASSERT_TRUE(noise.write(path)) << noise.geterror();
}

/// Subimage `subimage` of the file at `path`, read whole as `type`, alpha not
/// multiplied in.
inline OIIO::ImageBuf readImage(std::string const& path, int subimage = 0,
                                OIIO::TypeDesc type = OIIO::TypeDesc::FLOAT)
{
    OIIO::ImageSpec config;
    config.attribute("oiio:UnassociatedAlpha", 1);
    OIIO::ImageBuf image(path, subimage, 0, nullptr, &config);
    EXPECT_TRUE(image.read(subimage, 0, true, type)) << path << ": " << image.geterror();
    return image;
}

/// The pixels of `image` as floats.
inline std::vector<float> floatsOf(OIIO::ImageBuf const& image)
{
    std::vector<float> values(image.spec().image_pixels() * std::size_t(image.nchannels()));
    image.get_pixels(image.roi(), OIIO::TypeDesc::FLOAT, values.data());
    return values;
}

} // namespace verra_test
