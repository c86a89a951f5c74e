#include <verra_sdk/kit/config_load.h>

#include "config_files.h"
#include "current_config.h"

#include <verra_sdk/colorconfig.h>

#include <orv/os.h>

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/strutil.h>

#include <algorithm>

namespace orv::verra_sdk::kit {

namespace OCIO = OCIO_NAMESPACE;

namespace detail {
namespace {

OCIO::ConstConfigRcPtr& stored()
{
    static OCIO::ConstConfigRcPtr s_config;
    return s_config;
}

} // namespace

OCIO::ConstConfigRcPtr const& currentOcio()
{
    return stored();
}

void setCurrentOcio(OCIO::ConstConfigRcPtr config)
{
    stored() = std::move(config);
}

OCIO::ConstContextRcPtr contextWith(OCIO::Config const& config, ContextVariables const& variables)
{
    if (variables.empty()) {
        return config.getCurrentContext();
    }
    OCIO::ContextRcPtr const context = config.getCurrentContext()->createEditableCopy();
    for (auto const& [name, value] : variables) {
        context->setStringVar(name.c_str(), value.c_str());
    }
    return context;
}

std::string oneLine(std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

} // namespace detail

namespace {

namespace Filesystem = OIIO::Filesystem;
namespace Strutil = OIIO::Strutil;

ConfigStatus& latest()
{
    static ConfigStatus s_status;
    return s_status;
}

/// The files `config` names and `context` cannot find, one line each.
std::vector<std::string> missingLines(OCIO::Config const& config, OCIO::ConstContextRcPtr const& context)
{
    std::vector<std::string> lines = detail::missingFiles(config, context);
    std::transform(lines.begin(), lines.end(), lines.begin(), detail::oneLine);
    return lines;
}

/// The source that discovery tries first: the argument, else ocio.txt when
/// it exists, else $OCIO when it is set; BuiltIns when the user set none.
ConfigSource userSetting(std::string const& requested)
{
    if (!requested.empty()) {
        return ConfigSource::ArgumentPath;
    }
    if (Filesystem::is_regular(std::string(ocioTxtPath().view()))) {
        return ConfigSource::OcioTxt;
    }
    return os::getEnv(String("OCIO", 0)).isEmpty() ? ConfigSource::BuiltIns : ConfigSource::OcioVariable;
}

/// How the user set the configuration of `source`, for messages: the
/// argument, or the file ocio.txt or $OCIO with the path it holds.
std::string setBy(ConfigSource source, std::string const& requested)
{
    switch (source) {
    case ConfigSource::ArgumentPath:
    case ConfigSource::ArgumentVariable:
        return "--config '" + requested + "'";
    case ConfigSource::OcioTxt: {
        std::string const txt(ocioTxtPath().view());
        std::string content;
        Filesystem::read_text_file(txt, content);
        return txt + " ('" + std::string(Strutil::strip(content)) + "')";
    }
    case ConfigSource::OcioVariable:
        return "$OCIO ('" + std::string(os::getEnv(String("OCIO", 0)).view()) + "')";
    case ConfigSource::BuiltIns:
        break;
    }
    return {};
}

/// True when discovery chose `chosen` for what the user set first.
bool honours(ConfigSource setting, ConfigSource chosen)
{
    if (setting == ConfigSource::ArgumentPath) {
        return chosen == ConfigSource::ArgumentPath || chosen == ConfigSource::ArgumentVariable;
    }
    return chosen == setting;
}

/// Leaves `status` with no configuration file in use: OpenColorIO's current
/// configuration, whose file rules the module's guess reads, becomes a raw
/// one whose only rule names the "default" role, which the guess passes over.
ConfigStatus const& withoutFile(ConfigStatus& status)
{
    status.file.clear();
    OCIO::SetCurrentConfig(OCIO::Config::CreateRaw());
    return latest() = status;
}

} // namespace

ConfigStatus loadConfig(std::string const& requested)
{
    ConfigStatus status;
    ConfigSource const setting = userSetting(requested);
    std::string const settingText = setBy(setting, requested);
    status.report = std::string(ColorConfig::loadOcioConfig(String(requested)).view());
    status.source = configSource();
    detail::setCurrentOcio(nullptr);
    if (setting != ConfigSource::BuiltIns && !honours(setting, status.source)) {
        status.errors.push_back("the config set by " + settingText + " was not found");
    }
    if (status.source == ConfigSource::BuiltIns) {
        return withoutFile(status);
    }
    std::string const where = "the config set by " + setBy(status.source, requested) + " cannot be read: ";
    // A file that OpenImageIO refuses leaves OpenColorIO's reason in the
    // shared configuration's own error state, and the built-in colour spaces
    // in use.
    std::string const refusal = colorConfig().geterror(true);
    if (!refusal.empty()) {
        status.errors.push_back(where + detail::oneLine(refusal));
        return withoutFile(status);
    }
    status.file = colorConfig().configname();
    OCIO::ConstConfigRcPtr config;
    try {
        config = OCIO::Config::CreateFromFile(status.file.c_str());
    } catch (OCIO::Exception const& exception) {
        status.errors.push_back(where + detail::oneLine(exception.what()));
        return withoutFile(status);
    }
    // The module guesses from the file rules of OpenColorIO's current
    // configuration, which OpenColorIO would otherwise read from $OCIO.
    OCIO::SetCurrentConfig(config);
    detail::setCurrentOcio(config);
    status.warnings = missingLines(*config, config->getCurrentContext());
    return latest() = status;
}

ConfigStatus const& configStatus()
{
    return latest();
}

ConfigStatus configStatus(ContextVariables const& variables)
{
    ConfigStatus status = latest();
    OCIO::ConstConfigRcPtr const& config = detail::currentOcio();
    if (config && !variables.empty()) {
        status.warnings = missingLines(*config, detail::contextWith(*config, variables));
    }
    return status;
}

} // namespace orv::verra_sdk::kit
