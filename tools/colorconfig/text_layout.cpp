#include "text_layout.h"

#include <OpenImageIO/strutil.h>

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

namespace colorconfig::text {

namespace {

namespace Strutil = OIIO::Strutil;

/// Indent of the entries under a heading.
constexpr std::size_t kIndent = 2;

std::string heading(std::string const& title, std::size_t count)
{
    return fmt::format("\n{} ({})\n", title, count) + (count == 0 ? "  (none)\n" : "");
}

} // namespace

std::string paragraph(std::string_view text, int width)
{
    return Strutil::wordwrap(text, width);
}

std::string wrapped(std::string const& first, std::string_view text)
{
    return first + Strutil::wordwrap(text, kLineWidth, static_cast<int>(first.size())) + "\n";
}

std::string wrappedList(std::string const& first, std::vector<std::string> const& names)
{
    // A unit separator stands for the blanks inside names, and a record
    // separator for the ", " between them, while the text is broken at blanks.
    std::string const joined = Strutil::replace(Strutil::join(names, "\x1e"), " ", "\x1f", true);
    return Strutil::replace(wrapped(first, Strutil::replace(joined, "\x1e", ", ", true)), "\x1f", " ", true);
}

std::string nameColumns(std::string const& title, std::vector<std::string> const& names)
{
    std::string text = heading(title, names.size());
    std::size_t const cell =
        std::accumulate(names.begin(), names.end(), std::size_t{2},
                        [](std::size_t most, auto const& name) { return std::max(most, name.size() + 2); });
    std::size_t const perRow = std::max<std::size_t>(1, (kLineWidth - kIndent + 2) / cell);
    for (std::size_t i = 0; i < names.size(); ++i) {
        bool const last = i + 1 == names.size() || (i + 1) % perRow == 0;
        text += i % perRow == 0 ? std::string(kIndent, ' ') : std::string();
        text += last ? names[i] + "\n" : fmt::format("{:<{}}", names[i], cell);
    }
    return text;
}

std::string pairColumns(std::string const& title, std::vector<std::pair<std::string, std::string>> const& pairs)
{
    std::size_t const width =
        std::accumulate(pairs.begin(), pairs.end(), std::size_t{0},
                        [](std::size_t most, auto const& pair) { return std::max(most, pair.first.size()); });
    std::string text = heading(title, pairs.size());
    for (auto const& [first, second] : pairs) {
        text += std::string(kIndent, ' ') + (second.empty() ? first : fmt::format("{:<{}}  {}", first, width, second));
        text += "\n";
    }
    return text;
}

} // namespace colorconfig::text
