// The `info` subcommand: the configuration in use and what it offers.

#include "command.h"
#include "console.h"
#include "json_text.h"
#include "text_layout.h"

#include <verra_sdk/kit/catalogue.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>

namespace colorconfig {

namespace {

/// Display names up to this width get their views beside them.
constexpr std::size_t kDisplayColumn = 24;

std::string section(char const* title, std::vector<std::string> const& lines)
{
    std::string text = lines.empty() ? "" : std::string(title) + "\n";
    for (std::string const& line : lines) {
        text += text::wrapped("  ", line);
    }
    return lines.empty() ? text : text + "\n";
}

std::string displaysText(std::vector<kit::DisplayViews> const& displays)
{
    std::string text = "\nDisplays and their views (" + std::to_string(displays.size()) + ")\n";
    std::size_t widest = 0;
    for (kit::DisplayViews const& entry : displays) {
        widest = std::max(widest, entry.display.size());
    }
    std::size_t const column = std::min(2 + widest + 2, kDisplayColumn);
    for (kit::DisplayViews const& entry : displays) {
        std::string first = "  " + entry.display;
        if (first.size() + 2 > column) {
            text += first + '\n';
            first.clear();
        }
        first.resize(column, ' ');
        text += entry.views.empty() ? first + "(no views)\n" : text::wrappedList(first, entry.views);
    }
    return displays.empty() ? text + "  (none)\n" : text;
}

std::string orNone(std::string const& name)
{
    return name.empty() ? "(none)" : name;
}

std::string catalogueText(kit::Catalogue const& catalogue)
{
    std::string text = section("Errors", catalogue.status.errors) + section("Warnings", catalogue.status.warnings);
    text += "Config\n" + text::wrapped("  ", catalogue.status.report);
    if (!catalogue.status.usesFile()) {
        text += "  In use: the built-in colour spaces only (linear, sRGB, Rec709).\n";
    }
    std::vector<std::string> marked = catalogue.colorSpaces;
    for (std::string& name : marked) {
        name += kit::isBuiltIn(name) ? "*" : "";
    }
    text += text::nameColumns("Colour spaces", marked);
    text += "  * built in: the module's own, listed before the config's\n";
    text += text::nameColumns("Inactive colour spaces, accepted by name", catalogue.inactive);
    text += text::pairColumns("Config colour spaces the list hides", hiddenPairs(catalogue.hidden));
    text += "\nDefault display  " + orNone(catalogue.defaultDisplay) + "\n";
    text += "Default view     " + orNone(catalogue.defaultView) + "\n";
    text += displaysText(catalogue.displays);
    text += text::nameColumns("Looks", catalogue.looks);
    return text + text::pairColumns("Roles and their colour spaces", rolePairs(catalogue.roles));
}

Json catalogueJson(kit::Catalogue const& catalogue)
{
    Json displays = Json::array();
    for (kit::DisplayViews const& entry : catalogue.displays) {
        displays.push_back({{"name", entry.display}, {"views", entry.views}});
    }
    std::vector<std::string> builtIns;
    std::copy_if(catalogue.colorSpaces.begin(), catalogue.colorSpaces.end(), std::back_inserter(builtIns),
                 [](std::string const& name) { return kit::isBuiltIn(name); });
    return {{"report", catalogue.status.report},
            {"configFile", catalogue.status.file},
            {"errors", catalogue.status.errors},
            {"warnings", catalogue.status.warnings},
            {"colorSpaces", catalogue.colorSpaces},
            {"builtIns", builtIns},
            {"inactiveColorSpaces", catalogue.inactive},
            {"hidden", pairsJson(hiddenPairs(catalogue.hidden), "reason")},
            {"defaultDisplay", catalogue.defaultDisplay},
            {"defaultView", catalogue.defaultView},
            {"displays", displays},
            {"looks", catalogue.looks},
            {"roles", pairsJson(rolePairs(catalogue.roles), "colorSpace")}};
}

} // namespace

Subcommand addInfo(CLI::App& program, CommonOptions& common)
{
    CLI::App* app = newSubcommand(
        program, "info", "Show which config is used and what it offers",
        "Loads the config, prints the report of how it was chosen, then the catalogue: colour spaces (the "
        "built-ins marked), the config's inactive spaces (accepted by name), the config's spaces that the list "
        "hides behind a built-in or another name, default display and view, each display with its views, looks, "
        "and roles with their colour spaces. Errors (a config set and not had) and warnings (files the config "
        "names that are missing) come first. --json prints an object with the members report, configFile, "
        "errors, warnings, colorSpaces, builtIns, inactiveColorSpaces, hidden ({name, reason}), defaultDisplay, "
        "defaultView, displays ({name, views}), looks and roles ({name, colorSpace}).");
    addJsonFlag(*app, common, "Print the same content as a JSON object, for scripts.");
    auto const context = std::make_shared<kit::ContextVariables>();
    addContext(*app, *context);
    auto const run = [&common, context] {
        kit::Catalogue const catalogue = kit::readCatalogue(*context);
        if (common.json) {
            printJson(catalogueJson(catalogue));
        } else {
            console::print(catalogueText(catalogue));
        }
        return ExitCode::Success;
    };
    return {app, run, true, nullptr};
}

} // namespace colorconfig
