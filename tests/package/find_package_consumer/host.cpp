// A host program of the installed library. It loads the configuration the
// module chooses by itself (the caller runs it without $OCIO and with an
// empty home, so the built-in colour spaces win), prints the report and the
// list, and checks what every host can rely on. It uses the three libraries
// directly: orv::String (verra::core), ColorConfig (verra::colorconfig) and
// OIIO::ColorConfig (OpenImageIO, a public dependency).
// Exit status 0 when every check holds, 1 otherwise.

#include <verra_sdk/colorconfig.h>

#include <cmath>
#include <cstdio>

namespace {

int g_failures = 0;

void check(bool ok, char const* what)
{
    if (!ok) {
        std::fprintf(stderr, "host: FAILED: %s\n", what);
        ++g_failures;
    }
}

} // namespace

int main()
{
    using orv::verra_sdk::ColorConfig;

    orv::String const report = ColorConfig::loadOcioConfig("");
    std::printf("report: %s\n", report.buf());
    check(!report.isEmpty(), "loadOcioConfig returns a report");

    orv::StringVector const spaces = ColorConfig::colorSpaces();
    std::printf("colour spaces (%zu):", spaces.size());
    for (orv::String const& name : spaces) {
        std::printf(" \"%s\"", name.buf());
    }
    std::printf("\n");
    check(spaces.size() >= 3, "at least the three built-in colour spaces");
    if (spaces.size() >= 3) {
        check(spaces[0] == "linear", "colour space 0 is \"linear\"");
        check(spaces[1] == "sRGB", "colour space 1 is \"sRGB\"");
        check(spaces[2] == "Rec709", "colour space 2 is \"Rec709\"");
    }

    check(ColorConfig::findColorSpace(" SRGB ") == "sRGB", "findColorSpace(\" SRGB \") is \"sRGB\"");

    // The built-in sRGB curve: 0.5 linear encodes to 0.7354 (to four places).
    orv::math::RgbaT<double> const encoded =
        ColorConfig::linearToColorSpace(orv::math::RgbaT<double>{0.5, 0.5, 0.5, 1.0}, "sRGB");
    std::printf("linear 0.5 in sRGB: %.4f\n", encoded.r);
    check(std::fabs(encoded.r - 0.7354) < 1e-4, "linear 0.5 encodes to sRGB 0.7354");

    // A call into OpenImageIO itself, which the host must be able to link.
    int const oiioSpaces = orv::verra_sdk::colorConfig().getNumColorSpaces();
    std::printf("OpenImageIO colour spaces: %d\n", oiioSpaces);
    check(oiioSpaces > 0, "OIIO::ColorConfig lists colour spaces");

    if (g_failures != 0) {
        return 1;
    }
    std::printf("host: all checks passed\n");
    return 0;
}
