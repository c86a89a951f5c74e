#pragma once
// Pixels as read from or written to an image file: interleaved channels,
// row after row.

#include <OpenImageIO/typedesc.h>

#include <cstdint>
#include <string>
#include <vector>

namespace colorconfig {

/// An image in memory, as 8-bit or 32-bit float channels.
struct Raster {
    /// Pixels per row.
    int width = 0;
    /// Number of rows.
    int height = 0;
    /// Channels per pixel: 1 grey, 2 grey and alpha, 3 RGB, 4 RGBA, or more.
    int channels = 0;
    /// The data type that the file stores (or that the output should keep).
    OIIO::TypeDesc fileType;
    /// True when the pixel data of the file is unassociated with alpha.
    bool unassociatedAlpha = false;
    /// The channels when read or to be written as 8-bit values...
    std::vector<std::uint8_t> bytes;
    /// ... or as 32-bit floats; exactly one of the two holds the pixels.
    std::vector<float> floats;
};

/// How `readRaster` delivers the pixels.
enum class ReadAs {
    /// 8-bit files as bytes, every other type as floats.
    BytesOrFloats,
    /// Floats whatever the file holds.
    Floats,
};

/// Reads the first image of the file `path` into `raster`, as the file
/// stores it (alpha is not multiplied into the colour channels). False, with
/// a message in `error`, when the file is missing, unreadable, not an image,
/// or a volume.
bool readRaster(std::string const& path, ReadAs as, Raster& raster, std::string& error);

/// Writes `raster` to `path` in the format named by `formatName` (such as
/// "png"), or when it is empty in the format of the path's extension, with
/// the data type `raster.fileType` where the format has it (the format's
/// nearest type otherwise). False, with a message in `error`, on failure.
bool writeRaster(std::string const& path, std::string const& formatName, Raster const& raster, std::string& error);

} // namespace colorconfig
