// The `find` subcommand: the listed form of colour-space names.

#include "command.h"
#include "console.h"
#include "json_text.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace colorconfig {

Subcommand addFind(CLI::App& program, CommonOptions& common)
{
    CLI::App* app = newSubcommand(
        program, "find", "Print the listed form of colour-space names",
        "Looks each NAME up without regard to letter case or blanks around it, and prints the name as the "
        "colour-space list holds it. Names the config knows otherwise are resolved too, and standard error says "
        "how: an alias ('alias of ...'), a role ('role scene_linear → ...'), an inactive space ('inactive'), or a "
        "built-in that shadows a config space. With several names, each line reads 'NAME: LISTED'. A name that "
        "is not found is reported on standard error with the closest names. --json prints an object {errors, "
        "results}, each result {name, colorSpace (null when not found), how ('listed', 'alias', 'role', "
        "'inactive', 'built-in shadows', 'built-in isolated' or 'unknown'), via (the alias, role or shadowed "
        "name), closest}.");
    auto names = std::make_shared<std::vector<std::string>>();
    addJsonFlag(*app, common, "Print the results as a JSON object.");
    app->add_option("NAME", *names, "Colour-space names")->type_name("")->required();
    auto const failed = [](std::vector<std::string> const& errors) { printResults(errors, Json::array()); };
    auto const run = [names, &common] {
        Json results = Json::array();
        ExitCode code = ExitCode::Success;
        for (std::string const& name : *names) {
            kit::ResolvedName const resolved = kit::resolveColorSpace(name);
            bool const found = !resolved.name.empty();
            code = found ? code : ExitCode::Failure;
            if (common.json) {
                results.push_back({{"name", name},
                                   {"colorSpace", found ? Json(resolved.name) : Json()},
                                   {"how", kit::nameMatchName(resolved.how)},
                                   {"via", resolved.via},
                                   {"closest", found ? std::vector<std::string>() : kit::closestColorSpaces(name)}});
            } else if (!found) {
                console::error("{}", kit::unknownColorSpaceText(name));
            } else {
                console::out(names->size() > 1 ? name + ": " + resolved.name : resolved.name);
                if (std::string const how = kit::resolvedNameText(resolved); !how.empty()) {
                    console::note("'{}': {}", name, how);
                }
            }
        }
        if (common.json) {
            printResults(Json::array(), results);
        }
        return code;
    };
    return {app, run, false, failed};
}

} // namespace colorconfig
