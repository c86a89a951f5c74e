// Tests of verra_sdk/kit/names.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/names.h>

namespace verra_test {
namespace {

using namespace orv::verra_sdk;
using namespace ::testing;
using ColorSpaceNames = KitTest;

/// What `resolveColorSpace(typed)` gives, as words: name, how, via.
Names resolved(std::string const& typed)
{
    kit::ResolvedName const r = kit::resolveColorSpace(typed);
    return {r.name, kit::nameMatchName(r.how), r.via};
}

TEST_F(ColorSpaceNames, ResolveSaysHowEachNameWasFoundAndSuggestsOnlyWhatConverts)
{
    EXPECT_EQ(resolved("srgb"), (Names{"sRGB", "listed", ""}));
    EXPECT_EQ(resolved("lin"), (Names{"", "unknown", ""}));
    EXPECT_EQ(kit::closestColorSpaces("srgbb"), (Names{"sRGB"}));
    ASSERT_THAT(load(sampleConfig()).errors, IsEmpty());
    std::vector<Names> const cases{
        {" LIN ", "lin", "listed", ""},
        {"LINEAR", "linear", "listed", ""},
        {"Rec709", "Rec709", "built-in isolated", ""},
        {"scene", "lin", "alias", "scene"},
        {"SRGB_TEXTURE", "srgb_tex", "alias", "srgb_texture"},
        {"COLOR_PICKING", "srgb_tex", "role", "color_picking"},
        {"Old", "old", "inactive", ""},
        {"srgb", "sRGB", "built-in shadows", "SRGB"},
        {"", "", "unknown", ""},
    };
    for (Names const& c : cases) {
        EXPECT_EQ(resolved(c[0]), Names(c.begin() + 1, c.end())) << c[0];
    }
    EXPECT_EQ(kit::closestColorSpaces("srgb_texure"), (Names{"srgb_tex", "sRGB"}));
    EXPECT_EQ(kit::closestColorSpaces("olde", 1), (Names{"old"}));
    ASSERT_THAT(load(m_env.dir().write("plain.ocio", ocioConfig({"ACEScg"}))).errors, IsEmpty());
    EXPECT_EQ(resolved("srgb"), (Names{"sRGB", "built-in isolated", ""}));
    EXPECT_THAT(kit::closestColorSpaces("srgbb"), IsEmpty());
    EXPECT_FALSE(kit::builtInConverts("linear"));
}

TEST_F(ColorSpaceNames, InactiveSpacesOnceInConfigOrder)
{
    EXPECT_THAT(kit::inactiveColorSpaces(), IsEmpty());
    std::string const config = ocioConfig({"a", "b", "c", "d", "e"}, {}, "inactive_colorspaces: [e, c, a, c, e]\n");
    ASSERT_THAT(load(m_env.dir().write("inactive.ocio", config)).errors, IsEmpty());
    EXPECT_EQ(kit::inactiveColorSpaces(), (Names{"a", "c", "e"}));
}

TEST_F(ColorSpaceNames, HiddenSpacesAndRoles)
{
    EXPECT_THAT(kit::hiddenColorSpaces(), IsEmpty());
    EXPECT_THAT(kit::rolesWithSpaces(), IsEmpty());
    std::string const config = ocioConfig({"ACEScg", "ACESCG ", "Linear", "rgb", "default", "Rec709x"}, {},
                                          "roles: {scene_linear: ACEScg, data: Rec709x}\n");
    ASSERT_THAT(load(m_env.dir().write("hidden.ocio", config)).errors, IsEmpty());
    std::vector<std::tuple<std::string, kit::HiddenReason, std::string>> hidden;
    for (kit::HiddenName const& h : kit::hiddenColorSpaces()) {
        hidden.emplace_back(h.name, h.reason, h.by);
    }
    EXPECT_EQ(hidden, (decltype(hidden){{"ACESCG ", kit::HiddenReason::ShadowedByEarlier, "ACEScg"},
                                        {"Linear", kit::HiddenReason::ShadowedByBuiltIn, "linear"},
                                        {"rgb", kit::HiddenReason::Reserved, ""},
                                        {"default", kit::HiddenReason::Reserved, ""}}));
    Names roles;
    for (kit::RoleSpace const& r : kit::rolesWithSpaces()) {
        roles.push_back(r.role + ": " + r.colorSpace);
    }
    EXPECT_EQ(roles, (Names{"data: Rec709x", "scene_linear: ACEScg"}));
}

} // namespace
} // namespace verra_test
