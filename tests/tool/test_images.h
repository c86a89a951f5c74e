#pragma once
// Small images written and read back with OpenImageIO for the tool's tests.

#include <OpenImageIO/typedesc.h>

#include <cstdint>
#include <string>
#include <vector>

namespace verra_test {

/// An image file's pixels and how the file stores them.
struct ImageFile {
    /// Pixels per row.
    int width = 0;
    /// Number of rows.
    int height = 0;
    /// Channels per pixel.
    int channels = 0;
    /// The data type that the file stores.
    OIIO::TypeDesc type;
    /// OpenImageIO's name of the file's format ("png", "openexr", ...).
    std::string format;
    /// The channels as 8-bit values (filled when `type` is UINT8) ...
    std::vector<std::uint8_t> bytes;
    /// ... and always as floats.
    std::vector<float> floats;
};

/// Writes `bytes` (`channels` per pixel) to `path` as 8-bit data, colour
/// channels unassociated with alpha. Fails the current test on error.
void writeBytes(std::string const& path, int width, int height, int channels,
                std::vector<std::uint8_t> const& bytes);

/// Writes `floats` to `path` with the data type `type` in the file. Fails
/// the current test on error.
void writeFloats(std::string const& path, int width, int height, int channels, OIIO::TypeDesc type,
                 std::vector<float> const& floats);

/// Reads `path` back as the file stores it (alpha not multiplied in). Fails
/// the current test and returns an empty image on error.
ImageFile readImageFile(std::string const& path);

/// `width` × `height` × `channels` bytes that walk through 0 to 255 with
/// different steps per channel.
std::vector<std::uint8_t> byteRamp(int width, int height, int channels);

/// `width` × `height` × `channels` floats from -0.25 to 2 with different
/// steps per channel; every fourth channel (alpha) stays within 0 to 1.
std::vector<float> floatRamp(int width, int height, int channels);

} // namespace verra_test
