// A host built against the package: it links the module and the toolkit,
// loads the built-in colour spaces through the toolkit, resolves a name and
// converts a colour. Exits non-zero, naming the check, when one fails.

#include <verra_sdk/colorconfig.h>
#include <verra_sdk/kit/config_load.h>
#include <verra_sdk/kit/names.h>

#include <cmath>
#include <cstdio>

int main()
{
    namespace kit = orv::verra_sdk::kit;
    kit::ConfigStatus const status = kit::loadConfig("");
    double const encoded = orv::verra_sdk::ColorConfig::linearToColorSpace({0.5, 0.5, 0.5, 1.0}, "sRGB").r;
    char const* failed = !status.errors.empty() || status.usesFile()                 ? "kit::loadConfig with nothing set"
                         : kit::resolveColorSpace("rec709").how != kit::NameMatch::Listed ? "kit::resolveColorSpace"
                         : std::fabs(encoded - 0.7354) >= 1e-4 ? "linear 0.5 encodes to sRGB 0.7354"
                                                               : nullptr;
    std::printf("host: %s\n", failed != nullptr ? failed : "all checks passed");
    return failed != nullptr ? 1 : 0;
}
