// Fuzz target: ColorConfig::loadOcioConfig on arbitrary configuration text.
//
// Input: the bytes of a configuration file. Each input is written to a file
// of its own name (OpenImageIO skips a reset to the file it already uses,
// so a reused name could keep the previous input's configuration), the
// previous file is removed, and the module is reset to the new one. Then the
// report, the one log line the reset may write, and every catalogue are
// checked against what the shared OpenImageIO configuration itself says.

#include "fuzz_check.h"
#include "fuzz_scratch.h"

#include <verra_sdk/colorconfig.h>

#include <orv/log.h>

#include <OpenImageIO/imageio.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

using orv::String;
using orv::StringVector;
using orv::math::RgbaT;
using orv::verra_sdk::ColorConfig;

verra_fuzz::ScratchDir& scratch()
{
    static verra_fuzz::ScratchDir dir;
    return dir;
}

/// The lines the module logs while an input runs.
std::vector<std::string>& logLines()
{
    static std::vector<std::string> lines;
    return lines;
}

bool startsWith(std::string_view text, std::string_view prefix)
{
    return text.size() >= prefix.size() && text.substr(0, prefix.size()) == prefix;
}

bool sameList(StringVector const& list, std::vector<std::string> const& expected)
{
    if (list.size() != expected.size()) {
        return false;
    }
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (list[i].view() != expected[i]) {
            return false;
        }
    }
    return true;
}

/// The names `nameAt(0 .. count-1)` of the shared configuration without null
/// or empty names and without exact repeats, in order: what displays(),
/// looks() and roles() promise.
template <class NameAt>
std::vector<std::string> expectedNames(int count, NameAt nameAt)
{
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) {
        char const* name = nameAt(i);
        if (name == nullptr || name[0] == '\0') {
            continue;
        }
        bool repeat = false;
        for (std::string const& earlier : names) {
            repeat = repeat || earlier == name;
        }
        if (!repeat) {
            names.emplace_back(name);
        }
    }
    return names;
}

/// colorSpaces(): the three built-ins, then the shared configuration's
/// spaces in order, without names equal apart from case to an earlier one
/// and without "default", "rgb" and "RGB".
void checkColorSpaces(OIIO::ColorConfig const& config)
{
    StringVector const spaces = ColorConfig::colorSpaces();
    FUZZ_CHECK(spaces.size() >= 3 && spaces[0] == "linear" && spaces[1] == "sRGB" && spaces[2] == "Rec709",
               "colorSpaces() still begins with linear, sRGB, Rec709");

    StringVector expected{String("linear", 0), String("sRGB", 0), String("Rec709", 0)};
    for (int i = 0; i < config.getNumColorSpaces(); ++i) {
        String const name(config.getColorSpaceNameByIndex(i), 0);
        if (expected.contains(name, true) || name == "default" || name == "rgb" || name == "RGB") {
            continue;
        }
        expected.push_back(name);
    }
    FUZZ_CHECK(spaces.size() == expected.size(), "colorSpaces() lists the configuration's spaces once each");
    for (std::size_t i = 0; i < spaces.size(); ++i) {
        FUZZ_CHECK(spaces[i] == expected[i], "colorSpaces() lists the configuration's spaces in order");
    }

    // Every listed name is found again, in a form equal to it apart from
    // case and blanks at the ends.
    for (String const& entry : spaces) {
        String const trimmed = entry.trim(true, true);
        if (trimmed.isEmpty()) {
            continue;
        }
        String const found = ColorConfig::findColorSpace(entry);
        FUZZ_CHECK(!found.isEmpty(), "findColorSpace finds each listed name");
        FUZZ_CHECK(found.trim(true, true).compareNoCase(trimmed) == 0,
                   "findColorSpace gives a listed name equal to the one asked for apart from case");
    }
}

/// displays(), looks(), roles(), views() and the defaults against the shared
/// configuration.
void checkCatalogues(OIIO::ColorConfig const& config)
{
    StringVector const displays = orv::verra_sdk::displays();
    FUZZ_CHECK(sameList(displays, expectedNames(config.getNumDisplays(),
                                                [&](int i) { return config.getDisplayNameByIndex(i); })),
               "displays() lists the configuration's displays once each, in order");
    FUZZ_CHECK(sameList(orv::verra_sdk::looks(),
                        expectedNames(config.getNumLooks(), [&](int i) { return config.getLookNameByIndex(i); })),
               "looks() lists the configuration's looks once each, in order");
    FUZZ_CHECK(sameList(orv::verra_sdk::roles(),
                        expectedNames(config.getNumRoles(), [&](int i) { return config.getRoleByIndex(i); })),
               "roles() lists the configuration's roles once each, in order");

    orv::ds::HashMap<String, StringVector> const views = orv::verra_sdk::views();
    std::uint64_t withViews = 0;
    for (String const& display : displays) {
        OIIO::string_view const name(display.buf(), display.length());
        std::vector<std::string> const expected =
            expectedNames(config.getNumViews(name), [&](int i) { return config.getViewNameByIndex(name, i); });
        StringVector const* list = views.find(display);
        if (expected.empty()) {
            FUZZ_CHECK(list == nullptr, "views() has no entry for a display without views");
            continue;
        }
        ++withViews;
        FUZZ_CHECK(list != nullptr, "views() has an entry for each display with views");
        FUZZ_CHECK(sameList(*list, expected), "views() lists a display's views once each, in order");
    }
    FUZZ_CHECK(views.size() == withViews, "views() has entries for listed displays only");

    char const* display = config.getDefaultDisplayName();
    FUZZ_CHECK(orv::verra_sdk::defaultDisplay() == (display != nullptr ? display : ""),
               "defaultDisplay() is the configuration's default display");
    (void)orv::verra_sdk::defaultView();
}

/// One colour out of the first configuration space into "linear" and back:
/// alpha comes back bit for bit whatever the processor does.
void checkTransform()
{
    StringVector const spaces = ColorConfig::colorSpaces();
    if (spaces.size() <= 3) {
        return;
    }
    RgbaT<double> const color{0.25, 0.5, 0.75, 0.3};
    RgbaT<double> const there = ColorConfig::colorSpaceToLinear(color, spaces[3]);
    RgbaT<double> const back = ColorConfig::linearToColorSpace(there, spaces[3]);
    FUZZ_CHECK(std::memcmp(&there.a, &color.a, sizeof color.a) == 0 &&
                   std::memcmp(&back.a, &color.a, sizeof color.a) == 0,
               "transform returns alpha bit for bit");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    OIIO::attribute("threads", 1);
    // Only the file given decides: no configuration from the environment.
    ::unsetenv("OCIO");
    orv::setErrorSink([](char const* line) { logLines().emplace_back(line != nullptr ? line : ""); });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static unsigned long s_count = 0;
    static std::string s_previous;

    std::string const name = "config-" + std::to_string(s_count++) + ".ocio";
    std::string const path = scratch().write(name, reinterpret_cast<char const*>(data), size);
    if (!s_previous.empty()) {
        std::remove(s_previous.c_str());
    }
    s_previous = path;

    logLines().clear();
    String const report = ColorConfig::loadOcioConfig(String(path.c_str(), 0));
    FUZZ_CHECK(!report.isEmpty(), "the report is never empty");
    FUZZ_CHECK(report.view() == "Using specified OCIO config: " + path,
               "the report names the file given, whether or not it was accepted");
    FUZZ_CHECK(logLines().size() <= 1, "a reset logs at most one line");
    FUZZ_CHECK(logLines().empty() || startsWith(logLines().front(), "OIIO failed to reset OCIO: "),
               "the only line a reset logs is OpenImageIO's refusal");

    std::size_t const loggedByReset = logLines().size();
    OIIO::ColorConfig const& config = orv::verra_sdk::colorConfig();
    checkColorSpaces(config);
    checkCatalogues(config);
    checkTransform();
    FUZZ_CHECK(logLines().size() == loggedByReset, "the catalogues and the single-colour transform log nothing");
    return 0;
}
