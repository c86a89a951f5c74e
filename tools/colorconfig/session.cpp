#include "session.h"

#include "console.h"

#include <verra_sdk/colorconfig.h>

#include <string_view>

namespace colorconfig {

ErrorLogToStderr::ErrorLogToStderr()
    : m_previous(orv::setErrorSink([](char const* line) { console::error("%s", line); }))
{
}

ErrorLogToStderr::~ErrorLogToStderr() { orv::setErrorSink(m_previous); }

orv::String loadConfiguration(ParsedArgs const& args, bool reportToStderr)
{
    std::string const requested = args.value("--config");
    orv::String const report = orv::verra_sdk::ColorConfig::loadOcioConfig(orv::String(requested));
    // Every report of a config file in use starts with "Using"; any other
    // one means that the built-in colour spaces are in use.
    bool const usesFile = report.view().substr(0, 5) == "Using";
    // A file that OpenImageIO refuses leaves its reason in the shared
    // configuration's own error state, where nothing else reports it; the
    // built-in colour spaces are in use then. Without a file, that state
    // only says that no file was given.
    std::string const refusal = orv::verra_sdk::colorConfig().geterror(true);
    if (usesFile && !refusal.empty()) {
        console::error("%s", refusal.c_str());
    }
    if (!reportToStderr) {
        return report;
    }
    if (args.has("--config") && !usesFile) {
        console::warning("%s", report.buf());
    } else if (args.has("--verbose")) {
        console::note("%s", report.buf());
    }
    return report;
}

} // namespace colorconfig
