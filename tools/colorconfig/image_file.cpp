#include "image_file.h"

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imageio.h>
#include <OpenImageIO/strutil.h>

#include <new>

namespace colorconfig {

namespace {

/// The reading hint under which OpenImageIO keeps colour values
/// unassociated with alpha, as the file stores them.
constexpr char const* kUnassociatedAlpha = "oiio:UnassociatedAlpha";

bool isEightBit(OIIO::ImageSpec const& spec)
{
    if (spec.format != OIIO::TypeDesc::UINT8) {
        return false;
    }
    for (OIIO::TypeDesc const& channelType : spec.channelformats) {
        if (channelType != OIIO::TypeDesc::UINT8) {
            return false;
        }
    }
    return true;
}

bool readLevel(OIIO::ImageInput& input, int subimage, int miplevel, Precision precision, ImageLevel& level,
               std::string& error)
{
    OIIO::ImageSpec const& spec = input.spec();
    if (spec.deep) {
        error = "deep images are not supported";
        return false;
    }
    if (spec.depth > 1) {
        error = "volume images are not supported";
        return false;
    }
    if (spec.width <= 0 || spec.height <= 0 || spec.nchannels <= 0) {
        error = "the image has no pixels";
        return false;
    }
    level.subimage = subimage;
    level.miplevel = miplevel;
    level.fileSpec = spec;
    OIIO::TypeDesc const type =
        precision == Precision::KeepBytes && isEightBit(spec) ? OIIO::TypeDesc::UINT8 : OIIO::TypeDesc::FLOAT;
    OIIO::ImageSpec memory = spec;
    memory.set_format(type);
    memory.tile_width = memory.tile_height = memory.tile_depth = 0;
    try {
        level.pixels.reset(memory, OIIO::InitializePixels::No);
    } catch (std::bad_alloc const&) {
        error = "not enough memory for the image";
        return false;
    }
    if (!level.pixels.initialized() || level.pixels.localpixels() == nullptr) {
        error = "not enough memory for the image";
        return false;
    }
    if (!input.read_image(subimage, miplevel, 0, spec.nchannels, type, level.pixels.localpixels())) {
        error = orUnknown(input.geterror());
        return false;
    }
    return true;
}

} // namespace

std::string orUnknown(std::string text) { return text.empty() ? std::string("unknown error") : text; }

std::string formatForPath(std::string const& path)
{
    std::string const extension = OIIO::Strutil::lower(OIIO::Filesystem::extension(path, false));
    // "format:ext,ext;format:ext..." for every format OpenImageIO knows.
    for (OIIO::string_view entry : OIIO::Strutil::splitsv(OIIO::get_string_attribute("extension_list"), ";")) {
        std::vector<OIIO::string_view> const parts = OIIO::Strutil::splitsv(entry, ":", 2);
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
            if (!readLevel(*input, subimage, miplevel, precision, file.levels.back(), error)) {
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
        return false;
    }
    return true;
}

} // namespace colorconfig
