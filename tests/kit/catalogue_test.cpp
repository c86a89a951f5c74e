// Tests of verra_sdk/kit/catalogue.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/catalogue.h>

namespace verra_test {
namespace {

using namespace orv::verra_sdk;
using namespace ::testing;
using Catalogue = KitTest;

TEST_F(Catalogue, CopiesWhatTheConfigOffers)
{
    kit::Catalogue const builtIns = kit::readCatalogue();
    EXPECT_EQ(builtIns.colorSpaces, (Names{"linear", "sRGB", "Rec709"}));
    EXPECT_THAT(builtIns.displays, IsEmpty());
    std::string const config = sampleConfig("  - !<ColorSpace> {name: unused}\n");
    ASSERT_THAT(load(config).errors, IsEmpty());
    kit::Catalogue const c = kit::readCatalogue();
    EXPECT_EQ(c.status.file, config);
    EXPECT_EQ(c.colorSpaces, (Names{"linear", "sRGB", "Rec709", "lin", "raw", "srgb_tex", "tone", "unused"}));
    EXPECT_EQ(c.inactive, (Names{"old"}));
    EXPECT_THAT(c.hidden, ElementsAre(Field(&kit::HiddenName::name, "SRGB")));
    EXPECT_EQ((Names{c.defaultDisplay, c.defaultView}), (Names{"Monitor", "Tone"}));
    EXPECT_EQ(c.looks, (Names{"Bright"}));
    ASSERT_EQ(c.displays.size(), 1u);
    EXPECT_EQ(c.displays[0].display, "Monitor");
    EXPECT_EQ(c.displays[0].views, (Names{"Tone", "Standard", "Raw"}));
    Names roles;
    for (kit::RoleSpace const& r : c.roles) {
        roles.push_back(r.role + ": " + r.colorSpace);
    }
    EXPECT_EQ(roles, (Names{"color_picking: srgb_tex", "default: lin", "scene_linear: lin"}));
}

} // namespace
} // namespace verra_test
