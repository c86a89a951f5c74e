#pragma once
// The configuration's display and view transforms, with looks, checked
// before OpenImageIO applies them: OpenImageIO 2.4 ends the whole process
// when OpenColorIO's reason for a failure holds braces, and it ignores an
// unknown look without a word.

#include <OpenColorIO/OpenColorIO.h>
#include <OpenImageIO/imagebuf.h>

#include <string>

namespace colorconfig {

/// A display/view transform, every name in the configuration's own form.
struct DisplayView {
    /// The colour space of the pixels.
    std::string from;
    std::string display;
    std::string view;
    /// The looks as OpenColorIO takes them ("a, +b, -c"); empty for none.
    std::string looks;
    /// The colour space the view gives, for the output's "oiio:ColorSpace".
    std::string result;
};

/// What the user asked for: empty display or view means the config's
/// default, and `from` is a name the tool already resolved.
struct DisplayViewRequest {
    std::string from;
    std::string display;
    std::string view;
    std::string looks;
};

/// Checks `request` against `config` (null: only the built-in colour spaces,
/// which have no displays) and builds the transform's processor once with
/// OpenColorIO. False, with a message in `error` that names the valid
/// choices, for an unknown display, view, look or colour space, or with
/// OpenColorIO's reason when the processor cannot be built. Never throws.
bool chooseDisplayView(OCIO_NAMESPACE::ConstConfigRcPtr const& config, DisplayViewRequest const& request,
                       DisplayView& chosen, std::string& error);

/// Applies `transform` to the packed FLOAT RGB or RGBA `pixels` in place
/// through the shared configuration, as OpenImageIO's ociodisplay does
/// (alpha is kept, colours are not divided by it). False, with the reason in
/// `error`, when it fails.
bool applyDisplayView(DisplayView const& transform, OIIO::ImageBuf& pixels, std::string& error);

} // namespace colorconfig
