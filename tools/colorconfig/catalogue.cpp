#include "catalogue.h"

#include "json_writer.h"
#include "text_layout.h"

#include <verra_sdk/colorconfig.h>

#include <algorithm>

namespace colorconfig {

namespace {

namespace sdk = orv::verra_sdk;

/// Indent of the entries under a heading.
constexpr std::size_t kIndent = 2;
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

void appendLines(std::string& text, std::vector<std::string> const& lines)
{
    for (std::string const& line : lines) {
        text += line;
        text += '\n';
    }
}

std::string heading(char const* title, std::size_t count)
{
    return std::string(title) + " (" + std::to_string(count) + ")\n";
}

void appendNameList(std::string& text, char const* title, std::vector<std::string> const& names)
{
    text += '\n';
    text += heading(title, names.size());
    if (names.empty()) {
        text += "  (none)\n";
        return;
    }
    appendLines(text, columns(names, kLineWidth, kIndent));
}

std::vector<std::string> viewLines(std::vector<std::string> const& views, std::string const& first,
                                   std::size_t column)
{
    if (views.empty()) {
        return {first + "(no views)"};
    }
    return wrapList(views, kLineWidth, first, column);
}

void appendDisplays(std::string& text, Catalogue const& catalogue)
{
    text += '\n';
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
        std::string const first = std::string(kIndent, ' ') + display;
        if (first.size() + 2 > column) {
            text += first + '\n';
            appendLines(text, viewLines(views, std::string(column, ' '), column));
        } else {
            appendLines(text, viewLines(views, padRight(first, column), column));
        }
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
            appendLines(text, wrapWords(problem, kLineWidth, std::string(kIndent, ' '), kIndent));
        }
        text += '\n';
    }
    text += "Config\n";
    appendLines(text, wrapWords(catalogue.report, kLineWidth, std::string(kIndent, ' '), kIndent));
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
    JsonWriter json;
    json.beginObject();
    json.string("report", catalogue.report);
    json.string("configFile", catalogue.configFile);
    json.stringArray("errors", catalogue.problems);
    json.stringArray("colorSpaces", catalogue.colorSpaces);
    json.string("defaultDisplay", catalogue.defaultDisplay);
    json.string("defaultView", catalogue.defaultView);
    json.beginArray("displays");
    for (auto const& [display, views] : catalogue.displays) {
        json.beginObject();
        json.string("name", display);
        json.stringArray("views", views);
        json.endObject();
    }
    json.endArray();
    json.stringArray("looks", catalogue.looks);
    json.stringArray("roles", catalogue.roles);
    json.endObject();
    return json.text();
}

} // namespace colorconfig
