#pragma once
// What an OpenColorIO configuration knows of colour-space names beyond the
// module's list: aliases, roles, inactive spaces, and the config names that
// the list hides behind another entry.

#include <OpenColorIO/OpenColorIO.h>

#include <string>
#include <utility>
#include <vector>

namespace colorconfig {

/// A colour-space name typed by a user, as the tool resolves it.
struct ResolvedName {
    /// The name to hand to the module: the list's form, or the config's own
    /// name of an inactive space. Empty when nothing matched.
    std::string name;
    /// How `name` was found, for people: empty when the list holds the name
    /// as typed (apart from case and blanks around it); otherwise
    /// "alias of 'X'", "role R → 'X'", "inactive",
    /// "built-in, shadows the config's 'X'", or "built-in, converts only to
    /// the other built-ins under this config".
    std::string how;
};

/// Resolves `typed` through the module's list (`ColorConfig::findColorSpace`)
/// first; when that fails and `config` is not null, through OpenColorIO's
/// own lookup, which knows roles, aliases and inactive spaces, and then the
/// list again for the canonical name it gives. Never throws.
ResolvedName resolveName(std::string const& typed, OCIO_NAMESPACE::ConstConfigRcPtr const& config);

/// The inactive colour spaces of `config`, in its order; empty for null.
std::vector<std::string> inactiveColorSpaces(OCIO_NAMESPACE::ConstConfigRcPtr const& config);

/// Each role of `config` with the colour space it names, in its order.
std::vector<std::pair<std::string, std::string>> rolesWithSpaces(OCIO_NAMESPACE::ConstConfigRcPtr const& config);

/// An active colour space of the config that the module's list does not
/// offer under its own name.
struct HiddenName {
    std::string name;
    /// "shadowed by the built-in 'X'", "shadowed by 'X' (same name apart
    /// from case)", or "dropped (a name the module reserves)".
    std::string reason;
};

/// The hidden names of `config`, in its order; empty for null.
std::vector<HiddenName> hiddenNames(OCIO_NAMESPACE::ConstConfigRcPtr const& config);

/// True when the built-in colour space `builtIn` converts to the colour
/// spaces of the configuration in use (always with the built-ins alone):
/// the module's curves join the built-ins to each other only.
bool builtInConverts(std::string const& builtIn);

/// True when `name` is one of the module's built-in colour spaces, in the
/// list's form ("linear", "sRGB", "Rec709").
bool isBuiltIn(std::string const& name);

} // namespace colorconfig
