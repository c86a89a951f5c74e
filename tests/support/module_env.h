#pragma once
// A clean environment for tests of the module (a temporary folder holding the
// user's product directory, no $OCIO), small OpenColorIO 2.1 configs written
// as YAML text, and the fixture of the module's own tests.

#include "support/test_env.h"

#include <verra_sdk/colorconfig.h>

#include <OpenImageIO/strutil.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace verra_test {

using namespace orv::verra_sdk;

using Names = std::vector<std::string>;
using Lines = std::vector<std::string>;
using Color = orv::math::RgbaT<double>;

/// Points XDG_CONFIG_HOME and HOME into a temporary folder and unsets OCIO,
/// restoring all three on destruction.
class ModuleEnv {
public:
    ModuleEnv()
    {
        m_xdg.set(m_dir.file("xdg"));
        m_home.set(m_dir.file("home"));
        m_ocio.unset();
    }

    TempDir const& dir() const { return m_dir; }
    /// The file "ocio.txt" in the product directory, where the module looks for it.
    std::string ocioTxt() const { return m_dir.file("xdg/verra/ocio.txt"); }
    EnvGuard const& ocio() const { return m_ocio; }

private:
    TempDir m_dir;
    EnvGuard m_xdg{"XDG_CONFIG_HOME"};
    EnvGuard m_home{"HOME"};
    EnvGuard m_ocio{"OCIO"};
};

/// A config of the colour spaces `spaces`: identities of the reference space,
/// but for those also in `srgb`, which decode the sRGB curve. `extra` holds
/// other top-level sections; unless it has roles or a space is itself named
/// "default", the first space is the default role.
inline std::string ocioConfig(Names const& spaces, Names const& srgb = {}, std::string const& extra = "")
{
    namespace Strutil = OIIO::Strutil;
    auto const quote = [](std::string const& s) { return "\"" + Strutil::escape_chars(s) + "\""; };
    auto const isDefault = [](std::string const& s) { return Strutil::iequals(s, "default"); };
    std::string yaml = "ocio_profile_version: 2.1\n" + extra;
    if (extra.find("roles:") == std::string::npos && std::none_of(spaces.begin(), spaces.end(), isDefault)) {
        yaml += "roles: {default: " + quote(spaces.front()) + "}\n";
    }
    yaml += "colorspaces:\n";
    char const* const curve = ", to_scene_reference: !<ExponentWithLinearTransform> "
                              "{gamma: 2.4, offset: 0.055}";
    for (std::string const& space : spaces) {
        bool const hasCurve = std::find(srgb.begin(), srgb.end(), space) != srgb.end();
        yaml += "  - !<ColorSpace> {name: " + quote(space) + (hasCurve ? curve : "") + "}\n";
    }
    return yaml;
}

/// The texts of `list`, in order.
inline Names texts(orv::StringVector const& list)
{
    Names out;
    for (orv::String const& s : list) {
        out.emplace_back(s.buf());
    }
    return out;
}

/// The bits of each channel: NaN payloads and the sign of zero count.
inline std::vector<std::uint64_t> bits(Color const& color)
{
    std::vector<std::uint64_t> out(4);
    std::memcpy(out.data(), &color, sizeof color);
    return out;
}

/// Expects the colour space of each file of `names` to be `with` with the fallback, `without` without it.
inline void expectParsed(std::vector<char const*> const& names, char const* with, char const* without)
{
    for (char const* name : names) {
        EXPECT_STREQ(orv::verra_sdk::ColorConfig::parseColorSpace(name, true).buf(), with) << name;
        EXPECT_STREQ(orv::verra_sdk::ColorConfig::parseColorSpace(name, false).buf(), without) << name;
    }
}

/// The fixture of the module's tests: the environment above, the module reset
/// to its built-in colour spaces before each test, and the error log captured.
class SdkTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(load(""), "No OCIO config found, will use built-in color spaces.");
        log.clear();
    }

    /// The report of `ColorConfig::loadOcioConfig(argument)`.
    static std::string load(std::string const& argument)
    {
        return orv::verra_sdk::ColorConfig::loadOcioConfig(orv::String(argument.c_str())).buf();
    }

    /// Writes `yaml` as `name` in the test's folder and loads it (OpenImageIO
    /// rereads no file it already holds: a new config needs a new name).
    void loadConfig(std::string const& yaml, std::string const& name)
    {
        std::string const path = env.dir().write(name, yaml);
        EXPECT_EQ(load(path), "Using specified OCIO config: " + path);
    }

    /// Loads the shared config `relative` (see sharedFile); false when it is not there.
    static bool loadShared(std::string const& relative)
    {
        std::string const file = sharedFile(relative);
        if (!file.empty()) {
            EXPECT_EQ(load(file), "Using specified OCIO config: " + file);
        }
        return !file.empty();
    }

    ModuleEnv env;
    LogCapture log;
};

} // namespace verra_test
