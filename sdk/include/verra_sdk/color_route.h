#pragma once
// How the module's single-colour transform converts between two colour
// spaces: a question the transform itself cannot answer, because it returns
// an impossible conversion unchanged and silently.

#include <orv/string.h>

namespace orv::verra_sdk {

/// The way `ColorConfig::transform(color, from, to)` goes.
enum class ColorRoute {
    /// The names are equal apart from case: the colour comes back as it is.
    Same,
    /// "linear" to or from "sRGB" or "Rec709": the module's own
    /// single-precision curves, whatever the configuration says of them.
    BuiltInCurve,
    /// A processor of the shared configuration.
    Processor,
    /// No route: the configuration has no processor for the pair, and the
    /// transform would return the colour unchanged.
    None,
};

/// The route `ColorConfig::transform` takes from `from` to `to` under the
/// shared configuration (names compared without regard to case, as the
/// transform compares them). Builds a processor to tell `Processor` from
/// `None`; logs nothing, throws nothing.
ColorRoute colorRoute(String from, String to);

/// A word for `route`: "same", "built-in curve", "processor" or "none".
char const* colorRouteName(ColorRoute route) noexcept;

} // namespace orv::verra_sdk
