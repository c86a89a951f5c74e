// Tests of verra_sdk/kit/closest_names.h.

#include "support/kit_env.h"

#include <verra_sdk/kit/closest_names.h>

namespace verra_test {
namespace {

using orv::verra_sdk::kit::closestNames;

TEST(ClosestNames, FewestEditsFirstWithinAThirdOfTheQuery)
{
    // Query, candidates, limit, expected.
    std::vector<std::tuple<std::string, Names, std::size_t, Names>> const cases{
        // Containment either way, then distances; ties keep the candidates' order.
        {" SRGB ", {"srgb_tex", "", " ", "xyz", "rgb", "sRGB", "srgx"}, 5, {"sRGB", "rgb", "srgx", "srgb_tex"}},
        {"srgb", {"srgb_tex", "rgb", "sRGB"}, 2, {"sRGB", "rgb"}},
        // Short queries allow two edits.
        {"abcd", {"abxy", "axyz", "ab"}, 3, {"abxy", "ab"}},
        // Twelve letters allow four edits, not five.
        {"abcdefghijkl", {"abcdefgvwxyz", "abcdefghwxyz"}, 3, {"abcdefghwxyz"}},
        {"  ", {"a", ""}, 3, {}},
        {"abc", {"abc"}, 0, {}},
    };
    for (auto const& [query, candidates, limit, expected] : cases) {
        EXPECT_EQ(closestNames(query, candidates, limit), expected) << query;
    }
}

} // namespace
} // namespace verra_test
