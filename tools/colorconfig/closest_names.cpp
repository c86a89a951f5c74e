#include "closest_names.h"

#include <algorithm>
#include <cctype>
#include <numeric>

namespace colorconfig {

namespace {

/// Edit distances up to this share of the query's length count as close.
constexpr std::size_t kDistanceDivisor = 3;
/// ... and always distances up to this many edits.
constexpr std::size_t kMinimumDistance = 2;

std::string folded(std::string_view text)
{
    std::size_t const begin = text.find_first_not_of(" \t\n\v\f\r");
    if (begin == std::string_view::npos) {
        return std::string();
    }
    std::size_t const end = text.find_last_not_of(" \t\n\v\f\r");
    std::string lower(text.substr(begin, end - begin + 1));
    for (char& c : lower) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return lower;
}

struct Candidate {
    std::size_t index;
    std::size_t distance;
};

} // namespace

std::size_t editDistance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            std::size_t const above = row[j];
            std::size_t const substitution = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({above + 1, row[j - 1] + 1, substitution});
            diagonal = above;
        }
    }
    return row[b.size()];
}

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
        bool const overlap = name.find(wanted) != std::string::npos || wanted.find(name) != std::string::npos;
        std::size_t const distance = editDistance(wanted, name);
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

} // namespace colorconfig
