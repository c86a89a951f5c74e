// Tests of verra_sdk/kit/names.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/names.h>

namespace verra_test {
namespace {

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

TEST_F(ColorSpaceNames, InactiveOnceInConfigOrderHiddenAndRoles)
{
    EXPECT_THAT(kit::inactiveColorSpaces(), IsEmpty());
    EXPECT_THAT(kit::hiddenColorSpaces(), IsEmpty());
    EXPECT_THAT(kit::rolesWithSpaces(), IsEmpty());
    std::string const config =
        ocioConfig({"a", "ACEScg", "ACESCG ", "c", "Linear", "rgb", "default", "Rec709x", "e"}, {},
                   "roles: {scene_linear: ACEScg, data: Rec709x}\n"
                   "inactive_colorspaces: [e, c, a, c, e]\n");
    ASSERT_THAT(load(m_env.dir().write("hidden.ocio", config)).errors, IsEmpty());
    EXPECT_EQ(kit::inactiveColorSpaces(), (Names{"a", "c", "e"}));
    EXPECT_THAT(kit::hiddenColorSpaces(),
                ElementsAre(FieldsAre("ACESCG ", kit::HiddenReason::ShadowedByEarlier, "ACEScg"),
                            FieldsAre("Linear", kit::HiddenReason::ShadowedByBuiltIn, "linear"),
                            FieldsAre("rgb", kit::HiddenReason::Reserved, ""),
                            FieldsAre("default", kit::HiddenReason::Reserved, "")));
    EXPECT_THAT(kit::rolesWithSpaces(), ElementsAre(FieldsAre("data", "Rec709x"), FieldsAre("scene_linear", "ACEScg")));
}

} // namespace
} // namespace verra_test
