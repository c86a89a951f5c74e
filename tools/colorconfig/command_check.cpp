// The `check` subcommand.

#include "catalogue.h"
#include "commands.h"
#include "config_check.h"
#include "json_text.h"

#include <OpenImageIO/strutil.h>

#include <fmt/format.h>

#include <cstdio>

namespace colorconfig {

namespace {

/// The widest line: one less than 80, so that no terminal wraps it.
constexpr int kLineWidth = 79;

/// `text` after two blanks, broken into lines indented by four.
std::string item(std::string const& text)
{
    return "  " + OIIO::Strutil::wordwrap(text, kLineWidth, 2, " ", "") + "\n";
}

void appendFailures(std::string& text, char const* title, std::vector<Failure> const& failures, int tried)
{
    text += fmt::format("\n{} that fail: {} of {}\n", title, failures.size(), tried);
    for (Failure const& failure : failures) {
        text += item(failure.what + ": " + failure.reason);
    }
}

std::string checkText(CheckReport const& report)
{
    std::string text = "Config  " + (report.configFile.empty() ? "(none: the built-in colour spaces only)"
                                                               : report.configFile) + "\n";
    for (std::string const& problem : report.problems) {
        text += item("error: " + problem);
    }
    if (!report.validation.empty()) {
        text += item("error: " + report.validation);
    }
    if (!report.read) {
        text += "\nVerdict: broken\n";
        return text;
    }
    text += "Default display / view  " + report.defaultDisplay + " / " + report.defaultView + "\n";
    appendFailures(text, "Colour spaces", report.colorSpaces, report.colorSpaceCount);
    appendFailures(text, "Display views", report.views, report.viewCount);
    appendFailures(text, "Looks", report.looks, report.lookCount);
    text += pairsText("Config colour spaces the module's list hides", hiddenPairs(report.hidden));
    text += pairsText("Roles and their colour spaces", report.roles);
    text += "\nFile rules\n";
    for (CheckReport::Guess const& guess : report.fileRules) {
        text += item(fmt::format("{:<12} {} (rule '{}')", guess.file, guess.colorSpace, guess.rule));
    }
    text += report.broken() ? "\nVerdict: broken\n" : "\nVerdict: OK\n";
    return text;
}

Json failuresJson(std::vector<Failure> const& failures)
{
    std::vector<std::pair<std::string, std::string>> pairs;
    for (Failure const& failure : failures) {
        pairs.emplace_back(failure.what, failure.reason);
    }
    return pairsJson(pairs, "reason");
}

Json checkJson(CheckReport const& report)
{
    Json rules = Json::array();
    for (CheckReport::Guess const& guess : report.fileRules) {
        rules.push_back({{"file", guess.file}, {"colorSpace", guess.colorSpace}, {"rule", guess.rule}});
    }
    return {
        {"configFile", report.configFile},
        {"ok", !report.broken()},
        {"errors", report.problems},
        {"validation", report.validation},
        {"colorSpacesTried", report.colorSpaceCount},
        {"failedColorSpaces", failuresJson(report.colorSpaces)},
        {"viewsTried", report.viewCount},
        {"failedViews", failuresJson(report.views)},
        {"looksTried", report.lookCount},
        {"failedLooks", failuresJson(report.looks)},
        {"hidden", pairsJson(hiddenPairs(report.hidden), "reason")},
        {"roles", pairsJson(report.roles, "colorSpace")},
        {"fileRules", rules},
        {"defaultDisplay", report.defaultDisplay},
        {"defaultView", report.defaultView},
    };
}

} // namespace

ExitCode runCheck(Context const& context)
{
    CheckReport const report = checkConfig(context.config);
    if (context.options.json) {
        printJson(checkJson(report));
    } else {
        std::string const text = checkText(report);
        std::fwrite(text.data(), 1, text.size(), stdout);
    }
    return report.broken() ? ExitCode::Failure : ExitCode::Success;
}

} // namespace colorconfig
