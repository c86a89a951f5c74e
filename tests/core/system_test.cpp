// Paths, files, the environment, the per-user directory and the error log.

#include "support/test_env.h"

#include <gmock/gmock.h>

#include <orv/file.h>
#include <orv/os.h>
#include <orv/path.h>

#include <algorithm>
#include <array>

namespace {

using orv::File;
using orv::Path;
using orv::String;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::FieldsAre;

String str(std::string const& text)
{
    return String(std::string_view(text));
}
String ext(char const* name, bool withDot)
{
    return Path::ext(String(name), withDot);
}
String path(char const* text, bool expandHome)
{
    return Path(String(text), expandHome).str();
}

TEST(Path, ExtJoinNormalizedAndHomeExpansion)
{
    verra_test::EnvGuard const home("HOME");
    home.set("/h");
    for (auto const& [text, expected] : std::initializer_list<std::pair<String, std::string_view>>{
             {ext("tex.PNG", false), "PNG"},
             {ext("tex.PNG", true), ".PNG"},
             {ext("a.", true), "."},
             {ext("README", true), ""},
             {ext("/d.d/f", true), ""},
             {Path::join({"/u/.config/verra", "ocio.txt"}), "/u/.config/verra/ocio.txt"},
             {Path::join({"/a/", "/b"}), "/a/b"},
             {Path::join({"a/", "b", "/c"}), "a/b/c"},
             {Path::join({"", "a", "", "b"}), "a/b"},
             {Path(String("../a/./b/../c"), true).normalized(), "../a/c"},
             {Path(String("/x//y"), true).normalized(), "/x/y"},
             {path("~/x", true), "/h/x"},
             {path("~/x", false), "~/x"},
             {path("~u/x", true), "~u/x"}}) {
        EXPECT_EQ(text.view(), expected);
    }
}

TEST(File, PathQueriesAndReads)
{
    verra_test::TempDir const tmp;
    std::string big(3 * 65536 + 7, '\0'); // three whole blocks of the reader and a few bytes
    std::generate(big.begin(), big.end(), [i = 0]() mutable { return static_cast<char>(i++ * 7 % 256); });
    std::string const bigPath = tmp.write("real/sub/big.bin", big);
    std::filesystem::create_directory_symlink(tmp.file("real"), tmp.file("link"));
    // path, isFile, isDirectory, canonical
    std::tuple<std::string, bool, bool, std::string> const cases[] = {
        {tmp.file("link/sub/../sub/./big.bin"), true, false, bigPath},
        {tmp.file("link"), false, true, tmp.file("real")},
        {tmp.file("link/gone/../new.ocio"), false, false, tmp.file("real/new.ocio")},
        {"verra-missing/x", false, false, std::filesystem::current_path() / "verra-missing/x"},
        {"", false, false, ""}};
    for (auto const& [text, isFile, isDirectory, canonical] : cases) {
        Path const path(str(text), true);
        EXPECT_THAT(std::tuple(path.isEmpty(), path.isFile(), path.isDirectory(), std::string(path.canonical().buf())),
                    FieldsAre(text.empty(), isFile, isDirectory, canonical))
            << text;
    }
    File file;
    EXPECT_THAT(std::tuple(file.isOpen(), file.read().isEmpty()), FieldsAre(false, true));
    ASSERT_TRUE(file.open(str(bigPath), File::Read, File::Binary));
    EXPECT_EQ(file.read().view(), big);
    File const copy = file;
    file.close(); // for every handle
    EXPECT_THAT(std::tuple(copy.isOpen(), file.read().isEmpty()), FieldsAre(false, true));
    EXPECT_THAT((std::vector<bool>{file.open(str(tmp.file("missing")), File::Read, File::Binary), file.isOpen(),
                                   file.open(str(tmp.path()), File::Read, File::Binary),
                                   file.open(String(), File::Read, File::Binary)}),
                Each(false));
}

TEST(Os, GetEnvAndUserDir)
{
    verra_test::EnvGuard const variable("VERRA_TEST_VARIABLE"), home("HOME"), config("XDG_CONFIG_HOME"),
        data("XDG_DATA_HOME");
    variable.set("A=B");
    // The C library would answer "B" for "VERRA_TEST_VARIABLE=A".
    auto const env = [](String const& name) { return std::string(orv::os::getEnv(name).view()); };
    EXPECT_THAT((std::vector{env(String("VERRA_TEST_VARIABLE")), env(String()), env(String("VERRA_TEST_VARIABLE=A"))}),
                ElementsAre("A=B", "", ""));
    // $HOME, $XDG_CONFIG_HOME, $XDG_DATA_HOME (null: unset); verraUserDir(true), verraUserDir(false)
    using Case = std::array<char const*, 5>;
    for (auto const& [h, c, d, configDir, dataDir] :
         {Case{"/h", "/xdg/c//", "/xdg/d", "/xdg/c/verra", "/xdg/d/verra"},
          Case{"/h//", "", "relative/data", "/h/.config/verra", "/h/.local/share/verra"},
          Case{"/h", nullptr, nullptr, "/h/.config/verra", "/h/.local/share/verra"}}) {
        home.put(h);
        config.put(c);
        data.put(d);
        EXPECT_THAT(std::tuple(std::string(orv::fs::verraUserDir(true).view()),
                               std::string(orv::fs::verraUserDir(false).view())),
                    FieldsAre(configDir, dataDir))
            << h;
    }
}

TEST(Log, LinesGoToTheSinkWithoutOneLineEndOrToStandardError)
{
    {
        verra_test::LogCapture const capture;
        orv::logError("OIIO failed to reset OCIO: %s", "bad file");
        orv::logError("two\n\n");
        orv::logError("%s", "");
        EXPECT_EQ(capture.lines(), (std::vector<std::string>{"OIIO failed to reset OCIO: bad file", "two\n", ""}));
        orv::setErrorSink([](char const*) { throw 1; });
        EXPECT_NO_THROW(orv::logError("dropped"));
    }
    // An empty sink is standard error.
    orv::ErrorSink const previous = orv::setErrorSink(orv::ErrorSink());
    testing::internal::CaptureStderr();
    orv::logError("Cannot convert from '%s' to '%s'.", "linear", "sRGB");
    orv::logError("with line end\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "error: Cannot convert from 'linear' to 'sRGB'.\nerror: with line end\n");
    orv::setErrorSink(previous);
}

} // namespace
