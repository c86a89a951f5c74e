// The `guess` subcommand: the colour space of files from their names.

#include "command.h"
#include "console.h"
#include "json_text.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace colorconfig {

Subcommand addGuess(CLI::App& program, CommonOptions& common)
{
    CLI::App* app = newSubcommand(
        program, "guess", "Guess the colour space of files from their names",
        "Tells the colour space of each FILE from its name alone (the file is not opened): the file rules of the "
        "config in use (a rule that names a role gives its colour space; the role 'default' is passed over), "
        "then a colour-space name found in the text, then the extension (png, jpg, tga and bmp are sRGB, "
        "anything else linear). With several files, each line reads 'FILE: SPACE'; standard error tells which "
        "step answered for each. --json prints an object {errors, results}, each result {file, colorSpace (null "
        "when none), step ('file rule', 'name search', 'extension' or 'none'), rule (the file rule that matched "
        "the name)}.");
    struct GuessOptions {
        bool noFallback = false;
        std::vector<std::string> files;
    };
    auto options = std::make_shared<GuessOptions>();
    addJsonFlag(*app, common, "Print the results as a JSON object.");
    app->add_flag("--no-fallback", options->noFallback,
                  optionHelp("Do not guess from the extension; a file with no other answer is a failure."));
    app->add_option("FILE", options->files, "File names")->type_name("")->required();
    auto const failed = [](std::vector<std::string> const& errors) { printResults(errors, Json::array()); };
    auto const run = [options, &common] {
        Json results = Json::array();
        ExitCode code = ExitCode::Success;
        for (std::string const& file : options->files) {
            kit::FileGuess const guess = kit::guessColorSpace(file, !options->noFallback);
            bool const found = !guess.colorSpace.empty();
            code = found ? code : ExitCode::Failure;
            if (common.json) {
                results.push_back({{"file", file},
                                   {"colorSpace", found ? Json(guess.colorSpace) : Json()},
                                   {"step", kit::guessStepName(guess.step)},
                                   {"rule", guess.rule}});
            } else if (!found) {
                console::error("no colour space found for '{}'", file);
            } else {
                console::out(options->files.size() > 1 ? file + ": " + guess.colorSpace : guess.colorSpace);
                std::string note;
                std::string const step = guessStep(guess, note);
                console::note("'{}': {}{}", file, step, note.empty() ? "" : " (the file " + note + ")");
            }
        }
        if (common.json) {
            printResults(Json::array(), results);
        }
        return code;
    };
    return {app, run, false, failed};
}

} // namespace colorconfig
