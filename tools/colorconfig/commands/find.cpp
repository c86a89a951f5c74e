// The `find` subcommand: the listed form of colour-space names.

#include "command.h"

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
    auto const run = [names, &common] {
        return printAnswers(*names, common.json, [](std::string const& name) {
            kit::ResolvedName const resolved = kit::resolveColorSpace(name);
            bool const found = !resolved.name.empty();
            Json json = {{"name", name},
                         {"colorSpace", found ? Json(resolved.name) : Json()},
                         {"how", kit::nameMatchName(resolved.how)},
                         {"via", resolved.via},
                         {"closest", found ? std::vector<std::string>() : kit::closestColorSpaces(name)}};
            return Answer{json, resolved.name,
                          found ? kit::resolvedNameText(resolved) : kit::unknownColorSpaceText(name)};
        });
    };
    return {app, run, false, R"({"errors": [], "results": []})"};
}

} // namespace colorconfig
