// Displays, looks, roles, the default display and view, and the views map.

#include <verra_sdk/colorconfig.h>

#include "support/module_env.h"
#include "support/names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

using namespace orv::verra_sdk;

namespace {

using verra_test::Names;
using verra_test::texts;

using ViewMap = std::map<std::string, Names>;


ViewMap asMap(orv::ds::HashMap<orv::String, orv::StringVector> const& map)
{
    ViewMap out;
    for (auto const& node : map) {
        EXPECT_EQ(out.count(node.key.buf()), 0u) << "key listed twice: " << node.key.buf();
        out[node.key.buf()] = texts(node.value);
    }
    return out;
}

/// A config with two displays sharing a view name, a display listed twice
/// in active_displays and a view listed twice in active_views.
verra_test::OcioConfigText repeatingConfig()
{
    verra_test::OcioConfigText config;
    config.colorSpaces = {"lin", "raw"};
    config.displays = {{"Monitor", {"Film", "Raw", "Log"}}, {"Projector", {"Film"}}, {"monitor", {"Raw"}}};
    config.activeDisplays = "Monitor, Projector, Monitor, monitor";
    config.activeViews = "Film, Raw, Film, Log";
    config.looks = {"warm", "cool"};
    config.roles = {{"scene_linear", "lin"}, {"data", "raw"}};
    return config;
}

class Catalogue : public ::testing::Test {
protected:
    std::string load(verra_test::OcioConfigText const& config, std::string const& name = "config.ocio")
    {
        std::string const path = env.writeConfig(name, config);
        EXPECT_EQ(std::string(ColorConfig::loadOcioConfig(orv::String(path.c_str())).buf()),
                  "Using specified OCIO config: " + path);
        return path;
    }

    verra_test::ModuleEnv env;
};

TEST_F(Catalogue, WithoutConfigEverythingIsEmpty)
{
    ColorConfig::loadOcioConfig("");
    EXPECT_TRUE(displays().empty());
    EXPECT_TRUE(looks().empty());
    EXPECT_TRUE(roles().empty());
    EXPECT_EQ(views().size(), 0u);
    EXPECT_TRUE(defaultDisplay().isEmpty());
    EXPECT_TRUE(defaultView().isEmpty());
}

TEST_F(Catalogue, DisplaysDropExactRepeatsAndKeepCaseVariants)
{
    load(repeatingConfig());
    // OpenImageIO passes the repeated active display through; the module drops it.
    OIIO::ColorConfig& raw = colorConfig();
    ASSERT_EQ(raw.getNumDisplays(), 4);
    EXPECT_EQ(texts(displays()), (Names{"Monitor", "Projector", "monitor"}));
}

TEST_F(Catalogue, ViewsMapEachDisplayToItsViewsInOrderWithoutRepeats)
{
    load(repeatingConfig());
    ASSERT_EQ(colorConfig().getNumViews("Monitor"), 4);
    // OpenColorIO finds a display's views without regard to case, so the
    // display "monitor" shows the views of "Monitor".
    EXPECT_EQ(asMap(views()), (ViewMap{{"Monitor", {"Film", "Raw", "Log"}},
                                       {"Projector", {"Film"}},
                                       {"monitor", {"Film", "Raw", "Log"}}}));
}

TEST_F(Catalogue, LooksAndRolesAreListed)
{
    load(repeatingConfig());
    EXPECT_EQ(texts(looks()), (Names{"warm", "cool"}));
    Names roleNames = texts(roles());
    std::sort(roleNames.begin(), roleNames.end());
    EXPECT_EQ(roleNames, (Names{"data", "default", "scene_linear"}));
}

TEST_F(Catalogue, DefaultsAreTheFirstActiveDisplayAndItsFirstView)
{
    load(repeatingConfig());
    EXPECT_STREQ(defaultDisplay().buf(), "Monitor");
    EXPECT_STREQ(defaultView().buf(), "Film");
}

TEST_F(Catalogue, ReturnedListsAreIndependentOfTheCaches)
{
    load(repeatingConfig());
    orv::StringVector d = displays();
    orv::StringVector l = looks();
    orv::StringVector r = roles();
    d.push_back("extra");
    l.clear();
    r.push_back("extra");
    EXPECT_EQ(texts(displays()), (Names{"Monitor", "Projector", "monitor"}));
    EXPECT_EQ(texts(looks()), (Names{"warm", "cool"}));
    EXPECT_EQ(texts(roles()).size(), 3u);
}

TEST_F(Catalogue, ReturnedMapHasItsOwnBucketsButSharesTheLists)
{
    load(repeatingConfig());
    auto copy = views();
    copy.set("Added", orv::StringVector{"x"});
    copy.find("Projector")->push_back("Shared");

    auto again = views();
    EXPECT_EQ(again.find("Added"), nullptr);
    EXPECT_EQ(texts(*again.find("Projector")), (Names{"Film", "Shared"}));
}

TEST_F(Catalogue, ViewsBeforeDisplaysAreEmptyUntilDisplaysAreListed)
{
    // The shared configuration reads $OCIO itself when no file is named, so
    // the catalogue can be asked without a reset having filled the caches.
    verra_test::OcioConfigText config = repeatingConfig();
    env.ocio().set(env.writeConfig("config.ocio", config));
    EXPECT_EQ(views().size(), 0u);
    EXPECT_EQ(views().size(), 0u);
    EXPECT_EQ(displays().size(), 3u);
    EXPECT_EQ(asMap(views()).size(), 3u);
}

TEST_F(Catalogue, FilledCachesIgnoreConfigChangesUntilTheReset)
{
    load(repeatingConfig());
    verra_test::OcioConfigText other;
    other.displays = {{"Other", {"Only"}}};
    other.looks = {"other"};
    std::string const otherPath = env.writeConfig("other.ocio", other);
    ASSERT_TRUE(colorConfig().reset(otherPath));

    EXPECT_EQ(texts(displays()), (Names{"Monitor", "Projector", "monitor"}));
    EXPECT_EQ(asMap(views()).count("Monitor"), 1u);
    EXPECT_EQ(texts(looks()), (Names{"warm", "cool"}));
    // The defaults are never cached.
    EXPECT_STREQ(defaultDisplay().buf(), "Other");
    EXPECT_STREQ(defaultView().buf(), "Only");
}

} // namespace
