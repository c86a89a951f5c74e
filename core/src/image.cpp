#include <orv/verra_sdk/image.h>

#include <cstdint>
#include <memory>
#include <new>

namespace orv::verra_sdk {

/// The pixels and size shared by every copy of an Image handle: pixels it
/// owns (`create`) or pixels the caller owns (`wrap`).
class Image::Body final : public RefCounted {
public:
    Body(int width, int height, std::unique_ptr<verra::Rgba8[]> owned, verra::Rgba8* pixels) noexcept
        : m_width(width), m_height(height), m_owned(std::move(owned)), m_pixels(pixels)
    {}

    int const m_width;
    int const m_height;
    /// Null for wrapped pixels.
    std::unique_ptr<verra::Rgba8[]> const m_owned;
    verra::Rgba8* const m_pixels;

private:
    ~Body() override = default;
};

namespace {

/// True when a size is not negative and the pixel count fits 32 bits.
bool fitsImage(int width, int height) noexcept
{
    return width >= 0 && height >= 0 &&
           static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) <= 0xFFFFFFFFull;
}

} // namespace

Image Image::create(int width, int height) noexcept
{
    if (!fitsImage(width, height)) {
        return Image();
    }
    std::uint64_t const count = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    // Value-initialised, so every byte starts at zero. An image of zero
    // pixels still gets a (zero-length) array: it is valid, just empty.
    std::unique_ptr<verra::Rgba8[]> pixels(new (std::nothrow) verra::Rgba8[count]());
    if (!pixels) {
        return Image();
    }
    verra::Rgba8* const first = pixels.get();
    Body* const body = new (std::nothrow) Body(width, height, std::move(pixels), first);
    return Image(body);
}

Image Image::wrap(verra::Rgba8* pixels, int width, int height) noexcept
{
    if (pixels == nullptr || !fitsImage(width, height)) {
        return Image();
    }
    return Image(new (std::nothrow) Body(width, height, nullptr, pixels));
}

Image::Body* Image::image() const noexcept
{
    return static_cast<Body*>(body());
}

bool Image::isValid() const noexcept
{
    Body const* const target = image();
    return target && target->m_pixels;
}

int Image::width() const noexcept
{
    Body const* const target = image();
    return target ? target->m_width : 0;
}

int Image::height() const noexcept
{
    Body const* const target = image();
    return target ? target->m_height : 0;
}

verra::Rgba8* Image::rgba8() const noexcept
{
    Body const* const target = image();
    return target ? target->m_pixels : nullptr;
}

} // namespace orv::verra_sdk
