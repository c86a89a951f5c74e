#include "command.h"

#include "console.h"

namespace colorconfig {

void reportUnknownColorSpace(std::string const& typed)
{
    console::error("{}", kit::unknownColorSpaceText(typed));
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
