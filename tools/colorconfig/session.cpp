#include "session.h"

#include "command.h"
#include "config_check.h"
#include "console.h"

#include <verra_sdk/colorconfig.h>

#include <algorithm>
#include <string_view>

namespace colorconfig {

ErrorLogToStderr::ErrorLogToStderr()
    : m_previous(orv::setErrorSink([](char const* line) { console::error("{}", line); }))
{
}

ErrorLogToStderr::~ErrorLogToStderr() { orv::setErrorSink(m_previous); }

namespace {

/// True when `report` says that the file or variable named by --config
/// (`requested`) was used, and not ocio.txt or $OCIO after it failed.
bool usesRequested(std::string_view report, std::string const& requested)
{
    if (report.substr(0, 29) == "Using specified OCIO config: ") {
        return true;
    }
    // NAME, $NAME and %NAME% all name the variable NAME.
    std::size_t const first = requested.find_first_not_of("$%");
    std::size_t const last = requested.find_last_not_of('%');
    std::string const name = first == std::string::npos ? "" : requested.substr(first, last + 1 - first);
    std::string const ending = " according to the '" + name + "' env var.";
    return !name.empty() && report.size() > ending.size() &&
           report.substr(report.size() - ending.size()) == ending;
}

/// `text` with each line break turned into a blank, for one-line messages.
std::string oneLine(std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

} // namespace

LoadedConfig loadConfiguration(Options const& options, bool reportToStderr)
{
    std::string const& requested = options.config;
    LoadedConfig loaded;
    loaded.report = orv::verra_sdk::ColorConfig::loadOcioConfig(orv::String(requested));
    std::string_view const report = loaded.report.view();
    if (reportToStderr && options.verbose) {
        console::note("{}", loaded.report.view());
    }
    // Every report of a config file in use starts with "Using"; any other
    // one means that the built-in colour spaces are in use.
    loaded.usesFile = report.substr(0, 5) == "Using";
    if (options.hasConfig && !(loaded.usesFile && usesRequested(report, requested))) {
        loaded.problems.push_back("the config named by --config '" + requested +
                                  "' was not found; the module reports: " + std::string(report));
        return loaded;
    }
    if (!loaded.usesFile) {
        return loaded;
    }
    // A file that OpenImageIO refuses leaves OpenColorIO's reason in the
    // shared configuration's own error state, and the built-in colour
    // spaces in use.
    std::string const refusal = orv::verra_sdk::colorConfig().geterror(true);
    if (!refusal.empty()) {
        loaded.usesFile = false;
        loaded.problems.push_back(oneLine(refusal));
        return loaded;
    }
    std::string const path = orv::verra_sdk::colorConfig().configname();
    try {
        loaded.ocio = OCIO_NAMESPACE::Config::CreateFromFile(path.c_str());
    } catch (OCIO_NAMESPACE::Exception const& exception) {
        loaded.problems.push_back(oneLine(exception.what()));
        return loaded;
    }
    // The module guesses from the file rules of OpenColorIO's current
    // configuration, which OpenColorIO would otherwise read from $OCIO.
    OCIO_NAMESPACE::SetCurrentConfig(loaded.ocio);
    for (std::string const& problem : missingFiles(loaded.ocio)) {
        loaded.problems.push_back(oneLine(problem));
    }
    return loaded;
}

} // namespace colorconfig
