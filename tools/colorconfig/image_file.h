#pragma once
// Image files in memory: every subimage and MIP level of a file, each with
// the file's own description of it (data type, windows, tiling, metadata),
// so that what is written back keeps everything that was not converted.

#include <OpenImageIO/imagebuf.h>

#include <string>
#include <vector>

namespace colorconfig {

/// One image of a file: a subimage at one MIP level.
struct ImageLevel {
    int subimage = 0;
    int miplevel = 0;
    /// What the file says of the image: data types, windows, tiling,
    /// compression, attributes. The ImageSpec to write it back with.
    OIIO::ImageSpec fileSpec;
    /// The pixels in memory, over the data window, as UINT8 or FLOAT.
    OIIO::ImageBuf pixels;
};

/// Every image of one file, in the file's order (subimage, then MIP level).
struct ImageFile {
    std::vector<ImageLevel> levels;
    /// The number of subimages.
    int subimages = 0;
    /// True when some subimage has more than one MIP level.
    bool mipmapped = false;
};

/// How `readImageFile` holds the pixels in memory.
enum class Precision {
    /// 8-bit images as UINT8, every other type as FLOAT.
    KeepBytes,
    /// FLOAT whatever the file stores.
    Float,
};

/// `text` (an error message of OpenImageIO's), or "unknown error" when it is
/// empty.
std::string orUnknown(std::string text);

/// The name of the OpenImageIO format (such as "png" or "openexr") that
/// writes files with `path`'s extension, or empty when none does. Looks the
/// extension up without making a writer: OpenImageIO 2.4.7's EXR writer
/// reads uninitialised memory when it is destroyed unopened.
std::string formatForPath(std::string const& path);

/// True when files of the OpenImageIO format `formatName` (such as "png")
/// store 8-bit values; false for the float-only formats.
bool formatStoresBytes(std::string const& formatName);

/// Reads every subimage and MIP level of `path` (colour values as the file
/// stores them: alpha is not multiplied into them). False, with a message in
/// `error`, when the file is missing, unreadable, not an image, deep, a
/// volume, or too large for memory.
bool readImageFile(std::string const& path, Precision precision, ImageFile& file, std::string& error);

} // namespace colorconfig
