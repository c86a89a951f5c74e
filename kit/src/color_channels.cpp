#include <verra_sdk/kit/color_channels.h>

#include <verra_sdk/kit/borrowed_pixels.h>

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/strutil.h>

#include <algorithm>
#include <iterator>
#include <numeric>

namespace orv::verra_sdk::kit {

namespace {

/// Where the colour channels and alpha of an image are.
struct ColorChannels {
    int rgb[3];
    /// -1 when the image has no alpha.
    int alpha;
    /// R, G and B, then alpha when there is one: the channels of the packed
    /// pixels that the module's functions take.
    std::vector<int> packedOrder() const
    {
        std::vector<int> order(std::begin(rgb), std::end(rgb));
        if (alpha >= 0) {
            order.push_back(alpha);
        }
        return order;
    }
};

/// False, with `image`'s error in `error`, when `done` is false.
bool succeeded(bool done, OIIO::ImageBuf const& image, std::string& error)
{
    if (!done) {
        error = orUnknown(image.geterror());
    }
    return done;
}

/// The channel named `name` whatever its case, or -1.
int channelNamed(OIIO::ImageSpec const& spec, char const* name)
{
    auto const named = [name](std::string const& channel) { return OIIO::Strutil::iequals(channel, name); };
    auto const found = std::find_if(spec.channelnames.begin(), spec.channelnames.end(), named);
    return found == spec.channelnames.end() ? -1 : static_cast<int>(found - spec.channelnames.begin());
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
    if (!succeeded(OIIO::ImageBufAlgo::channels(spread, level.pixels, static_cast<int>(order.size()), order, {}, names),
                   spread, error)) {
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
    int const byName[] = {channelNamed(spec, "R"), channelNamed(spec, "G"), channelNamed(spec, "B")};
    std::vector<int> const plain = plainChannels(spec);
    bool const named = std::all_of(std::begin(byName), std::end(byName), [](int channel) { return channel >= 0; });
    if (!named) {
        // One or two channels are grey, or grey and alpha, whatever their names.
        if (plain.size() == 1 || spec.nchannels <= 2) {
            int const grey = plain.size() == 1 ? plain[0] : 0;
            return spreadGrey(level, grey, error) && findColorChannels(level, found, error);
        }
        if (plain.size() < 3) {
            error = "the image has no colour channels (R, G and B, or grey)";
            return false;
        }
    }
    std::copy_n(named ? byName : plain.data(), 3, found.rgb);
    found.alpha = level.pixels.spec().alpha_channel;
    return true;
}

/// The module's RGBA8 image transform over the colour channels and alpha of
/// a UINT8 image; the other channels are not touched.
bool convertBytes(OIIO::ImageBuf& pixels, ColorChannels const& where, orv::String const& from, orv::String const& to,
                  std::string& error)
{
    OIIO::ImageSpec const& spec = pixels.spec();
    verra_sdk::Image image = verra_sdk::Image::create(spec.width, spec.height);
    if (!image.isValid()) {
        error = "not enough memory for the image";
        return false;
    }
    auto* const values = static_cast<std::uint8_t*>(pixels.localpixels());
    std::size_t const stride = static_cast<std::size_t>(spec.nchannels);
    orv::verra::Rgba8* const first = image.rgba8();
    orv::verra::Rgba8* const end = first + static_cast<std::size_t>(spec.width) * static_cast<std::size_t>(spec.height);
    std::uint8_t* pixel = values;
    for (orv::verra::Rgba8* rgba = first; rgba != end; ++rgba, pixel += stride) {
        *rgba = {pixel[where.rgb[0]], pixel[where.rgb[1]], pixel[where.rgb[2]],
                 where.alpha >= 0 ? pixel[where.alpha] : std::uint8_t{255}};
    }
    // The module logs why a conversion fails.
    bool const converted = verra_sdk::ColorConfig::transform(image, from, to);
    if (!converted) {
        error = "the conversion failed";
    }
    pixel = values;
    for (orv::verra::Rgba8 const* rgba = first; converted && rgba != end; ++rgba, pixel += stride) {
        pixel[where.rgb[0]] = rgba->r;
        pixel[where.rgb[1]] = rgba->g;
        pixel[where.rgb[2]] = rgba->b;
    }
    return converted;
}

/// Replaces `pixels` by a FLOAT copy.
bool holdAsFloat(OIIO::ImageBuf& pixels, std::string& error)
{
    OIIO::ImageBuf floats;
    bool const copied = succeeded(OIIO::ImageBufAlgo::copy(floats, pixels, OIIO::TypeDesc::FLOAT), floats, error);
    if (copied) {
        pixels = std::move(floats);
    }
    return copied;
}

} // namespace

bool convertPackedFloats(OIIO::ImageBuf& pixels, orv::String const& from, orv::String const& to, std::string& error)
{
    OIIO::ImageSpec const& spec = pixels.spec();
    auto* values = static_cast<float*>(pixels.localpixels());
    if (from == "linear") {
        BorrowedPixels<orv::verra::float4> rgba(values, spec.width, spec.height);
        BorrowedPixels<orv::verra::float3> rgb(values, spec.width, spec.height);
        // The module logs why a conversion fails.
        bool const converted = spec.nchannels == 4 ? verra_sdk::colorConfigTransformRgb(rgba.array(), to)
                                                   : verra_sdk::colorConfigTransformRgb(rgb.array(), rgb.array(), to);
        if (!converted) {
            error = "the conversion failed";
        }
        return converted;
    }
    OIIO::ColorProcessorHandle const processor =
        verra_sdk::colorConfig().createColorProcessor(from.view(), to.view(), "", "");
    if (!processor) {
        error = "cannot convert from '" + std::string(from.view()) + "' to '" + std::string(to.view()) +
                "' with this config";
        return false;
    }
    return succeeded(OIIO::ImageBufAlgo::colorconvert(pixels, pixels, processor.get(), false), pixels, error);
}

namespace {

/// Applies `operation` to packed RGBA `pixels` whose colour is multiplied by
/// alpha as to straight colour: divided by alpha before, multiplied again
/// after, the colour of pixels whose alpha is 0 kept as it is.
bool onStraightColor(OIIO::ImageBuf& pixels, PackedOperation const& operation, std::string& error)
{
    pixels.specmod().alpha_channel = 3;
    bool const done = OIIO::ImageBufAlgo::unpremult(pixels, pixels) && operation(pixels, error) &&
                      OIIO::ImageBufAlgo::repremult(pixels, pixels);
    if (!done && error.empty()) {
        error = orUnknown(pixels.geterror());
    }
    return done;
}

/// Applies `operation` to the colour channels (and alpha) of FLOAT pixels
/// in any layout: packed pixels in place, others through a packed copy whose
/// colour channels are then put back. With `associated`, the operation sees
/// straight colour (`onStraightColor`).
bool forColorChannels(OIIO::ImageBuf& pixels, ColorChannels const& where, bool associated,
                      PackedOperation const& operation, std::string& error)
{
    OIIO::ImageSpec const& spec = pixels.spec();
    auto const apply = [associated, &where, &operation](OIIO::ImageBuf& packed, std::string& reason) {
        return associated && where.alpha >= 0 ? onStraightColor(packed, operation, reason) : operation(packed, reason);
    };
    std::vector<int> const order = where.packedOrder();
    std::vector<int> packedLayout(order.size());
    std::iota(packedLayout.begin(), packedLayout.end(), 0);
    if (order == packedLayout && order.size() == static_cast<std::size_t>(spec.nchannels)) {
        return apply(pixels, error);
    }
    OIIO::ImageBuf packed;
    if (!succeeded(OIIO::ImageBufAlgo::channels(packed, pixels, static_cast<int>(order.size()), order), packed,
                   error) ||
        !apply(packed, error)) {
        return false;
    }
    std::size_t const stride = static_cast<std::size_t>(spec.nchannels);
    auto const* converted = static_cast<float const*>(packed.localpixels());
    auto const* const end = converted + packed.spec().image_pixels() * order.size();
    for (auto* pixel = static_cast<float*>(pixels.localpixels()); converted != end;
         converted += order.size(), pixel += stride) {
        pixel[where.rgb[0]] = converted[0];
        pixel[where.rgb[1]] = converted[1];
        pixel[where.rgb[2]] = converted[2];
    }
    return true;
}

} // namespace

bool convertLevel(ImageLevel& level, orv::String const& from, orv::String const& to, std::string& error)
{
    ColorChannels where{};
    if (!findColorChannels(level, where, error)) {
        return false;
    }
    auto const convert = [&from, &to](OIIO::ImageBuf& packed, std::string& reason) {
        return convertPackedFloats(packed, from, to, reason);
    };
    bool const bytes = level.pixels.spec().format == OIIO::TypeDesc::UINT8;
    bool const straight = !level.associatedAlpha || where.alpha < 0;
    // Colour multiplied by alpha is divided by it in FLOAT: never in bytes.
    if (bytes && !straight && !holdAsFloat(level.pixels, error)) {
        return false;
    }
    bool const converted = bytes && straight ? convertBytes(level.pixels, where, from, to, error)
                                             : forColorChannels(level.pixels, where, !straight, convert, error);
    if (converted) {
        level.fileSpec.attribute("oiio:ColorSpace", std::string(to.view()));
    }
    return converted;
}

bool transformColorChannels(ImageLevel& level, PackedOperation const& operation, std::string& error)
{
    ColorChannels where{};
    return findColorChannels(level, where, error) &&
           forColorChannels(level.pixels, where, level.associatedAlpha, operation, error);
}

bool colorChannelsOf(ImageLevel& level, OIIO::ImageBuf& rgb, std::string& error)
{
    ColorChannels where{};
    return findColorChannels(level, where, error) &&
           succeeded(OIIO::ImageBufAlgo::channels(rgb, level.pixels, 3, {where.rgb[0], where.rgb[1], where.rgb[2]}),
                     rgb, error);
}

} // namespace orv::verra_sdk::kit
