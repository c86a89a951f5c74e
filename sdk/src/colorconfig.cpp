// The colour-configuration module: the shared OpenImageIO configuration, the
// cached catalogue, configuration discovery and reset, and the conversions.

#include <verra_sdk/color_route.h>
#include <verra_sdk/colorconfig.h>
#include <verra_sdk/config_source.h>

#include "buffer_routes.h"
#include "rgba8_lookup.h"
#include "transfer_curves.h"

#include <orv/file.h>
#include <orv/log.h>
#include <orv/os.h>
#include <orv/path.h>

#include <OpenColorIO/OpenColorIO.h>
#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/imageio.h>

#include <cstring>
#include <string>

namespace OCIO = OCIO_NAMESPACE;

namespace orv::verra_sdk {

// ---------------------------------------------------------------------------
// Module state. Built at static initialisation in this order and destroyed at
// exit in the reverse order. An empty cache means "not computed yet".
// ---------------------------------------------------------------------------
namespace {

StringVector s_colorSpaces;
StringVector s_displays;
ds::HashMap<String, StringVector> s_views;
StringVector s_looks;
StringVector s_roles;

/// The source of the latest discovery (not one of the caches: a plain value).
ConfigSource s_source = ConfigSource::BuiltIns;

/// Silences OpenColorIO's own logging, once per process. The flag is set
/// before the call so that the call is made at most once even if it throws.
inline void initOcio()
{
    static int s_initialized = 0;
    if (s_initialized != 0) {
        return;
    }
    s_initialized = 1;
    OCIO::SetLoggingLevel(OCIO::LOGGING_LEVEL_NONE);
}

} // namespace

namespace impl {
namespace {

/// The one OpenImageIO configuration of the process, built on first use
/// with no file named and re-pointed only by the reset.
inline OIIO::ColorConfig& oiioConfig()
{
    static OIIO::ColorConfig s_config{OIIO::string_view("", 0)};
    return s_config;
}

} // namespace
} // namespace impl

namespace {

/// Obtains the shared configuration: logging silenced first, then the object.
inline OIIO::ColorConfig& sharedConfig()
{
    initOcio();
    return impl::oiioConfig();
}

/// A view over a String's characters (an empty view for the empty text).
inline OIIO::string_view viewOf(String const& text)
{
    char const* chars = text.buf();
    return OIIO::string_view(chars, std::strlen(chars));
}

/// True when the two texts are equal apart from ASCII letter case, as
/// String::compareNoCase; compares in place, so lookups allocate nothing.
bool equalsNoCase(std::string_view a, std::string_view b) noexcept
{
    if (a.size() != b.size()) {
        return false;
    }
    auto const lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (lower(a[i]) != lower(b[i])) {
            return false;
        }
    }
    return true;
}

/// `text` without white space at either end, as String::trim(true, true).
std::string_view trimmed(std::string_view text) noexcept
{
    auto const blank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
    while (!text.empty() && blank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && blank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// `color` with r, g and b each rounded to float, put through `curve` and
/// widened back; alpha untouched.
template <float (*curve)(float)>
math::RgbaT<double> applyCurve(math::RgbaT<double> color) noexcept
{
    color.r = static_cast<double>(curve(static_cast<float>(color.r)));
    color.g = static_cast<double>(curve(static_cast<float>(color.g)));
    color.b = static_cast<double>(curve(static_cast<float>(color.b)));
    return color;
}

/// The three names the single-colour transform converts by itself.
enum class BuiltinName { Other, Linear, Srgb, Rec709 };

BuiltinName builtinName(String const& name) noexcept
{
    std::string_view const text = name.view();
    if (equalsNoCase(text, "linear")) {
        return BuiltinName::Linear;
    }
    if (equalsNoCase(text, "srgb")) {
        return BuiltinName::Srgb;
    }
    if (equalsNoCase(text, "rec709")) {
        return BuiltinName::Rec709;
    }
    return BuiltinName::Other;
}

/// Fills `cache` from the configuration's names when it is empty: names in
/// index order, null and empty names and exact repeats dropped. Returns an
/// independent copy. `count` and `nameAt` read one kind of name.
template <class Count, class NameAt>
StringVector cachedNames(StringVector& cache, Count count, NameAt nameAt)
{
    if (!cache.empty()) {
        return cache.dup();
    }
    OIIO::ColorConfig& config = sharedConfig();
    for (int i = 0; i < count(config); ++i) {
        char const* name = nameAt(config, i);
        if (name == nullptr || name[0] == '\0') {
            continue;
        }
        String entry(name, 0);
        if (cache.contains(entry, false)) {
            continue;
        }
        cache.push_back(entry);
    }
    return cache.dup();
}

} // namespace

// ---------------------------------------------------------------------------
// Shared configuration
// ---------------------------------------------------------------------------

OIIO::ColorConfig& colorConfig()
{
    initOcio();
    return impl::oiioConfig();
}

// ---------------------------------------------------------------------------
// Catalogue
// ---------------------------------------------------------------------------

StringVector ColorConfig::colorSpaces()
{
    if (!s_colorSpaces.empty()) {
        return s_colorSpaces.dup();
    }
    // The built-ins enter before the configuration is first touched.
    s_colorSpaces.push_back(String("linear", 0));
    s_colorSpaces.push_back(String("sRGB", 0));
    s_colorSpaces.push_back(String("Rec709", 0));

    OIIO::ColorConfig& config = sharedConfig();
    for (int i = 0; i < config.getNumColorSpaces(); ++i) {
        String name(config.getColorSpaceNameByIndex(i), 0);
        if (s_colorSpaces.contains(name, true)) {
            continue; // the form listed first wins
        }
        // OpenImageIO's own names for its built-in spaces add nothing.
        static StringVector const s_ignored{String("default", 0), String("rgb", 0), String("RGB", 0)};
        if (s_ignored.contains(name, false)) {
            continue;
        }
        s_colorSpaces.push_back(name);
    }
    return s_colorSpaces.dup();
}

String ColorConfig::findColorSpace(String name)
{
    name = name.trim(true, true);
    std::string_view const wanted = name.view();
    if (equalsNoCase(wanted, "linear")) {
        return String("linear", 0);
    }
    if (s_colorSpaces.empty()) {
        colorSpaces();
    }
    // The cache itself, read in place: no list copy and no String per entry.
    for (String const& entry : s_colorSpaces) {
        if (equalsNoCase(trimmed(entry.view()), wanted)) {
            return entry;
        }
    }
    return String();
}

StringVector displays()
{
    return cachedNames(
        s_displays, [](OIIO::ColorConfig& c) { return c.getNumDisplays(); },
        [](OIIO::ColorConfig& c, int i) { return c.getDisplayNameByIndex(i); });
}

StringVector looks()
{
    return cachedNames(
        s_looks, [](OIIO::ColorConfig& c) { return c.getNumLooks(); },
        [](OIIO::ColorConfig& c, int i) { return c.getLookNameByIndex(i); });
}

StringVector roles()
{
    return cachedNames(
        s_roles, [](OIIO::ColorConfig& c) { return c.getNumRoles(); },
        [](OIIO::ColorConfig& c, int i) { return c.getRoleByIndex(i); });
}

String defaultDisplay()
{
    OIIO::ColorConfig& config = sharedConfig();
    char const* name = config.getDefaultDisplayName();
    return String(name != nullptr ? name : "", 0);
}

String defaultView()
{
    OIIO::ColorConfig& config = sharedConfig();
    char const* display = config.getDefaultDisplayName();
    String const displayName(display != nullptr ? display : "", 0);
    char const* view = config.getDefaultViewName(viewOf(displayName));
    return String(view != nullptr ? view : "", 0);
}

ds::HashMap<String, StringVector> views()
{
    if (s_views.size() != 0) {
        return s_views;
    }
    OIIO::ColorConfig& config = sharedConfig();
    // Walks the displays as listed now; never fills s_displays itself.
    for (String const& display : s_displays) {
        OIIO::string_view const displayView = viewOf(display);
        for (int i = 0; i < config.getNumViews(displayView); ++i) {
            char const* name = config.getViewNameByIndex(displayView, i);
            if (name == nullptr || name[0] == '\0') {
                continue;
            }
            String const view(name, 0);
            StringVector* list = s_views.find(display);
            if (list != nullptr && list->contains(view, false)) {
                continue;
            }
            if (list == nullptr) {
                list = &s_views.set(display, StringVector());
            }
            list->push_back(view);
        }
    }
    return s_views;
}

// ---------------------------------------------------------------------------
// Reset and discovery
// ---------------------------------------------------------------------------
namespace {

/// Re-points the shared configuration at `path` (a canonical file path, or
/// empty for no file) and rebuilds every cache. Uses the configuration before
/// initOcio(): when the reset is the first operation, the silencing happens
/// during the refill.
void resetOcio(String path)
{
    s_colorSpaces.clear();
    s_displays.clear();
    s_views.clear();
    s_looks.clear();
    s_roles.clear();

    OIIO::string_view const file = path.isEmpty() ? OIIO::string_view("", 0) : viewOf(path);
    if (!impl::oiioConfig().reset(file)) {
        std::string const error = OIIO::geterror(true);
        if (!error.empty()) {
            logError("OIIO failed to reset OCIO: %s", error.c_str());
        }
    }

    // displays() before views(): the views map is built from s_displays.
    defaultDisplay();
    defaultView();
    ColorConfig::colorSpaces();
    displays();
    views();
    looks();
    roles();
}

/// The file "ocio.txt" in the user's product directory.
Path getOcioTxtPath()
{
    String const dir = fs::verraUserDir(true);
    String const joined = Path::join(StringVector{dir, String("ocio.txt", 0)});
    return Path(joined, true);
}

} // namespace

String ColorConfig::loadOcioConfig(String path)
{
    String pending;

    // 1. The argument as a file.
    if (!path.isEmpty()) {
        Path const p(path, true);
        if (p.isFile()) {
            String const file = p.canonical();
            String const report = String::format("Using specified OCIO config: %s", file.buf());
            s_source = ConfigSource::ArgumentPath;
            resetOcio(file);
            return report;
        }
        pending = String::format("The specified OCIO config file was not found: %s", p.normalized().buf());
    }

    // 2. The argument as the name of an environment variable: NAME, $NAME, %NAME%.
    String const name = path.trimChars(String("$%", 0), String("%", 0));
    if (!name.isEmpty()) {
        Path const q(os::getEnv(name), true);
        if (q.isFile()) {
            String const file = q.canonical();
            String const report = String::format("Using %s according to the '%s' env var.", file.buf(), name.buf());
            s_source = ConfigSource::ArgumentVariable;
            resetOcio(file);
            return report;
        }
        if (q.isEmpty()) {
            pending = String::format("'%s' env var not set, will use built-in color spaces.", name.buf());
        } else {
            pending = String::format("Error: no OCIO config found at '%s' env var path: %s", name.buf(),
                                     q.normalized().buf());
        }
    }

    // 3. ocio.txt in the user's product directory. The second lookup only
    //    differs from the first when the file changes in between.
    if (getOcioTxtPath().isFile()) {
        Path const txt = getOcioTxtPath();
        if (!txt.isFile()) {
            pending =
                String::format("Found no ocio.txt file at %s, will use built-in color spaces.", txt.normalized().buf());
        } else {
            String const txtFile = txt.canonical();
            File file;
            if (!file.open(txtFile, static_cast<File::Mode>(0), static_cast<File::Format>(0))) {
                pending = String::format("Error: found %s but failed to open it for reading.", txtFile.buf());
            } else {
                Path const cfg(file.read().trim(true, true), true);
                file.close();
                if (cfg.isFile()) {
                    String const cfgFile = cfg.canonical();
                    String const report =
                        String::format("Using OCIO config %s according to %s.", cfgFile.buf(), txtFile.buf());
                    s_source = ConfigSource::OcioTxt;
                    resetOcio(cfgFile);
                    return report;
                }
                pending = String::format("Error: read %s but could not find the OCIO config it specifies: %s",
                                         txtFile.buf(), cfg.normalized().buf());
            }
        }
    }

    // 4. The OCIO variable, when it names an existing file.
    if (Path(os::getEnv(String("OCIO", 0)), true).isFile()) {
        Path const q(os::getEnv(String("OCIO", 0)), true);
        if (q.isFile()) {
            String const file = q.canonical();
            String const report = String::format("Using %s according to the 'OCIO' env var.", file.buf());
            s_source = ConfigSource::OcioVariable;
            resetOcio(file);
            return report;
        }
        if (q.isEmpty()) {
            pending = String::format("'OCIO' env var not set, will use built-in color spaces..");
        } else {
            pending = String::format("Error: no config found at 'OCIO' env var path: %s", q.normalized().buf());
        }
    }

    // 5. Nothing found: the built-in colour spaces.
    if (pending.isEmpty()) {
        pending = String("No OCIO config found, will use built-in color spaces.", 0);
    }
    s_source = ConfigSource::BuiltIns;
    resetOcio(String());
    return pending;
}

// ---------------------------------------------------------------------------
// Colour space from a file name
// ---------------------------------------------------------------------------

String ColorConfig::parseColorSpace(String fileName, bool fallback)
{
    initOcio();

    // OpenColorIO's file rules of its own current configuration. OpenColorIO
    // reads $OCIO for it and throws at every call while that file is missing
    // or unreadable; such a configuration has no rules to offer, so the
    // guess goes on with the name search instead of failing.
    try {
        OCIO::ConstConfigRcPtr const current = OCIO::GetCurrentConfig();
        if (current) {
            String const byRules(current->getColorSpaceFromFilepath(fileName.buf()), 0);
            if (!byRules.isEmpty() && byRules != "default") {
                return byRules;
            }
        }
    } catch (OCIO::Exception const&) {
    }

    // A colour-space name of the shared configuration inside the text.
    OIIO::string_view const found = sharedConfig().parseColorSpaceFromString(viewOf(fileName));
    String const byName(OIIO::c_str(found), 0);
    if (!byName.isEmpty()) {
        return byName;
    }

    if (!fallback) {
        return String();
    }
    static StringVector const s_srgbTypes{String("png", 0), String("jpg", 0), String("tga", 0), String("bmp", 0)};
    String const ext = Path::ext(fileName, false).toLower(true);
    return s_srgbTypes.contains(ext, false) ? String("sRGB", 0) : String("linear", 0);
}

// ---------------------------------------------------------------------------
// One colour
// ---------------------------------------------------------------------------

math::RgbaT<double> ColorConfig::transform(math::RgbaT<double> color, String from, String to)
{
    if (from.compareNoCase(to) == 0) {
        return color;
    }
    // "linear" to or from "srgb" or "rec709": the module's own curves. Any
    // other pair, "srgb" to "rec709" included, goes through a processor.
    BuiltinName const source = builtinName(from);
    BuiltinName const target = builtinName(to);
    if (target == BuiltinName::Linear) {
        if (source == BuiltinName::Srgb) {
            return applyCurve<curves::srgbToLinear>(color);
        }
        if (source == BuiltinName::Rec709) {
            return applyCurve<curves::rec709ToLinear>(color);
        }
    } else if (source == BuiltinName::Linear) {
        if (target == BuiltinName::Srgb) {
            return applyCurve<curves::linearToSrgb>(color);
        }
        if (target == BuiltinName::Rec709) {
            return applyCurve<curves::linearToRec709>(color);
        }
    }

    OIIO::ColorProcessorHandle const processor = sharedConfig().createColorProcessor(viewOf(from), viewOf(to), "", "");
    if (!processor) {
        return color;
    }
    float rgb[3] = {static_cast<float>(color.r), static_cast<float>(color.g), static_cast<float>(color.b)};
    processor->apply(rgb, 1, 1, 3, sizeof(float), 3 * sizeof(float), 3 * sizeof(float));
    color.r = static_cast<double>(rgb[0]);
    color.g = static_cast<double>(rgb[1]);
    color.b = static_cast<double>(rgb[2]);
    return color;
}

ColorRoute colorRoute(String from, String to)
{
    if (from.compareNoCase(to) == 0) {
        return ColorRoute::Same;
    }
    BuiltinName const source = builtinName(from);
    BuiltinName const target = builtinName(to);
    auto const hasCurve = [](BuiltinName name) { return name == BuiltinName::Srgb || name == BuiltinName::Rec709; };
    if ((source == BuiltinName::Linear && hasCurve(target)) || (target == BuiltinName::Linear && hasCurve(source))) {
        return ColorRoute::BuiltInCurve;
    }
    return sharedConfig().createColorProcessor(viewOf(from), viewOf(to), "", "") ? ColorRoute::Processor
                                                                                 : ColorRoute::None;
}

ConfigSource configSource() noexcept
{
    return s_source;
}

char const* configSourceName(ConfigSource source) noexcept
{
    switch (source) {
    case ConfigSource::ArgumentPath:
        return "argument path";
    case ConfigSource::ArgumentVariable:
        return "argument variable";
    case ConfigSource::OcioTxt:
        return "ocio.txt";
    case ConfigSource::OcioVariable:
        return "OCIO variable";
    case ConfigSource::BuiltIns:
        break;
    }
    return "built-ins";
}

String ocioTxtPath()
{
    return getOcioTxtPath().normalized();
}

char const* colorRouteName(ColorRoute route) noexcept
{
    switch (route) {
    case ColorRoute::Same:
        return "same";
    case ColorRoute::BuiltInCurve:
        return "built-in curve";
    case ColorRoute::Processor:
        return "processor";
    case ColorRoute::None:
        break;
    }
    return "none";
}

math::RgbaT<double> ColorConfig::colorSpaceToLinear(math::RgbaT<double> color, String from)
{
    return transform(color, from, String("linear", 0));
}

math::RgbaT<double> ColorConfig::linearToColorSpace(math::RgbaT<double> color, String to)
{
    return transform(color, String("linear", 0), to);
}

// ---------------------------------------------------------------------------
// Images and pixel buffers
// ---------------------------------------------------------------------------
namespace {

/// Wraps caller memory for OpenImageIO without copying it.
OIIO::ImageBuf wrap(void const* pixels, std::uint32_t width, std::uint32_t height, int channels, OIIO::TypeDesc type)
{
    OIIO::ImageSpec const spec(static_cast<int>(width), static_cast<int>(height), channels, type);
    return OIIO::ImageBuf(spec, const_cast<void*>(pixels), OIIO::AutoStride, OIIO::AutoStride, OIIO::AutoStride);
}

/// The conversion pattern of images and buffers: the processor from `from`
/// to `to` of the shared configuration, or one error line and false when
/// there is none; `run(handle)` converts and gives the result; then the
/// destination's pending error text, if any, is logged without changing it.
template <class Run>
bool convert(OIIO::ImageBuf& destination, String const& from, String const& to, Run run)
{
    bool result = false;
    {
        OIIO::ColorProcessorHandle const processor =
            sharedConfig().createColorProcessor(viewOf(from), viewOf(to), "", "");
        if (!processor) {
            logError("Cannot convert from '%s' to '%s'.", from.buf(), to.buf());
        } else {
            result = run(processor);
        }
    }
    std::string const error = destination.geterror(true);
    if (!error.empty()) {
        logError("Conversion from '%s' to '%s' failed: %s", from.buf(), to.buf(), error.c_str());
    }
    return result;
}

/// colorconvert from `source` into `destination` over `roi`.
auto colorconvertOver(OIIO::ImageBuf& destination, OIIO::ImageBuf const& source, OIIO::ROI roi)
{
    return [&destination, &source, roi](OIIO::ColorProcessorHandle const& processor) {
        return OIIO::ImageBufAlgo::colorconvert(destination, source, processor.get(), false, roi, 0);
    };
}

/// The one implementation behind the three image operations.
bool transformRgba8(Image image, String from, String to)
{
    if (!image.isValid()) {
        return false;
    }
    if (from.isEmpty()) {
        from = "sRGB";
    }
    if (to.isEmpty()) {
        to = "sRGB";
    }
    if (from == to) {
        return true;
    }
    OIIO::ImageSpec const spec(image.width(), image.height(), 4, OIIO::TypeDesc::UINT8);
    OIIO::ImageBuf buffer(spec, image.rgba8(), OIIO::AutoStride, OIIO::AutoStride, OIIO::AutoStride);
    std::size_t const width = static_cast<std::size_t>(image.width() > 0 ? image.width() : 0);
    std::size_t const height = static_cast<std::size_t>(image.height() > 0 ? image.height() : 0);
    std::size_t const count = width * height;
    return convert(buffer, from, to, [&](OIIO::ColorProcessorHandle const& processor) {
        // OpenImageIO 2.4.7's colorconvert dies on an image of width 0 and
        // non-zero height. Without pixels there is nothing to convert, and
        // the result is what colorconvert gives for a height of 0: true.
        if (count == 0) {
            return true;
        }
        // Where the conversion is a table per channel, the tables (taken from
        // colorconvert itself) give its bytes several times faster.
        detail::Rgba8Lookup lookup;
        if (count >= detail::Rgba8Lookup::kMinPixels && lookup.build(*processor)) {
            lookup.apply(image.rgba8(), count);
            return true;
        }
        return colorconvertOver(buffer, buffer, OIIO::ROI())(processor);
    });
}

/// Float buffers smaller than this take colorconvert: checking the direct
/// route of a new processor costs about as much as converting them.
constexpr std::size_t kMinDirectPixels = 16384;

template <class T>
bool sameSize(verra::Vector2d<T, true> const& a, std::uint32_t width, std::uint32_t height)
{
    return a.width == width && a.height == height;
}

} // namespace

bool ColorConfig::transform(Image image, String from, String to)
{
    return transformRgba8(image, from, to);
}

bool ColorConfig::colorSpaceToLinear(Image image, String from)
{
    return transformRgba8(image, from, String("linear", 0));
}

bool ColorConfig::linearToColorSpace(Image image, String to)
{
    return transformRgba8(image, String("linear", 0), to);
}

bool colorConfigGenerateRgba8(verra::Vector2d<verra::float3, true> const& source,
                              verra::Vector2d<verra::Rgba8, true>& destination, String to)
{
    if (destination.data == nullptr) {
        destination.allocate(source.width, source.height);
    }
    if (source.width == 0 || source.height == 0 || destination.width == 0 || destination.height == 0 ||
        !sameSize(destination, source.width, source.height)) {
        return false;
    }
    if (to.isEmpty()) {
        to = "sRGB";
    }
    bool result = false;
    bool alphaSet = false;
    {
        OIIO::ImageBuf dst = wrap(destination.data, source.width, source.height, 4, OIIO::TypeDesc::UINT8);
        result = convert(dst, String("linear", 0), to, [&](OIIO::ColorProcessorHandle const& processor) {
            // Large buffers go through the tables when the processor has them:
            // the direct route's bytes, with alpha set.
            std::size_t const count = std::size_t{source.width} * source.height;
            detail::FloatRgba8Lookup const* lookup =
                count >= detail::FloatRgba8Lookup::kMinPixels ? detail::floatRgba8Lookup(processor) : nullptr;
            if (lookup != nullptr) {
                lookup->apply(source.data, destination.data, count);
                return alphaSet = true;
            }
            OIIO::ImageBuf const src = wrap(source.data, source.width, source.height, 3, OIIO::TypeDesc::FLOAT);
            OIIO::ROI const colour(0, static_cast<int>(source.width), 0, static_cast<int>(source.height), 0, 1, 0, 3);
            return colorconvertOver(dst, src, colour)(processor);
        });
    }
    verra::Rgba8* pixels = destination.data;
    for (std::uint32_t y = 0; y < destination.height && !alphaSet; ++y) {
        for (std::uint32_t x = 0; x < destination.width; ++x) {
            pixels[y * destination.width + x].a = 255;
        }
    }
    return result;
}

bool colorConfigTransformRgb(verra::Vector2d<verra::float3, true> const& source,
                             verra::Vector2d<verra::float3, true>& destination, String to)
{
    if (source.width == 0 || source.height == 0 || destination.width == 0 || destination.height == 0 ||
        !sameSize(destination, source.width, source.height)) {
        return false;
    }
    if (to.isEmpty()) {
        to = "sRGB";
    }
    OIIO::ImageBuf const src = wrap(source.data, source.width, source.height, 3, OIIO::TypeDesc::FLOAT);
    OIIO::ImageBuf dst = wrap(destination.data, source.width, source.height, 3, OIIO::TypeDesc::FLOAT);
    return convert(dst, String("linear", 0), to, [&](OIIO::ColorProcessorHandle const& processor) {
        // Large buffers take the processor directly, with no widening to four
        // channels, where that gives colorconvert's bits.
        if (std::size_t{source.width} * source.height >= kMinDirectPixels &&
            detail::appliesLikeColorconvert(processor, 3)) {
            detail::applyInPlace(*processor, &source.data->r, &destination.data->r, source.width, source.height, 3);
            return true;
        }
        return colorconvertOver(dst, src, OIIO::ROI::All())(processor);
    });
}

bool colorConfigTransformRgb(verra::Vector2d<verra::float4, true>& pixels, String to)
{
    if (pixels.width == 0 || pixels.height == 0) {
        return false;
    }
    if (to.isEmpty()) {
        to = "sRGB";
    }
    OIIO::ImageBuf buffer = wrap(pixels.data, pixels.width, pixels.height, 4, OIIO::TypeDesc::FLOAT);
    return convert(buffer, String("linear", 0), to, [&](OIIO::ColorProcessorHandle const& processor) {
        if (std::size_t{pixels.width} * pixels.height >= kMinDirectPixels &&
            detail::appliesLikeColorconvert(processor, 4)) {
            detail::applyInPlace(*processor, nullptr, &pixels.data->r, pixels.width, pixels.height, 4);
            return true;
        }
        return colorconvertOver(buffer, buffer, OIIO::ROI::All())(processor);
    });
}

} // namespace orv::verra_sdk
