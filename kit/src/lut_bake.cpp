#include <verra_sdk/kit/lut_bake.h>

#include <verra_sdk/kit/display_view.h>
#include <verra_sdk/kit/safe_output.h>

#include "current_config.h"
#include "processors.h"

#include <OpenImageIO/strutil.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <sstream>

namespace orv::verra_sdk::kit {

namespace {

namespace OCIO = OCIO_NAMESPACE;
namespace Strutil = OIIO::Strutil;

/// The colour spaces added to the copy of the config that is baked.
constexpr char const* kInput = "colorconfig bake input";
constexpr char const* kTarget = "colorconfig bake target";
constexpr char const* kShaper = "colorconfig bake shaper";

/// Points along each axis of the lattice a baked file is measured on: every
/// node of the usual cube sizes (17, 33, 65) and the middle of every cell
/// between them, where interpolation strays most (2.1 million colours, a
/// fraction of a second).
constexpr int kLattice = 129;

/// The format of `request` for `output`; empty with a message naming the
/// formats when there is none.
std::string formatFor(LutBake const& request, std::string const& output, std::string& error)
{
    std::string const extension =
        Strutil::lower(Strutil::lstrip(std::filesystem::path(output).extension().string(), "."));
    for (LutFormat const& format : lutFormats()) {
        if (request.format.empty() ? format.extension == extension : Strutil::iequals(format.name, request.format)) {
            return format.name;
        }
    }
    error = (request.format.empty() ? "no LUT format writes '." + extension + "' files"
                                    : "unknown LUT format '" + request.format + "'") +
            "; the formats: " + lutFormatNames();
    return {};
}

/// The exact processor of `request` from its colour space, names as the
/// user typed them, checked against the config with the valid choices in
/// `error`; null when a name is wrong.
OCIO::ConstProcessorRcPtr exactProcessor(OCIO::ConstConfigRcPtr const& config, LutBake const& request,
                                         std::string& error)
{
    if (request.to.empty()) {
        DisplayView chosen;
        if (!chooseDisplayView({request.from, request.display, request.view, request.looks, false, request.context},
                               chosen, error)) {
            return nullptr;
        }
        return detail::displayViewProcessor(config, chosen);
    }
    ColorTransform transform{request.from, request.to, request.looks, "", false, request.context, ""};
    // A plain conversion keeps the module's names: the config's are baked.
    if (!chooseColorTransform(transform, error) || !detail::configSpaceNamed(*config, transform.from, error) ||
        !detail::configSpaceNamed(*config, transform.to, error)) {
        return nullptr;
    }
    return detail::colorTransformProcessor(config, transform);
}

/// A colour space of the scene reference whose transform from it is `steps`.
OCIO::ColorSpaceRcPtr spaceOf(char const* name, OCIO::ConstProcessorRcPtr const& steps)
{
    OCIO::ColorSpaceRcPtr const space = OCIO::ColorSpace::Create(OCIO::REFERENCE_SPACE_SCENE);
    space->setName(name);
    if (steps) {
        // Optimised as the CPU processor optimises it: matrices that cancel
        // out are gone, and a shaper through the reference space has no
        // crosstalk the Baker would refuse.
        space->setTransform(steps->getOptimizedProcessor(OCIO::OPTIMIZATION_DEFAULT)->createGroupTransform(),
                            OCIO::COLORSPACE_DIR_FROM_REFERENCE);
    }
    return space;
}

/// `pixels` (packed RGB) through `processor`.
void applyTo(OCIO::ConstProcessorRcPtr const& processor, std::vector<float>& pixels)
{
    OCIO::PackedImageDesc image(pixels.data(), long(pixels.size() / 3), 1, 3);
    processor->getDefaultCPUProcessor()->apply(image);
}

/// Measures the baked file at `path` against `exact` on a lattice over
/// [0, 1], taken back through `shaper` when there is one.
void measure(std::string const& path, OCIO::ConstProcessorRcPtr const& exact, OCIO::ConstProcessorRcPtr const& shaper,
             BakeReport& report)
{
    std::vector<float> input;
    for (int r = 0; r < kLattice; ++r) {
        for (int g = 0; g < kLattice; ++g) {
            for (int b = 0; b < kLattice; ++b) {
                for (int value : {r, g, b}) {
                    input.push_back(float(value) / float(kLattice - 1));
                }
            }
        }
    }
    if (shaper) {
        applyTo(OCIO::Config::CreateRaw()->getProcessor(shaper->createGroupTransform(), OCIO::TRANSFORM_DIR_INVERSE),
                input);
    }
    // OpenColorIO keeps the files it read by their path: an earlier file at
    // this path must not answer for the new one.
    OCIO::ClearAllCaches();
    OCIO::FileTransformRcPtr const file = OCIO::FileTransform::Create();
    file->setSrc(path.c_str());
    std::vector<float> baked = input;
    applyTo(OCIO::Config::CreateRaw()->getProcessor(file), baked);
    std::vector<float> expected = input;
    applyTo(exact, expected);
    report.largestError = 0.0;
    report.samples = 0;
    for (std::size_t i = 0; i < input.size(); ++i) {
        if (!std::isfinite(input[i]) || !std::isfinite(expected[i])) {
            continue;
        }
        double const difference = std::abs(double(baked[i]) - double(expected[i]));
        report.largestError = std::isnan(difference) ? std::numeric_limits<double>::infinity()
                                                     : std::max(report.largestError, difference);
        report.samples += i % 3 == 0 ? 1 : 0;
    }
}

bool bake(OCIO::ConstConfigRcPtr const& config, LutBake const& request, std::string const& output, BakeReport& report,
          std::string& error)
{
    if (request.size != 0 && (request.size < 2 || request.size > 129)) {
        error = "the cube size must be from 2 to 129, not " + std::to_string(request.size);
        return false;
    }
    std::string const format = formatFor(request, output, error);
    OCIO::ConstProcessorRcPtr const exact = format.empty() ? nullptr : exactProcessor(config, request, error);
    if (!exact) {
        return false;
    }
    OCIO::ConstProcessorRcPtr shaper;
    if (!request.shaper.empty()) {
        std::string from = request.from;
        std::string space = request.shaper;
        if (!detail::configSpaceNamed(*config, from, error) || !detail::configSpaceNamed(*config, space, error)) {
            return false;
        }
        shaper = config->getProcessor(detail::contextWith(*config, request.context), from.c_str(), space.c_str());
    }
    // The Baker bakes from one colour space of a config to another, and has
    // no display/view target: on a copy of the config, the input is a space
    // equal to the reference, and the target and the shaper are spaces whose
    // transforms from the reference are those of the request, with its
    // looks and context variables resolved.
    OCIO::ConfigRcPtr const copy = config->createEditableCopy();
    copy->addColorSpace(spaceOf(kInput, nullptr));
    copy->addColorSpace(spaceOf(kTarget, exact));
    OCIO::BakerRcPtr const baker = OCIO::Baker::Create();
    if (shaper) {
        copy->addColorSpace(spaceOf(kShaper, shaper));
        baker->setShaperSpace(kShaper);
    }
    baker->setConfig(copy);
    baker->setFormat(format.c_str());
    baker->setInputSpace(kInput);
    baker->setTargetSpace(kTarget);
    if (request.size > 0) {
        baker->setCubeSize(request.size);
    }
    std::ostringstream bytes;
    baker->bake(bytes);
    if (!writeTextFile(output, bytes.str(), error)) {
        error = "cannot write '" + output + "': " + error;
        return false;
    }
    report.format = format;
    std::error_code ignored;
    try {
        measure(std::filesystem::absolute(output, ignored).string(), exact, shaper, report);
    } catch (OCIO::Exception const& exception) {
        report.unmeasured = "OpenColorIO cannot read it back: " + detail::oneLine(exception.what());
    }
    return true;
}

} // namespace

std::vector<LutFormat> lutFormats()
{
    std::vector<LutFormat> formats;
    for (int i = 0; i < OCIO::Baker::getNumFormats(); ++i) {
        formats.push_back({OCIO::Baker::getFormatNameByIndex(i), OCIO::Baker::getFormatExtensionByIndex(i)});
    }
    return formats;
}

std::string lutFormatNames()
{
    std::string names;
    for (LutFormat const& format : lutFormats()) {
        names += (names.empty() ? "" : ", ") + format.name + " (." + format.extension + ")";
    }
    return names;
}

bool bakeLut(LutBake const& request, std::string const& output, BakeReport& report, std::string& error)
{
    OCIO::ConstConfigRcPtr const& config = detail::currentOcio();
    if (!config) {
        error = "the built-in colour spaces cannot be baked; give a config with --config";
        return false;
    }
    try {
        return bake(config, request, output, report, error);
    } catch (OCIO::Exception const& exception) {
        error = "cannot bake '" + output + "': " + detail::oneLine(exception.what());
        return false;
    }
}

} // namespace orv::verra_sdk::kit
