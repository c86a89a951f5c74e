// numpy pixel arrays through the module's image and buffer conversions and
// the toolkit's display/view transform: the caller's memory is wrapped, never
// copied, and converted with the GIL released.

#include "arrays.h"

#include <verra_sdk/colorconfig.h>
#include <verra_sdk/kit/borrowed_pixels.h>
#include <verra_sdk/kit/display_view.h>
#include <verra_sdk/kit/processor_check.h>

#include <orv/verra/pixel.h>

#include <pybind11/stl.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace verra_python {

namespace {

namespace kit = orv::verra_sdk::kit;
namespace sdk = orv::verra_sdk;
using orv::verra::float3;
using orv::verra::float4;
using orv::verra::Rgba8;

/// Raises RuntimeError when OpenColorIO cannot build the processor from
/// `from` to `to` (a missing or unreadable LUT file): such a transform is
/// not handed to OpenImageIO. An empty name stands for "sRGB", as in the
/// module's image and buffer conversions.
void requireConvertible(std::string from, std::string to)
{
    from = from.empty() ? "sRGB" : from;
    to = to.empty() ? "sRGB" : to;
    if (from == to) {
        return;
    }
    if (std::string const problem = kit::conversionProblem(from, to); !problem.empty()) {
        throw std::runtime_error("cannot convert from '" + from + "' to '" + to + "': " + problem);
    }
}

/// Raises the module's failure: ValueError when it found no processor for
/// the pair of names (an unknown name), RuntimeError when the conversion
/// itself failed; the logged line is the message.
[[noreturn]] void throwFailure(ErrorCapture const& errors)
{
    std::string const message = errors.message("the conversion failed");
    if (std::string_view(message).substr(0, 20) == "Cannot convert from ") {
        throw py::value_error(message);
    }
    throw std::runtime_error(message);
}

ArrayRule const kRgba8{"pixels", Channel::Uint8, 4, 4, true, "a uint8 array of shape (H, W, 4)"};
ArrayRule const kRgbIn{"pixels", Channel::Float32, 3, 3, false, "a float32 array of shape (H, W, 3)"};
ArrayRule const kRgbOrRgba{
    "pixels", Channel::Float32, 3, 4, false, "a float32 array of shape (H, W, 3), or (H, W, 4) to convert in place"};
ArrayRule const kRgbaInPlace{"pixels", Channel::Float32, 4, 4, true, "a float32 array of shape (H, W, 4)"};
ArrayRule const kView{"pixels", Channel::Float32, 3, 4, true, "a float32 array of shape (H, W, 3) or (H, W, 4)"};

void transformImage(py::handle pixels, std::string const& from, std::string const& to)
{
    PixelArray const array = checkedPixels(pixels, kRgba8);
    callModule([&](ErrorCapture& errors) {
        requireConvertible(from, to);
        sdk::Image const image = sdk::Image::wrap(static_cast<Rgba8*>(array.data), array.width, array.height);
        if (!image.isValid()) {
            throw std::bad_alloc();
        }
        if (!sdk::ColorConfig::transform(image, orv::String(from), orv::String(to))) {
            throwFailure(errors);
        }
    });
}

py::array generateRgba8(py::handle pixels, std::string const& to)
{
    PixelArray const source = checkedPixels(pixels, kRgbIn);
    py::array_t<std::uint8_t> result({py::ssize_t{source.height}, py::ssize_t{source.width}, py::ssize_t{4}});
    void* const out = result.mutable_data();
    callModule([&](ErrorCapture& errors) {
        requireConvertible("linear", to);
        kit::BorrowedPixels<float3> rgb(source.data, source.width, source.height);
        kit::BorrowedPixels<Rgba8> rgba(out, source.width, source.height);
        if (!sdk::colorConfigGenerateRgba8(rgb.array(), rgba.array(), orv::String(to))) {
            throwFailure(errors);
        }
    });
    return std::move(result);
}

py::object transformRgb(py::handle pixels, std::string const& to)
{
    PixelArray const checked = checkedPixels(pixels, kRgbOrRgba);
    if (checked.channels == 4) {
        PixelArray const array = checkedPixels(pixels, kRgbaInPlace);
        callModule([&](ErrorCapture& errors) {
            requireConvertible("linear", to);
            kit::BorrowedPixels<float4> rgba(array.data, array.width, array.height);
            if (!sdk::colorConfigTransformRgb(rgba.array(), orv::String(to))) {
                throwFailure(errors);
            }
        });
        return py::reinterpret_borrow<py::object>(pixels);
    }
    py::array_t<float> result({py::ssize_t{checked.height}, py::ssize_t{checked.width}, py::ssize_t{3}});
    void* const out = result.mutable_data();
    callModule([&](ErrorCapture& errors) {
        requireConvertible("linear", to);
        kit::BorrowedPixels<float3> source(checked.data, checked.width, checked.height);
        kit::BorrowedPixels<float3> destination(out, checked.width, checked.height);
        if (!sdk::colorConfigTransformRgb(source.array(), destination.array(), orv::String(to))) {
            throwFailure(errors);
        }
    });
    return std::move(result);
}

void applyView(py::handle pixels, std::string const& from, std::optional<std::string> const& display,
               std::optional<std::string> const& view, py::handle looks, bool inverse, ContextDict const& context)
{
    std::string const looksWanted = looksText(looks);
    PixelArray const array = checkedPixels(pixels, kView);
    callModule([&](ErrorCapture&) {
        kit::DisplayView const chosen = chooseView(from, display, view, looksWanted, inverse, context);
        std::string error;
        OIIO::ImageBuf buffer(OIIO::ImageSpec(array.width, array.height, array.channels, OIIO::TypeDesc::FLOAT),
                              array.data);
        if (!kit::applyDisplayView(chosen, buffer, error)) {
            throw std::runtime_error(error);
        }
    });
}

} // namespace

void addPixels(py::module_& m)
{
    m.def("transform_image", &transformImage, py::arg("pixels"), py::arg("from_space"), py::arg("to_space"),
          "Converts the RGBA8 `pixels` (uint8, shape (H, W, 4), C-contiguous, writeable) in place from "
          "`from_space` to `to_space` through the config, as the module's image transform: names compared "
          "exactly, '' means 'sRGB', no built-in curves, equal names leave the pixels as they are. Raises "
          "ValueError when the config has no processor for the names (the module's line), RuntimeError when "
          "the conversion fails, TypeError or ValueError for another kind of array; the pixels are untouched "
          "then, but for a conversion that failed midway.");
    m.def("generate_rgba8", &generateRgba8, py::arg("pixels"), py::arg("to_space") = "sRGB",
          "A new opaque RGBA8 array (uint8, shape (H, W, 4), alpha 255) of the float RGB `pixels` (float32, "
          "shape (H, W, 3), C-contiguous) converted out of 'linear' into `to_space` ('' means 'sRGB'). Raises "
          "ValueError for a name the config cannot convert into, RuntimeError when the conversion fails, "
          "TypeError or ValueError for another kind of array.");
    m.def("transform_rgb", &transformRgb, py::arg("pixels"), py::arg("to_space") = "sRGB",
          "Converts float `pixels` out of 'linear' into `to_space` ('' means 'sRGB'): shape (H, W, 3) gives a "
          "new float32 array; shape (H, W, 4) (writeable) is converted in place, all four channels through the "
          "processor, and returned. Raises as generate_rgba8().");
    m.def("apply_view", &applyView, py::arg("pixels"), py::arg("from_space"), py::arg("display") = py::none(),
          py::arg("view") = py::none(), py::arg("looks") = py::tuple(), py::kw_only(), py::arg("inverse") = false,
          py::arg("context") = ContextDict(),
          "Applies the config's display/view transform, with `looks` (a str 'a, +b, -c' or a sequence of names) "
          "in place of the view's own, to the float `pixels` (float32, shape (H, W, 3) or (H, W, 4), "
          "C-contiguous, writeable) in place, as `colorconfig view` does: alpha is left as it is. None means "
          "the config's default display or view. `from_space` is resolved as resolve_color_space() does. "
          "`inverse` takes display-referred pixels back to `from_space` through the inverse of the view and "
          "looks; `context` (a dict of str) sets the config's context variables for this call. "
          "Raises ValueError for an unknown colour space, display, view or look (naming the valid choices) "
          "or without a config file, RuntimeError when OpenColorIO cannot build or apply the transform.");
}

} // namespace verra_python
