#include <orv/verra_sdk/image.h>

#include <cstdint>
#include <memory>
#include <new>

namespace orv::verra_sdk {

/// The pixels and size shared by every copy of an Image handle.
class Image::Body final : public RefCounted {
public:
    Body(int width, int height, std::unique_ptr<verra::Rgba8[]> pixels) noexcept
        : m_width(width), m_height(height), m_pixels(std::move(pixels))
    {}

    int const m_width;
    int const m_height;
    std::unique_ptr<verra::Rgba8[]> const m_pixels;

private:
    ~Body() override = default;
};

Image Image::create(int width, int height) noexcept
{
    if (width < 0 || height < 0) {
        return Image();
    }
    std::uint64_t const count = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    if (count > 0xFFFFFFFFull) {
        return Image();
    }
    // Value-initialised, so every byte starts at zero. An image of zero
    // pixels still gets a (zero-length) array: it is valid, just empty.
    std::unique_ptr<verra::Rgba8[]> pixels(new (std::nothrow) verra::Rgba8[count]());
    if (!pixels) {
        return Image();
    }
    Body* const body = new (std::nothrow) Body(width, height, std::move(pixels));
    return Image(body);
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
    return target ? target->m_pixels.get() : nullptr;
}

} // namespace orv::verra_sdk
