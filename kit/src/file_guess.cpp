#include <verra_sdk/kit/file_guess.h>

#include "current_config.h"

#include <verra_sdk/colorconfig.h>
#include <verra_sdk/kit/image_file.h>
#include <verra_sdk/kit/names.h>

#include <OpenImageIO/imageio.h>

namespace orv::verra_sdk::kit {

namespace OCIO = OCIO_NAMESPACE;

char const* guessStepName(GuessStep step) noexcept
{
    switch (step) {
    case GuessStep::FileRule:
        return "file rule";
    case GuessStep::NameSearch:
        return "name search";
    case GuessStep::Extension:
        return "extension";
    case GuessStep::None:
        break;
    }
    return "none";
}

FileGuess guessColorSpace(std::string const& fileName, bool fallback)
{
    FileGuess guess;
    OCIO::ConstConfigRcPtr const& config = detail::currentOcio();
    if (config) {
        try {
            std::size_t index = 0;
            guess.ruleAnswer = config->getColorSpaceFromFilepath(fileName.c_str(), index);
            guess.rule = config->getFileRules()->getName(index);
            guess.ruleNamesRole = config->hasRole(guess.ruleAnswer.c_str());
        } catch (OCIO::Exception const&) {
            guess.ruleAnswer.clear();
            guess.rule.clear();
        }
    }
    String const withoutFallback = ColorConfig::parseColorSpace(String(fileName), false);
    if (withoutFallback.isEmpty()) {
        if (fallback) {
            guess.colorSpace = std::string(ColorConfig::parseColorSpace(String(fileName), true).view());
            guess.step = GuessStep::Extension;
        }
        return guess;
    }
    guess.colorSpace = std::string(withoutFallback.view());
    // The rule's answer when the module took it, else the name search's.
    guess.step = guess.colorSpace == guess.ruleAnswer ? GuessStep::FileRule : GuessStep::NameSearch;
    // A rule may name a role or an alias: the colour space it stands for.
    if (guess.step == GuessStep::FileRule) {
        OCIO::ConstColorSpaceRcPtr const space = config->getColorSpace(guess.colorSpace.c_str());
        if (space) {
            guess.colorSpace = space->getName();
        }
    }
    return guess;
}

std::string guessStepText(FileGuess const& guess)
{
    return guess.step == GuessStep::FileRule ? "file rule '" + guess.rule + "'" : guessStepName(guess.step);
}

std::string passedRuleText(FileGuess const& guess)
{
    if (guess.step == GuessStep::FileRule || guess.rule.empty()) {
        return {};
    }
    return "rule '" + guess.rule + "' names " + (guess.ruleNamesRole ? "the role '" : "'") + guess.ruleAnswer + "'";
}

FileColorSpace colorSpaceOfFile(std::string const& path)
{
    FileColorSpace found;
    auto const input = OIIO::ImageInput::open(path);
    if (!input) {
        found.error = orUnknown(OIIO::geterror());
        return found;
    }
    // OpenImageIO's OpenEXR reader says "Linear" of every file: no EXR file
    // records its space there.
    std::string const recorded = std::string(input->format_name()) == "openexr"
                                     ? std::string()
                                     : std::string(input->spec().get_string_attribute("oiio:ColorSpace"));
    ResolvedName resolved = recorded.empty() ? ResolvedName() : resolveColorSpace(recorded);
    // A built-in that converts only to the other built-ins is no space of the
    // config's (OpenImageIO's readers say "sRGB" of most 8-bit files).
    if (!resolved.name.empty() && resolved.how != NameMatch::BuiltInIsolated) {
        found.colorSpace = std::move(resolved.name);
        found.source = "oiio:ColorSpace";
        return found;
    }
    FileGuess const guess = guessColorSpace(path, true);
    found.colorSpace = guess.colorSpace;
    found.source = guessStepText(guess);
    return found;
}

} // namespace orv::verra_sdk::kit
