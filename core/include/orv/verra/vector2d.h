#pragma once
// orv::verra::Vector2d: a two-dimensional array of pixels, row after row.

#include <cstdint>
#include <new>

namespace orv::verra {

/// Pixel (x, y) is `data[y * width + x]`; `count` is `width * height`.
/// `Owning` true: the array owns its storage (move-only). `Owning` false:
/// a copyable view on memory that someone else owns.
template <class T, bool Owning>
struct Vector2d;

/// The owning array. Its storage is placed only by `allocate` and released
/// with array `delete` by `reset`, move assignment and the destructor.
template <class T>
struct Vector2d<T, true> {
    T* data = nullptr;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t count = 0;

    Vector2d() noexcept = default;
    Vector2d(Vector2d const&) = delete;
    Vector2d& operator=(Vector2d const&) = delete;
    /// Takes `other`'s storage and sizes; `other` is left empty.
    Vector2d(Vector2d&& other) noexcept { take(other); }
    Vector2d& operator=(Vector2d&& other) noexcept
    {
        if (this != &other) {
            reset();
            take(other);
        }
        return *this;
    }
    ~Vector2d() { delete[] data; }

    /// Gives the array storage for `w` × `h` pixels, left uninitialised,
    /// after releasing any storage it had. Never throws: when the product
    /// exceeds 4294967295 or the allocation fails, the array stays empty
    /// (null data, all sizes 0). A zero width or height gives an array of
    /// zero pixels (non-null data, count 0).
    void allocate(std::uint32_t w, std::uint32_t h) noexcept
    {
        reset();
        std::uint64_t const n = std::uint64_t{w} * std::uint64_t{h};
        if (n > 0xFFFFFFFFull) {
            return;
        }
        try {
            data = new T[n];
        } catch (std::bad_alloc const&) {
            return;
        }
        width = w;
        height = h;
        count = w * h;
    }

    /// Releases the storage and empties the array.
    void reset() noexcept
    {
        delete[] data;
        data = nullptr;
        width = height = count = 0;
    }

    /// True while the array has no storage.
    bool empty() const noexcept { return data == nullptr; }

    T& operator()(std::uint32_t x, std::uint32_t y) noexcept { return data[y * width + x]; }
    T const& operator()(std::uint32_t x, std::uint32_t y) const noexcept { return data[y * width + x]; }

private:
    void take(Vector2d& other) noexcept
    {
        data = other.data;
        width = other.width;
        height = other.height;
        count = other.count;
        other.data = nullptr;
        other.width = other.height = other.count = 0;
    }
};

/// A view on `width` × `height` pixels owned elsewhere; copying copies the view.
template <class T>
struct Vector2d<T, false> {
    T* data = nullptr;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t count = 0;

    Vector2d() noexcept = default;
    Vector2d(T* pixels, std::uint32_t w, std::uint32_t h) noexcept : data(pixels), width(w), height(h), count(w * h) {}

    bool empty() const noexcept { return data == nullptr; }
    T& operator()(std::uint32_t x, std::uint32_t y) const noexcept { return data[y * width + x]; }
};

} // namespace orv::verra
