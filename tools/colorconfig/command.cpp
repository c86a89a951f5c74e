#include "command.h"

namespace colorconfig {

ExitCode failure(std::string const& message)
{
    console::error("{}", message);
    return ExitCode::Failure;
}

ExitCode printAnswers(std::vector<std::string> const& words, bool json,
                      std::function<Answer(std::string const& word)> const& answer)
{
    Json results = Json::array();
    ExitCode code = ExitCode::Success;
    for (std::string const& word : words) {
        Answer const said = answer(word);
        code = said.found.empty() ? ExitCode::Failure : code;
        if (json) {
            results.push_back(said.json);
        } else if (said.found.empty()) {
            console::error("{}", said.text);
        } else {
            console::out(words.size() > 1 ? word + ": " + said.found : said.found);
            if (!said.text.empty()) {
                console::note("'{}': {}", word, said.text);
            }
        }
    }
    if (json) {
        printJson({{"errors", Json::array()}, {"results", results}});
    }
    return code;
}

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
