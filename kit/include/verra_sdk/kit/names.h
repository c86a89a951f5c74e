#pragma once
// The colour-space names artists type, resolved as the configuration in use
// knows them: the module's list first, then aliases, roles and inactive
// spaces; and what the configuration holds beyond the module's list.
//
// Example:
//
//     kit::ResolvedName const r = kit::resolveColorSpace("scene_linear");
//     // r.name == "ACEScg", r.how == kit::NameMatch::Role, r.via == "scene_linear"
//
// Every function reads the configuration of the latest `loadConfig` (the
// built-in colour spaces alone before any) and the module's caches: cheap
// lookups, but not thread-safe (one thread at a time, as the module). None
// throws or prints.

#include <string>
#include <string_view>
#include <vector>

namespace orv::verra_sdk::kit {

/// How a typed name was found.
enum class NameMatch {
    /// Nothing matched.
    Unknown,
    /// The module's list holds it (apart from case and blanks around it).
    Listed,
    /// A built-in of the list that hides the config's space of the same name
    /// apart from case (`via`: the config's name).
    BuiltInShadows,
    /// A built-in that converts only to the other built-ins under this
    /// configuration: the module's curves join the built-ins to each other.
    BuiltInIsolated,
    /// An alias of a colour space (`via`: the alias as the config spells it).
    Alias,
    /// A role (`via`: the role's name).
    Role,
    /// An inactive colour space: not listed, converted by its own name.
    Inactive,
};

/// A word for `how`: "unknown", "listed", "built-in shadows", "built-in
/// isolated", "alias", "role" or "inactive".
char const* nameMatchName(NameMatch how) noexcept;

/// A colour-space name resolved for the module.
struct ResolvedName {
    /// The name to hand to the module: the list's form, or the config's own
    /// name of an inactive space. Empty when nothing matched.
    std::string name;
    NameMatch how = NameMatch::Unknown;
    /// The alias, role or shadowed config name the match went through;
    /// empty for the other matches.
    std::string via;
};

/// Resolves `typed` through the module's list (`ColorConfig::findColorSpace`)
/// first, then through OpenColorIO's own lookup of the configuration file in
/// use (aliases, roles, inactive spaces), and then the list again for the
/// canonical name it gives.
ResolvedName resolveColorSpace(std::string_view typed);

/// How `resolved` was found, in words: "alias of 'X'", "role R → 'X'",
/// "inactive", "built-in, shadows the config's 'X'" or "built-in, converts
/// only to the other built-ins under this config"; empty for a listed name
/// and for none.
std::string resolvedNameText(ResolvedName const& resolved);

/// Up to `limit` names that resemble `typed` (`closestNames`): listed names,
/// the config's inactive spaces, and the built-ins only when they convert
/// under the configuration.
std::vector<std::string> closestColorSpaces(std::string_view typed, std::size_t limit = 3);

/// Why `typed` names no colour space, with the names that resemble it:
/// "unknown colour space '<typed>'; closest: 'a', 'b'", or, when none does,
/// "unknown colour space '<typed>' ('colorconfig info' lists them all)".
std::string unknownColorSpaceText(std::string_view typed);

/// The configuration's inactive colour spaces, each once, in its order;
/// empty with the built-ins alone.
std::vector<std::string> inactiveColorSpaces();

/// A role and the colour space the configuration gives it.
struct RoleSpace {
    std::string role;
    std::string colorSpace;
};

/// Each role of the configuration file with its colour space, in its order;
/// empty with the built-ins alone.
std::vector<RoleSpace> rolesWithSpaces();

/// Why the module's list does not offer a config colour space by its name.
enum class HiddenReason {
    /// A built-in of the same name apart from case comes first (`by`).
    ShadowedByBuiltIn,
    /// An earlier config space of the same name apart from case (`by`).
    ShadowedByEarlier,
    /// "default", "rgb" or "RGB": names the module reserves.
    Reserved,
};

/// An active colour space of the configuration that the module's list does
/// not offer under its own name.
struct HiddenName {
    std::string name;
    HiddenReason reason = HiddenReason::Reserved;
    /// The list's entry that hides it; empty for `Reserved`.
    std::string by;
};

/// The hidden names of the configuration file, in its order; empty with the
/// built-ins alone.
std::vector<HiddenName> hiddenColorSpaces();

/// Why the list hides `hidden`, in words: "shadowed by the built-in 'X'",
/// "shadowed by 'X' (same name apart from case)" or "dropped (a name the
/// module reserves)".
std::string hiddenReasonText(HiddenName const& hidden);

/// True when `name` is one of the module's built-in colour spaces, in the
/// list's form ("linear", "sRGB", "Rec709").
bool isBuiltIn(std::string_view name);

/// True when the built-in colour space `builtIn` converts to the colour
/// spaces of the configuration in use (always with the built-ins alone).
/// Builds one processor.
bool builtInConverts(std::string const& builtIn);

} // namespace orv::verra_sdk::kit
