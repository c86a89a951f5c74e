// Tests of verra_sdk/kit/config_load.h.

#include "support/kit_env.h"

namespace verra_test {
namespace {

using LoadConfig = KitTest;

TEST_F(LoadConfig, NamesWhereAConfigNotFoundWasSet)
{
    std::string const good = sampleConfig();
    std::string const txt = m_env.ocioTxt();
    EnvGuard const variable("KIT_CONFIG");
    variable.set(good);
    // $OCIO, ocio.txt, argument, source in use, error.
    using Case = std::tuple<char const*, char const*, std::string, ConfigSource, std::string>;
    std::vector<Case> const cases{
        {nullptr, nullptr, "", ConfigSource::BuiltIns, ""},
        {nullptr, nullptr, "/nonexistent.ocio", ConfigSource::BuiltIns,
         "the config set by --config '/nonexistent.ocio' was not found"},
        {"/x.ocio", nullptr, "", ConfigSource::BuiltIns, "the config set by $OCIO ('/x.ocio') was not found"},
        {good.c_str(), " /x.ocio\n", "", ConfigSource::OcioVariable,
         "the config set by " + txt + " ('/x.ocio') was not found"},
        {good.c_str(), nullptr, "/nonexistent.ocio", ConfigSource::OcioVariable,
         "the config set by --config '/nonexistent.ocio' was not found"},
        {"/x.ocio", nullptr, good, ConfigSource::ArgumentPath, ""},
        {"/x.ocio", nullptr, "$KIT_CONFIG", ConfigSource::ArgumentVariable, ""},
    };
    for (auto const& [ocio, ocioTxt, requested, source, error] : cases) {
        SCOPED_TRACE(requested + " / " + (ocio ? ocio : "no $OCIO") + " / " + (ocioTxt ? ocioTxt : "-"));
        m_env.ocio().put(ocio);
        std::filesystem::remove(txt);
        if (ocioTxt) {
            m_env.dir().write("xdg/verra/ocio.txt", ocioTxt);
        }
        // Report, source, file, errors, warnings.
        EXPECT_THAT(load(requested), FieldsAre(_, source, source == ConfigSource::BuiltIns ? "" : good,
                                               error.empty() ? Lines{} : Lines{error}, IsEmpty()));
    }
}

TEST_F(LoadConfig, RefusesAFileOpenColorIOCannotReadButNotOneMissingALut)
{
    // Each missing file once, wherever the config names it.
    std::string const lut = m_env.dir().write("lut.ocio", R"(ocio_profile_version: 2.1
roles: {default: lin}
inactive_colorspaces: [again]
looks: [!<Look> {name: L, process_space: lin, transform: !<FileTransform> {src: look.cube}}]
view_transforms: [!<ViewTransform> {name: V, from_scene_reference: !<FileTransform> {src: view.spi1d}}]
named_transforms: [!<NamedTransform> {name: N, transform: !<FileTransform> {src: named.spi1d}}]
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace> {name: lut, to_scene_reference: !<GroupTransform> {children: [!<FileTransform> {src: first.spi1d}, !<FileTransform> {src: lut.spi1d}]}}
  - !<ColorSpace> {name: again, from_scene_reference: !<FileTransform> {src: lut.spi1d}}
)");
    auto const missing = [](char const* file) { return HasSubstr(std::string("'") + file + "' could not be located"); };
    EXPECT_THAT(load(lut), FieldsAre(_, _, lut, IsEmpty(),
                                     ElementsAre(missing("first.spi1d"), missing("lut.spi1d"), missing("look.cube"),
                                                 missing("view.spi1d"), missing("named.spi1d"))));
    std::string const bad = m_env.dir().write("bad.ocio", "ocio_profile_version: 2.1\ncolorspaces: [oops\n");
    m_env.ocio().set(bad);
    EXPECT_THAT(
        load(""),
        FieldsAre(_, _, "", ElementsAre(StartsWith("the config set by $OCIO ('" + bad + "') cannot be read: ")), _));
}

} // namespace
} // namespace verra_test
