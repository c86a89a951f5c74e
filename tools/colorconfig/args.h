#pragma once
// Parsing the words that follow a subcommand's name.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace colorconfig {

/// One option a subcommand accepts.
struct OptionSpec {
    /// The long name with its dashes, e.g. "--config".
    char const* name;
    /// A short alias with its dash, e.g. "-h", or null.
    char const* shortName;
    /// The placeholder of its value in help texts ("PATH"), or null for a
    /// flag that takes no value.
    char const* valueName;
    /// True when the subcommand cannot run without it.
    bool required;
    /// One line for the help text.
    char const* help;
};

/// The options and positional arguments found on a command line.
class ParsedArgs {
public:
    /// True when the option `name` (its long name) was given.
    bool has(std::string_view name) const;
    /// The value given to the option `name`, or "" when it was not given.
    std::string value(std::string_view name) const;
    /// The positional arguments, in order.
    std::vector<std::string> const& positionals() const { return m_positionals; }

    /// Records the option `name` with `value` ("" for a flag).
    void setOption(std::string name, std::string value);
    /// Appends a positional argument.
    void addPositional(std::string word);

private:
    std::vector<std::pair<std::string, std::string>> m_options;
    std::vector<std::string> m_positionals;
};

/// The result of `parseArgs`: the arguments, or what was wrong with them.
struct ParseOutcome {
    /// What was found, up to the first error.
    ParsedArgs args;
    /// Empty on success; otherwise one sentence for the user.
    std::string error;
};

/// Parses `words` against `options`. An option's value follows it as the
/// next word or after "=" ("--to=sRGB"). A word that starts with "-" is an
/// option unless it is "-" itself or looks like a number ("-0.5"); after
/// "--" every word is positional. Fails on an unknown option, a missing
/// value, a value given to a flag, an option given twice, or a missing
/// required option.
ParseOutcome parseArgs(std::vector<OptionSpec> const& options, std::vector<std::string> const& words);

/// True when `words` hold "--help" or "-h" before any "--".
bool asksForHelp(std::vector<std::string> const& words);

/// Reads a number as strtod does (the whole word, no blanks; "inf", "-inf"
/// and "nan" included) into `value`. False for anything else.
bool parseNumber(std::string const& word, double& value);

} // namespace colorconfig
