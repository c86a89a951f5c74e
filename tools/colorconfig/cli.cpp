#include "cli.h"

#include "command.h"
#include "commands.h"
#include "console.h"

#include <OpenImageIO/strutil.h>

#include <CLI/CLI.hpp>

#include <cctype>
#include <cstdlib>
#include <map>

#ifndef COLORCONFIG_VERSION
#error "COLORCONFIG_VERSION must be defined by the build"
#endif

namespace colorconfig {

namespace {

/// The widest help line: one less than 80, so that no terminal wraps it.
constexpr int kLineWidth = 79;
/// Where the help texts of options and subcommands start.
constexpr int kColumn = 24;

std::string wrapped(std::string_view text) { return OIIO::Strutil::wordwrap(text, kLineWidth); }

/// An option's help, wrapped to fit beside the option column (CLI11 indents
/// the lines after the first to that column).
std::string optionHelp(std::string_view text) { return OIIO::Strutil::wordwrap(text, kLineWidth - kColumn); }

std::string const& exitCodes()
{
    static std::string const text =
        "Exit status:\n"
        "  0  Success.\n"
        "  1  A conversion or lookup failed: an unknown colour space, a file that\n"
        "     cannot be read or written, a conversion the config cannot make.\n"
        "  2  Bad usage: an unknown subcommand or option, a missing or malformed\n"
        "     argument.";
    return text;
}

/// One subcommand: what the parser needs to know of it, and how it runs.
struct Subcommand {
    char const* name;
    char const* summary;
    char const* description;
    void (*declare)(CLI::App& app, Options& options);
    RunCommand run;
    /// True when it prints the configuration report and its problems itself
    /// (`info` and `check`); the others do not run when the configuration
    /// has a problem.
    bool printsReport;
};

void jsonFlag(CLI::App& app, Options& options, char const* help)
{
    app.add_flag("--json", options.json, optionHelp(help));
}

void fromTo(CLI::App& app, Options& options, bool required, char const* fromHelp, char const* toHelp)
{
    app.add_option("--from", options.from, optionHelp(fromHelp))->option_text("NAME")->required(required);
    app.add_option("--to", options.to, optionHelp(toHelp))->option_text("NAME")->required(required);
}

std::vector<Subcommand> const& subcommands()
{
    static std::vector<Subcommand> const table{
        {"info", "Show which config is used and what it offers",
         "Loads the config, prints the report of how it was chosen, then the catalogue: colour spaces (the "
         "built-ins marked), the config's inactive spaces (accepted by name), the config's spaces that the "
         "list hides behind a built-in or another name, default display and view, each display with its "
         "views, looks, and roles with their colour spaces. --json prints an object with the members report, "
         "configFile, errors, colorSpaces, builtIns, inactiveColorSpaces, hidden ({name, reason}), "
         "defaultDisplay, defaultView, displays ({name, views}), looks and roles ({name, colorSpace}).",
         [](CLI::App& app, Options& options) {
             jsonFlag(app, options, "Print the same content as a JSON object, for scripts.");
         },
         &runInfo, true},
        {"check", "Check a config: what works, what is broken",
         "Reports whether OpenColorIO reads the config and its reason when not, every missing file, OpenColorIO's "
         "own validation, the active colour spaces, display views and looks whose processor cannot be built, "
         "the config's spaces that the module's list hides, the roles with their colour spaces, what the file "
         "rules give a few typical file names, and the default display and view. Exits 1 when anything is "
         "broken (hidden names are not). --json prints an object with the members configFile, ok, errors, "
         "validation, colorSpacesTried, failedColorSpaces, viewsTried, failedViews, looksTried, failedLooks "
         "(each failure {name, reason}), hidden ({name, reason}), roles ({name, colorSpace}), fileRules "
         "({file, colorSpace, rule}), defaultDisplay and defaultView.",
         [](CLI::App& app, Options& options) { jsonFlag(app, options, "Print the report as a JSON object."); },
         &runCheck, true},
        {"find", "Print the listed form of colour-space names",
         "Looks each NAME up without regard to letter case or blanks around it, and prints the name as the "
         "colour-space list holds it. Names the config knows otherwise are resolved too, and standard error "
         "says how: an alias ('alias of ...'), a role ('role scene_linear → ...'), an inactive space "
         "('inactive'), or a built-in that shadows a config space. With several names, each line reads "
         "'NAME: LISTED'. A name that is not found is reported on standard error with the closest names. "
         "--json prints an array of {name, colorSpace (null when not found), how ('listed' or as above), "
         "closest}.",
         [](CLI::App& app, Options& options) {
             jsonFlag(app, options, "Print the results as a JSON array.");
             app.add_option("NAME", options.positionals, "Colour-space names")->type_name("")->required();
         },
         &runFind, false},
        {"guess", "Guess the colour space of files from their names",
         "Tells the colour space of each FILE from its name alone (the file is not opened): the file rules of "
         "the config in use, then a colour-space name found in the text, then the extension (png, jpg, tga "
         "and bmp are sRGB, anything else linear). With several files, each line reads 'FILE: SPACE'. "
         "--json prints an array of {file, colorSpace (null when none)}.",
         [](CLI::App& app, Options& options) {
             jsonFlag(app, options, "Print the results as a JSON array.");
             app.add_flag("--no-fallback", options.noFallback,
                          optionHelp("Do not guess from the extension; a file with no other answer is a failure."));
             app.add_option("FILE", options.positionals, "File names")->type_name("")->required();
         },
         &runGuess, false},
        {"color", "Convert one colour between two colour spaces",
         "Converts the colour R G B (and ALPHA, which is printed unchanged) and prints the result with 17 "
         "significant digits, enough to read back the exact double. Negative values are accepted as they "
         "are (-0.5, -inf), as are inf and nan. With --verbose, standard error also tells the route: "
         "'built-in curve' (the module's own sRGB and Rec709 curves, used between linear and those two "
         "whatever the config says), 'processor' (the config's), or 'same'. --json prints {from, to, route, "
         "input, output}, with null for nan and infinities.",
         [](CLI::App& app, Options& options) {
             jsonFlag(app, options, "Print the result as a JSON object.");
             fromTo(app, options, true, "The colour space of the given colour.", "The colour space to convert into.");
             app.add_option("R_G_B_[ALPHA]", options.positionals, "The colour's channels")
                 ->type_name("")
                 ->expected(3, 4)
                 ->required();
         },
         &runColor, false},
        {"convert", "Convert images between two colour spaces",
         "Converts IN into OUT, or, with --out-dir, each IN into a file of the same name in DIR. Each image "
         "is written in the format that the output's extension names; its colour channels are converted. "
         "Everything else is kept as the format allows: the data type, every subimage and MIP level, "
         "windows, pixel aspect, tiling, compression and attributes, and every channel other than R, G and "
         "B (alpha, depth, others) untouched; 'oiio:ColorSpace' names the new space. Grey comes out as RGB. "
         "8-bit pixels written to an 8-bit format go through the module's RGBA8 transform; every other case "
         "is computed in float. A format that cannot hold every subimage or MIP level is refused. Each "
         "output is written beside its target and renamed into place only once complete, so a failed or "
         "interrupted run leaves existing files as they were, and no output ever replaces an input. With "
         "--out-dir, a progress line is shown while standard error is a terminal.",
         [](CLI::App& app, Options& options) {
             fromTo(app, options, true, "The colour space of the input pixels.", "The colour space to convert into.");
             app.add_option("--out-dir", options.outDir, optionHelp("Write every output into this existing folder."))
                 ->option_text("DIR");
             app.add_option("IN_OUT|IN", options.positionals, "The input and output images, or the inputs")
                 ->type_name("")
                 ->required();
         },
         &runConvert, false},
        {"preview", "Turn an image into an opaque 8-bit preview",
         "Reads the first image of IN as float pixels in the colour space --from, converts its colour "
         "channels (grey is spread over RGB, alpha is dropped) into the colour space --to, and writes an "
         "opaque 8-bit image to OUT in the format that its extension names (RGBA, or RGB for a format "
         "without alpha). Float-only formats (exr, hdr) are refused. OUT is written beside its target and "
         "renamed into place once complete, and never replaces IN.",
         [](CLI::App& app, Options& options) {
             fromTo(app, options, false, "The colour space of the input pixels (linear when not given).",
                    "The colour space of the preview (sRGB when not given).");
             app.add_option("IN_OUT", options.positionals, "The image and its preview")
                 ->type_name("")
                 ->expected(2)
                 ->required();
         },
         &runPreview, false},
        {"view", "Show images through a display and view of the config",
         "Applies the config's display/view transform (with looks, if given) to the colour channels of every "
         "image of IN, computed in float, and writes OUT in the format that its extension names, at the "
         "input's data type. Alpha and the other channels are kept, colours are not divided by alpha, and "
         "'oiio:ColorSpace' names the view's colour space. Without --display and --view, the config's default "
         "display and its default view. File safety as for convert.",
         [](CLI::App& app, Options& options) {
             app.add_option("--from", options.from, optionHelp("The colour space of the input pixels."))
                 ->option_text("NAME")
                 ->required();
             app.add_option("--display", options.display, optionHelp("The display (the config's default if not "
                                                                     "given)."))
                 ->option_text("NAME");
             app.add_option("--view", options.view, optionHelp("The view of that display (its default if not "
                                                               "given)."))
                 ->option_text("NAME");
             app.add_option("--look", options.looks, optionHelp("Looks to apply, separated by commas."))
                 ->option_text("L[,L2]");
             app.add_option("IN_OUT", options.positionals, "The image and its result")
                 ->type_name("")
                 ->expected(2)
                 ->required();
         },
         &runView, false},
    };
    return table;
}

/// Words for CLI11, which takes most words that start with "-" for options:
/// when a positional argument is a negative number ("-0.5", "-inf"), every
/// positional argument moves behind a "--", in order, after the options and
/// their values.
std::vector<std::string> numbersAsPositionals(CLI::App const& app, std::vector<std::string> const& words)
{
    std::vector<std::string> options;
    std::vector<std::string> positionals;
    bool negativeNumber = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string const& word = words[i];
        double unused = 0.0;
        bool const number = parseNumber(word, unused);
        if (word == "--") {
            positionals.insert(positionals.end(), words.begin() + static_cast<std::ptrdiff_t>(i) + 1, words.end());
            break;
        }
        if (word.size() > 1 && word[0] == '-' && !number) {
            options.push_back(word);
            CLI::Option const* option = app.get_option_no_throw(word);
            if (option != nullptr && option->get_items_expected_min() > 0 && i + 1 < words.size()) {
                options.push_back(words[++i]);
            }
            continue;
        }
        negativeNumber = negativeNumber || (number && word[0] == '-');
        positionals.push_back(word);
    }
    if (!negativeNumber) {
        return words;
    }
    options.push_back("--");
    options.insert(options.end(), positionals.begin(), positionals.end());
    return options;
}

/// True when `app` has the option `name` and it was given.
bool given(CLI::App const& app, char const* name)
{
    CLI::Option const* option = app.get_option_no_throw(name);
    return option != nullptr && option->count() > 0;
}

ExitCode usageError(std::string const& message, std::string const& command)
{
    console::error("{}", message);
    console::errorText("Run 'colorconfig " + (command.empty() ? "" : command + " ") + "--help' for more.\n");
    return ExitCode::Usage;
}

void printText(std::string const& text) { std::fwrite(text.data(), 1, text.size(), stdout); }

ExitCode runSubcommand(Subcommand const& command, Options const& options)
{
    ErrorLogToStderr const errorLog;
    LoadedConfig const config = loadConfiguration(options, !command.printsReport);
    for (std::string const& problem : config.problems) {
        console::error("{}", problem);
    }
    if (config.problems.empty()) {
        return command.run(Context{options, config});
    }
    // A configuration asked for and not had: only info, which shows what is
    // wrong, still runs.
    return command.printsReport ? worse(command.run(Context{options, config}), ExitCode::Failure)
                                : ExitCode::Failure;
}

} // namespace

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

ExitCode runCli(std::vector<std::string> const& words)
{
    Options options;
    CLI::App app(wrapped("Shows the OCIO colour configuration that the Verra SDK chooses, and converts colours "
                         "and images with it."),
                 "colorconfig");
    app.get_formatter()->column_width(kColumn);
    app.set_version_flag("--version", "colorconfig " COLORCONFIG_VERSION);
    app.require_subcommand(1);
    app.footer(wrapped("Every subcommand takes --config PATH|NAME|$NAME|%NAME% (without it: the path written in "
                       "$XDG_CONFIG_HOME/verra/ocio.txt or ~/.config/verra/ocio.txt, then $OCIO, then the "
                       "built-in colour spaces), --verbose and --help. The config report goes to standard output "
                       "with 'info'; the other subcommands print it on standard error with --verbose. Errors "
                       "that the colour module logs are shown on standard error as 'colorconfig: error: ...'.") +
               "\n\n" + exitCodes());
    std::vector<std::pair<CLI::App*, Subcommand const*>> parsers;
    std::map<std::string, CLI::App*, std::less<>> byName;
    for (Subcommand const& command : subcommands()) {
        CLI::App* sub = app.add_subcommand(command.name, command.summary);
        command.declare(*sub, options);
        sub->add_option("--config", options.config,
                        optionHelp("The OCIO config file, or the name of an environment variable holding its path "
                                   "(NAME, $NAME or %NAME%). Without it: ocio.txt in the product folder, then "
                                   "$OCIO, then the built-in colour spaces."))
            ->option_text("PATH");
        sub->add_flag("-v,--verbose", options.verbose, optionHelp("Also print the config report on standard error."));
        sub->footer(wrapped(command.description) + "\n\n" + exitCodes());
        parsers.emplace_back(sub, &command);
        byName[command.name] = sub;
    }
    std::string topic;
    CLI::App* help = app.add_subcommand("help", "Show the help of a subcommand");
    help->add_option("SUBCOMMAND", topic, "The subcommand");
    byName["help"] = help;
    auto const find = [&byName](std::string const& name) -> CLI::App* {
        auto const found = byName.find(name);
        return found != byName.end() ? found->second : nullptr;
    };

    std::vector<std::string> arguments = words;
    if (!words.empty()) {
        if (CLI::App const* sub = find(words[0]); sub != nullptr) {
            arguments = numbersAsPositionals(*sub, std::vector<std::string>(words.begin() + 1, words.end()));
            arguments.insert(arguments.begin(), words[0]);
        }
    }
    std::string const command = words.empty() ? std::string() : words[0];
    if (!command.empty() && command[0] != '-' && find(command) == nullptr) {
        return usageError("unknown subcommand '" + command + "'", "");
    }
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        app.parse(reversed);
    } catch (CLI::CallForHelp const&) {
        printText(app.help());
        return ExitCode::Success;
    } catch (CLI::CallForVersion const&) {
        printText(app.version() + "\n");
        return ExitCode::Success;
    } catch (CLI::ParseError const& error) {
        bool const known = find(command) != nullptr;
        return usageError(error.what(), known ? command : std::string());
    }
    if (help->parsed()) {
        CLI::App const* sub = topic.empty() ? &app : find(topic);
        if (sub == nullptr) {
            return usageError("'help' takes one subcommand name, e.g. 'colorconfig help convert'", "");
        }
        // The formatter directly: App::help() would show the help subcommand's own.
        std::string const name = sub == &app ? "" : "colorconfig " + topic;
        printText(app.get_formatter()->make_help(sub, name, CLI::AppFormatMode::Normal));
        return ExitCode::Success;
    }
    for (auto const& [sub, subcommand] : parsers) {
        if (sub->parsed()) {
            options.hasConfig = given(*sub, "--config");
            options.hasOutDir = given(*sub, "--out-dir");
            return runSubcommand(*subcommand, options);
        }
    }
    return usageError("no subcommand given", "");
}

} // namespace colorconfig
