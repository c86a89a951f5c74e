// Image files through the toolkit's file pipeline, as `colorconfig convert`
// and `colorconfig view` run them: names resolved and checked first, every
// subimage, MIP level and channel kept, the output written beside its target
// and renamed into place only once complete, never over the input.

#include "binding.h"

#include <verra_sdk/kit/batch.h>
#include <verra_sdk/kit/image_operations.h>
#include <verra_sdk/kit/lut_bake.h>

#include <pybind11/stl.h>

#include <optional>

namespace verra_python {

namespace {

namespace kit = orv::verra_sdk::kit;

/// Where the frames of a sequence go, and how they are written.
struct Batch {
    std::optional<std::string> frames;
    unsigned jobs = 0;
    unsigned threads = 0;
    bool update = false;
    bool unassociatedAlpha = false;
    kit::OutputChoices output;
};

/// `Batch` from the keyword arguments of sequences and output choices.
Batch batchOf(bool unassociatedAlpha, std::optional<std::string> frames, unsigned jobs, unsigned threads, bool update,
              std::optional<std::string> const& dataType, std::optional<std::string> const& compression, int quality,
              bool dither)
{
    return {std::move(frames), jobs,
            threads,           update,
            unassociatedAlpha, kit::OutputChoices{dataType.value_or(""), compression.value_or(""), quality, dither}};
}

/// Raises the program's message for a failed item: ValueError when the
/// output would replace an input, OSError when a file cannot be read or
/// written, RuntimeError when the conversion fails. `message` is every
/// failure's, one a line.
[[noreturn]] void raiseFailure(kit::BatchItem const& item, std::string const& message)
{
    switch (item.result.failure) {
    case kit::JobFailure::ReplacesInput:
    case kit::JobFailure::WrittenBefore:
        throw py::value_error(message);
    case kit::JobFailure::Read:
    case kit::JobFailure::Write:
        throw FileError(message);
    case kit::JobFailure::None:
    case kit::JobFailure::Operation:
        break;
    }
    throw std::runtime_error(message);
}

/// Runs `input` to `output` (file names or frame patterns) as one batch of
/// `request` with `batch`'s choices (call under `moduleLock()`, without the
/// GIL). Returns the summary for a pattern, None for a single file; raises
/// for the failures, all named.
py::object runFiles(std::string const& input, std::string const& output, kit::BatchRequest request, Batch const& batch)
{
    kit::SequencePlan const plan = kit::planSequence(input, output, batch.frames.value_or(""));
    if (!plan.error.empty()) {
        throw py::value_error(plan.error);
    }
    request.files = plan.files;
    request.model.alphaUnassociated = batch.unassociatedAlpha;
    request.model.choices = batch.output;
    kit::BatchSummary const summary = kit::runBatch(request, {batch.jobs, batch.threads, batch.update, {}});
    std::string failures;
    kit::BatchItem const* first = nullptr;
    for (kit::BatchItem const& item : summary.items) {
        if (item.state == kit::FrameState::Failed) {
            failures += (failures.empty() ? "" : "\n") + item.reason;
            first = first != nullptr ? first : &item;
        }
    }
    if (first != nullptr) {
        raiseFailure(*first, failures);
    }
    py::gil_scoped_acquire const gil;
    if (kit::sequencePattern(input).empty()) {
        return py::none();
    }
    py::dict result;
    py::list lists[3];
    for (kit::BatchItem const& item : summary.items) {
        lists[static_cast<int>(item.state)].append(text(item.files.output));
    }
    result["converted"] = lists[0];
    result["skipped"] = lists[1];
    result["missing"] = plan.missing.empty() ? py::list() : py::cast(plan.missing[0].frames);
    return std::move(result);
}

py::object convertFile(std::string const& input, std::string const& output, std::optional<std::string> const& from,
                       std::optional<std::string> const& to, py::handle looks, std::optional<std::string> const& lut,
                       bool invert, ContextDict const& context, Batch const& batch)
{
    kit::ColorTransform transform;
    transform.looks = looksText(looks);
    transform.lutFile = lut.value_or("");
    transform.invert = invert;
    transform.context = contextOf(context);
    if (!lut && (!from || !to)) {
        throw py::value_error("convert_file() needs from_space and to_space, or lut");
    }
    return callModule([&](ErrorCapture&) {
        // "auto" stays for the batch: each file's own space comes later.
        transform.from = from == "auto" ? "auto" : from ? resolvedColorSpace(*from) : "";
        transform.to = to ? resolvedColorSpace(*to) : "";
        kit::BatchRequest request;
        std::string error;
        if (!kit::colorTransformBatch(transform, request, error)) {
            throwTransformError(error);
        }
        return runFiles(input, output, request, batch);
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

py::object viewFile(std::string const& input, std::string const& output, std::string const& fromTyped,
                    std::optional<std::string> const& display, std::optional<std::string> const& view, py::handle looks,
                    bool inverse, ContextDict const& context, Batch const& batch)
{
    std::string const looksWanted = looksText(looks);
    return callModule([&](ErrorCapture&) {
        // With "auto", the display and view are checked from the scene-linear space.
        bool const automatic = fromTyped == "auto";
        kit::DisplayView const made =
            chooseView(automatic ? "linear" : fromTyped, display, view, looksWanted, inverse, context);
        kit::FileJob const model{"", "", kit::Precision::Float, false, {}, false};
        kit::DisplayViewRequest const request{made.from,  made.display, made.view,
                                              made.looks, made.inverse, contextOf(context)};
        py::object found =
            runFiles(input, output, {{}, automatic ? "auto" : made.from, kit::displayViewMaker(request), model}, batch);
        // Python objects change hands only under the GIL.
        py::gil_scoped_acquire const gil;
        py::object const summary = std::move(found);
        return summary.is_none() ? py::make_tuple(text(made.display), text(made.view))
                                 : py::make_tuple(text(made.display), text(made.view), summary);
    });
}

} // namespace

void addFiles(py::module_& m)
{
    auto const convert = [](std::string const& src, std::string const& dst, std::optional<std::string> const& from,
                            std::optional<std::string> const& to, bool unassociatedAlpha, py::handle looks,
                            std::optional<std::string> const& lut, bool invert, ContextDict const& context,
                            std::optional<std::string> frames, unsigned jobs, unsigned threads, bool update,
                            std::optional<std::string> const& dataType, std::optional<std::string> const& compression,
                            int quality, bool dither) {
        return convertFile(src, dst, from, to, looks, lut, invert, context,
                           batchOf(unassociatedAlpha, std::move(frames), jobs, threads, update, dataType, compression,
                                   quality, dither));
    };
    auto const viewWith = [](std::string const& src, std::string const& dst, std::string const& from,
                             std::optional<std::string> const& display, std::optional<std::string> const& view,
                             py::handle looks, bool unassociatedAlpha, bool inverse, ContextDict const& context,
                             std::optional<std::string> frames, unsigned jobs, unsigned threads, bool update,
                             std::optional<std::string> const& dataType, std::optional<std::string> const& compression,
                             int quality, bool dither) {
        return viewFile(src, dst, from, display, view, looks, inverse, context,
                        batchOf(unassociatedAlpha, std::move(frames), jobs, threads, update, dataType, compression,
                                quality, dither));
    };
    m.def("convert_file", convert, py::arg("src"), py::arg("dst"), py::arg("from_space") = py::none(),
          py::arg("to_space") = py::none(), py::kw_only(), py::arg("unassociated_alpha") = false,
          py::arg("looks") = py::tuple(), py::arg("lut") = py::none(), py::arg("invert") = false,
          py::arg("context") = ContextDict(), py::arg("frames") = py::none(), py::arg("jobs") = 0,
          py::arg("threads") = 0, py::arg("update") = false, py::arg("data_type") = py::none(),
          py::arg("compression") = py::none(), py::arg("quality") = 0, py::arg("dither") = false,
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
          "would. `from_space` 'auto' takes each file's recorded space when the config knows it, else the file "
          "rules' guess. `src` and `dst` may be frame patterns (#: four digits, @: one digit each, %0Nd): the "
          "frames of `frames` ('1001-1100x2,1200'), else those on disk, `jobs` at once (0: one per core) within "
          "`threads` threads in all (0: one per core); `update` skips outputs not older than their input. "
          "`data_type` ('uint8', 'uint10', 'uint16', 'half', 'float'), `compression`, `quality` (JPEG, 1-100) "
          "and `dither` choose the output as oiiotool's options do. Returns None for a file, and for a pattern "
          "a dict of the outputs 'converted' and 'skipped' and the frames 'missing' between the first and last "
          "on disk. Raises ValueError for an unknown name, a malformed pattern or range, or a `dst` that is "
          "`src`, RuntimeError when the conversion fails (a missing or unreadable LUT file...), OSError when a "
          "file cannot be read or written; every failed frame is named, one a line, after the others were "
          "converted; existing files are left as they were.");
    m.def("view_file", viewWith, py::arg("src"), py::arg("dst"), py::arg("from_space"), py::arg("display") = py::none(),
          py::arg("view") = py::none(), py::arg("looks") = py::tuple(), py::kw_only(),
          py::arg("unassociated_alpha") = false, py::arg("inverse") = false, py::arg("context") = ContextDict(),
          py::arg("frames") = py::none(), py::arg("jobs") = 0, py::arg("threads") = 0, py::arg("update") = false,
          py::arg("data_type") = py::none(), py::arg("compression") = py::none(), py::arg("quality") = 0,
          py::arg("dither") = false,
          "Writes `dst`: the image file `src` through the config's display/view transform with `looks`, as "
          "`colorconfig view` does (None: the config's default display or view; looks as in apply_view()); "
          "alpha and the other channels are kept, with convert_file()'s file safety. `inverse` takes a "
          "display-referred `src` back to `from_space` through the inverse of the view and looks; `context` as "
          "in convert_file(), and so are its patterns and keywords. Returns the (display, view) applied, and for a "
          "pattern (display, view, summary) with convert_file()'s summary. Raises as convert_file() and "
          "apply_view().");
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
