#pragma once
// The configuration's display and view transforms, with looks, as a viewer
// shows an image: names checked against the configuration with the valid
// choices in the message, then applied to float pixels.
//
// Not thread-safe (one thread at a time, as the module); never throws or
// prints.

#include <verra_sdk/kit/color_transform.h>

#include <OpenImageIO/imagebuf.h>

#include <string>

namespace orv::verra_sdk::kit {

/// A display/view transform, every name in the configuration's own form.
struct DisplayView {
    /// The colour space of the pixels.
    std::string from;
    std::string display;
    std::string view;
    /// The looks as OpenColorIO takes them ("a, +b, -c"); empty for none.
    std::string looks;
    /// The colour space the result is in, for the output's "oiio:ColorSpace":
    /// the view's, or `from` when inverted.
    std::string result;
    /// True to take display-referred pixels back to `from` through the
    /// inverse of the view and its looks.
    bool inverse = false;
    /// Context variables set for this transform, as the environment would.
    ContextVariables context = {};
};

/// What the user asked for: empty display or view means the config's
/// default; `from` is a colour-space name as the user typed it.
struct DisplayViewRequest {
    std::string from;
    std::string display;
    std::string view;
    std::string looks;
    bool inverse = false;
    ContextVariables context = {};
};

/// Checks `request` against the configuration of the latest `loadConfig`
/// (the built-in colour spaces alone have no displays) and builds the
/// transform's processor once with OpenColorIO. Every display and every view
/// of a display is accepted, active or not (its own views, then the shared
/// ones it uses); names match exactly, else apart from case; `from` is
/// resolved as `resolveColorSpace` resolves it, and "linear" stands for the
/// scene_linear role when the config has no such space. Looks given
/// replace the view's own looks; none keeps them. `inverse` and `context`
/// are passed on. On success fills `chosen`; else leaves it as it was and
/// returns false, with a message in `error` that names the valid choices for
/// an unknown display, view, look or colour space, or with OpenColorIO's
/// reason when the processor (or its inverse) cannot be built.
bool chooseDisplayView(DisplayViewRequest const& request, DisplayView& chosen, std::string& error);

/// Applies `transform`, with its looks, to the FLOAT RGB or RGBA `pixels` in
/// place through OpenColorIO's CPU processor of the configuration of the
/// latest `loadConfig`: the three colour channels of every pixel, rows split
/// across OpenImageIO's thread pool; alpha is left exactly as it was
/// (colours are not divided by it). Pixels held by an image cache are read
/// into memory first. False, with the reason in `error`, for other pixel
/// types or channel counts, without a configuration file, or when
/// OpenColorIO fails. Not thread-safe against the module or `loadConfig`.
bool applyDisplayView(DisplayView const& transform, OIIO::ImageBuf& pixels, std::string& error);

} // namespace orv::verra_sdk::kit
