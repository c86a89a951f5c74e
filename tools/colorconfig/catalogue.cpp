#include "catalogue.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/strutil.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace colorconfig {

namespace {

namespace sdk = orv::verra_sdk;

namespace Strutil = OIIO::Strutil;

/// The widest line: one less than 80, so that no terminal wraps it.
constexpr int kLineWidth = 79;
/// Indent of the entries under a heading.
constexpr int kIndent = 2;
/// Display names up to this width get their views beside them.
constexpr std::size_t kDisplayColumn = 24;

std::vector<std::string> toStrings(orv::StringVector const& list)
{
    std::vector<std::string> strings;
    for (orv::String const& item : list) {
        strings.emplace_back(item.view());
    }
    return strings;
}

/// `text` after `first`, broken at blanks into lines of at most kLineWidth,
/// the lines after the first indented to the width of `first`.
std::string wrapped(std::string const& first, std::string_view text)
{
    return first + Strutil::wordwrap(text, kLineWidth, static_cast<int>(first.size())) + "\n";
}

/// `names` joined with ", ", broken only between two names.
std::string wrappedList(std::string const& first, std::vector<std::string> const& names)
{
    // A unit separator stands for the blanks inside names while the text is
    // broken at blanks.
    std::vector<std::string> protectedNames;
    for (std::string const& name : names) {
        protectedNames.push_back(Strutil::replace(name, " ", "\x1f", true));
    }
    return Strutil::replace(wrapped(first, Strutil::join(protectedNames, ", ")), "\x1f", " ", true);
}

std::string heading(char const* title, std::size_t count) { return fmt::format("\n{} ({})\n", title, count); }

/// `names` row by row in columns of equal width, as many as fit in a line.
void appendNameList(std::string& text, char const* title, std::vector<std::string> const& names)
{
    text += heading(title, names.size());
    if (names.empty()) {
        text += "  (none)\n";
        return;
    }
    std::size_t widest = 0;
    for (std::string const& name : names) {
        widest = std::max(widest, name.size());
    }
    std::size_t const cell = widest + 2;
    std::size_t const perRow = std::max<std::size_t>(1, (kLineWidth - kIndent + 2) / cell);
    for (std::size_t i = 0; i < names.size(); ++i) {
        bool const last = i + 1 == names.size() || (i + 1) % perRow == 0;
        text += (i % perRow == 0 ? std::string(kIndent, ' ') : std::string());
        text += last ? names[i] + "\n" : fmt::format("{:<{}}", names[i], cell);
    }
}

void appendDisplays(std::string& text, Catalogue const& catalogue)
{
    text += heading("Displays and their views", catalogue.displays.size());
    if (catalogue.displays.empty()) {
        text += "  (none)\n";
        return;
    }
    std::size_t widest = 0;
    for (auto const& [display, unused] : catalogue.displays) {
        widest = std::max(widest, display.size());
    }
    std::size_t const column = std::min(kIndent + widest + 2, kDisplayColumn);
    for (auto const& [display, views] : catalogue.displays) {
        std::string first = std::string(kIndent, ' ') + display;
        if (first.size() + 2 > column) {
            text += first + '\n';
            first.clear();
        }
        first = fmt::format("{:<{}}", first, column);
        text += views.empty() ? first + "(no views)\n" : wrappedList(first, views);
    }
}

std::string orNone(std::string const& name) { return name.empty() ? "(none)" : name; }

} // namespace

Catalogue readCatalogue(LoadedConfig const& config)
{
    Catalogue catalogue;
    catalogue.report = std::string(config.report.view());
    if (config.usesFile) {
        catalogue.configFile = sdk::colorConfig().configname();
    }
    catalogue.problems = config.problems;
    catalogue.colorSpaces = toStrings(sdk::ColorConfig::colorSpaces());
    catalogue.defaultDisplay = std::string(sdk::defaultDisplay().view());
    catalogue.defaultView = std::string(sdk::defaultView().view());
    orv::StringVector const displays = sdk::displays();
    orv::ds::HashMap<orv::String, orv::StringVector> const views = sdk::views();
    for (orv::String const& display : displays) {
        orv::StringVector const* list = views.find(display);
        catalogue.displays.emplace_back(std::string(display.view()),
                                        list != nullptr ? toStrings(*list) : std::vector<std::string>());
    }
    catalogue.looks = toStrings(sdk::looks());
    catalogue.roles = toStrings(sdk::roles());
    return catalogue;
}

std::string catalogueText(Catalogue const& catalogue)
{
    std::string text;
    if (!catalogue.problems.empty()) {
        text += "Errors\n";
        for (std::string const& problem : catalogue.problems) {
            text += wrapped("  ", problem);
        }
        text += '\n';
    }
    text += "Config\n" + wrapped("  ", catalogue.report);
    if (catalogue.configFile.empty()) {
        text += "  In use: the built-in colour spaces only (linear, sRGB, Rec709).\n";
    }
    appendNameList(text, "Colour spaces", catalogue.colorSpaces);
    text += "\nDefault display  " + orNone(catalogue.defaultDisplay) + "\n";
    text += "Default view     " + orNone(catalogue.defaultView) + "\n";
    appendDisplays(text, catalogue);
    appendNameList(text, "Looks", catalogue.looks);
    appendNameList(text, "Roles", catalogue.roles);
    return text;
}

std::string catalogueJson(Catalogue const& catalogue)
{
    nlohmann::ordered_json displays = nlohmann::ordered_json::array();
    for (auto const& [display, views] : catalogue.displays) {
        displays.push_back({{"name", display}, {"views", views}});
    }
    nlohmann::ordered_json const json{
        {"report", catalogue.report},
        {"configFile", catalogue.configFile},
        {"errors", catalogue.problems},
        {"colorSpaces", catalogue.colorSpaces},
        {"defaultDisplay", catalogue.defaultDisplay},
        {"defaultView", catalogue.defaultView},
        {"displays", displays},
        {"looks", catalogue.looks},
        {"roles", catalogue.roles},
    };
    // Bytes that are not UTF-8 (names are bytes to OpenColorIO) become U+FFFD.
    return json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

} // namespace colorconfig
