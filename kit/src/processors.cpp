#include "processors.h"

#include "current_config.h"

#include <verra_sdk/kit/names.h>

#include <OpenImageIO/parallel.h>
#include <OpenImageIO/strutil.h>

#include <cstdint>
#include <mutex>

namespace orv::verra_sdk::kit::detail {

namespace OCIO = OCIO_NAMESPACE;
namespace Strutil = OIIO::Strutil;

std::string quoted(std::vector<std::string> const& names)
{
    std::string text;
    for (std::string const& name : names) {
        text += (text.empty() ? "'" : ", '") + name + "'";
    }
    return text;
}

std::string matching(std::string const& wanted, std::vector<std::string> const& names)
{
    for (std::string const& name : names) {
        if (name == wanted) {
            return name;
        }
    }
    for (std::string const& name : names) {
        if (Strutil::iequals(name, wanted)) {
            return name;
        }
    }
    return {};
}

std::string configSpace(OCIO::Config const& config, std::string const& name)
{
    OCIO::ConstColorSpaceRcPtr space = config.getColorSpace(name.c_str());
    if (!space && name == "linear") {
        space = config.getColorSpace(OCIO::ROLE_SCENE_LINEAR);
    }
    return space ? space->getName() : std::string();
}

bool configSpaceNamed(OCIO::Config const& config, std::string& name, std::string& error)
{
    std::string const resolved = resolveColorSpace(name).name;
    if (resolved.empty()) {
        error = unknownColorSpaceText(name);
        return false;
    }
    std::string const spelled = configSpace(config, resolved);
    if (spelled.empty()) {
        error = "'" + resolved +
                "' is a built-in colour space that this config does not have; this transform "
                "needs one of the config's";
        return false;
    }
    name = spelled;
    return true;
}

bool chooseLooks(OCIO::Config const& config, std::string const& request, std::string& looks, std::string& error)
{
    std::vector<std::string> known;
    for (int i = 0; i < config.getNumLooks(); ++i) {
        known.emplace_back(config.getLookNameByIndex(i));
    }
    for (std::string_view item : Strutil::splitsv(request, ",")) {
        item = Strutil::strip(item);
        std::string const sign = Strutil::starts_with(item, "+") || Strutil::starts_with(item, "-")
                                     ? std::string(item.substr(0, 1))
                                     : std::string();
        std::string const name = matching(std::string(Strutil::strip(item.substr(sign.size()))), known);
        if (name.empty()) {
            error = known.empty() ? "unknown look '" + std::string(item) + "': this config has no looks"
                                  : "unknown look '" + std::string(item) + "'; the config's looks: " + quoted(known);
            return false;
        }
        looks += (looks.empty() ? "" : ", ") + sign + name;
    }
    return true;
}

OCIO::ConstConfigRcPtr configOrRaw()
{
    static OCIO::ConstConfigRcPtr const raw = OCIO::Config::CreateRaw();
    OCIO::ConstConfigRcPtr const& config = currentOcio();
    return config ? config : raw;
}

bool applyProcessor(OCIO::ConstProcessorRcPtr const& processor, OIIO::ImageBuf& pixels, std::string const& what,
                    std::string& error)
{
    int const channels = pixels.nchannels();
    if (pixels.spec().format != OIIO::TypeDesc::FLOAT || (channels != 3 && channels != 4) || pixels.deep()) {
        error = what + " needs float RGB or RGBA pixels";
        return false;
    }
    // Pixels held by an image cache are read into memory first.
    if (!pixels.make_writable(true)) {
        error = pixels.geterror();
        return false;
    }
    OIIO::ImageSpec const& spec = pixels.spec();
    auto* const first = static_cast<char*>(pixels.localpixels());
    OIIO::stride_t const pixelStride = pixels.pixel_stride();
    OIIO::stride_t const rowStride = pixels.scanline_stride();
    std::mutex failing;
    std::string failure;
    try {
        OCIO::ConstCPUProcessorRcPtr const cpu = processor->getDefaultCPUProcessor();
        auto const applyRows = [&](std::int64_t begin, std::int64_t end) {
            try {
                OCIO::PackedImageDesc rows(first + begin * rowStride, spec.width, long(end - begin), 3,
                                           OCIO::BIT_DEPTH_F32, sizeof(float), pixelStride, rowStride);
                cpu->apply(rows);
            } catch (OCIO::Exception const& exception) {
                std::lock_guard<std::mutex> const lock(failing);
                failure = exception.what();
            }
        };
        OIIO::parallel_for_chunked(0, std::int64_t(spec.height) * spec.depth, 0, applyRows);
    } catch (OCIO::Exception const& exception) {
        failure = exception.what();
    }
    if (!failure.empty()) {
        error = "cannot apply " + what + ": " + oneLine(failure);
        return false;
    }
    return true;
}

} // namespace orv::verra_sdk::kit::detail
