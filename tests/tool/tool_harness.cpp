#include "tool_harness.h"

#include "cli.h"

#include "support/temp_dir.h"

#include <OpenImageIO/imagebufalgo.h>

#include <cstdio>
#include <fcntl.h>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace verra_test {

namespace {

/// `word` quoted for the shell.
std::string quoted(std::string const& word)
{
    std::string text = "'";
    for (char c : word) {
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return text + "'";
}

} // namespace

Outcome ToolTest::run(std::vector<std::string> const& words) const
{
    std::string const outPath = file("stdout.txt");
    std::string const errPath = file("stderr.txt");
    std::fflush(stdout);
    std::fflush(stderr);
    int const savedOut = ::dup(1);
    int const savedErr = ::dup(2);
    for (auto const& [path, fd] : {std::pair(outPath, 1), std::pair(errPath, 2)}) {
        int const opened = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        ::dup2(opened, fd);
        ::close(opened);
    }
    Outcome result;
    result.code = static_cast<int>(colorconfig::runCli(words));
    std::fflush(stdout);
    std::fflush(stderr);
    ::dup2(savedOut, 1);
    ::dup2(savedErr, 2);
    ::close(savedOut);
    ::close(savedErr);
    result.out = readFile(outPath);
    result.err = readFile(errPath);
    return result;
}

Outcome ToolTest::shell(std::string const& script, std::vector<std::string> const& args) const
{
    std::string command = "/bin/sh -c " + quoted(script) + " sh " + quoted(VERRA_COLORCONFIG_EXE);
    for (std::string const& arg : args) {
        command += " " + quoted(arg);
    }
    command += " >" + quoted(file("stdout.txt")) + " 2>" + quoted(file("stderr.txt")) + " </dev/null";
    int const status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(file("stdout.txt")), readFile(file("stderr.txt"))};
}

std::string ToolTest::sampleConfig(std::string const& extra) const
{
    return m_env.dir().write("sample.ocio", R"(ocio_profile_version: 2.1
roles:
  default: lin
  scene_linear: lin
displays:
  Monitor:
    - !<View> {name: Standard, colorspace: srgb_tex}
    - !<View> {name: Raw, colorspace: raw}
  Projector:
    - !<View> {name: Film, colorspace: srgb_tex}
active_displays: []
active_views: []
looks:
  - !<Look> {name: Warm, process_space: lin, transform: !<ExponentTransform> {value: [1, 1, 1, 1]}}
colorspaces:
  - !<ColorSpace> {name: lin, isdata: false}
  - !<ColorSpace> {name: raw, isdata: true}
  - !<ColorSpace>
    name: srgb_tex
    from_scene_reference: !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055, direction: inverse}
)" + extra);
}

void writeImage(std::string const& path, int width, int height, int channels, OIIO::TypeDesc type,
                std::vector<float> const& pixels)
{
    OIIO::ImageBuf image(OIIO::ImageSpec(width, height, channels, OIIO::TypeDesc::FLOAT), const_cast<float*>(pixels.data()));
    image.set_write_format(type);
    ASSERT_TRUE(image.write(path)) << image.geterror();
}

std::vector<float> ramp(int width, int height, int channels, bool bytes)
{
    auto const perPixel = static_cast<std::size_t>(channels);
    std::vector<float> values(static_cast<std::size_t>(width * height) * perPixel);
    for (std::size_t i = 0; i < values.size(); ++i) {
        bool const alpha = i % 4 == 3;
        float const t = static_cast<float>((i * (7 + i % perPixel * 2)) % 256) / 255.0f;
        values[i] = bytes || alpha ? t : t * 2.25f - 0.25f;
    }
    return values;
}

OIIO::ImageBuf readImage(std::string const& path, int subimage)
{
    // As the file holds them: colour not multiplied by alpha.
    OIIO::ImageSpec config;
    config.attribute("oiio:UnassociatedAlpha", 1);
    OIIO::ImageBuf image(path, subimage, 0, nullptr, &config);
    EXPECT_TRUE(image.read(subimage, 0, true, OIIO::TypeDesc::FLOAT)) << path << ": " << image.geterror();
    return image;
}

std::vector<float> floatsOf(OIIO::ImageBuf const& image)
{
    std::vector<float> values(image.spec().image_pixels() * static_cast<std::size_t>(image.nchannels()));
    image.get_pixels(image.roi(), OIIO::TypeDesc::FLOAT, values.data());
    return values;
}

} // namespace verra_test
