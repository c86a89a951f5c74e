#include "command.h"

#include "console.h"
#include "text_layout.h"

#include <verra_sdk/kit/processor_check.h>

namespace colorconfig {

void reportUnknownColorSpace(std::string const& typed)
{
    std::vector<std::string> const closest = kit::closestColorSpaces(typed);
    if (closest.empty()) {
        console::error("unknown colour space '{}' ('colorconfig info' lists them all)", typed);
    } else {
        console::error("unknown colour space '{}'; closest: {}", typed, text::quoted(closest));
    }
}

std::string colorSpaceNamed(std::string const& typed)
{
    kit::ResolvedName resolved = kit::resolveColorSpace(typed);
    if (resolved.name.empty()) {
        reportUnknownColorSpace(typed);
    }
    return std::move(resolved.name);
}

std::pair<std::string, std::string> conversionNamed(std::string const& fromTyped, std::string const& toTyped)
{
    std::string const from = fromTyped == "auto" ? fromTyped : colorSpaceNamed(fromTyped);
    std::string const to = colorSpaceNamed(toTyped);
    if (from.empty() || to.empty()) {
        return {};
    }
    if (std::string const problem = from == "auto" ? "" : kit::conversionProblem(from, to); !problem.empty()) {
        console::error("cannot convert from '{}' to '{}': {}", from, to, problem);
        return {};
    }
    return {from, to};
}

std::string guessStep(kit::FileGuess const& guess, std::string& note)
{
    note.clear();
    if (guess.step == kit::GuessStep::FileRule) {
        return "file rule '" + guess.rule + "'";
    }
    if (!guess.rule.empty()) {
        note = "rule '" + guess.rule + "' names " + (guess.ruleNamesRole ? "the role '" : "'") + guess.ruleAnswer + "'";
    }
    return kit::guessStepName(guess.step);
}

std::vector<std::pair<std::string, std::string>> hiddenPairs(std::vector<kit::HiddenName> const& hidden)
{
    std::vector<std::pair<std::string, std::string>> pairs;
    for (kit::HiddenName const& name : hidden) {
        pairs.emplace_back(name.name, kit::hiddenReasonText(name));
    }
    return pairs;
}

std::vector<std::pair<std::string, std::string>> rolePairs(std::vector<kit::RoleSpace> const& roles)
{
    std::vector<std::pair<std::string, std::string>> pairs;
    for (kit::RoleSpace const& role : roles) {
        pairs.emplace_back(role.role, role.colorSpace);
    }
    return pairs;
}

} // namespace colorconfig
