#pragma once
// The layout of everything the program writes for people: lines of at most
// 79 columns, so that no 80-column terminal wraps them.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace colorconfig::text {

/// The widest line: one less than 80.
constexpr int kLineWidth = 79;

/// `text` broken at blanks into lines of at most `width` columns.
std::string paragraph(std::string_view text, int width = kLineWidth);

/// `first`, then `text` broken at blanks, the lines after the first indented
/// to the width of `first`; with a final line end.
std::string wrapped(std::string const& first, std::string_view text);

/// `first`, then `names` joined by ", " as `wrapped` lays it out, broken
/// only between two names.
std::string wrappedList(std::string const& first, std::vector<std::string> const& names);

/// "\n<title> (<count>)\n", then `names` row by row in columns of equal
/// width, as many as fit in a line; "  (none)" for no names.
std::string nameColumns(std::string const& title, std::vector<std::string> const& names);

/// "\n<title> (<count>)\n", then each pair as "first  second", indented by
/// two, the seconds lined up; "  (none)" for no pairs.
std::string pairColumns(std::string const& title, std::vector<std::pair<std::string, std::string>> const& pairs);

} // namespace colorconfig::text
