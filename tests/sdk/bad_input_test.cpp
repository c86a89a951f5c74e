// Hostile input: each case gives the result of the module's own rules, the
// exact log line or none, and never a crash.

#include <verra_sdk/colorconfig.h>

#include "support/log_capture.h"
#include "support/module_env.h"
#include "support/names.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

using namespace orv::verra_sdk;

namespace {

using verra_test::Names;
using verra_test::texts;



Names const kBuiltins{"linear", "sRGB", "Rec709"};

class BadInput : public ::testing::Test {
protected:
    std::string load(std::string const& argument)
    {
        return ColorConfig::loadOcioConfig(orv::String(argument.c_str())).buf();
    }
    std::string ocioTxt() const { return env.productDir() + "/ocio.txt"; }

    verra_test::ModuleEnv env;
    verra_test::LogCapture log;
};

TEST_F(BadInput, ConfigPathThatIsADirectory)
{
    std::string const dir = env.dir().mkdir("configs");
    // Not a file, so the argument is then read as a variable name.
    EXPECT_EQ(load(dir), "'" + dir + "' env var not set, will use built-in color spaces.");
    EXPECT_EQ(texts(ColorConfig::colorSpaces()), kBuiltins);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(BadInput, EmptyGarbageAndTooNewConfigFilesLeaveTheBuiltins)
{
    static char const kGarbage[] = "\x7f" "ELF\x02\x01\x01\0\0\0 {[: \xff\xfe";
    std::string const files[] = {
        env.dir().write("empty.ocio", ""),
        env.dir().write("garbage.ocio", std::string(kGarbage, sizeof kGarbage - 1)),
        env.dir().write("new.ocio", "ocio_profile_version: 9.1\nroles: {default: raw}\ncolorspaces:\n"
                                    "  - !<ColorSpace> {name: raw}\n"),
    };
    for (std::string const& file : files) {
        // The report names the file chosen; OpenImageIO's refusal shows in
        // the catalogue, and its reason stays in the configuration object.
        EXPECT_EQ(load(file), "Using specified OCIO config: " + file);
        EXPECT_EQ(texts(ColorConfig::colorSpaces()), kBuiltins) << file;
        EXPECT_TRUE(displays().empty()) << file;
        EXPECT_FALSE(colorConfig().geterror(true).empty()) << file;
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(BadInput, ConfigWhoseLutFileIsMissing)
{
    std::string const path = env.dir().write("lut.ocio", R"(ocio_profile_version: 2.1
roles:
  default: lin
file_rules:
  - !<Rule> {name: Default, colorspace: default}
displays:
  D:
    - !<View> {name: V, colorspace: lin}
active_displays: []
active_views: []
colorspaces:
  - !<ColorSpace>
    name: lin
  - !<ColorSpace>
    name: log
    to_scene_reference: !<FileTransform> {src: missing_curve.spi1d, interpolation: linear}
)");
    EXPECT_EQ(load(path), "Using specified OCIO config: " + path);
    // The catalogue is read without the LUT; conversions through it fail.
    EXPECT_EQ(texts(ColorConfig::colorSpaces()), (Names{"linear", "sRGB", "Rec709", "lin", "log"}));

    orv::math::RgbaT<double> const colour{0.25, 0.5, 0.75, 0.125};
    orv::math::RgbaT<double> const same = ColorConfig::transform(colour, "log", "lin");
    EXPECT_EQ(std::memcmp(&same, &colour, sizeof colour), 0);
    EXPECT_TRUE(log.lines().empty());

    Image image = Image::create(4, 4);
    image.rgba8()[5] = orv::verra::Rgba8{10, 20, 30, 40};
    EXPECT_FALSE(ColorConfig::colorSpaceToLinear(image, "log"));
    EXPECT_EQ(log.lines(), Names{"Cannot convert from 'log' to 'linear'."});
    EXPECT_EQ(image.rgba8()[5].g, 20);
}

TEST_F(BadInput, OcioTxtEmptyGarbageOrNamingADirectory)
{
    std::string const dir = env.dir().mkdir("configs");
    struct Case {
        std::string content;
        std::string named;
    };
    std::vector<Case> const cases{
        {"", ""},
        {" \r\n\t", ""},
        {"\x01\x02 not a path \x7f", "\x01\x02 not a path \x7f"},
        {dir + "/\n", dir + "/"},
    };
    for (Case const& c : cases) {
        env.writeOcioTxt(c.content);
        EXPECT_EQ(load(""),
                  "Error: read " + ocioTxt() + " but could not find the OCIO config it specifies: " + c.named);
        EXPECT_EQ(texts(ColorConfig::colorSpaces()), kBuiltins);
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(BadInput, VariableNameOfTenThousandCharacters)
{
    std::string const name(10000, 'V');
    EXPECT_EQ(load("$" + name), "'" + name + "' env var not set, will use built-in color spaces.");
    verra_test::EnvGuard var(name);
    var.set(env.dir().file("missing.ocio"));
    EXPECT_EQ(load("%" + name + "%"),
              "Error: no OCIO config found at '" + name + "' env var path: " + env.dir().file("missing.ocio"));
}

TEST_F(BadInput, NamesWithControlCharacters)
{
    std::string const names[] = {"\x01sRGB", "sRGB\x1b[31m", "lin\near"};
    for (std::string const& text : names) {
        orv::String const name(text.data(), text.size());
        EXPECT_TRUE(ColorConfig::findColorSpace(name).isEmpty()) << text;
        orv::math::RgbaT<double> const colour{0.5, 0.5, 0.5, 1.0};
        orv::math::RgbaT<double> const out = ColorConfig::transform(colour, "linear", name);
        EXPECT_EQ(std::memcmp(&out, &colour, sizeof colour), 0) << text;
    }
    // "\v" and "\f" count as blanks around a name, other control characters do not.
    EXPECT_STREQ(ColorConfig::findColorSpace("\v\fsrgb\r").buf(), "sRGB");

    Image image = Image::create(2, 2);
    EXPECT_FALSE(ColorConfig::linearToColorSpace(image, "\x01sRGB"));
    EXPECT_EQ(log.lines(), Names{"Cannot convert from 'linear' to '\x01sRGB'."});
    EXPECT_STREQ(ColorConfig::parseColorSpace("\x01\x02.PNG", true).buf(), "sRGB");
}

TEST_F(BadInput, SourceTooLargeForADestinationLeavesItEmpty)
{
    // 65536 × 65536 pixels cannot be counted in 32 bits: the destination gets
    // nothing and the source, which has no storage here, is never read.
    orv::verra::Vector2d<orv::verra::float3, true> source;
    source.width = 65536;
    source.height = 65536;
    orv::verra::Vector2d<orv::verra::Rgba8, true> destination;
    EXPECT_FALSE(colorConfigGenerateRgba8(source, destination, "sRGB"));
    EXPECT_EQ(destination.data, nullptr);
    EXPECT_EQ(destination.width + destination.height + destination.count, 0u);
    EXPECT_TRUE(log.lines().empty());
}

#if defined(__SANITIZE_ADDRESS__)
#define VERRA_UNDER_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VERRA_UNDER_ASAN 1
#endif
#endif

TEST_F(BadInput, DestinationThatCannotBeAllocatedLeavesItEmpty)
{
#ifdef VERRA_UNDER_ASAN
    GTEST_SKIP() << "the sanitizer's allocator aborts on exhaustion instead of throwing";
#else
    // 65535 × 65537 pixels (16 GiB of RGBA8) under an address-space limit of
    // 2 GiB above what the process already maps: the allocation is attempted
    // and fails.
    rlimit saved{};
    ASSERT_EQ(::getrlimit(RLIMIT_AS, &saved), 0);
    unsigned long pages = 0;
    std::FILE* statm = std::fopen("/proc/self/statm", "r");
    ASSERT_NE(statm, nullptr);
    ASSERT_EQ(std::fscanf(statm, "%lu", &pages), 1);
    std::fclose(statm);
    rlimit limited = saved;
    limited.rlim_cur = static_cast<rlim_t>(pages) * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + (rlim_t{2} << 30);
    ASSERT_EQ(::setrlimit(RLIMIT_AS, &limited), 0);
    orv::verra::Vector2d<orv::verra::float3, true> source;
    source.width = 65535;
    source.height = 65537;
    orv::verra::Vector2d<orv::verra::Rgba8, true> destination;
    bool const converted = colorConfigGenerateRgba8(source, destination, "sRGB");
    ::setrlimit(RLIMIT_AS, &saved);
    EXPECT_FALSE(converted);
    EXPECT_EQ(destination.data, nullptr);
    EXPECT_EQ(destination.width + destination.height + destination.count, 0u);
    EXPECT_TRUE(log.lines().empty());
#endif
}

} // namespace
