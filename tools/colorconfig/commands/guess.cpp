// The `guess` subcommand: the colour space of files from their names.

#include "command.h"

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
                  "Do not guess from the extension; a file with no other answer is a failure.");
    app->add_option("FILE", options->files, "File names")->type_name("")->required();
    auto const run = [options, &common] {
        return printAnswers(options->files, common.json, [&options](std::string const& file) {
            kit::FileGuess const guess = kit::guessColorSpace(file, !options->noFallback);
            std::string const note = kit::passedRuleText(guess);
            Json json = {{"file", file},
                         {"colorSpace", guess.colorSpace.empty() ? Json() : Json(guess.colorSpace)},
                         {"step", kit::guessStepName(guess.step)},
                         {"rule", guess.rule}};
            return Answer{json, guess.colorSpace,
                          guess.colorSpace.empty()
                              ? "no colour space found for '" + file + "'"
                              : kit::guessStepText(guess) + (note.empty() ? "" : " (the file " + note + ")")};
        });
    };
    return {app, run, false, R"({"errors": [], "results": []})"};
}

} // namespace colorconfig
