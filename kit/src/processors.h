#pragma once
// What the toolkit's units that build OpenColorIO processors share: names
// matched as the user typed them, looks checked against the configuration,
// context variables set for one run, and packed float pixels run through a
// CPU processor on OpenImageIO's thread pool.

#include <verra_sdk/kit/color_transform.h>
#include <verra_sdk/kit/display_view.h>

#include <OpenColorIO/OpenColorIO.h>
#include <OpenImageIO/imagebuf.h>

#include <string>
#include <vector>

namespace orv::verra_sdk::kit::detail {

/// `names` quoted and joined with ", ".
std::string quoted(std::vector<std::string> const& names);

/// The entry of `names` equal to `wanted`, else the one equal apart from
/// case; empty when there is none.
std::string matching(std::string const& wanted, std::vector<std::string> const& names);

/// The config's name of the colour space `name` (a name, alias or role);
/// the built-in "linear", which the config may not have, stands for its
/// scene_linear role. Empty when the config has no such space.
std::string configSpace(OCIO_NAMESPACE::Config const& config, std::string const& name);

/// Puts in `name`, a colour-space name as the user typed it, the config's
/// spelling of it (resolved as `resolveColorSpace` does, then as
/// `configSpace`); false with a message when it names no colour space of
/// the config (`unknownColorSpaceText` for one it does not know at all).
bool configSpaceNamed(OCIO_NAMESPACE::Config const& config, std::string& name, std::string& error);

/// The looks of `request` ("a, +b, -c") in the config's spelling, each with
/// the + or - it was given, into `looks`; false with a message naming the
/// config's looks for an unknown one.
bool chooseLooks(OCIO_NAMESPACE::Config const& config, std::string const& request, std::string& looks,
                 std::string& error);

/// The configuration of the latest `loadConfig`, or a raw one (no colour
/// spaces but "raw") when only the built-in colour spaces are in use.
OCIO_NAMESPACE::ConstConfigRcPtr configOrRaw();

/// The processor of `transform` (checked by `chooseDisplayView`), with its
/// looks in place of the view's own and its context, inverted when it is
/// asked to be. Throws OpenColorIO's exception.
OCIO_NAMESPACE::ConstProcessorRcPtr displayViewProcessor(OCIO_NAMESPACE::ConstConfigRcPtr const& config,
                                                         DisplayView const& transform);

/// The processor of `transform` (checked by `chooseColorTransform`). Throws
/// OpenColorIO's exception.
OCIO_NAMESPACE::ConstProcessorRcPtr colorTransformProcessor(OCIO_NAMESPACE::ConstConfigRcPtr const& config,
                                                            ColorTransform const& transform);

/// Applies `processor` to the RGB of every pixel of the FLOAT RGB or RGBA
/// `pixels` in place, rows split across threads; alpha is left as it is.
/// False with `what` and the reason in `error` for other pixels or when
/// OpenColorIO fails.
bool applyProcessor(OCIO_NAMESPACE::ConstProcessorRcPtr const& processor, OIIO::ImageBuf& pixels,
                    std::string const& what, std::string& error);

} // namespace orv::verra_sdk::kit::detail
