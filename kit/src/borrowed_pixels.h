#pragma once
// The module's buffer functions take owning pixel arrays; this lends them
// memory that an OpenImageIO ImageBuf owns, without a copy.

#include <orv/verra/vector2d.h>

#include <cstdint>

namespace orv::verra_sdk::kit {

/// An owning `Vector2d` over `width` × `height` pixels at `pixels`, which
/// it must never free: the array is emptied before its destructor runs.
/// The pixels must outlive this object.
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
