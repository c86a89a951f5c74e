#pragma once
// The fixture of the module's tests: an environment without ocio.txt or
// $OCIO, the module reset to its built-in colour spaces before each test,
// the error log captured, and helpers for configs, lists and colours.

#include "support/log_capture.h"
#include "support/module_env.h"

#include <verra_sdk/colorconfig.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace verra_test {

using Names = std::vector<std::string>;
using Lines = std::vector<std::string>;
using Color = orv::math::RgbaT<double>;

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

    /// Writes `config` as `name` in the test's folder and loads it
    /// (OpenImageIO rereads no file it already holds: a new config needs a
    /// new name).
    void loadConfig(OcioConfigText const& config, std::string const& name)
    {
        std::string const path = env.writeConfig(name, config);
        EXPECT_EQ(load(path), "Using specified OCIO config: " + path);
    }

    ModuleEnv env;
    LogCapture log;
};

} // namespace verra_test
