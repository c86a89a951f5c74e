#pragma once
// The colour space of an image file from its name, with the step that
// answered: what the module's `ColorConfig::parseColorSpace` gives, told in
// full.
//
// Reads the configuration of the latest `loadConfig` (OpenColorIO's current
// one); not thread-safe (one thread at a time, as the module). Never throws
// or prints.

#include <string>

namespace orv::verra_sdk::kit {

/// Which of the module's steps gave a file's colour space.
enum class GuessStep {
    /// No step answered (only without the extension fallback).
    None,
    /// A file rule of the configuration (`rule` names it).
    FileRule,
    /// A colour-space name found in the file name.
    NameSearch,
    /// The extension: "sRGB" for png, jpg, tga and bmp, else "linear".
    Extension,
};

/// A word for `step`: "none", "file rule", "name search" or "extension".
char const* guessStepName(GuessStep step) noexcept;

/// A file's colour space and how it was found.
struct FileGuess {
    /// The colour space to use; a rule's role or alias resolved to its
    /// colour space. Empty when no step answered.
    std::string colorSpace;
    GuessStep step = GuessStep::None;
    /// The file rule that matched the name (whether or not its answer was
    /// taken); empty without a configuration file.
    std::string rule;
    /// What that rule names, as it names it (a colour space, alias or role).
    std::string ruleAnswer;
    /// True when `ruleAnswer` is a role of the configuration.
    bool ruleNamesRole = false;
};

/// The colour space of `fileName` as `ColorConfig::parseColorSpace(fileName,
/// fallback)` gives it, with the step that gave it. A rule that names the
/// "default" role is passed over, as the module passes it over (the name
/// search or the extension answers; `ruleAnswer` is "default"); a rule that
/// names another role or an alias gives that colour space, as step FileRule.
FileGuess guessColorSpace(std::string const& fileName, bool fallback);

/// The step that gave `guess`, in words: "file rule 'R'", or
/// `guessStepName` of the other steps.
std::string guessStepText(FileGuess const& guess);

/// The rule that matched the name when another step answered, in words:
/// "rule 'R' names 'X'" or "rule 'R' names the role 'X'"; empty when the
/// rule answered or none matched.
std::string passedRuleText(FileGuess const& guess);

/// The colour space an image file's pixels are in, as "--from auto" takes it.
struct FileColorSpace {
    /// The colour space to convert from; empty when the file cannot be read.
    std::string colorSpace;
    /// How it was found: "oiio:ColorSpace" when the file records a space the
    /// configuration knows (by any name `resolveColorSpace` takes, but for a
    /// built-in the configuration cannot convert: `BuiltInIsolated`), else the
    /// guess's step ("file rule 'R'", "name search", "extension").
    std::string source;
    /// OpenImageIO's reason when the file cannot be read.
    std::string error;
};

/// The colour space of the image file at `path`: the "oiio:ColorSpace" its
/// first image records, when the configuration knows it, else
/// `guessColorSpace(path, true)`. OpenEXR files record none (OpenImageIO's
/// reader says "Linear" of each): they are guessed. Costs the opening of the file (its header
/// only).
FileColorSpace colorSpaceOfFile(std::string const& path);

} // namespace orv::verra_sdk::kit
