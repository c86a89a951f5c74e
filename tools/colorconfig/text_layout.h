#pragma once
// Laying text out for an 80-column terminal.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace colorconfig {

/// The widest line the program prints for people: one less than 80, so that
/// no terminal wraps it.
constexpr std::size_t kLineWidth = 79;

/// `text` broken at spaces into lines of at most `width` bytes, each line
/// after the first starting with `indent` spaces as well as `first` does for
/// the first one. A word longer than a line stands alone on its line.
std::vector<std::string> wrapWords(std::string_view text, std::size_t width, std::string_view first,
                                   std::size_t indent);

/// `items` joined with ", ", broken into lines of at most `width` bytes only
/// between two items (after the comma), laid out as `wrapWords` does.
std::vector<std::string> wrapList(std::vector<std::string> const& items, std::size_t width, std::string_view first,
                                  std::size_t indent);

/// `items` laid out row by row in columns of equal width, each line starting
/// with `indent` spaces and none longer than `width` (unless an item alone is
/// longer, which then gets a line of its own).
std::vector<std::string> columns(std::vector<std::string> const& items, std::size_t width, std::size_t indent);

/// `text` padded with spaces to `width` bytes (unchanged when longer).
std::string padRight(std::string_view text, std::size_t width);

} // namespace colorconfig
