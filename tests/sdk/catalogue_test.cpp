// Choosing the configuration, with the report of every outcome; the reset
// and the caches it refills; the catalogue's lists against golden lists.

#include "support/module_env.h"

#include <verra_sdk/config_source.h>

#include <OpenImageIO/imageio.h>

#include <algorithm>
#include <filesystem>

using namespace verra_test;
namespace stdfs = std::filesystem;

namespace {

using Discovery = SdkTest;

TEST_F(Discovery, EachSourceInItsOrderWithItsReport)
{
    for (char const* name : {"a", "b", "c"}) {
        env.dir().write(std::string(name) + "/config.ocio", ocioConfig({std::string("from_") + name}));
    }
    env.dir().write("home/b.ocio", readFile(env.dir().file("b/config.ocio")));
    stdfs::create_directory_symlink(env.dir().file("a"), env.dir().file("link"));
    std::string const dir = env.dir().path();
    std::pair<char const*, std::string> const tokens[] = {{"{A}", dir + "/a/config.ocio"},
                                                          {"{B}", dir + "/b/config.ocio"},
                                                          {"{C}", dir + "/c/config.ocio"},
                                                          {"{H}", dir + "/home/b.ocio"},
                                                          {"{M}", dir + "/nowhere/missing.ocio"},
                                                          {"{T}", env.ocioTxt()},
                                                          {"{D}", dir}};

    auto const expand = [&](std::string text) {
        for (auto const& [token, value] : tokens) {
            text = OIIO::Strutil::replace(text, token, value, true);
        }
        return text;
    };
    char const* const no = nullptr;
    char const* const builtIn = "No OCIO config found, will use built-in color spaces.";
    char const* const byVar = "Using {B} according to the 'VERRA_TEST_CFG' env var.";
    char const* const noVar = "Error: no OCIO config found at 'VERRA_TEST_CFG' env var path: {M}";
    char const* const noTxtConfig = "Error: read {T} but could not find the OCIO config it specifies: ";
    char const* const txtMissing = "Error: read {T} but could not find the OCIO config it specifies: {M}";
    char const* const cases[][7] = {
        // argument, ocio.txt (or none), $OCIO, $VERRA_TEST_CFG (or unset), report, the config's colour space,
        // the source configSource() names
        {"", no, no, no, builtIn, "", "built-ins"},
        {"{A}", "{B}", "{C}", "{B}", "Using specified OCIO config: {A}", "from_a", "argument path"},
        {"{D}/b/../link//config.ocio", no, no, no, "Using specified OCIO config: {A}", "from_a", "argument path"},
        {"{M}", no, no, no, "'{M}' env var not set, will use built-in color spaces.", "", "built-ins"},
        {"$", no, no, no, "The specified OCIO config file was not found: $", "", "built-ins"},
        {"VERRA_TEST_CFG", no, no, "{B}", byVar, "from_b", "argument variable"},
        {"$VERRA_TEST_CFG", "{A}", "{C}", "{B}", byVar, "from_b", "argument variable"},
        {"%VERRA_TEST_CFG%", no, no, "{B}", byVar, "from_b", "argument variable"},
        {"$VERRA_TEST_CFG", no, no, "{D}/x/..//nowhere/./missing.ocio", noVar, "", "built-ins"},
        {"", "  {B}\r\n", "{C}", no, "Using OCIO config {B} according to {T}.", "from_b", "ocio.txt"},
        {"", "{D}/nowhere/../nowhere/missing.ocio\n", no, no, txtMissing, "", "built-ins"},
        {"", " \r\n", no, no, noTxtConfig, "", "built-ins"},
        {"", "{M}", "{C}", no, "Using {C} according to the 'OCIO' env var.", "from_c", "OCIO variable"},
        {"{M}", no, "{C}", no, "Using {C} according to the 'OCIO' env var.", "from_c", "OCIO variable"},
        {"", no, "{M}", no, builtIn, "", "built-ins"},
        {"$VERRA_TEST_CFG", "{M}", "{M}3", "{M}", txtMissing, "", "built-ins"}, // the last source tried reports
        {"$VERRA_TEST_CFG", no, "{M}3", "{M}", noVar, "", "built-ins"},
        // Each source may start at the home directory.
        {"~/b.ocio", no, no, no, "Using specified OCIO config: {H}", "from_b", "argument path"},
        {"", "~/b.ocio\n", no, no, "Using OCIO config {H} according to {T}.", "from_b", "ocio.txt"},
    };
    EnvGuard const variable("VERRA_TEST_CFG");
    for (auto const& c : cases) {
        stdfs::remove(env.ocioTxt());
        if (c[1] != nullptr) {
            env.dir().write("xdg/verra/ocio.txt", expand(c[1]));
        }
        env.ocio().put(c[2] != nullptr ? expand(c[2]).c_str() : nullptr);
        variable.put(c[3] != nullptr ? expand(c[3]).c_str() : nullptr);
        EXPECT_EQ(load(expand(c[0])), expand(c[4])) << c[0] << ", ocio.txt " << (c[1] ? c[1] : "none");
        Names const listed = texts(ColorConfig::colorSpaces());
        EXPECT_EQ(listed.size() > 3 ? listed[3] : "", c[5]) << c[0];
        EXPECT_STREQ(configSourceName(configSource()), c[6]) << c[0];
    }
    // An ocio.txt that is a folder is no source.
    stdfs::remove(env.ocioTxt());
    env.ocio().unset();
    stdfs::create_directories(env.ocioTxt());
    EXPECT_EQ(load(""), builtIn);
    EXPECT_EQ(log.lines(), Lines{});
    EXPECT_EQ(ocioTxtPath().view(), env.ocioTxt());
}

/// The views map as "display: view, view" lines, sorted by display.
Names viewLines(orv::ds::HashMap<orv::String, orv::StringVector> const& map)
{
    Names out;
    for (auto const& node : map) {
        out.push_back(std::string(node.key.buf()) + ": " + OIIO::Strutil::join(texts(node.value), ", "));
    }
    std::sort(out.begin(), out.end());
    return out;
}

using Reset = SdkTest;

TEST_F(Reset, CachesHoldTheirListsUntilTheNextConfig)
{
    std::string const first = ocioConfig({"one_a", "one_b"}, {}, R"(displays:
  OneDisplay: [!<View> {name: OneView, colorspace: one_a}]
  Monitor: [!<View> {name: OneOnly, colorspace: one_a}]
looks: [!<Look> {name: one_look, process_space: one_a}]
)");
    // A display listed twice, one that differs only in case, a view listed twice.
    std::string const second = ocioConfig({"lin", "raw"}, {}, R"(displays:
  Monitor: [!<View> {name: Film, colorspace: lin}, !<View> {name: Raw, colorspace: lin},
            !<View> {name: Log, colorspace: lin}]
  Projector: [!<View> {name: Film, colorspace: lin}]
  monitor: [!<View> {name: Raw, colorspace: lin}]
active_displays: [Monitor, Projector, Monitor, monitor]
active_views: [Film, Raw, Film, Log]
looks: [!<Look> {name: warm, process_space: lin}, !<Look> {name: cool, process_space: lin}]
roles: {default: lin, scene_linear: lin, data: raw}
)");
    auto const expectLists = [](Names const& spaces, Names const& shown, Names const& viewsShown,
                                Names const& lookNames, Names const& roleNames) {
        EXPECT_EQ(texts(ColorConfig::colorSpaces()), spaces);
        EXPECT_EQ(texts(displays()), shown);
        EXPECT_EQ(viewLines(views()), viewsShown);
        EXPECT_EQ(texts(looks()), lookNames);
        EXPECT_EQ(texts(roles()), roleNames);
        EXPECT_STREQ(ColorConfig::findColorSpace("RAW").buf(), spaces.back() == "raw" ? "raw" : "");
    };
    loadConfig(first, "first.ocio");
    // Callers get copies of the lists; the views map shares its lists.
    for (orv::StringVector list : {ColorConfig::colorSpaces(), displays(), looks(), roles()}) {
        list.push_back("added by the caller");
    }
    views().set("Added", orv::StringVector{"x"});
    views().find("Monitor")->push_back("Shared");
    // A config changed under the caches: only the defaults, never cached, follow.
    std::string const path = env.dir().write("second.ocio", second);
    ASSERT_TRUE(colorConfig().reset(path));
    EXPECT_STREQ(defaultDisplay().buf(), "Monitor");
    EXPECT_STREQ(defaultView().buf(), "Film");
    expectLists({"linear", "sRGB", "Rec709", "one_a", "one_b"}, {"OneDisplay", "Monitor"},
                {"Monitor: OneOnly, Shared", "OneDisplay: OneView"}, {"one_look"}, {"default"});
    EXPECT_EQ(load(path), "Using specified OCIO config: " + path);
    ASSERT_EQ(colorConfig().getNumDisplays(), 4); // OpenImageIO passes the repeat on
    // OpenColorIO finds a display's views without regard to case.
    expectLists({"linear", "sRGB", "Rec709", "lin", "raw"}, {"Monitor", "Projector", "monitor"},
                {"Monitor: Film, Raw, Log", "Projector: Film", "monitor: Film, Raw, Log"}, {"warm", "cool"},
                {"data", "default", "scene_linear"});
    EXPECT_EQ(load(""), "No OCIO config found, will use built-in color spaces.");
    expectLists({"linear", "sRGB", "Rec709"}, {}, {}, {}, {});
    EXPECT_STREQ(defaultDisplay().buf(), "");
    EXPECT_STREQ(defaultView().buf(), "");
    EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(Reset, RefusedFilesLogOnlyAPendingGlobalError)
{
    std::string const files[] = {
        env.dir().write("new.ocio", "ocio_profile_version: 9.1\ncolorspaces: [!<ColorSpace> {name: raw}]\n"),
        env.dir().write("yaml.ocio", "this: [is not a config\n")};
    for (std::string const& file : files) {
        bool const pendingError = file == files[1];
        OIIO::geterror(true);
        if (pendingError) {
            EXPECT_EQ(OIIO::ImageInput::open(env.dir().file("missing.exr")), nullptr);
        }
        std::string const pending = OIIO::geterror(false);
        log.clear();
        // The report names the file chosen, whatever OpenImageIO makes of it.
        EXPECT_EQ(load(file), "Using specified OCIO config: " + file);
        EXPECT_EQ(log.lines(), pendingError ? Lines{"OIIO failed to reset OCIO: " + pending} : Lines{}) << file;
        EXPECT_EQ(OIIO::geterror(false), "");
        EXPECT_EQ(texts(ColorConfig::colorSpaces()), (Names{"linear", "sRGB", "Rec709"})) << file;
        EXPECT_NE(colorConfig().geterror(true), "") << file; // where OpenImageIO keeps the reason
    }
}

using Catalogue = SdkTest;

TEST_F(Catalogue, ColorSpacesAndTheLookupOfATypedName)
{
    // OpenImageIO's own configuration lists "default", "rgb" and "RGB" beside
    // its spellings of the built-ins: the only source of both "rgb" and "RGB".
    ASSERT_EQ(colorConfig().getNumColorSpaces(), 6);
    EXPECT_STREQ(colorConfig().getColorSpaceNameByIndex(2), "rgb");
    EXPECT_STREQ(colorConfig().getColorSpaceNameByIndex(3), "RGB");
    EXPECT_EQ(texts(ColorConfig::colorSpaces()), (Names{"linear", "sRGB", "Rec709"}));
    std::pair<Names, Names> const cases[] = {
        // the config's names; what follows "linear", "sRGB", "Rec709"
        {{"zeta", "alpha", "mid"}, {"zeta", "alpha", "mid"}},
        {{"LINEAR", "srgb", "REC709", "rec709x", "Srgb Texture"}, {"rec709x", "Srgb Texture"}},
        {{"lin", "default", "RGB"}, {"lin"}},
        {{"lin", "Default", "Rgb"}, {"lin", "Default", "Rgb"}},
        {{"Linear", "lin", "LIN2", "sRGB"}, {"lin", "LIN2"}}};
    for (auto const& [names, listed] : cases) {
        loadConfig(ocioConfig(names), names.back() + ".ocio");
        Names expected{"linear", "sRGB", "Rec709"};
        expected.insert(expected.end(), listed.begin(), listed.end());
        EXPECT_EQ(texts(ColorConfig::colorSpaces()), expected);
    }

    loadConfig(ocioConfig({"ACEScg", "\tpadded\r", "Utility - Raw", "Zeta@["}), "find.ocio");
    std::pair<char const*, char const*> const typed[] = {
        {"srgb", "sRGB"},         {" rec709", "Rec709"}, {"\tLINEAR \n", "linear"},          {"acescg", "ACEScg"},
        {"PADDED", "\tpadded\r"}, {"zETA@[", "Zeta@["},  {"utility - raw ", "Utility - Raw"}};
    for (auto const& [name, listed] : typed) {
        EXPECT_STREQ(ColorConfig::findColorSpace(name).buf(), listed) << name;
    }
    for (char const* unknown : {"zeta`[", "zeta@{", "nope", "", "lin ear", "\x01sRGB"}) {
        EXPECT_STREQ(ColorConfig::findColorSpace(unknown).buf(), "") << unknown;
    }
}

} // namespace
