// Image files through the toolkit's file pipeline, as `colorconfig convert`
// and `colorconfig view` run them: names resolved and checked first, every
// subimage, MIP level and channel kept, the output written beside its target
// and renamed into place only once complete, never over the input.

#include "binding.h"

#include <verra_sdk/kit/image_operations.h>
#include <verra_sdk/kit/processor_check.h>

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

void convertFile(std::string const& input, std::string const& output, std::string const& fromTyped,
                 std::string const& toTyped, bool unassociatedAlpha)
{
    callModule([&](ErrorCapture&) {
        std::string const from = resolvedColorSpace(fromTyped);
        std::string const to = resolvedColorSpace(toTyped);
        if (std::string const problem = kit::conversionProblem(from, to); !problem.empty()) {
            throw std::runtime_error("cannot convert from '" + from + "' to '" + to + "': " + problem);
        }
        runJob(
            {input, output, kit::Precision::KeepBytes, false, kit::conversionOperation(from, to), unassociatedAlpha});
    });
}

py::tuple viewFile(std::string const& input, std::string const& output, std::string const& fromTyped,
                   std::optional<std::string> const& display, std::optional<std::string> const& view, py::handle looks,
                   bool unassociatedAlpha)
{
    std::string const looksWanted = looksText(looks);
    kit::DisplayView const chosen = callModule([&](ErrorCapture&) {
        kit::DisplayView const made = chooseView(fromTyped, display, view, looksWanted);
        runJob({input, output, kit::Precision::Float, false, kit::displayViewOperation(made), unassociatedAlpha});
        return made;
    });
    return py::make_tuple(text(chosen.display), text(chosen.view));
}

} // namespace

void addFiles(py::module_& m)
{
    m.def("convert_file", &convertFile, py::arg("src"), py::arg("dst"), py::arg("from_space"), py::arg("to_space"),
          py::kw_only(), py::arg("unassociated_alpha") = false,
          "Converts the image file `src` from `from_space` to `to_space` into `dst`, as `colorconfig convert` "
          "does: the format is the one `dst`'s extension names; the data type, every subimage and MIP level, "
          "windows, tiling, compression, attributes and every channel but R, G and B are kept; colour "
          "multiplied by alpha is divided, converted and multiplied again; 'oiio:ColorSpace' names the new "
          "space. `dst` is written beside its target and renamed into place only once complete, and never "
          "replaces `src`. Names are resolved as resolve_color_space() does. `unassociated_alpha`: the "
          "input's colours are not multiplied by alpha, whatever its format says. Raises ValueError for an "
          "unknown name or a `dst` that is `src`, RuntimeError when the conversion fails (a missing LUT "
          "file...), OSError when a file cannot be read or written; existing files are left as they were.");
    m.def("view_file", &viewFile, py::arg("src"), py::arg("dst"), py::arg("from_space"),
          py::arg("display") = py::none(), py::arg("view") = py::none(), py::arg("looks") = py::tuple(), py::kw_only(),
          py::arg("unassociated_alpha") = false,
          "Writes `dst`: the image file `src` through the config's display/view transform with `looks`, as "
          "`colorconfig view` does (None: the config's default display or view; looks as in apply_view()); "
          "alpha and the other channels are kept, with convert_file()'s file safety. Returns the (display, "
          "view) applied. Raises as convert_file() and apply_view().");
}

} // namespace verra_python
