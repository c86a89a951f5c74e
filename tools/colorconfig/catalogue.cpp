#include "catalogue.h"

#include "json_text.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/strutil.h>

#include <fmt/format.h>

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

/// `names` row by row in columns of equal width, as many as fit in a line.
void appendNameList(std::string& text, std::string const& title, std::vector<std::string> const& names)
{
    text += fmt::format("\n{} ({})\n", title, names.size());
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
    text += fmt::format("\nDisplays and their views ({})\n", catalogue.displays.size());
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

std::string pairsText(std::string const& title, std::vector<std::pair<std::string, std::string>> const& pairs)
{
    std::size_t widest = 0;
    for (auto const& [first, unused] : pairs) {
        widest = std::max(widest, first.size());
    }
    std::string text = fmt::format("\n{} ({})\n", title, pairs.size());
    for (auto const& [first, second] : pairs) {
        text += std::string(kIndent, ' ') + (second.empty() ? first : fmt::format("{:<{}}  {}", first, widest, second));
        text += "\n";
    }
    return pairs.empty() ? text + "  (none)\n" : text;
}

std::vector<std::pair<std::string, std::string>> hiddenPairs(std::vector<HiddenName> const& hidden)
{
    std::vector<std::pair<std::string, std::string>> pairs;
    for (HiddenName const& name : hidden) {
        pairs.emplace_back(name.name, name.reason);
    }
    return pairs;
}

Catalogue readCatalogue(LoadedConfig const& config)
{
    Catalogue catalogue;
    catalogue.report = std::string(config.report.view());
    if (config.usesFile) {
        catalogue.configFile = sdk::colorConfig().configname();
    }
    catalogue.problems = config.problems;
    catalogue.colorSpaces = toStrings(sdk::ColorConfig::colorSpaces());
    catalogue.inactive = inactiveColorSpaces(config.ocio);
    catalogue.hidden = hiddenNames(config.ocio);
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
    std::vector<std::pair<std::string, std::string>> const spaces = rolesWithSpaces(config.ocio);
    for (std::string const& role : toStrings(sdk::roles())) {
        auto const found = std::find_if(spaces.begin(), spaces.end(),
                                        [&role](auto const& entry) { return entry.first == role; });
        catalogue.roles.emplace_back(role, found != spaces.end() ? found->second : std::string());
    }
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
    std::vector<std::string> marked = catalogue.colorSpaces;
    for (std::string& name : marked) {
        name += isBuiltIn(name) ? "*" : "";
    }
    appendNameList(text, "Colour spaces", marked);
    text += "  * built in: the module's own, listed before the config's\n";
    appendNameList(text, "Inactive colour spaces, accepted by name", catalogue.inactive);
    text += pairsText("Config colour spaces the list hides", hiddenPairs(catalogue.hidden));
    text += "\nDefault display  " + orNone(catalogue.defaultDisplay) + "\n";
    text += "Default view     " + orNone(catalogue.defaultView) + "\n";
    appendDisplays(text, catalogue);
    appendNameList(text, "Looks", catalogue.looks);
    text += pairsText("Roles and their colour spaces", catalogue.roles);
    return text;
}

std::string catalogueJson(Catalogue const& catalogue)
{
    Json displays = Json::array();
    for (auto const& [display, views] : catalogue.displays) {
        displays.push_back({{"name", display}, {"views", views}});
    }
    std::vector<std::string> builtIns;
    std::copy_if(catalogue.colorSpaces.begin(), catalogue.colorSpaces.end(), std::back_inserter(builtIns),
                 isBuiltIn);
    Json const json{
        {"report", catalogue.report},
        {"configFile", catalogue.configFile},
        {"errors", catalogue.problems},
        {"colorSpaces", catalogue.colorSpaces},
        {"builtIns", builtIns},
        {"inactiveColorSpaces", catalogue.inactive},
        {"hidden", pairsJson(hiddenPairs(catalogue.hidden), "reason")},
        {"defaultDisplay", catalogue.defaultDisplay},
        {"defaultView", catalogue.defaultView},
        {"displays", displays},
        {"looks", catalogue.looks},
        {"roles", pairsJson(catalogue.roles, "colorSpace")},
    };
    return jsonText(json);
}

} // namespace colorconfig
