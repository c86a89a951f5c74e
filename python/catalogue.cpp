// The configuration and its catalogue: loading, the name lists, looking
// names up, guessing a file's colour space, checking the configuration.

#include "binding.h"

#include <verra_sdk/colorconfig.h>
#include <verra_sdk/kit/config_check.h>
#include <verra_sdk/kit/config_load.h>
#include <verra_sdk/kit/names.h>

#include <pybind11/stl.h>

#include <optional>

namespace verra_python {

namespace {

namespace kit = orv::verra_sdk::kit;
using orv::verra_sdk::ColorConfig;

std::vector<std::string> strings(orv::StringVector const& list)
{
    std::vector<std::string> out;
    for (orv::String const& item : list) {
        out.emplace_back(item.view());
    }
    return out;
}

/// A catalogue list of the module, e.g. `orv::verra_sdk::displays`.
template <orv::StringVector (*list)()>
py::list moduleList()
{
    return texts(callModule([](ErrorCapture&) { return strings(list()); }));
}

template <orv::String (*name)()>
py::str moduleName()
{
    return text(callModule([](ErrorCapture&) { return std::string(name().view()); }));
}

py::dict statusDict(kit::ConfigStatus const& status)
{
    py::dict dict;
    dict["report"] = text(status.report);
    dict["source"] = text(orv::verra_sdk::configSourceName(status.source));
    dict["file"] = text(status.file);
    dict["errors"] = texts(status.errors);
    dict["warnings"] = texts(status.warnings);
    return dict;
}

/// Each (name, value) as {"name": name, `second`: value}.
template <class Item, class Value>
py::list pairs(std::vector<Item> const& items, char const* second, Value const& value)
{
    py::list list;
    for (Item const& item : items) {
        auto const [name, other] = value(item);
        py::dict entry;
        entry["name"] = text(name);
        entry[second] = text(other);
        list.append(entry);
    }
    return list;
}

py::list failures(std::vector<kit::Failure> const& items)
{
    return pairs(items, "reason", [](kit::Failure const& f) { return std::pair(f.what, f.reason); });
}

/// The object of `colorconfig check --json`, member for member.
py::dict checkDict(kit::CheckReport const& report)
{
    std::vector<std::string> errors = report.status.errors;
    errors.insert(errors.end(), report.status.warnings.begin(), report.status.warnings.end());
    py::list rules;
    for (kit::FileNameGuess const& name : report.fileNames) {
        py::dict rule;
        rule["file"] = text(name.file);
        rule["colorSpace"] = text(name.guess.colorSpace);
        rule["step"] = text(kit::guessStepName(name.guess.step));
        rule["rule"] = text(name.guess.rule);
        rules.append(rule);
    }
    py::dict dict;
    dict["configFile"] = text(report.status.file);
    dict["ok"] = !report.broken();
    dict["errors"] = texts(errors);
    dict["validation"] = text(report.validation);
    dict["colorSpacesTried"] = report.colorSpaceCount;
    dict["failedColorSpaces"] = failures(report.colorSpaces);
    dict["viewsTried"] = report.viewCount;
    dict["failedViews"] = failures(report.views);
    dict["looksTried"] = report.lookCount;
    dict["failedLooks"] = failures(report.looks);
    dict["hidden"] = pairs(report.hidden, "reason",
                           [](kit::HiddenName const& h) { return std::pair(h.name, kit::hiddenReasonText(h)); });
    dict["roles"] =
        pairs(report.roles, "colorSpace", [](kit::RoleSpace const& r) { return std::pair(r.role, r.colorSpace); });
    dict["fileRules"] = rules;
    dict["defaultDisplay"] = text(report.defaultDisplay);
    dict["defaultView"] = text(report.defaultView);
    return dict;
}

} // namespace

void addCatalogue(py::module_& m)
{
    m.def(
        "load_ocio_config",
        [](std::string const& path) {
            return text(callModule([&](ErrorCapture&) { return kit::loadConfig(path).report; }));
        },
        py::arg("path") = "",
        "Chooses the process's OpenColorIO configuration and returns the module's one-line report.\n\n"
        "`path` is a config file, or the name of an environment variable holding one (NAME, $NAME or "
        "%NAME%); empty: ocio.txt in the user's product directory, then $OCIO, then the built-in colour "
        "spaces. Never raises for a config that is missing or refused: the report names what was chosen, "
        "and config_status() tells whether the config that was set is the one in use.");
    m.def(
        "config_status", [] { return statusDict(callModule([](ErrorCapture&) { return kit::configStatus(); })); },
        "The status of the latest load_ocio_config(): a dict with 'report', 'source' (\"built-ins\", "
        "\"argument path\", \"argument variable\", \"ocio.txt\" or \"OCIO variable\"), 'file' (the config "
        "file in use, or ''), 'errors' (why the config that was set is not the one in use) and 'warnings' "
        "(files the config names and OpenColorIO cannot find).");
    m.def("color_spaces", &moduleList<&ColorConfig::colorSpaces>,
          "The module's colour spaces: 'linear', 'sRGB', 'Rec709', then the config's, without repeats "
          "apart from case and without 'default', 'rgb' and 'RGB'.");
    m.def("displays", &moduleList<&orv::verra_sdk::displays>, "The config's displays, in its order.");
    m.def("looks", &moduleList<&orv::verra_sdk::looks>, "The config's looks, in its order.");
    m.def("roles", &moduleList<&orv::verra_sdk::roles>,
          "The config's role names (not their colour spaces: see roles_with_spaces()).");
    m.def("default_display", &moduleName<&orv::verra_sdk::defaultDisplay>,
          "The config's default display, or '' when it has none.");
    m.def("default_view", &moduleName<&orv::verra_sdk::defaultView>,
          "The default view of the default display, or '' when there is none.");
    m.def(
        "views",
        [] {
            auto const views = callModule([](ErrorCapture&) {
                std::vector<std::pair<std::string, std::vector<std::string>>> out;
                orv::StringVector const displays = orv::verra_sdk::displays();
                auto const map = orv::verra_sdk::views();
                for (orv::String const& display : displays) {
                    if (orv::StringVector const* list = map.find(display)) {
                        out.emplace_back(display.view(), strings(*list));
                    }
                }
                return out;
            });
            py::dict dict;
            for (auto const& [display, names] : views) {
                dict[text(display)] = texts(names);
            }
            return dict;
        },
        "Each display of displays() that has views, mapped to its views in the config's order.");
    m.def(
        "find_color_space",
        [](std::string const& name) {
            return text(callModule(
                [&](ErrorCapture&) { return std::string(ColorConfig::findColorSpace(orv::String(name)).view()); }));
        },
        py::arg("name"),
        "The listed form of the colour space `name` (compared trimmed and without regard to case), or '' "
        "when the list has no such name, as the module answers. resolve_color_space() also knows aliases, "
        "roles and inactive spaces.");
    m.def(
        "parse_color_space",
        [](std::string const& fileName, bool fallback) {
            return text(callModule([&](ErrorCapture&) {
                return std::string(ColorConfig::parseColorSpace(orv::String(fileName), fallback).view());
            }));
        },
        py::arg("file_name"), py::arg("fallback") = true,
        "The colour space of the file `file_name` from its name: the config's file rules, then a colour-space "
        "name in the text, then (with `fallback`) 'sRGB' for png, jpg, tga and bmp files and 'linear' for "
        "others. '' when nothing answered and `fallback` is False.");
    m.def(
        "resolve_color_space",
        [](std::string const& name) -> py::object {
            auto const resolved = callModule([&](ErrorCapture&) { return kit::resolveColorSpace(name); });
            if (resolved.name.empty()) {
                return py::none();
            }
            return py::make_tuple(text(resolved.name), text(kit::nameMatchName(resolved.how)));
        },
        py::arg("name"),
        "(canonical name, how) for a typed colour-space name, or None when nothing matches. `how` is "
        "'listed', 'built-in shadows', 'built-in isolated', 'alias', 'role' or 'inactive'.");
    m.def(
        "closest_color_spaces",
        [](std::string const& name, std::size_t limit) {
            return texts(callModule([&](ErrorCapture&) { return kit::closestColorSpaces(name, limit); }));
        },
        py::arg("name"), py::arg("limit") = 3,
        "Up to `limit` colour-space names that resemble `name`, closest first (for 'did you mean').");
    m.def(
        "inactive_color_spaces",
        [] { return texts(callModule([](ErrorCapture&) { return kit::inactiveColorSpaces(); })); },
        "The config's inactive colour spaces: not listed, accepted by name.");
    m.def(
        "roles_with_spaces",
        [] {
            auto const roles = callModule([](ErrorCapture&) { return kit::rolesWithSpaces(); });
            py::dict dict;
            for (kit::RoleSpace const& role : roles) {
                dict[text(role.role)] = text(role.colorSpace);
            }
            return dict;
        },
        "Each role of the config file mapped to its colour space, in the config's order.");
    m.def(
        "check_config",
        [](std::optional<std::string> const& path, ContextDict const& context) {
            return checkDict(callModule([&](ErrorCapture&) {
                if (path) {
                    kit::loadConfig(*path);
                }
                return kit::checkConfig(contextOf(context));
            }));
        },
        py::arg("path") = py::none(), py::kw_only(), py::arg("context") = ContextDict(),
        "What works and what is broken in a config: the content of `colorconfig check --json` as a dict, "
        "'ok' False when anything is broken. With `path`, loads it first as load_ocio_config(path) does (it "
        "stays in use); with None, checks the config in use. `context` sets context variables for the check, as "
        "the environment would. Never raises for a broken config.");
}

} // namespace verra_python
