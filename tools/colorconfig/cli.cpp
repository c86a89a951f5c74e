#include "cli.h"

#include "command.h"
#include "text_layout.h"

#include <verra_sdk/kit/config_load.h>

#include <cctype>
#include <cstdlib>

#ifndef COLORCONFIG_VERSION
#error "COLORCONFIG_VERSION must be defined by the build"
#endif

namespace colorconfig {

namespace {

/// Where the help texts of options and subcommands start.
constexpr int kColumn = 24;

/// The end of every help text.
constexpr char const* kExitCodes = "Exit status:\n"
                                   "  0  Success.\n"
                                   "  1  A conversion or lookup failed: an unknown colour space, a file that\n"
                                   "     cannot be read or written, a conversion the config cannot make.\n"
                                   "  2  Bad usage: an unknown subcommand or option, a missing or malformed\n"
                                   "     argument.";

/// CLI11's layout, each option's help wrapped to fit beside the option
/// column.
struct Formatter : CLI::Formatter {
    std::string make_option_desc(CLI::Option const* option) const override
    {
        return text::paragraph(option->get_description(), text::kLineWidth - kColumn);
    }
};

/// Words for CLI11, which takes most words that start with "-" for options:
/// when a positional argument is a negative number ("-0.5", "-inf"), every
/// positional argument moves behind a "--", in order, after the options and
/// their values.
std::vector<std::string> numbersAsPositionals(CLI::App const& app, std::vector<std::string> const& words)
{
    std::vector<std::string> options;
    std::vector<std::string> positionals;
    bool negativeNumber = false;
    double unused = 0.0;
    std::size_t i = 0;
    for (; i < words.size() && words[i] != "--"; ++i) {
        std::string const& word = words[i];
        bool const number = parseNumber(word, unused);
        if (word.size() > 1 && word[0] == '-' && !number) {
            options.push_back(word);
            CLI::Option const* option = app.get_option_no_throw(word);
            if (option != nullptr && option->get_items_expected_min() > 0 && i + 1 < words.size()) {
                options.push_back(words[++i]);
            }
        } else {
            negativeNumber = negativeNumber || (number && word[0] == '-');
            positionals.push_back(word);
        }
    }
    // Whatever follows a "--" is positional already.
    positionals.insert(positionals.end(), words.begin() + static_cast<std::ptrdiff_t>(std::min(i + 1, words.size())),
                       words.end());
    if (!negativeNumber) {
        return words;
    }
    options.push_back("--");
    options.insert(options.end(), positionals.begin(), positionals.end());
    return options;
}

/// Loads the configuration the command line asks for, prints its errors, and
/// runs `command` unless they keep it from running.
ExitCode runSubcommand(Subcommand const& command, CommonOptions const& common)
{
    console::ErrorLogToStderr const errorLog;
    kit::ConfigStatus const status = kit::loadConfig(common.config);
    if (common.verbose && !command.showsConfigErrors) {
        console::note("{}", status.report);
    }
    for (std::string const& error : status.errors) {
        console::error("{}", error);
    }
    if (status.errors.empty()) {
        return command.run();
    }
    // A configuration set and not had: only the subcommands that show it
    // still run; with --json, the others print their object with the errors.
    if (command.showsConfigErrors) {
        command.run();
    } else if (common.json && command.jsonOnError != nullptr) {
        Json json = Json::parse(command.jsonOnError);
        json["errors"] = status.errors;
        printJson(json);
    }
    return ExitCode::Failure;
}

} // namespace

CLI::App* newSubcommand(CLI::App& program, char const* name, char const* summary, std::string_view description)
{
    CLI::App* app = program.add_subcommand(name, summary);
    app->footer(text::paragraph(description) + "\n\n" + kExitCodes);
    return app;
}

void addJsonFlag(CLI::App& app, CommonOptions& common, char const* help)
{
    app.add_flag("--json", common.json, help);
}

void addFromTo(CLI::App& app, std::string& from, std::string& to, bool required, char const* fromHelp,
               char const* toHelp)
{
    app.add_option("--from", from, fromHelp)->option_text("NAME")->required(required);
    app.add_option("--to", to, toHelp)->option_text("NAME")->required(required);
}

void addDisplayView(CLI::App& app, std::string& display, std::string& view)
{
    app.add_option("--display", display, "The display (the config's default if not given).")->option_text("NAME");
    app.add_option("--view", view, "The view of that display (its default if not given).")->option_text("NAME");
}

void addContext(CLI::App& app, kit::ContextVariables& variables)
{
    auto const check = [](std::string const& word) {
        std::pair<std::string, std::string> unused;
        return kit::parseContextVariable(word, unused) ? std::string() : "'" + word + "' is not KEY=VALUE";
    };
    app.add_option("--context")
        ->description("Sets a context variable of the config for this run, as the environment would "
                      "($SHOT in its file paths); repeatable.")
        ->option_text("KEY=VALUE")
        ->take_all()
        ->check(check)
        ->each([&variables](std::string const& word) { kit::parseContextVariable(word, variables.emplace_back()); });
}

ExitCode usageError(std::string const& message, std::string const& command)
{
    console::error("{}", message);
    console::errorText("Run 'colorconfig " + (command.empty() ? "" : command + " ") + "--help' for more.\n");
    return ExitCode::Usage;
}

bool parseNumber(std::string const& word, double& value)
{
    // Infinities and NaN are numbers too ("inf", "-inf", "nan"); an overflow
    // gives an infinity and an underflow a tiny or zero value, as strtod
    // rounds them. strtod would skip blanks before the number.
    char* end = nullptr;
    bool const blank = word.empty() || std::isspace(static_cast<unsigned char>(word[0])) != 0;
    double const parsed = blank ? 0.0 : std::strtod(word.c_str(), &end);
    bool const whole = end == word.c_str() + word.size();
    value = whole ? parsed : value;
    return whole;
}

ExitCode runCli(std::vector<std::string> const& words)
{
    CLI::App program(text::paragraph("Shows the OCIO colour configuration that the Verra SDK chooses, and converts "
                                     "colours and images with it."),
                     "colorconfig");
    program.formatter(std::make_shared<Formatter>());
    program.get_formatter()->column_width(kColumn);
    program.set_version_flag("--version", "colorconfig " COLORCONFIG_VERSION);
    program.require_subcommand(1);
    program.footer(
        text::paragraph("Every subcommand takes --config PATH|NAME|$NAME|%NAME% (without it: the path written in "
                        "$XDG_CONFIG_HOME/verra/ocio.txt or ~/.config/verra/ocio.txt, then $OCIO, then the built-in "
                        "colour spaces), --verbose and --help. The config report goes to standard output with "
                        "'info'; the other subcommands print it on standard error with --verbose. Errors that the "
                        "colour module logs are shown on standard error as 'colorconfig: error: ...'.") +
        "\n\n" + kExitCodes);
    CommonOptions common;
    std::vector<Subcommand> commands;
    for (AddSubcommand add :
         {&addInfo, &addCheck, &addFind, &addGuess, &addColor, &addConvert, &addPreview, &addView, &addBake}) {
        commands.push_back(add(program, common));
        CLI::App& sub = *commands.back().app;
        sub.add_option("--config", common.config,
                       "The OCIO config file, or the name of an environment variable holding its path "
                       "(NAME, $NAME or %NAME%). Without it: ocio.txt in the product folder, then $OCIO, "
                       "then the built-in colour spaces.")
            ->option_text("PATH");
        sub.add_flag("-v,--verbose", common.verbose, "Also print the config report on standard error.");
    }
    std::string topic;
    CLI::App* help = program.add_subcommand("help", "Show the help of a subcommand");
    help->add_option("SUBCOMMAND", topic, "The subcommand");
    auto const find = [&program](std::string const& name) -> CLI::App* {
        auto const named = program.get_subcommands([&name](CLI::App* sub) { return sub->get_name() == name; });
        return named.empty() ? nullptr : named.front();
    };

    std::string const command = words.empty() ? std::string() : words[0];
    if (!command.empty() && command[0] != '-' && find(command) == nullptr) {
        return usageError("unknown subcommand '" + command + "'", "");
    }
    std::vector<std::string> arguments = words;
    if (CLI::App const* sub = find(command); sub != nullptr) {
        arguments = numbersAsPositionals(*sub, std::vector<std::string>(words.begin() + 1, words.end()));
        arguments.insert(arguments.begin(), command);
    }
    try {
        program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (CLI::CallForHelp const&) {
        console::print(program.help());
        return ExitCode::Success;
    } catch (CLI::CallForVersion const&) {
        console::print(program.version() + "\n");
        return ExitCode::Success;
    } catch (CLI::ParseError const& error) {
        return usageError(error.what(), find(command) != nullptr ? command : std::string());
    }
    if (help->parsed()) {
        CLI::App const* sub = topic.empty() ? &program : find(topic);
        if (sub == nullptr) {
            return usageError("'help' takes one subcommand name, e.g. 'colorconfig help convert'", "");
        }
        // The formatter directly: App::help() would show the help subcommand's own.
        console::print(program.get_formatter()->make_help(sub, sub == &program ? "" : "colorconfig " + topic,
                                                          CLI::AppFormatMode::Normal));
        return ExitCode::Success;
    }
    for (Subcommand const& sub : commands) {
        if (sub.app->parsed()) {
            return runSubcommand(sub, common);
        }
    }
    return usageError("no subcommand given", "");
}

} // namespace colorconfig
