// Real configurations written by others: each loads with its success report,
// and the catalogue equals what OpenImageIO enumerates for the same file once
// the module's rules are applied.

#include <verra_sdk/colorconfig.h>

#include "support/module_env.h"
#include "support/names.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

using namespace orv::verra_sdk;
namespace stdfs = std::filesystem;

namespace {

using verra_test::Names;
using verra_test::texts;



bool equalNoCase(std::string const& a, std::string const& b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
           });
}

/// Names from an enumeration, without null or empty names and exact repeats.
template <class Count, class At>
Names distinctNames(Count count, At at)
{
    Names out;
    for (int i = 0; i < count(); ++i) {
        char const* name = at(i);
        if (name && *name && std::find(out.begin(), out.end(), name) == out.end()) {
            out.emplace_back(name);
        }
    }
    return out;
}

/// What the module should list for a configuration that OpenImageIO read.
struct Expected {
    Names colorSpaces{"linear", "sRGB", "Rec709"};
    Names displays, looks, roles;
    std::map<std::string, Names> views;
    std::string defaultDisplay, defaultView;

    explicit Expected(OIIO::ColorConfig const& raw)
    {
        for (int i = 0; i < raw.getNumColorSpaces(); ++i) {
            std::string const name = raw.getColorSpaceNameByIndex(i);
            bool const listed = std::any_of(colorSpaces.begin(), colorSpaces.end(),
                                            [&](std::string const& s) { return equalNoCase(s, name); });
            if (!listed && name != "default" && name != "rgb" && name != "RGB") {
                colorSpaces.push_back(name);
            }
        }
        displays = distinctNames([&] { return raw.getNumDisplays(); },
                                 [&](int i) { return raw.getDisplayNameByIndex(i); });
        looks = distinctNames([&] { return raw.getNumLooks(); }, [&](int i) { return raw.getLookNameByIndex(i); });
        roles = distinctNames([&] { return raw.getNumRoles(); }, [&](int i) { return raw.getRoleByIndex(i); });
        for (std::string const& display : displays) {
            Names list = distinctNames([&] { return raw.getNumViews(display); },
                                       [&](int i) { return raw.getViewNameByIndex(display, i); });
            if (!list.empty()) {
                views[display] = list;
            }
        }
        char const* d = raw.getDefaultDisplayName();
        defaultDisplay = d ? d : "";
        char const* v = raw.getDefaultViewName(defaultDisplay);
        defaultView = v ? v : "";
    }
};

/// The config files of the shared folder, with whether OpenColorIO 2.1 reads them.
std::vector<std::pair<std::string, bool>> sharedConfigs(std::string const& root)
{
    return {
        {root + "/aces-cg-config-v1.0.0_aces-v1.3_ocio-v2.1/cg-config-v1.0.0_aces-v1.3_ocio-v2.1.ocio", true},
        {root + "/ocio-v2-demo/ocio-v2_demo.ocio", true},
        {root + "/imageworks-nuke-default/config.ocio", true},
        {root + "/ocio-test-context_test1/config.ocio", true},
        {root + "/aces-cg-config-v2.1.0_aces-v1.3_ocio-v2.3/cg-config-v2.1.0_aces-v1.3_ocio-v2.3.ocio", false},
    };
}

class RealConfigs : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        char const* root = std::getenv("VERRA_SHARED_CONFIGS");
        if (!root || !stdfs::is_directory(root)) {
            GTEST_SKIP() << "the shared folder of real configs is not present";
        }
        auto const configs = sharedConfigs(stdfs::canonical(root).string());
        path = configs[static_cast<std::size_t>(GetParam())].first;
        readable = configs[static_cast<std::size_t>(GetParam())].second;
        ASSERT_TRUE(stdfs::is_regular_file(path)) << path;
    }

    verra_test::ModuleEnv env;
    std::string path;
    bool readable = false;
};

TEST_P(RealConfigs, LoadsAndListsWhatOpenImageIOEnumerates)
{
    std::string const report = ColorConfig::loadOcioConfig(orv::String(path.c_str())).buf();
    EXPECT_EQ(report, "Using specified OCIO config: " + path);

    OIIO::ColorConfig raw(path);
    EXPECT_EQ(raw.has_error(), !readable) << raw.geterror();
    Expected const expected(raw);

    EXPECT_EQ(texts(ColorConfig::colorSpaces()), expected.colorSpaces);
    EXPECT_EQ(texts(displays()), expected.displays);
    EXPECT_EQ(texts(looks()), expected.looks);
    EXPECT_EQ(texts(roles()), expected.roles);
    std::map<std::string, Names> actualViews;
    for (auto const& node : views()) {
        actualViews[node.key.buf()] = texts(node.value);
    }
    EXPECT_EQ(actualViews, expected.views);
    EXPECT_EQ(defaultDisplay().buf(), expected.defaultDisplay);
    EXPECT_EQ(defaultView().buf(), expected.defaultView);

    if (readable) {
        EXPECT_GT(expected.colorSpaces.size(), 3u);
        EXPECT_FALSE(expected.displays.empty());
    } else {
        // Too new for OpenColorIO 2.1: OpenImageIO keeps its built-in spaces.
        EXPECT_EQ(expected.colorSpaces, (Names{"linear", "sRGB", "Rec709"}));
        EXPECT_TRUE(expected.displays.empty());
    }
}

INSTANTIATE_TEST_SUITE_P(SharedFolder, RealConfigs, ::testing::Range(0, 5));

} // namespace
