// The shared configuration: one object per process, logging silenced once.

#include <verra_sdk/colorconfig.h>

#include "support/module_env.h"

#include <OpenColorIO/OpenColorIO.h>
#include <gtest/gtest.h>

namespace OCIO = OCIO_NAMESPACE;
using namespace orv::verra_sdk;

namespace {

TEST(SharedConfig, ColorConfigReturnsOneObject)
{
    verra_test::ModuleEnv env;
    OIIO::ColorConfig* first = &colorConfig();
    EXPECT_EQ(first, &colorConfig());
}

TEST(SharedConfig, StartsWithoutAFileAndOpenImageIOsOwnSpaces)
{
    verra_test::ModuleEnv env;
    OIIO::ColorConfig& config = colorConfig();
    EXPECT_STREQ(config.configname().c_str(), "built-in");
    EXPECT_GE(config.getNumColorSpaces(), 3);
}

TEST(SharedConfig, SilencesOpenColorIOLoggingOncePerProcess)
{
    verra_test::ModuleEnv env;
    OCIO::SetLoggingLevel(OCIO::LOGGING_LEVEL_INFO);
    colorConfig();
    EXPECT_EQ(OCIO::GetLoggingLevel(), OCIO::LOGGING_LEVEL_NONE);

    // A host that turns logging back on keeps it: the module never sets it again.
    OCIO::SetLoggingLevel(OCIO::LOGGING_LEVEL_WARNING);
    colorConfig();
    ColorConfig::colorSpaces();
    displays();
    ColorConfig::transform(orv::math::RgbaT<double>{0.5, 0.5, 0.5, 1.0}, "lin", "other");
    EXPECT_EQ(OCIO::GetLoggingLevel(), OCIO::LOGGING_LEVEL_WARNING);
}

TEST(SharedConfig, ResetAsFirstOperationStillSilencesLogging)
{
    verra_test::ModuleEnv env;
    OCIO::SetLoggingLevel(OCIO::LOGGING_LEVEL_INFO);
    ColorConfig::loadOcioConfig("");
    EXPECT_EQ(OCIO::GetLoggingLevel(), OCIO::LOGGING_LEVEL_NONE);
}

TEST(SharedConfig, CatalogueQueriesLeaveLoggingAloneOnlyForLinearLookups)
{
    // Looking up a form of "linear" needs neither the list nor the configuration.
    verra_test::ModuleEnv env;
    OCIO::SetLoggingLevel(OCIO::LOGGING_LEVEL_INFO);
    EXPECT_STREQ(ColorConfig::findColorSpace("  LINEAR\t").buf(), "linear");
    EXPECT_EQ(OCIO::GetLoggingLevel(), OCIO::LOGGING_LEVEL_INFO);

    EXPECT_STREQ(ColorConfig::findColorSpace("srgb").buf(), "sRGB");
    EXPECT_EQ(OCIO::GetLoggingLevel(), OCIO::LOGGING_LEVEL_NONE);
}

} // namespace
