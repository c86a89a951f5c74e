#pragma once
// Image files for the tests: noise or given pixels written in any format,
// files read back whole as floats, the files of a folder.

#include <OpenImageIO/imagebufalgo.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace verra_test {

using Floats = std::vector<float>;

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

/// An image of `width` pixels a row with the channels `names` ("A" is alpha)
/// and the pixel values `values`, as FLOAT.
inline OIIO::ImageBuf imageOf(int width, std::vector<std::string> const& names, std::vector<float> const& values)
{
    int const channels = static_cast<int>(names.size());
    OIIO::ImageSpec spec(width, static_cast<int>(values.size()) / (width * channels), channels, OIIO::TypeDesc::FLOAT);
    spec.channelnames = names;
    spec.alpha_channel = spec.channelindex("A");
    spec.z_channel = spec.channelindex("Z");
    OIIO::ImageBuf image(spec);
    image.set_pixels(image.roi(), OIIO::TypeDesc::FLOAT, values.data());
    return image;
}

/// Writes `parts` as the subimages of one file, each stored as `type`, colour
/// values as given (marked as unassociated with alpha where the format can
/// say so).
inline void writeParts(std::string const& path, std::vector<OIIO::ImageBuf> const& parts,
                       OIIO::TypeDesc type = OIIO::TypeDesc::FLOAT)
{
    std::vector<OIIO::ImageSpec> specs;
    for (OIIO::ImageBuf const& part : parts) {
        specs.push_back(part.spec());
        specs.back().set_format(type);
        specs.back().attribute("oiio:UnassociatedAlpha", 1);
    }
    auto out = OIIO::ImageOutput::create(path);
    ASSERT_TRUE(out) << OIIO::geterror();
    for (std::size_t i = 0; i < parts.size(); ++i) {
        bool const opened = i == 0 ? out->open(path, static_cast<int>(specs.size()), specs.data())
                                   : out->open(path, specs[i], OIIO::ImageOutput::AppendSubimage);
        ASSERT_TRUE(opened && out->write_image(OIIO::TypeDesc::FLOAT, parts[i].localpixels())) << out->geterror();
    }
    ASSERT_TRUE(out->close()) << out->geterror();
}

/// The names of the entries of `folder`, sorted.
inline std::vector<std::string> entriesOf(std::string const& folder)
{
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Subimage `subimage` of the file at `path`, read whole as `type`, alpha not
/// multiplied in.
inline OIIO::ImageBuf readImage(std::string const& path, int subimage = 0, OIIO::TypeDesc type = OIIO::TypeDesc::FLOAT)
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

/// The largest difference between `a` and `b`, value by value.
inline float largestDifference(Floats const& a, Floats const& b)
{
    EXPECT_EQ(a.size(), b.size());
    float largest = 0;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        largest = std::max(largest, std::abs(a[i] - b[i]));
    }
    return largest;
}

/// `in` through `oiiotool --colorconfig config` and `operation`, written as
/// float to `out` and read back; `environment` ("NAME=value ") goes first.
inline Floats oiiotool(std::string const& config, std::string const& in, std::string const& operation,
                       std::string const& out, std::string const& environment = "")
{
    std::string const command = environment + "oiiotool --colorconfig '" + config + "' '" + in + "' -d float " +
                                operation + " -o '" + out + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return floatsOf(readImage(out));
}

} // namespace verra_test
