// Image files through the toolkit's file pipeline, as `colorconfig convert`
// and `colorconfig view` run them: names resolved and checked first, every
// subimage, MIP level and channel kept, the output written beside its target
// and renamed into place only once complete, never over the input.

#include "binding.h"

#include <verra_sdk/kit/image_operations.h>
#include <verra_sdk/kit/lut_bake.h>

#include <pybind11/stl.h>

#include <optional>

namespace verra_python {

namespace {

namespace kit = orv::verra_sdk::kit;

/// Runs `job` alone, raising the program's message for a failure:
/// ValueError when the output would replace the input, OSError when a file
/// cannot be read or written, RuntimeError when the conversion fails.
void runJob(kit::FileJob const& job)
{
    kit::FileLedger ledger{{job.input}, {}};
    kit::JobResult const result = kit::runFileJob(job, ledger);
    std::string const message = kit::jobFailureText(job, result, true);
    switch (result.failure) {
    case kit::JobFailure::None:
        return;
    case kit::JobFailure::ReplacesInput:
    case kit::JobFailure::WrittenBefore:
        throw py::value_error(message);
    case kit::JobFailure::Read:
    case kit::JobFailure::Write:
        throw FileError(message);
    case kit::JobFailure::Operation:
        break;
    }
    throw std::runtime_error(message);
}

void convertFile(std::string const& input, std::string const& output, std::optional<std::string> const& from,
                 std::optional<std::string> const& to, bool unassociatedAlpha, py::handle looks,
                 std::optional<std::string> const& lut, bool invert, ContextDict const& context)
{
    kit::ColorTransform transform;
    transform.looks = looksText(looks);
    transform.lutFile = lut.value_or("");
    transform.invert = invert;
    transform.context = contextOf(context);
    if (!lut && (!from || !to)) {
        throw py::value_error("convert_file() needs from_space and to_space, or lut");
    }
    callModule([&](ErrorCapture&) {
        transform.from = from ? resolvedColorSpace(*from) : "";
        transform.to = to ? resolvedColorSpace(*to) : "";
        std::string error;
        if (!kit::chooseColorTransform(transform, error)) {
            throwTransformError(error);
        }
        runJob({input, output, transform.plain() ? kit::Precision::KeepBytes : kit::Precision::Float, false,
                kit::colorTransformOperation(transform), unassociatedAlpha});
    });
}

py::dict bakeLut(std::string const& output, std::string const& from, std::optional<std::string> const& to,
                 std::optional<std::string> const& display, std::optional<std::string> const& view, py::handle looks,
                 std::optional<std::string> const& shaper, int size, std::optional<std::string> const& format,
                 ContextDict const& context)
{
    kit::LutBake const request{
        from, to.value_or(""),     display.value_or(""), view.value_or(""), looksText(looks), shaper.value_or(""),
        size, format.value_or(""), contextOf(context)};
    kit::BakeReport const report = callModule([&](ErrorCapture&) {
        kit::BakeReport made;
        std::string error;
        if (!kit::bakeLut(request, output, made, error)) {
            if (std::string_view(error).substr(0, 13) == "cannot write ") {
                throw FileError(error);
            }
            throwTransformError(error);
        }
        return made;
    });
    py::dict result;
    result["format"] = text(report.format);
    result["largest_error"] = report.unmeasured.empty() ? py::object(py::float_(report.largestError)) : py::none();
    result["samples"] = report.samples;
    result["unmeasured"] = text(report.unmeasured);
    return result;
}

py::tuple viewFile(std::string const& input, std::string const& output, std::string const& fromTyped,
                   std::optional<std::string> const& display, std::optional<std::string> const& view, py::handle looks,
                   bool unassociatedAlpha, bool inverse, ContextDict const& context)
{
    std::string const looksWanted = looksText(looks);
    kit::DisplayView const chosen = callModule([&](ErrorCapture&) {
        kit::DisplayView const made = chooseView(fromTyped, display, view, looksWanted, inverse, context);
        runJob({input, output, kit::Precision::Float, false, kit::displayViewOperation(made), unassociatedAlpha});
        return made;
    });
    return py::make_tuple(text(chosen.display), text(chosen.view));
}

} // namespace

void addFiles(py::module_& m)
{
    m.def("convert_file", &convertFile, py::arg("src"), py::arg("dst"), py::arg("from_space") = py::none(),
          py::arg("to_space") = py::none(), py::kw_only(), py::arg("unassociated_alpha") = false,
          py::arg("looks") = py::tuple(), py::arg("lut") = py::none(), py::arg("invert") = false,
          py::arg("context") = ContextDict(),
          "Converts the image file `src` from `from_space` to `to_space` into `dst`, as `colorconfig convert` "
          "does: the format is the one `dst`'s extension names; the data type, every subimage and MIP level, "
          "windows, tiling, compression, attributes and every channel but R, G and B are kept; colour "
          "multiplied by alpha is divided, converted and multiplied again; 'oiio:ColorSpace' names the new "
          "space. `dst` is written beside its target and renamed into place only once complete, and never "
          "replaces `src`. Names are resolved as resolve_color_space() does. `unassociated_alpha`: the "
          "input's colours are not multiplied by alpha, whatever its format says. `looks` (as in apply_view()) "
          "are applied between the two spaces as OpenColorIO's LookTransform applies them; `lut` applies a LUT "
          "file that OpenColorIO reads instead of the two spaces (inverted with `invert`; no config needed); "
          "`context` (a dict of str) sets the config's context variables for this call, as the environment "
          "would. Raises ValueError for an unknown name or a `dst` that is `src`, RuntimeError when the "
          "conversion fails (a missing or unreadable LUT file...), OSError when a file cannot be read or "
          "written; existing files are left as they were.");
    m.def("view_file", &viewFile, py::arg("src"), py::arg("dst"), py::arg("from_space"),
          py::arg("display") = py::none(), py::arg("view") = py::none(), py::arg("looks") = py::tuple(), py::kw_only(),
          py::arg("unassociated_alpha") = false, py::arg("inverse") = false, py::arg("context") = ContextDict(),
          "Writes `dst`: the image file `src` through the config's display/view transform with `looks`, as "
          "`colorconfig view` does (None: the config's default display or view; looks as in apply_view()); "
          "alpha and the other channels are kept, with convert_file()'s file safety. `inverse` takes a "
          "display-referred `src` back to `from_space` through the inverse of the view and looks; `context` as "
          "in convert_file(). Returns the (display, view) applied. Raises as convert_file() and apply_view().");
    m.def("bake_lut", &bakeLut, py::arg("dst"), py::arg("from_space"), py::arg("to_space") = py::none(), py::kw_only(),
          py::arg("display") = py::none(), py::arg("view") = py::none(), py::arg("looks") = py::tuple(),
          py::arg("shaper") = py::none(), py::arg("size") = 0, py::arg("format") = py::none(),
          py::arg("context") = ContextDict(),
          "Bakes the LUT file `dst`, as `colorconfig bake` does, through OpenColorIO's Baker: from `from_space` "
          "to `to_space`, or (without it) through `display` and `view` (None: the config's defaults), with "
          "`looks`; `shaper` names a colour space whose [0, 1] range a 1D shaper maps the input into (for HDR "
          "input), `size` the cube's size (0: the format's own), `format` one of lut_formats() (None: the first "
          "for `dst`'s extension). `dst` is written beside its target and renamed into place. Returns a dict: "
          "'format', 'largest_error' (the largest difference of the file, read back by OpenColorIO, from the "
          "exact transform, or None when OpenColorIO cannot read it back), 'samples', 'unmeasured' (why not). "
          "Raises ValueError for an unknown name or format, RuntimeError when OpenColorIO fails, OSError when "
          "`dst` cannot be written.");
    m.def(
        "lut_formats",
        [] {
            py::list formats;
            for (kit::LutFormat const& format : kit::lutFormats()) {
                formats.append(py::make_tuple(text(format.name), text(format.extension)));
            }
            return formats;
        },
        "The (name, extension) of every format bake_lut() writes, in OpenColorIO's order.");
}

} // namespace verra_python
