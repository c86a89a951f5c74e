// A host built against the package: it links, loads the module through the
// toolkit, resolves a name and converts a colour. Exits non-zero, naming the check, when one fails.

#include <verra_sdk/colorconfig.h>
#include <verra_sdk/kit/config_load.h>
#include <verra_sdk/kit/names.h>

#include <cmath>
#include <cstdio>

int main()
{
    using orv::verra_sdk::ColorConfig;
    namespace kit = orv::verra_sdk::kit;
    kit::ConfigStatus const status = kit::loadConfig("");
    orv::String const report(status.report);
    orv::StringVector const spaces = ColorConfig::colorSpaces();
    double const encoded = ColorConfig::linearToColorSpace({0.5, 0.5, 0.5, 1.0}, "sRGB").r;
    std::printf("report: %s\nlinear 0.5 in sRGB: %.4f\n", report.buf(), encoded);
    char const* failed = report.isEmpty()                                                 ? "a report"
                         : spaces.size() < 3 || !(spaces[2] == "Rec709")                  ? "the built-in colour spaces"
                         : !(ColorConfig::findColorSpace(" SRGB ") == "sRGB")             ? "findColorSpace"
                         : kit::resolveColorSpace("rec709").how != kit::NameMatch::Listed ? "kit::resolveColorSpace"
                         : !status.errors.empty() || status.usesFile()            ? "kit::loadConfig with nothing set"
                         : std::fabs(encoded - 0.7354) >= 1e-4                    ? "linear 0.5 encodes to sRGB 0.7354"
                         : orv::verra_sdk::colorConfig().getNumColorSpaces() <= 0 ? "OIIO colour spaces"
                                                                                  : nullptr;
    if (failed != nullptr) {
        std::fprintf(stderr, "host: FAILED: %s\n", failed);
        return 1;
    }
    std::printf("host: all checks passed\n");
    return 0;
}
