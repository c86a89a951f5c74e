#pragma once
// The fixture of the toolkit's tests and the program's: a clean environment
// (ModuleEnv) where no configuration is found unless the test adds one, the
// toolkit's configuration loaded through it, the sample configuration most
// tests share, and the image helpers.

#include "support/images.h"
#include "support/module_env.h"

#include <gmock/gmock.h>

#include <verra_sdk/kit/config_load.h>

namespace verra_test {

namespace kit = orv::verra_sdk::kit;
using namespace ::testing;
using T = OIIO::TypeDesc;

class KitTest : public ::testing::Test {
protected:
    /// Starts every test from the built-in colour spaces.
    void SetUp() override { ASSERT_THAT(load("").errors, IsEmpty()); }

    /// `kit::loadConfig(requested)`.
    static orv::verra_sdk::kit::ConfigStatus load(std::string const& requested)
    {
        return orv::verra_sdk::kit::loadConfig(requested);
    }

    /// The path of `name` in the test's folder.
    std::string file(std::string const& name) const { return m_env.dir().file(name); }

    /// Writes support/sample.ocio with `extra` appended as `name` in the test's
    /// folder; returns its path. OpenImageIO rereads no file it already holds:
    /// a changed config needs another `name`.
    std::string sampleConfig(std::string const& extra = "", std::string const& name = "sample.ocio") const
    {
        return m_env.dir().write(name, readFile(VERRA_TEST_SUPPORT "/sample.ocio") + extra);
    }

    /// sampleConfig with the space "shot", which reads $SHOT.spi1d, written with a.spi1d (which halves) and
    /// b.spi1d (which doubles).
    std::string shotConfig() const
    {
        for (auto const& [name, top] : {std::pair{"a.spi1d", "0.5"}, {"b.spi1d", "2"}}) {
            m_env.dir().write(name, std::string("Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n") + top + "\n}\n");
        }
        return sampleConfig("  - !<ColorSpace> {name: shot, to_scene_reference: !<FileTransform> "
                            "{src: $SHOT.spi1d, interpolation: linear}}\n");
    }

    ModuleEnv m_env;
};

} // namespace verra_test
