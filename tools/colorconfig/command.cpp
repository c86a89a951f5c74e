#include "command.h"

#include "console.h"

namespace colorconfig {

std::string guessStep(kit::FileGuess const& guess, std::string& note)
{
    note = kit::passedRuleText(guess);
    return kit::guessStepText(guess);
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
