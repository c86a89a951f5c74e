// Fuzz target: the name lookups and the single-colour transform of the
// colour-configuration module on arbitrary names and channel values.
//
// Input: 32 bytes taken as the raw bits of four doubles r, g, b, a (NaN and
// infinities included; missing bytes are 0), then two names taken with
// FuzzedDataProvider's ConsumeRandomLengthString (a backslash followed by
// any other byte ends a name; "\\\\" is one backslash). Names may hold any
// byte, NUL included.
//
// LLVMFuzzerInitialize writes a small configuration, points $OCIO at it (so
// OpenColorIO's file rules come from it too) and loads it, so that names hit
// real colour spaces, roles and rules as well as the built-in names.

#include "fuzz_check.h"
#include "fuzz_scratch.h"

#include <verra_sdk/colorconfig.h>

#include <orv/path.h>

#include <OpenImageIO/imageio.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using orv::String;
using orv::StringVector;
using orv::math::RgbaT;
using orv::verra_sdk::ColorConfig;

/// Built-in operators only (no LUT files). "SRGB" differs from the built-in
/// "sRGB" only by case, so the catalogue drops it. One file rule: OpenColorIO
/// compiles a regular expression for every rule at every lookup, which
/// dominates the run time, so the rules stay few.
constexpr char kConfig[] = R"(ocio_profile_version: 2.1

roles:
  default: raw
  scene_linear: lin
  color_picking: srgb_tx
  data: raw

file_rules:
  - !<Rule> {name: textures, pattern: "*", extension: "tex", colorspace: srgb_tx}
  - !<Rule> {name: Default, colorspace: default}

displays:
  Monitor:
    - !<View> {name: Standard, colorspace: srgb_tx}
    - !<View> {name: Raw, colorspace: raw}

active_displays: []
active_views: []

looks:
  - !<Look>
    name: Warm
    process_space: lin
    transform: !<MatrixTransform> {matrix: [1.1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0.9, 0, 0, 0, 0, 1]}

colorspaces:
  - !<ColorSpace>
    name: lin
    family: ""
    bitdepth: 32f
  - !<ColorSpace>
    name: raw
    family: ""
    bitdepth: 32f
    isdata: true
  - !<ColorSpace>
    name: srgb_tx
    family: ""
    bitdepth: 32f
    to_scene_reference: !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055}
  - !<ColorSpace>
    name: Gamma 2.2
    family: ""
    bitdepth: 32f
    to_scene_reference: !<ExponentTransform> {value: [2.2, 2.2, 2.2, 1]}
  - !<ColorSpace>
    name: Log Film
    family: ""
    bitdepth: 32f
    from_scene_reference: !<LogAffineTransform> {base: 10, log_side_slope: 0.25, log_side_offset: 0.5, lin_side_offset: 0.01}
  - !<ColorSpace>
    name: Wide Gamut
    family: ""
    bitdepth: 32f
    to_scene_reference: !<MatrixTransform> {matrix: [0.8, 0.15, 0.05, 0, 0.05, 0.9, 0.05, 0, 0, 0.1, 0.9, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: SRGB
    family: ""
    bitdepth: 32f
    to_scene_reference: !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055}
)";

String fromBytes(std::string const& bytes)
{
    return bytes.empty() ? String() : String(bytes.data(), bytes.size());
}

bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

bool sameBits(RgbaT<double> const& a, RgbaT<double> const& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

bool listed(StringVector const& spaces, String const& name)
{
    for (String const& entry : spaces) {
        if (entry == name) {
            return true;
        }
    }
    return false;
}

/// findColorSpace: an element of the catalogue equal to the trimmed name
/// apart from case ("linear" for any case of it), or empty when none is.
void checkFind(StringVector const& spaces, String const& name)
{
    String const found = ColorConfig::findColorSpace(name);
    String const wanted = name.trim(true, true);
    if (found.isEmpty()) {
        FUZZ_CHECK(!spaces.contains(wanted, true), "findColorSpace finds every listed name, whatever its case");
        return;
    }
    FUZZ_CHECK(listed(spaces, found), "findColorSpace gives an element of colorSpaces()");
    FUZZ_CHECK(found.compareNoCase(wanted) == 0, "findColorSpace gives the trimmed name apart from case");
    if (wanted.compareNoCase(String("linear", 0)) == 0) {
        FUZZ_CHECK(found == "linear", "findColorSpace gives \"linear\" for any case of it");
    }
    FUZZ_CHECK(ColorConfig::findColorSpace(found) == found, "findColorSpace of its own result gives it back");
}

/// parseColorSpace: never empty with the fallback; without it, the same
/// answer or empty, and then the fallback is the extension guess.
void checkParse(String const& fileName)
{
    String const withFallback = ColorConfig::parseColorSpace(fileName, true);
    String const without = ColorConfig::parseColorSpace(fileName, false);
    FUZZ_CHECK(!withFallback.isEmpty(), "parseColorSpace with the fallback never gives empty");
    if (!without.isEmpty()) {
        FUZZ_CHECK(without == withFallback, "the fallback changes nothing when a space was found");
        return;
    }
    String const ext = orv::Path::ext(fileName, false).toLower(true);
    bool const srgbType = ext == "png" || ext == "jpg" || ext == "tga" || ext == "bmp";
    FUZZ_CHECK(withFallback == (srgbType ? "sRGB" : "linear"),
               "the fallback is sRGB for png, jpg, tga and bmp, linear otherwise");
}

/// The single-colour transform: alpha bit for bit; equal names (apart from
/// case) give the colour bit for bit; the same call gives the same bits.
void checkTransform(RgbaT<double> const& color, String const& from, String const& to)
{
    RgbaT<double> const out = ColorConfig::transform(color, from, to);
    FUZZ_CHECK(sameBits(out.a, color.a), "transform returns alpha bit for bit");
    if (from.compareNoCase(to) == 0) {
        FUZZ_CHECK(sameBits(out, color), "transform between equal names returns the colour bit for bit");
    }
    RgbaT<double> const again = ColorConfig::transform(color, from, to);
    FUZZ_CHECK(sameBits(out, again), "transform gives the same bits for the same call");

    RgbaT<double> const self = ColorConfig::transform(color, from, from.toLower(true));
    FUZZ_CHECK(sameBits(self, color), "transform to the same name in lower case returns the colour bit for bit");
}

verra_fuzz::ScratchDir& scratch()
{
    static verra_fuzz::ScratchDir dir;
    return dir;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    OIIO::attribute("threads", 1);
    std::string const path = scratch().write("names.ocio", kConfig, sizeof(kConfig) - 1);
    // OpenColorIO reads $OCIO once, when its current configuration is first
    // asked for: set it before anything touches OpenColorIO.
    FUZZ_CHECK(::setenv("OCIO", path.c_str(), 1) == 0, "setenv OCIO");

    String const report = ColorConfig::loadOcioConfig(String(path.c_str(), 0));
    FUZZ_CHECK(report.view() == "Using specified OCIO config: " + path, "the fuzz configuration is loaded");
    StringVector const spaces = ColorConfig::colorSpaces();
    FUZZ_CHECK(spaces.size() == 9 && spaces[0] == "linear" && spaces[1] == "sRGB" && spaces[2] == "Rec709" &&
                   spaces[3] == "lin" && spaces[8] == "Wide Gamut",
               "the fuzz configuration's spaces are listed (without \"SRGB\")");
    FUZZ_CHECK(ColorConfig::parseColorSpace(String("a.tex", 0), false) == "srgb_tx",
               "OpenColorIO's file rules come from the fuzz configuration");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    double channels[4] = {0.0, 0.0, 0.0, 0.0};
    std::vector<std::uint8_t> const raw = input.ConsumeBytes<std::uint8_t>(sizeof channels);
    if (!raw.empty()) {
        std::memcpy(channels, raw.data(), raw.size());
    }
    RgbaT<double> const color{channels[0], channels[1], channels[2], channels[3]};
    String const from = fromBytes(input.ConsumeRandomLengthString());
    String const to = fromBytes(input.ConsumeRandomLengthString());

    StringVector const spaces = ColorConfig::colorSpaces();
    FUZZ_CHECK(spaces.size() >= 3 && spaces[0] == "linear" && spaces[1] == "sRGB" && spaces[2] == "Rec709",
               "colorSpaces() begins with the built-ins");

    checkFind(spaces, from);
    checkFind(spaces, to);
    checkParse(from);
    checkTransform(color, from, to);
    checkTransform(color, to, from);

    // Between the listed forms of the names, when both are listed: the
    // conversions the configuration really has.
    String const fromSpace = ColorConfig::findColorSpace(from);
    String const toSpace = ColorConfig::findColorSpace(to);
    if (!fromSpace.isEmpty() && !toSpace.isEmpty()) {
        checkTransform(color, fromSpace, toSpace);
    }
    return 0;
}
