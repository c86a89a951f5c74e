// Single colours, with the module's own semantics: a colour that cannot be
// converted comes back unchanged, and nothing is raised.

#include "binding.h"

#include <verra_sdk/color_route.h>
#include <verra_sdk/colorconfig.h>
#include <verra_sdk/kit/processor_check.h>

#include <pybind11/stl.h>

#include <array>

namespace verra_python {

namespace {

namespace kit = orv::verra_sdk::kit;
using orv::verra_sdk::ColorConfig;
using Rgba = std::array<double, 4>;

py::tuple transformed(Rgba const& rgba, std::string const& from, std::string const& to)
{
    Rgba const out = callModule([&](ErrorCapture&) {
        orv::math::RgbaT<double> const color{rgba[0], rgba[1], rgba[2], rgba[3]};
        // A transform whose processor OpenColorIO cannot build (a missing LUT
        // file) is not handed to OpenImageIO: the colour stays as it is, as
        // the module returns it when it has no processor.
        if (!kit::conversionProblem(from, to).empty()) {
            return rgba;
        }
        orv::math::RgbaT<double> const c = ColorConfig::transform(color, orv::String(from), orv::String(to));
        return Rgba{c.r, c.g, c.b, c.a};
    });
    return py::make_tuple(out[0], out[1], out[2], out[3]);
}

// Docstrings live as long as the functions (pybind11 keeps the pointers).
std::string const kUnchanged =
    " Alpha is returned unchanged. A colour that cannot be converted (an unknown name, no processor "
    "between the spaces) is returned unchanged, without an exception: the module's own semantics. "
    "color_route() tells beforehand whether a conversion exists.";
std::string const kTransformDoc =
    "The colour `rgba` (4 numbers) converted from `from_space` to `to_space`, as a tuple of 4 floats. Names "
    "are compared without regard to case; 'linear' to and from 'sRGB' or 'Rec709' use the module's "
    "single-precision curves, other pairs a processor of the config." +
    kUnchanged;
std::string const kToLinearDoc = "transform(rgba, from_space, 'linear')." + kUnchanged;
std::string const kFromLinearDoc = "transform(rgba, 'linear', to_space)." + kUnchanged;

} // namespace

void addColors(py::module_& m)
{
    m.def(
        "transform",
        [](Rgba const& rgba, std::string const& from, std::string const& to) { return transformed(rgba, from, to); },
        py::arg("rgba"), py::arg("from_space"), py::arg("to_space"), kTransformDoc.c_str());
    m.def(
        "color_space_to_linear",
        [](Rgba const& rgba, std::string const& from) { return transformed(rgba, from, "linear"); }, py::arg("rgba"),
        py::arg("from_space"), kToLinearDoc.c_str());
    m.def(
        "linear_to_color_space",
        [](Rgba const& rgba, std::string const& to) { return transformed(rgba, "linear", to); }, py::arg("rgba"),
        py::arg("to_space"), kFromLinearDoc.c_str());
    m.def(
        "color_route",
        [](std::string const& from, std::string const& to) {
            return text(callModule([&](ErrorCapture&) {
                return std::string(
                    orv::verra_sdk::colorRouteName(orv::verra_sdk::colorRoute(orv::String(from), orv::String(to))));
            }));
        },
        py::arg("from_space"), py::arg("to_space"),
        "How transform() goes from `from_space` to `to_space`: 'same', 'built-in curve', 'processor', or "
        "'none' when it would return the colour unchanged.");
}

} // namespace verra_python
