#include "pixel_layout.h"

#include <cstddef>

namespace colorconfig {

namespace {

std::size_t pixelCount(int width, int height)
{
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
}

/// The red, green, blue and alpha of pixel `i` of a raster of `channels`
/// values per pixel, read from `values`: grey is spread over red, green and
/// blue, and `opaque` stands in for a missing alpha.
template <class T>
void rgbaAt(std::vector<T> const& values, int channels, std::size_t i, T opaque, T (&rgba)[4])
{
    T const* pixel = values.data() + i * static_cast<std::size_t>(channels);
    bool const grey = channels < 3;
    rgba[0] = pixel[0];
    rgba[1] = grey ? pixel[0] : pixel[1];
    rgba[2] = grey ? pixel[0] : pixel[2];
    int const alphaIndex = grey ? 1 : 3;
    rgba[3] = channels > alphaIndex ? pixel[alphaIndex] : opaque;
}

template <class T>
bool allocateLike(orv::verra::Vector2d<T, true>& pixels, Raster const& raster)
{
    pixels.allocate(static_cast<std::uint32_t>(raster.width), static_cast<std::uint32_t>(raster.height));
    return !pixels.empty();
}

} // namespace

int expandedChannels(int channels)
{
    return channels == 1 ? 3 : channels == 2 ? 4 : channels;
}

orv::verra_sdk::Image toImage(Raster const& raster)
{
    orv::verra_sdk::Image image = orv::verra_sdk::Image::create(raster.width, raster.height);
    if (!image.isValid()) {
        return image;
    }
    orv::verra::Rgba8* pixels = image.rgba8();
    std::size_t const count = pixelCount(raster.width, raster.height);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint8_t rgba[4];
        rgbaAt<std::uint8_t>(raster.bytes, raster.channels, i, 255, rgba);
        pixels[i] = {rgba[0], rgba[1], rgba[2], rgba[3]};
    }
    return image;
}

std::vector<std::uint8_t> fromImage(orv::verra_sdk::Image const& image, int channels)
{
    std::size_t const count = pixelCount(image.width(), image.height());
    std::vector<std::uint8_t> bytes;
    bytes.reserve(count * static_cast<std::size_t>(channels));
    orv::verra::Rgba8 const* pixels = image.rgba8();
    for (std::size_t i = 0; i < count; ++i) {
        bytes.insert(bytes.end(), {pixels[i].r, pixels[i].g, pixels[i].b});
        if (channels == 4) {
            bytes.push_back(pixels[i].a);
        }
    }
    return bytes;
}

orv::verra::Vector2d<orv::verra::float3, true> toFloat3(Raster const& raster)
{
    orv::verra::Vector2d<orv::verra::float3, true> pixels;
    if (!allocateLike(pixels, raster)) {
        return pixels;
    }
    for (std::size_t i = 0; i < pixels.count; ++i) {
        float rgba[4];
        rgbaAt<float>(raster.floats, raster.channels, i, 1.0f, rgba);
        pixels.data[i] = {rgba[0], rgba[1], rgba[2]};
    }
    return pixels;
}

orv::verra::Vector2d<orv::verra::float4, true> toFloat4(Raster const& raster)
{
    orv::verra::Vector2d<orv::verra::float4, true> pixels;
    if (!allocateLike(pixels, raster)) {
        return pixels;
    }
    for (std::size_t i = 0; i < pixels.count; ++i) {
        float rgba[4];
        rgbaAt<float>(raster.floats, raster.channels, i, 1.0f, rgba);
        pixels.data[i] = {rgba[0], rgba[1], rgba[2], rgba[3]};
    }
    return pixels;
}

std::vector<float> fromFloat3(orv::verra::Vector2d<orv::verra::float3, true> const& pixels)
{
    std::vector<float> values;
    values.reserve(std::size_t{pixels.count} * 3);
    for (std::size_t i = 0; i < pixels.count; ++i) {
        values.insert(values.end(), {pixels.data[i].r, pixels.data[i].g, pixels.data[i].b});
    }
    return values;
}

std::vector<float> fromFloat4(orv::verra::Vector2d<orv::verra::float4, true> const& pixels)
{
    std::vector<float> values;
    values.reserve(std::size_t{pixels.count} * 4);
    for (std::size_t i = 0; i < pixels.count; ++i) {
        values.insert(values.end(), {pixels.data[i].r, pixels.data[i].g, pixels.data[i].b, pixels.data[i].a});
    }
    return values;
}

std::vector<float> expandedFloats(Raster const& raster)
{
    int const channels = expandedChannels(raster.channels);
    std::size_t const count = pixelCount(raster.width, raster.height);
    std::vector<float> values;
    values.reserve(count * static_cast<std::size_t>(channels));
    for (std::size_t i = 0; i < count; ++i) {
        float rgba[4];
        rgbaAt<float>(raster.floats, raster.channels, i, 1.0f, rgba);
        values.insert(values.end(), rgba, rgba + channels);
    }
    return values;
}

} // namespace colorconfig
