#include "help.h"

#include "text_layout.h"


#ifndef COLORCONFIG_VERSION
#error "COLORCONFIG_VERSION must be defined by the build"
#endif

namespace colorconfig {

namespace {

/// Widths of the left column, indent included: options, subcommands, exit codes.
constexpr std::size_t kOptionColumn = 22;
constexpr std::size_t kCommandColumn = 12;
constexpr std::size_t kCodeColumn = 5;

void appendLines(std::string& text, std::vector<std::string> const& lines)
{
    for (std::string const& line : lines) {
        text += line;
        text += '\n';
    }
}

void appendParagraph(std::string& text, std::string_view paragraph)
{
    appendLines(text, wrapWords(paragraph, kLineWidth, "", 0));
}

/// "  term    help text wrapped under itself".
void appendTerm(std::string& text, std::string const& term, std::string_view help, std::size_t column)
{
    std::string const first = "  " + term;
    if (first.size() + 1 >= column) {
        text += first + '\n';
        appendLines(text, wrapWords(help, kLineWidth, std::string(column, ' '), column));
        return;
    }
    appendLines(text, wrapWords(help, kLineWidth, padRight(first, column), column));
}

std::string optionTerm(OptionSpec const& option)
{
    std::string term = option.shortName != nullptr ? std::string(option.shortName) + ", " : std::string();
    term += option.name;
    if (option.valueName != nullptr) {
        term += ' ';
        term += option.valueName;
    }
    return term;
}

void appendExitCodes(std::string& text)
{
    text += "Exit status:\n";
    appendTerm(text, "0", "Success.", kCodeColumn);
    appendTerm(text, "1",
               "A conversion or lookup failed: an unknown colour space, a file that cannot be read or written, "
               "a conversion the config cannot make.",
               kCodeColumn);
    appendTerm(text, "2",
               "Bad usage: an unknown subcommand or option, a missing or malformed argument.", kCodeColumn);
}

} // namespace

std::string versionText() { return std::string("colorconfig ") + COLORCONFIG_VERSION + "\n"; }

std::string programHelp()
{
    std::string text = "Usage: colorconfig SUBCOMMAND [OPTIONS] [ARGUMENTS]\n"
                       "       colorconfig SUBCOMMAND --help\n"
                       "       colorconfig --help | --version\n\n";
    appendParagraph(text,
                    "Shows the OCIO colour configuration that the Verra SDK chooses, and converts colours and "
                    "images with it.");
    text += "\nSubcommands:\n";
    for (Command const& command : commands()) {
        appendTerm(text, command.name, command.summary, kCommandColumn);
    }
    text += "\nEvery subcommand takes:\n";
    for (OptionSpec const& option : commonOptions()) {
        appendTerm(text, optionTerm(option), option.help, kOptionColumn);
    }
    text += '\n';
    appendParagraph(text,
                    "The config report goes to standard output with 'info'; the other subcommands print it on "
                    "standard error with --verbose, or as a warning when the config given by --config was not "
                    "used. Errors that the colour module logs are shown on standard error as "
                    "'colorconfig: error: ...'.");
    text += '\n';
    appendExitCodes(text);
    return text;
}

std::string commandHelp(Command const& command)
{
    std::string text;
    for (std::size_t i = 0; i < command.forms.size(); ++i) {
        text += i == 0 ? "Usage: " : "       ";
        text += std::string("colorconfig ") + command.name + " " + command.forms[i] + " [OPTIONS]\n";
    }
    text += '\n';
    appendParagraph(text, command.description);
    text += "\nOptions:\n";
    for (OptionSpec const& option : allOptions(command)) {
        appendTerm(text, optionTerm(option), option.help, kOptionColumn);
    }
    text += '\n';
    appendExitCodes(text);
    return text;
}

std::string usageHint(Command const* command)
{
    if (command == nullptr) {
        return "Usage: colorconfig SUBCOMMAND [OPTIONS] [ARGUMENTS]\n"
               "Run 'colorconfig --help' for the subcommands.\n";
    }
    std::string text;
    for (std::size_t i = 0; i < command->forms.size(); ++i) {
        text += i == 0 ? "Usage: " : "       ";
        text += std::string("colorconfig ") + command->name + " " + command->forms[i] + " [OPTIONS]\n";
    }
    text += std::string("Run 'colorconfig ") + command->name + " --help' for more.\n";
    return text;
}

} // namespace colorconfig
