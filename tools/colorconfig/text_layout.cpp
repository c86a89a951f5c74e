#include "text_layout.h"

#include <algorithm>

namespace colorconfig {

namespace {

/// Space between two columns.
constexpr std::size_t kGutter = 2;

std::vector<std::string_view> splitWords(std::string_view text)
{
    std::vector<std::string_view> words;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t const begin = text.find_first_not_of(' ', start);
        if (begin == std::string_view::npos) {
            break;
        }
        std::size_t end = text.find(' ', begin);
        if (end == std::string_view::npos) {
            end = text.size();
        }
        words.push_back(text.substr(begin, end - begin));
        start = end;
    }
    return words;
}

} // namespace

std::vector<std::string> wrapWords(std::string_view text, std::size_t width, std::string_view first,
                                   std::size_t indent)
{
    std::vector<std::string> lines;
    std::string line(first);
    bool lineHasWord = false;
    for (std::string_view const word : splitWords(text)) {
        if (lineHasWord && line.size() + 1 + word.size() > width) {
            lines.push_back(line);
            line.assign(indent, ' ');
            lineHasWord = false;
        }
        if (lineHasWord) {
            line += ' ';
        }
        line += word;
        lineHasWord = true;
    }
    lines.push_back(line);
    return lines;
}

std::vector<std::string> wrapList(std::vector<std::string> const& items, std::size_t width, std::string_view first,
                                  std::size_t indent)
{
    std::vector<std::string> lines;
    std::string line(first);
    bool lineHasItem = false;
    for (std::size_t i = 0; i < items.size(); ++i) {
        std::string const item = items[i] + (i + 1 < items.size() ? "," : "");
        if (lineHasItem && line.size() + 1 + item.size() > width) {
            lines.push_back(line);
            line.assign(indent, ' ');
            lineHasItem = false;
        }
        if (lineHasItem) {
            line += ' ';
        }
        line += item;
        lineHasItem = true;
    }
    lines.push_back(line);
    return lines;
}

std::vector<std::string> columns(std::vector<std::string> const& items, std::size_t width, std::size_t indent)
{
    std::size_t widest = 0;
    for (std::string const& item : items) {
        widest = std::max(widest, item.size());
    }
    std::size_t const room = width > indent ? width - indent : 1;
    std::size_t const cell = widest + kGutter;
    std::size_t const perLine = std::max<std::size_t>(1, (room + kGutter) / cell);

    std::vector<std::string> lines;
    std::string line;
    std::size_t inLine = 0;
    for (std::string const& item : items) {
        if (inLine == 0) {
            line.assign(indent, ' ');
        }
        ++inLine;
        bool const last = inLine == perLine;
        line += last ? item : padRight(item, cell);
        if (last) {
            lines.push_back(line);
            inLine = 0;
        }
    }
    if (inLine != 0) {
        std::size_t const end = line.find_last_not_of(' ');
        line.erase(end == std::string::npos ? 0 : end + 1);
        lines.push_back(line);
    }
    return lines;
}

std::string padRight(std::string_view text, std::size_t width)
{
    std::string padded(text);
    if (padded.size() < width) {
        padded.append(width - padded.size(), ' ');
    }
    return padded;
}

} // namespace colorconfig
