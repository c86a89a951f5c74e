#include "convert_level.h"

#include "borrowed_pixels.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/strutil.h>

#include <cstring>

namespace colorconfig {

namespace {

namespace sdk = orv::verra_sdk;

/// Where the colour channels and alpha of an image are.
struct ColorChannels {
    int rgb[3] = {-1, -1, -1};
    /// -1 when the image has no alpha.
    int alpha = -1;
    /// True when R, G, B (and alpha) are channels 0 to 2 (and 3) of 3 (or 4)
    /// channels: the layout the module's functions take as it is.
    bool packed(int channels) const
    {
        bool const rgbFirst = rgb[0] == 0 && rgb[1] == 1 && rgb[2] == 2;
        return rgbFirst && ((channels == 3 && alpha < 0) || (channels == 4 && alpha == 3));
    }
};

int channelNamed(OIIO::ImageSpec const& spec, char const* name)
{
    for (int c = 0; c < spec.nchannels; ++c) {
        if (OIIO::Strutil::iequals(spec.channel_name(c), name)) {
            return c;
        }
    }
    return -1;
}

/// The channels that are neither alpha nor depth.
std::vector<int> plainChannels(OIIO::ImageSpec const& spec)
{
    std::vector<int> plain;
    for (int c = 0; c < spec.nchannels; ++c) {
        if (c != spec.alpha_channel && c != spec.z_channel) {
            plain.push_back(c);
        }
    }
    return plain;
}

/// Spreads the grey channel `grey` over new R, G and B channels in front of
/// the others, in the pixels and in the file's ImageSpec.
bool spreadGrey(ImageLevel& level, int grey, std::string& error)
{
    OIIO::ImageSpec const& spec = level.pixels.spec();
    std::vector<int> order{grey, grey, grey};
    std::vector<std::string> names{"R", "G", "B"};
    for (int c = 0; c < spec.nchannels; ++c) {
        if (c != grey) {
            order.push_back(c);
            // Grey and one more channel: grey and alpha, whatever the file
            // calls the second one.
            names.push_back(spec.nchannels == 2 ? std::string("A") : std::string(spec.channel_name(c)));
        }
    }
    OIIO::ImageBuf spread;
    if (!OIIO::ImageBufAlgo::channels(spread, level.pixels, static_cast<int>(order.size()), order, {}, names)) {
        error = spread.geterror();
        return false;
    }
    if (spec.nchannels == 2) {
        spread.specmod().alpha_channel = 3;
    }
    OIIO::ImageSpec fileSpec = spread.spec();
    fileSpec.set_format(level.fileSpec.format);
    fileSpec.tile_width = level.fileSpec.tile_width;
    fileSpec.tile_height = level.fileSpec.tile_height;
    fileSpec.tile_depth = level.fileSpec.tile_depth;
    level.fileSpec = fileSpec;
    level.pixels = std::move(spread);
    return true;
}

/// Finds the colour channels, spreading grey first when there is only one.
bool findColorChannels(ImageLevel& level, ColorChannels& found, std::string& error)
{
    OIIO::ImageSpec const& spec = level.pixels.spec();
    int const byName[3] = {channelNamed(spec, "R"), channelNamed(spec, "G"), channelNamed(spec, "B")};
    std::vector<int> const plain = plainChannels(spec);
    if (byName[0] < 0 || byName[1] < 0 || byName[2] < 0) {
        // One or two channels are grey, or grey and alpha, whatever their names.
        if (plain.size() == 1 || spec.nchannels <= 2) {
            int const grey = plain.size() == 1 ? plain[0] : 0;
            if (!spreadGrey(level, grey, error)) {
                return false;
            }
            return findColorChannels(level, found, error);
        }
        if (plain.size() < 3) {
            error = "the image has no colour channels (R, G and B, or grey)";
            return false;
        }
    }
    for (std::size_t i = 0; i < 3; ++i) {
        found.rgb[i] = byName[0] >= 0 && byName[1] >= 0 && byName[2] >= 0 ? byName[i] : plain[i];
    }
    found.alpha = level.pixels.spec().alpha_channel;
    return true;
}

/// The module's RGBA8 image transform over the colour channels and alpha of
/// a UINT8 image; the other channels are not touched.
bool convertBytes(OIIO::ImageBuf& pixels, ColorChannels const& where, orv::String const& from,
                  orv::String const& to, std::string& error)
{
    OIIO::ImageSpec const& spec = pixels.spec();
    sdk::Image image = sdk::Image::create(spec.width, spec.height);
    if (!image.isValid()) {
        error = "not enough memory for the image";
        return false;
    }
    auto* values = static_cast<std::uint8_t*>(pixels.localpixels());
    std::size_t const count = static_cast<std::size_t>(spec.width) * static_cast<std::size_t>(spec.height);
    std::size_t const stride = static_cast<std::size_t>(spec.nchannels);
    orv::verra::Rgba8* rgba = image.rgba8();
    for (std::size_t i = 0; i < count; ++i) {
        std::uint8_t const* pixel = values + i * stride;
        rgba[i] = {pixel[where.rgb[0]], pixel[where.rgb[1]], pixel[where.rgb[2]],
                   where.alpha >= 0 ? pixel[where.alpha] : std::uint8_t{255}};
    }
    // The module logs why a conversion fails.
    if (!sdk::ColorConfig::transform(image, from, to)) {
        error = "the conversion failed";
        return false;
    }
    for (std::size_t i = 0; i < count; ++i) {
        std::uint8_t* pixel = values + i * stride;
        pixel[where.rgb[0]] = rgba[i].r;
        pixel[where.rgb[1]] = rgba[i].g;
        pixel[where.rgb[2]] = rgba[i].b;
    }
    return true;
}

} // namespace

bool convertPackedFloats(OIIO::ImageBuf& pixels, orv::String const& from, orv::String const& to,
                         std::string& error)
{
    OIIO::ImageSpec const& spec = pixels.spec();
    auto* values = static_cast<float*>(pixels.localpixels());
    if (from == "linear") {
        // The module logs why a conversion fails.
        bool converted = false;
        if (spec.nchannels == 4) {
            BorrowedPixels<orv::verra::float4> rgba(values, spec.width, spec.height);
            converted = sdk::colorConfigTransformRgb(rgba.array(), to);
        } else {
            BorrowedPixels<orv::verra::float3> rgb(values, spec.width, spec.height);
            converted = sdk::colorConfigTransformRgb(rgb.array(), rgb.array(), to);
        }
        if (!converted) {
            error = "the conversion failed";
        }
        return converted;
    }
    OIIO::ColorProcessorHandle const processor =
        sdk::colorConfig().createColorProcessor(from.view(), to.view(), "", "");
    if (!processor) {
        error = "cannot convert from '" + std::string(from.view()) + "' to '" + std::string(to.view()) +
                "' with this config";
        return false;
    }
    if (!OIIO::ImageBufAlgo::colorconvert(pixels, pixels, processor.get(), false, OIIO::ROI::All(), 0)) {
        error = orUnknown(pixels.geterror());
        return false;
    }
    return true;
}

namespace {

/// Applies `operation` to the colour channels (and alpha) of FLOAT pixels
/// in any layout: packed pixels in place, others through a packed copy whose
/// colour channels are then put back.
bool forColorChannels(OIIO::ImageBuf& pixels, ColorChannels const& where, PackedOperation const& operation,
                      std::string& error)
{
    OIIO::ImageSpec const& spec = pixels.spec();
    if (where.packed(spec.nchannels)) {
        return operation(pixels, error);
    }
    std::vector<int> order{where.rgb[0], where.rgb[1], where.rgb[2]};
    if (where.alpha >= 0) {
        order.push_back(where.alpha);
    }
    OIIO::ImageBuf packed;
    if (!OIIO::ImageBufAlgo::channels(packed, pixels, static_cast<int>(order.size()), order)) {
        error = orUnknown(packed.geterror());
        return false;
    }
    if (!operation(packed, error)) {
        return false;
    }
    auto* values = static_cast<float*>(pixels.localpixels());
    auto const* converted = static_cast<float const*>(packed.localpixels());
    std::size_t const count = static_cast<std::size_t>(spec.width) * static_cast<std::size_t>(spec.height);
    std::size_t const stride = static_cast<std::size_t>(spec.nchannels);
    std::size_t const packedStride = order.size();
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t c = 0; c < 3; ++c) {
            values[i * stride + static_cast<std::size_t>(where.rgb[c])] = converted[i * packedStride + c];
        }
    }
    return true;
}

} // namespace

bool convertLevel(ImageLevel& level, orv::String const& from, orv::String const& to, std::string& error)
{
    ColorChannels where;
    if (!findColorChannels(level, where, error)) {
        return false;
    }
    auto const convert = [&from, &to](OIIO::ImageBuf& packed, std::string& reason) {
        return convertPackedFloats(packed, from, to, reason);
    };
    bool const converted = level.pixels.spec().format == OIIO::TypeDesc::UINT8
                               ? convertBytes(level.pixels, where, from, to, error)
                               : forColorChannels(level.pixels, where, convert, error);
    if (converted) {
        level.fileSpec.attribute("oiio:ColorSpace", std::string(to.view()));
    }
    return converted;
}

bool transformColorChannels(ImageLevel& level, PackedOperation const& operation, std::string& error)
{
    ColorChannels where;
    return findColorChannels(level, where, error) && forColorChannels(level.pixels, where, operation, error);
}

bool colorChannelsOf(ImageLevel& level, OIIO::ImageBuf& rgb, std::string& error)
{
    ColorChannels where;
    if (!findColorChannels(level, where, error)) {
        return false;
    }
    if (!OIIO::ImageBufAlgo::channels(rgb, level.pixels, 3, {where.rgb[0], where.rgb[1], where.rgb[2]})) {
        error = orUnknown(rgb.geterror());
        return false;
    }
    return true;
}

} // namespace colorconfig
