// Fuzz target: ColorConfig::loadOcioConfig on arbitrary configuration text,
// then every catalogue and one conversion.
//
// Input: the bytes of a configuration file. Each input is written to a file
// in $TMPDIR, the module is reset to it, and the file is removed: inputs
// take two names in turn, since OpenImageIO skips a reset to the file it
// already uses. Whatever the text, the report names the file, the reset logs
// at most its one line, and the catalogues answer without failing or logging.

#include "fuzz_check.h"

#include <verra_sdk/colorconfig.h>

#include <orv/log.h>

#include <OpenImageIO/imageio.h>

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

namespace {

using orv::String;
using orv::StringVector;
using orv::verra_sdk::ColorConfig;

std::vector<std::string> s_logged; // the lines the module logs during one input

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    OIIO::attribute("threads", 1);
    ::unsetenv("OCIO"); // only the file given decides
    orv::setErrorSink([](char const* line) { s_logged.emplace_back(line); });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    namespace fs = std::filesystem;
    static std::string const s_base = fs::canonical(fs::temp_directory_path()).string() + "/verra-fuzz-";
    static unsigned long s_count = 0;
    std::string const path = s_base + std::to_string(::getpid()) + (s_count++ % 2 == 0 ? "-a.ocio" : "-b.ocio");
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<char const*>(data), std::streamsize(size));
    s_logged.clear();
    String const report = ColorConfig::loadOcioConfig(String(path.c_str()));
    std::remove(path.c_str());
    FUZZ_CHECK(report.view() == "Using specified OCIO config: " + path,
               "the report names the file, whether or not it was accepted");
    FUZZ_CHECK(s_logged.size() <= 1 && (s_logged.empty() || s_logged[0].rfind("OIIO failed to reset OCIO: ", 0) == 0),
               "a reset logs at most one line: OpenImageIO's refusal");
    s_logged.clear();

    // The built-ins first, no ignored name, each listed name found again apart from case and blanks.
    StringVector const spaces = ColorConfig::colorSpaces();
    FUZZ_CHECK(spaces.size() >= 3 && spaces[0] == "linear" && spaces[1] == "sRGB" && spaces[2] == "Rec709" &&
                   !spaces.contains(String("default"), false) && !spaces.contains(String("rgb"), false) &&
                   !spaces.contains(String("RGB"), false),
               "colorSpaces() lists the built-ins, then the configuration's names without default, rgb and RGB");
    for (String const& space : spaces) {
        String const bare = space.trim(true, true);
        FUZZ_CHECK(bare.isEmpty() || ColorConfig::findColorSpace(space).trim(true, true).compareNoCase(bare) == 0,
                   "findColorSpace finds each listed name");
    }
    // Displays, looks and roles without empty names; views of listed displays only; the default display listed.
    StringVector const displays = orv::verra_sdk::displays();
    FUZZ_CHECK(!displays.contains(String(), false) && !orv::verra_sdk::looks().contains(String(), false) &&
                   !orv::verra_sdk::roles().contains(String(), false),
               "displays(), looks() and roles() list no empty name");
    for (auto const& node : orv::verra_sdk::views()) {
        FUZZ_CHECK(displays.contains(node.key, false) && !node.value.empty(), "views() maps listed displays to views");
    }
    String const display = orv::verra_sdk::defaultDisplay();
    FUZZ_CHECK(display.isEmpty() || displays.contains(display, false), "the default display is a listed one");
    (void)orv::verra_sdk::defaultView();
    String const last = spaces[spaces.size() - 1];
    orv::math::RgbaT<double> const color{0.25, 0.5, 0.75, 0.3};
    orv::math::RgbaT<double> const back =
        ColorConfig::linearToColorSpace(ColorConfig::colorSpaceToLinear(color, last), last);
    FUZZ_CHECK(std::memcmp(&back.a, &color.a, sizeof color.a) == 0 && s_logged.empty(),
               "the single-colour transform keeps alpha; the catalogues and the transform log nothing");
    return 0;
}
