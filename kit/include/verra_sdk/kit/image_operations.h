#pragma once
// The operations of the file jobs (`runFileJob`) that the program runs:
// converting, viewing through a display/view, and previewing, and the
// batches (`runBatch`) of each, checked from the names the user typed. A
// host or a script runs the same ones on its own files.
//
// Example:
//
//     kit::FileJob job{"render.exr", "render.png", kit::Precision::Float, false,
//                      kit::displayViewOperation(chosen)};   // chosen by chooseDisplayView
//
//     kit::BatchRequest request;                              // every frame, "auto": each file's space
//     request.files = kit::planSequence("in/plate.#.exr", "out/plate.#.png", "").files;
//     if (kit::displayViewBatch({"auto", "", "", ""}, chosen, request, error)) kit::runBatch(request, {});
//
// Each operation holds copies of what it is given and may be run on many
// images, one at a time (the module's conversions are for one thread at a
// time); the batch set-ups check names against the configuration in use,
// from one thread at a time too, and cost the check (a processor built).
// Failures are values; nothing is thrown or printed.

#include <verra_sdk/kit/batch.h>
#include <verra_sdk/kit/color_transform.h>
#include <verra_sdk/kit/display_view.h>
#include <verra_sdk/kit/file_job.h>

#include <string>

namespace orv::verra_sdk::kit {

/// Converts each image's colour channels from `from` to `to` (`convertLevel`;
/// names as the colour-space list or the config holds them).
ImageOperation conversionOperation(std::string const& from, std::string const& to);

/// For a batch (`runBatch`): the conversion from each colour space into
/// `to`, or none, with "cannot convert from 'A' to 'B': <reason>", when the
/// configuration cannot make it (`conversionProblem`).
OperationMaker conversionMaker(std::string const& to);

/// For a batch: `colorTransformOperation` of `transform` with `from`
/// replaced by each colour space (kept when that is empty, as for a LUT
/// file alone), checked by `chooseColorTransform`; none, with its reason,
/// when the check fails.
OperationMaker colorTransformMaker(ColorTransform const& transform);

/// For a batch: `displayViewOperation` of the display, view and looks of
/// `request` (whose `from` is replaced by each colour space), or none, with
/// `chooseDisplayView`'s reason.
OperationMaker displayViewMaker(DisplayViewRequest const& request);

/// Applies `transform` to each image's colour channels (`applyDisplayView`
/// through `transformColorChannels`: alpha and other channels kept); the
/// image's "oiio:ColorSpace" becomes the view's colour space.
ImageOperation displayViewOperation(DisplayView const& transform);

/// Applies `transform` (checked by `chooseColorTransform`) to each image's
/// colour channels: a plain one as `conversionOperation` does, others as
/// `displayViewOperation` applies a view, on FLOAT images only. The image's
/// "oiio:ColorSpace" becomes the transform's result, and is removed after a
/// LUT file.
ImageOperation colorTransformOperation(ColorTransform const& transform);

/// Makes each image its opaque 8-bit preview: the colour channels (grey
/// spread over RGB) converted from `from` to `to`, then quantised by
/// OpenImageIO into RGBA with alpha 255, or RGB when `alpha` is false; the
/// image's "oiio:ColorSpace" becomes `to`. Run it on FLOAT images. With
/// `context`, the conversion is `chooseColorTransform`'s with those
/// variables instead of the module's.
ImageOperation previewOperation(std::string const& from, std::string const& to, bool alpha,
                                ContextVariables const& context = {});

/// For a batch: `previewOperation` from each colour space into `to`.
OperationMaker previewMaker(std::string const& to, bool alpha, ContextVariables const& context = {});

/// Whether a preview can be written to `output`: false, with the reason in
/// `error`, when its format stores no 8-bit values or OpenImageIO has no
/// writer for it; `alpha` tells whether the format holds an alpha channel.
bool previewTarget(std::string const& output, bool& alpha, std::string& error);

/// Sets `request` up for a batch of `transform`, which it checks first
/// (`chooseColorTransform`): its `from` (the resolved name, or "auto" for
/// each file's own colour space, then the other names are checked from
/// "linear"), `makeOperation` (`colorTransformMaker`) and its model's
/// precision (`KeepBytes` for a plain conversion, else `Float`). False, with
/// `request` as it was and the check's message in `error`.
bool colorTransformBatch(ColorTransform transform, BatchRequest& request, std::string& error);

/// Sets `batch` up for a batch through the display and view of `request`,
/// which it checks first (`chooseDisplayView`, its `from` as for
/// `colorTransformBatch`): its `from`, `makeOperation` (`displayViewMaker`)
/// and FLOAT precision; `chosen` tells the display, view and looks taken.
/// False, with both as they were and the check's message in `error`.
bool displayViewBatch(DisplayViewRequest request, DisplayView& chosen, BatchRequest& batch, std::string& error);

/// Sets `request` up for a batch of previews, from `from` (as for
/// `colorTransformBatch`) to `to` with `context`, written to `output`: its
/// `from`, `makeOperation` (`previewMaker`), FLOAT precision and first image
/// only. False, with `request` as it was and a message in `error`: the
/// names' check, or "cannot write '<output>': " and `previewTarget`'s reason.
bool previewBatch(std::string const& from, std::string const& to, std::string const& output,
                  ContextVariables const& context, BatchRequest& request, std::string& error);

} // namespace orv::verra_sdk::kit
