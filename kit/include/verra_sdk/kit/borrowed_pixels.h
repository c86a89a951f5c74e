#pragma once
// The module's buffer functions take owning pixel arrays; this lends them
// memory that someone else owns (an OpenImageIO ImageBuf, a host's or a
// script's array), without a copy.
//
// Example:
//
//     std::vector<orv::verra::float4> pixels(width * height);
//     kit::BorrowedPixels<orv::verra::float4> borrowed(pixels.data(), width, height);
//     bool ok = colorConfigTransformRgb(borrowed.array(), "sRGB");   // converts `pixels`

#include <orv/verra/vector2d.h>

#include <cstdint>

namespace orv::verra_sdk::kit {

/// An owning `Vector2d` over `width` × `height` pixels at `pixels`, which
/// it never frees: the array is emptied before its destructor runs. The
/// pixels must outlive this object, and `width` × `height` must fit 32 bits
/// (the array's count); sizes are not checked. Costs nothing.
template <class T>
class BorrowedPixels {
public:
    BorrowedPixels(void* pixels, int width, int height) noexcept
    {
        m_array.data = static_cast<T*>(pixels);
        m_array.width = static_cast<std::uint32_t>(width);
        m_array.height = static_cast<std::uint32_t>(height);
        m_array.count = m_array.width * m_array.height;
    }
    ~BorrowedPixels()
    {
        m_array.data = nullptr;
        m_array.width = m_array.height = m_array.count = 0;
    }
    BorrowedPixels(BorrowedPixels const&) = delete;
    BorrowedPixels& operator=(BorrowedPixels const&) = delete;

    orv::verra::Vector2d<T, true>& array() noexcept { return m_array; }

private:
    orv::verra::Vector2d<T, true> m_array;
};

} // namespace orv::verra_sdk::kit
