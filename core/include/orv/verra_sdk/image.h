#pragma once
// orv::verra_sdk::Image: the SDK's RGBA8 image handle.

#include <orv/ref_counted.h>
#include <orv/verra/pixel.h>

namespace orv::verra_sdk {

/// A shared RGBA8 image: copies of the handle share one body and its
/// pixels, so a change made through one handle is seen through all.
/// A default Image has no body and is not valid.
class Image : public RefersTo<IRefCounted> {
public:
    /// An invalid image (no body).
    Image() noexcept = default;

    /// A new image of `width` × `height` pixels, all bytes zero. Gives an
    /// invalid image when a size is negative, the pixel count exceeds
    /// 4294967295 or memory runs out; never throws. A zero width or height
    /// gives a valid image of zero pixels.
    static Image create(int width, int height) noexcept;

    /// An image over `width` × `height` pixels at `pixels` that the caller
    /// owns: no copy is made, conversions write into that memory, and the
    /// image never frees it. The memory must stay valid, and must not be
    /// resized, for as long as any handle on the image exists. Gives an
    /// invalid image when `pixels` is null, a size is negative, the pixel
    /// count exceeds 4294967295 or memory for the handle runs out; never throws.
    static Image wrap(verra::Rgba8* pixels, int width, int height) noexcept;

    /// True when the handle refers to an image with pixel storage.
    bool isValid() const noexcept;
    /// Pixels per row; 0 for an invalid image.
    int width() const noexcept;
    /// Number of rows; 0 for an invalid image.
    int height() const noexcept;
    /// The first pixel: width × height pixels, row after row, writable and
    /// owned by the body; null for an invalid image.
    verra::Rgba8* rgba8() const noexcept;

private:
    class Body;
    Body* image() const noexcept;
    explicit Image(IRefCounted* body) noexcept : RefersTo(body) {}
};

} // namespace orv::verra_sdk
