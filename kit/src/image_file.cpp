#include <verra_sdk/kit/image_file.h>

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imageio.h>
#include <OpenImageIO/strutil.h>

#include "half_floats.h"

#include <algorithm>
#include <new>
#include <vector>

namespace orv::verra_sdk::kit {

namespace {

/// The reading hint under which OpenImageIO keeps colour values
/// unassociated with alpha, as the file stores them.
constexpr char const* kUnassociatedAlpha = "oiio:UnassociatedAlpha";

/// True when every channel is 8-bit (`channelformats` is empty when all
/// channels share `format`).
bool isEightBit(OIIO::ImageSpec const& spec)
{
    return spec.format == OIIO::TypeDesc::UINT8 && spec.channelformats.empty();
}

/// Reads the HALF scanline image of `input`'s current level into `floats`
/// in bands of rows, converting each band as it comes: the same values as
/// OpenImageIO's conversion, in a tenth of its time.
bool readHalfScanlines(OIIO::ImageInput& input, int subimage, int miplevel, float* floats)
{
    OIIO::ImageSpec const& spec = input.spec();
    std::size_t const rowValues = std::size_t(spec.width) * std::size_t(spec.nchannels);
    std::vector<std::uint16_t> band(detail::kBandRows * rowValues);
    for (int y = spec.y; y < spec.y + spec.height; y += detail::kBandRows) {
        int const end = std::min(y + detail::kBandRows, spec.y + spec.height);
        std::size_t const values = std::size_t(end - y) * rowValues;
        if (!input.read_scanlines(subimage, miplevel, y, end, spec.z, 0, spec.nchannels, OIIO::TypeDesc::HALF,
                                  band.data())) {
            return false;
        }
        detail::halfToFloat(band.data(), floats + std::size_t(y - spec.y) * rowValues, values);
    }
    return true;
}

bool readLevel(OIIO::ImageInput& input, int subimage, int miplevel, ReadOptions const& options, ImageLevel& level,
               std::string& error)
{
    OIIO::ImageSpec const& spec = input.spec();
    char const* const refused = spec.deep                 ? "deep images are not supported"
                                : spec.depth > 1          ? "volume images are not supported"
                                : spec.image_bytes() == 0 ? "the image has no pixels"
                                                          : nullptr;
    if (refused != nullptr) {
        error = refused;
        return false;
    }
    level.subimage = subimage;
    level.miplevel = miplevel;
    level.fileSpec = spec;
    // Under the hint, readers that keep unassociated values say so in the
    // ImageSpec; without that mark, OpenImageIO's values are associated.
    level.associatedAlpha =
        spec.alpha_channel >= 0 && spec.get_int_attribute(kUnassociatedAlpha, 0) == 0 && !options.alphaUnassociated;
    bool const bytes = options.precision == Precision::KeepBytes && isEightBit(spec) && !level.associatedAlpha;
    OIIO::TypeDesc const type = bytes ? OIIO::TypeDesc::UINT8 : OIIO::TypeDesc::FLOAT;
    OIIO::ImageSpec memory = spec;
    memory.set_format(type);
    memory.tile_width = memory.tile_height = memory.tile_depth = 0;
    try {
        level.pixels.reset(memory, OIIO::InitializePixels::No);
    } catch (std::bad_alloc const&) {
        level.pixels.clear();
    }
    bool const allocated = level.pixels.localpixels() != nullptr;
    bool const halves = type == OIIO::TypeDesc::FLOAT && spec.format == OIIO::TypeDesc::HALF &&
                        spec.channelformats.empty() && spec.tile_width == 0;
    bool const read =
        allocated &&
        (halves ? readHalfScanlines(input, subimage, miplevel, static_cast<float*>(level.pixels.localpixels()))
                : input.read_image(subimage, miplevel, 0, spec.nchannels, type, level.pixels.localpixels()));
    if (!read) {
        error = allocated ? orUnknown(input.geterror()) : "not enough memory for the image";
    }
    return read;
}

} // namespace

std::string orUnknown(std::string text)
{
    return text.empty() ? std::string("unknown error") : text;
}

std::string formatForPath(std::string const& path)
{
    std::string const extension = OIIO::Strutil::lower(OIIO::Filesystem::extension(path, false));
    // "format:ext,ext;format:ext..." for every format OpenImageIO knows.
    for (OIIO::string_view entry : OIIO::Strutil::splitsv(OIIO::get_string_attribute("extension_list"), ";")) {
        std::vector<OIIO::string_view> const parts = OIIO::Strutil::splitsv(entry, ":");
        if (parts.size() != 2) {
            continue;
        }
        for (OIIO::string_view known : OIIO::Strutil::splitsv(parts[1], ",")) {
            if (known == extension) {
                return std::string(parts[0]);
            }
        }
    }
    return std::string();
}

bool formatStoresBytes(std::string const& formatName)
{
    return formatName != "openexr" && formatName != "hdr";
}

bool readImageFile(std::string const& path, Precision precision, ImageFile& file, std::string& error)
{
    return readImageFile(path, ReadOptions{precision, false}, file, error);
}

bool readImageFile(std::string const& path, ReadOptions const& options, ImageFile& file, std::string& error)
{
    OIIO::ImageSpec config;
    config.attribute(kUnassociatedAlpha, 1);
    auto input = OIIO::ImageInput::open(path, &config);
    if (!input) {
        error = orUnknown(OIIO::geterror());
        return false;
    }
    file = ImageFile();
    // seek_subimage fails past the last subimage or MIP level; the message
    // it leaves then is discarded.
    for (int subimage = 0; input->seek_subimage(subimage, 0); ++subimage) {
        file.subimages = subimage + 1;
        for (int miplevel = 0; input->seek_subimage(subimage, miplevel); ++miplevel) {
            file.mipmapped = file.mipmapped || miplevel > 0;
            file.levels.emplace_back();
            if (!readLevel(*input, subimage, miplevel, options, file.levels.back(), error)) {
                if (file.subimages > 1) {
                    error = "subimage " + std::to_string(subimage) + ": " + error;
                }
                return false;
            }
        }
        input->geterror();
    }
    if (file.levels.empty()) {
        error = orUnknown(input->geterror());
    }
    return !file.levels.empty();
}

} // namespace orv::verra_sdk::kit
