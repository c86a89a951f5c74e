#pragma once
// Image files in memory: every subimage and MIP level of a file, each with
// the file's own description of it (data type, windows, tiling, metadata)
// and the form of its colour (multiplied by alpha or not), so that what is
// written back keeps everything that was not converted.
//
// Threading: reading different files from different threads is safe; the
// results are the caller's. Failures are values; nothing is thrown or printed.

#include <OpenImageIO/imagebuf.h>

#include <string>
#include <vector>

namespace orv::verra_sdk::kit {

/// One image of a file: a subimage at one MIP level.
struct ImageLevel {
    int subimage = 0;
    int miplevel = 0;
    /// What the file says of the image: data types, windows, tiling,
    /// compression, attributes. The ImageSpec to write it back with.
    OIIO::ImageSpec fileSpec;
    /// The pixels in memory, over the data window, as UINT8 or FLOAT.
    OIIO::ImageBuf pixels;
    /// True when the image has alpha and the colour values in `pixels` are
    /// multiplied by it (associated alpha, as OpenEXR files hold it); false
    /// when they are not (as PNG files hold them) or there is no alpha.
    /// Colour conversions divide such values by alpha first and multiply
    /// them again after; `writeImageFile` hands each format the form its
    /// files hold.
    bool associatedAlpha = false;
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
    /// 8-bit images as UINT8, every other type as FLOAT; 8-bit images with
    /// associated alpha as FLOAT too, so that dividing by alpha loses nothing.
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

/// How `readImageFile` reads a file.
struct ReadOptions {
    Precision precision = Precision::Float;
    /// True when the file's colour values are not multiplied by alpha,
    /// whatever its format holds (a file written that way by mistake): every
    /// level is then read with `associatedAlpha` false.
    bool alphaUnassociated = false;
};

/// Reads every subimage and MIP level of `path`, colour values as the file
/// stores them (alpha is not multiplied into unassociated ones), each level's
/// `associatedAlpha` saying which form they have: what OpenImageIO's reader
/// reports (PNG, Targa, HEIF and TIFF files marked so hold unassociated
/// alpha; OpenEXR and the other formats associated). False, with a message
/// in `error`, when the file is missing, unreadable, not an image, deep, a
/// volume, or too large for memory. Costs one read of the whole file and
/// memory for all its images (4 bytes a channel unless kept in bytes).
bool readImageFile(std::string const& path, ReadOptions const& options, ImageFile& file, std::string& error);

/// `readImageFile(path, {precision}, file, error)`.
bool readImageFile(std::string const& path, Precision precision, ImageFile& file, std::string& error);

} // namespace orv::verra_sdk::kit
