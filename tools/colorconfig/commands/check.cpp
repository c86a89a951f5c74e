// The `check` subcommand: what works and what is broken in the configuration.

#include "command.h"
#include "console.h"
#include "json_text.h"
#include "text_layout.h"

#include <verra_sdk/kit/config_check.h>

#include <CLI/CLI.hpp>

#include <fmt/format.h>

#include <memory>

namespace colorconfig {

namespace {

std::string failuresText(char const* title, std::vector<kit::Failure> const& failures, int tried)
{
    std::string text = fmt::format("\n{} that fail: {} of {}\n", title, failures.size(), tried);
    for (kit::Failure const& failure : failures) {
        text += text::wrapped("  ", failure.what + ": " + failure.reason);
    }
    return text;
}

/// The configuration's errors, then its missing files: both are errors here.
std::vector<std::string> errorsOf(kit::CheckReport const& report)
{
    std::vector<std::string> errors = report.status.errors;
    errors.insert(errors.end(), report.status.warnings.begin(), report.status.warnings.end());
    return errors;
}

std::string checkText(kit::CheckReport const& report)
{
    std::string text = "Config  " +
                       (report.status.file.empty() ? "(none: the built-in colour spaces only)" : report.status.file) +
                       "\n";
    for (std::string const& error : errorsOf(report)) {
        text += text::wrapped("  ", "error: " + error);
    }
    if (!report.validation.empty()) {
        text += text::wrapped("  ", "error: " + report.validation);
    }
    if (!report.read) {
        return text + "\nVerdict: broken\n";
    }
    text += "Default display / view  " + report.defaultDisplay + " / " + report.defaultView + "\n";
    text += failuresText("Colour spaces", report.colorSpaces, report.colorSpaceCount);
    text += failuresText("Display views", report.views, report.viewCount);
    text += failuresText("Looks", report.looks, report.lookCount);
    text += text::pairColumns("Config colour spaces the module's list hides", hiddenPairs(report.hidden));
    text += text::pairColumns("Roles and their colour spaces", rolePairs(report.roles));
    text += "\nFile rules\n";
    for (kit::FileNameGuess const& name : report.fileNames) {
        std::string note;
        std::string const step = guessStep(name.guess, note);
        text += text::wrapped("  ", fmt::format("{:<12} {} ({}{}{})", name.file, name.guess.colorSpace, step,
                                                note.empty() ? "" : "; ", note));
    }
    return text + (report.broken() ? "\nVerdict: broken\n" : "\nVerdict: OK\n");
}

Json failuresJson(std::vector<kit::Failure> const& failures)
{
    Json list = Json::array();
    for (kit::Failure const& failure : failures) {
        list.push_back({{"name", failure.what}, {"reason", failure.reason}});
    }
    return list;
}

Json checkJson(kit::CheckReport const& report)
{
    Json rules = Json::array();
    for (kit::FileNameGuess const& name : report.fileNames) {
        rules.push_back({{"file", name.file},
                         {"colorSpace", name.guess.colorSpace},
                         {"step", kit::guessStepName(name.guess.step)},
                         {"rule", name.guess.rule}});
    }
    return {{"configFile", report.status.file},
            {"ok", !report.broken()},
            {"errors", errorsOf(report)},
            {"validation", report.validation},
            {"colorSpacesTried", report.colorSpaceCount},
            {"failedColorSpaces", failuresJson(report.colorSpaces)},
            {"viewsTried", report.viewCount},
            {"failedViews", failuresJson(report.views)},
            {"looksTried", report.lookCount},
            {"failedLooks", failuresJson(report.looks)},
            {"hidden", pairsJson(hiddenPairs(report.hidden), "reason")},
            {"roles", pairsJson(rolePairs(report.roles), "colorSpace")},
            {"fileRules", rules},
            {"defaultDisplay", report.defaultDisplay},
            {"defaultView", report.defaultView}};
}

} // namespace

Subcommand addCheck(CLI::App& program, CommonOptions& common)
{
    CLI::App* app = newSubcommand(
        program, "check", "Check a config: what works, what is broken",
        "Reports whether OpenColorIO reads the config and its reason when not, every missing file, OpenColorIO's "
        "own validation, the colour spaces, display views and looks (inactive ones included) whose processor "
        "cannot be built, the config's spaces that the module's list hides, the roles with their colour spaces, "
        "what 'guess' gives a few typical file names and which step gave it, and the default display and view. "
        "Exits 1 when anything is broken (hidden names are not). --json prints an object with the members "
        "configFile, ok, errors, validation, colorSpacesTried, failedColorSpaces, viewsTried, failedViews, "
        "looksTried, failedLooks (each failure {name, reason}), hidden ({name, reason}), roles ({name, "
        "colorSpace}), fileRules ({file, colorSpace, step, rule}), defaultDisplay and defaultView.");
    addJsonFlag(*app, common, "Print the report as a JSON object.");
    auto const context = std::make_shared<kit::ContextVariables>();
    addContext(*app, *context);
    auto const run = [&common, context] {
        kit::CheckReport const report = kit::checkConfig(*context);
        // The missing files are errors here, on standard error too.
        for (std::string const& missing : report.status.warnings) {
            console::error("{}", missing);
        }
        if (common.json) {
            printJson(checkJson(report));
        } else {
            console::print(checkText(report));
        }
        return report.broken() ? ExitCode::Failure : ExitCode::Success;
    };
    return {app, run, true, nullptr};
}

} // namespace colorconfig
