// Tests of verra_sdk/kit/catalogue.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/catalogue.h>

namespace verra_test {
namespace {

using Catalogue = KitTest;

TEST_F(Catalogue, CopiesWhatTheConfigOffers)
{
    EXPECT_THAT(kit::readCatalogue(),
                AllOf(Field(&kit::Catalogue::colorSpaces, ElementsAre("linear", "sRGB", "Rec709")),
                      Field(&kit::Catalogue::displays, IsEmpty())));
    std::string const config = sampleConfig("  - !<ColorSpace> {name: unused}\n");
    ASSERT_THAT(load(config).errors, IsEmpty());
    // Status, colour spaces, inactive, hidden, default display and view, displays, looks, roles.
    EXPECT_THAT(kit::readCatalogue(),
                FieldsAre(Field(&kit::ConfigStatus::file, config),
                          ElementsAre("linear", "sRGB", "Rec709", "lin", "raw", "srgb_tex", "tone", "unused"),
                          ElementsAre("old"), ElementsAre(Field(&kit::HiddenName::name, "SRGB")), "Monitor", "Tone",
                          ElementsAre(FieldsAre("Monitor", ElementsAre("Tone", "Standard", "Raw"))),
                          ElementsAre("Bright"),
                          ElementsAre(FieldsAre("color_picking", "srgb_tex"), FieldsAre("default", "lin"),
                                      FieldsAre("scene_linear", "lin"))));
}

} // namespace
} // namespace verra_test
