#pragma once
// Suggestions for a name that was not found.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orv::verra_sdk::kit {

/// Up to `limit` entries of `candidates` that resemble `query`, fewest edits
/// first (ties keep the order of `candidates`). Letter case and blanks
/// around the names are ignored. An entry resembles the query when one
/// contains the other, or when it is a few edits away: at most a third of
/// the query's length, and always at least two. Empty when nothing
/// resembles it.
std::vector<std::string> closestNames(std::string_view query, std::vector<std::string> const& candidates,
                                      std::size_t limit);

} // namespace orv::verra_sdk::kit
