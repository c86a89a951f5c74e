#include <verra_sdk/kit/closest_names.h>

#include <OpenImageIO/strutil.h>

#include <algorithm>

namespace orv::verra_sdk::kit {

namespace {

namespace Strutil = OIIO::Strutil;

/// Edit distances up to this share of the query's length count as close.
constexpr std::size_t kDistanceDivisor = 3;
/// ... and always distances up to this many edits.
constexpr std::size_t kMinimumDistance = 2;

/// `text` without blanks around it, in lower case.
std::string folded(std::string_view text)
{
    return Strutil::lower(Strutil::strip(text));
}

struct Candidate {
    std::size_t index;
    std::size_t distance;
};

} // namespace

std::vector<std::string> closestNames(std::string_view query, std::vector<std::string> const& candidates,
                                      std::size_t limit)
{
    std::string const wanted = folded(query);
    if (wanted.empty()) {
        return {};
    }
    std::size_t const threshold = std::max(kMinimumDistance, wanted.size() / kDistanceDivisor);
    std::vector<Candidate> close;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        std::string const name = folded(candidates[i]);
        if (name.empty()) {
            continue;
        }
        bool const overlap = Strutil::contains(name, wanted) || Strutil::contains(wanted, name);
        std::size_t const distance = Strutil::edit_distance(wanted, name);
        if (overlap || distance <= threshold) {
            close.push_back({i, distance});
        }
    }
    std::stable_sort(close.begin(), close.end(),
                     [](Candidate const& a, Candidate const& b) { return a.distance < b.distance; });
    std::vector<std::string> names;
    for (std::size_t i = 0; i < close.size() && i < limit; ++i) {
        names.push_back(candidates[close[i].index]);
    }
    return names;
}

} // namespace orv::verra_sdk::kit
