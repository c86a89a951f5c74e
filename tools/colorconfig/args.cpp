#include "args.h"

#include <cctype>
#include <cstdlib>

namespace colorconfig {

bool ParsedArgs::has(std::string_view name) const
{
    for (auto const& [key, unused] : m_options) {
        if (key == name) {
            return true;
        }
    }
    return false;
}

std::string ParsedArgs::value(std::string_view name) const
{
    for (auto const& [key, text] : m_options) {
        if (key == name) {
            return text;
        }
    }
    return std::string();
}

void ParsedArgs::setOption(std::string name, std::string value)
{
    m_options.emplace_back(std::move(name), std::move(value));
}

void ParsedArgs::addPositional(std::string word) { m_positionals.push_back(std::move(word)); }

namespace {

/// True for words such as "-0.5", "-.25", "-1e-3", "-inf" or "-nan":
/// numbers, not options.
bool looksNumeric(std::string const& word)
{
    if (word.size() < 2 || word[0] != '-') {
        return false;
    }
    double unused = 0.0;
    return parseNumber(word, unused);
}

bool isOptionWord(std::string const& word)
{
    return word.size() > 1 && word[0] == '-' && !looksNumeric(word);
}

OptionSpec const* findOption(std::vector<OptionSpec> const& options, std::string_view word)
{
    for (OptionSpec const& option : options) {
        if (word == option.name || (option.shortName != nullptr && word == option.shortName)) {
            return &option;
        }
    }
    return nullptr;
}

} // namespace

ParseOutcome parseArgs(std::vector<OptionSpec> const& options, std::vector<std::string> const& words)
{
    ParseOutcome outcome;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string const& word = words[i];
        if (optionsEnded || !isOptionWord(word)) {
            outcome.args.addPositional(word);
            continue;
        }
        if (word == "--") {
            optionsEnded = true;
            continue;
        }
        std::size_t const equals = word.find('=');
        std::string const name = word.substr(0, equals);
        OptionSpec const* option = findOption(options, name);
        if (option == nullptr) {
            outcome.error = "unknown option '" + name + "'";
            return outcome;
        }
        if (outcome.args.has(option->name)) {
            outcome.error = "option '" + std::string(option->name) + "' given twice";
            return outcome;
        }
        if (option->valueName == nullptr) {
            if (equals != std::string::npos) {
                outcome.error = "option '" + std::string(option->name) + "' takes no value";
                return outcome;
            }
            outcome.args.setOption(option->name, std::string());
            continue;
        }
        if (equals != std::string::npos) {
            outcome.args.setOption(option->name, word.substr(equals + 1));
            continue;
        }
        if (i + 1 >= words.size()) {
            outcome.error = "option '" + std::string(option->name) + "' needs a value (" + option->valueName + ")";
            return outcome;
        }
        outcome.args.setOption(option->name, words[++i]);
    }
    for (OptionSpec const& option : options) {
        if (option.required && !outcome.args.has(option.name)) {
            outcome.error = "missing option '" + std::string(option.name) + " " + option.valueName + "'";
            return outcome;
        }
    }
    return outcome;
}

bool asksForHelp(std::vector<std::string> const& words)
{
    for (std::string const& word : words) {
        if (word == "--") {
            return false;
        }
        if (word == "--help" || word == "-h") {
            return true;
        }
    }
    return false;
}

bool parseNumber(std::string const& word, double& value)
{
    if (word.empty() || std::isspace(static_cast<unsigned char>(word[0])) != 0) {
        return false;
    }
    // Infinities and NaN are numbers too ("inf", "-inf", "nan"); an overflow
    // gives an infinity and an underflow a tiny or zero value, as strtod
    // rounds them.
    char* end = nullptr;
    double const parsed = std::strtod(word.c_str(), &end);
    if (end != word.c_str() + word.size()) {
        return false;
    }
    value = parsed;
    return true;
}

} // namespace colorconfig
