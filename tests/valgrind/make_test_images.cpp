// make_test_images OUT_DIR: writes the two small inputs that the memcheck
// runs of `colorconfig convert` read, so that the 8-bit and the float
// conversion paths both run:
//   OUT_DIR/rgba8.png   8-bit RGBA
//   OUT_DIR/float.exr   32-bit float RGBA
// The pixels sweep every channel across its range (values above 1 in the
// float image) so that the conversions see more than one constant colour.
// Exit status 0 on success, 1 when a file cannot be written, 2 on bad usage.

#include <OpenImageIO/imageio.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int kWidth = 16;
constexpr int kHeight = 8;
constexpr int kChannels = 4;

bool writeImage(std::string const& path, OIIO::TypeDesc type, void const* pixels)
{
    auto output = OIIO::ImageOutput::create(path);
    if (!output) {
        std::fprintf(stderr, "make_test_images: no writer for %s: %s\n", path.c_str(),
                     OIIO::geterror().c_str());
        return false;
    }
    OIIO::ImageSpec const description(kWidth, kHeight, kChannels, type);
    if (!output->open(path, description) || !output->write_image(type, pixels) || !output->close()) {
        std::fprintf(stderr, "make_test_images: cannot write %s: %s\n", path.c_str(),
                     output->geterror().c_str());
        return false;
    }
    return true;
}

// Channel `c` of pixel (x, y) as a fraction in [0, 1].
float ramp(int x, int y, int c)
{
    int const steps = kWidth * kHeight - 1;
    int const i = (y * kWidth + x + c * 37) % (steps + 1);
    return static_cast<float>(i) / static_cast<float>(steps);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_test_images OUT_DIR\n");
        return 2;
    }
    std::string const dir = argv[1];

    std::vector<std::uint8_t> rgba8;
    std::vector<float> rgbaf;
    rgba8.reserve(kWidth * kHeight * kChannels);
    rgbaf.reserve(kWidth * kHeight * kChannels);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            for (int c = 0; c < kChannels; ++c) {
                float const v = ramp(x, y, c);
                rgba8.push_back(static_cast<std::uint8_t>(v * 255.0f + 0.5f));
                // Alpha stays within [0, 1]; colour channels reach 4.0.
                rgbaf.push_back(c == 3 ? v : v * 4.0f);
            }
        }
    }

    bool ok = writeImage(dir + "/rgba8.png", OIIO::TypeDesc::UINT8, rgba8.data());
    ok = writeImage(dir + "/float.exr", OIIO::TypeDesc::FLOAT, rgbaf.data()) && ok;
    return ok ? 0 : 1;
}
