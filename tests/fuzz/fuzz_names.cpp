// Fuzz target: the name lookups and the single-colour transform of the
// colour-configuration module on arbitrary names and channel values.
//
// Input: 32 bytes taken as the raw bits of four doubles r, g, b, a (NaN and
// infinities included; missing bytes are 0), then two names taken with
// FuzzedDataProvider's ConsumeRandomLengthString (a backslash followed by
// any other byte ends a name; "\\\\" is one backslash). Names may hold any
// byte, NUL included.
//
// LLVMFuzzerInitialize points $OCIO at fuzz_names.ocio (so OpenColorIO's
// file rules come from it too) and loads it, so that names hit real colour
// spaces, roles and rules as well as the built-in names.

#include "fuzz_check.h"

#include <verra_sdk/colorconfig.h>

#include <orv/path.h>

#include <OpenImageIO/imageio.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using orv::String;
using orv::verra_sdk::ColorConfig;
using Color = orv::math::RgbaT<double>;

bool sameBits(Color const& a, Color const& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    OIIO::attribute("threads", 1);
    // OpenColorIO reads $OCIO once, when its current configuration is first asked for.
    FUZZ_CHECK(::setenv("OCIO", VERRA_FUZZ_NAMES_CONFIG, 1) == 0, "setenv OCIO");
    String const path = orv::Path(String(VERRA_FUZZ_NAMES_CONFIG), false).canonical();
    FUZZ_CHECK(ColorConfig::loadOcioConfig(path).view() == "Using specified OCIO config: " + std::string(path.view()) &&
                   ColorConfig::colorSpaces().size() == 9 &&
                   ColorConfig::parseColorSpace(String("a.tex"), false) == "srgb_tx",
               "fuzz_names.ocio is loaded (7 spaces after the built-ins, without \"SRGB\"), file rules included");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    double channels[4] = {0.0, 0.0, 0.0, 0.0};
    input.ConsumeData(channels, sizeof channels);
    Color const color{channels[0], channels[1], channels[2], channels[3]};
    orv::StringVector const spaces = ColorConfig::colorSpaces();
    String names[4]; // the two names, then their listed forms
    for (int i = 0; i < 2; ++i) {
        std::string const bytes = input.ConsumeRandomLengthString();
        names[i] = bytes.empty() ? String() : String(bytes.data(), bytes.size());
        names[i + 2] = ColorConfig::findColorSpace(names[i]);
        String const& found = names[i + 2];
        String const wanted = names[i].trim(true, true);
        FUZZ_CHECK(found.isEmpty() ? !spaces.contains(wanted, true)
                                   : spaces.contains(found, false) && found.compareNoCase(wanted) == 0 &&
                                         ColorConfig::findColorSpace(found) == found &&
                                         (found == "linear" || wanted.compareNoCase(String("linear")) != 0),
                   "findColorSpace gives the listed form of the trimmed name (linear for any case of it), or nothing");
        // Without a guess, the fallback is sRGB for png, jpg, tga and bmp files, linear for any other name.
        String const guess = ColorConfig::parseColorSpace(names[i], false);
        String const ext = orv::Path::ext(names[i], false).toLower(true);
        bool const srgbType = ext == "png" || ext == "jpg" || ext == "tga" || ext == "bmp";
        char const* const fallback = srgbType ? "sRGB" : "linear";
        FUZZ_CHECK(ColorConfig::parseColorSpace(names[i], true) == (guess.isEmpty() ? fallback : guess.buf()),
                   "parseColorSpace adds its fallback only when it found nothing");
    }
    // Between the names as given, then between their listed forms.
    for (int i : {0, 2}) {
        Color const out = ColorConfig::transform(color, names[i], names[i + 1]);
        FUZZ_CHECK(std::memcmp(&out.a, &color.a, sizeof color.a) == 0 &&
                       sameBits(out, ColorConfig::transform(color, names[i], names[i + 1])) &&
                       (names[i].compareNoCase(names[i + 1]) != 0 || sameBits(out, color)) &&
                       sameBits(ColorConfig::transform(color, names[i], names[i].toLower(true)), color),
                   "transform keeps alpha bit for bit, is repeatable, and returns the colour between equal names");
    }
    return 0;
}
