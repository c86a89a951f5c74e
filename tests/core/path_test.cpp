#include <orv/path.h>

#include "support/env_guard.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>

// Lets failure messages show a String's text.
namespace orv {
inline void PrintTo(String const& text, std::ostream* out) { *out << '"' << text.view() << '"'; }
} // namespace orv

namespace {

using orv::Path;
using orv::String;
using orv::StringVector;

String ext(char const* name, bool withDot = false) { return Path::ext(String(name), withDot); }

TEST(Path, ExtKeepsTheExtensionsOwnCase)
{
    EXPECT_EQ(ext("tex.PNG"), "PNG");
    EXPECT_EQ(ext("tex.PNG", true), ".PNG");
    EXPECT_EQ(ext("/textures/wood.tx.jpg"), "jpg");
    EXPECT_EQ(ext("archive.tar.gz"), "gz");
}

TEST(Path, ExtIsEmptyWithoutAnExtension)
{
    for (char const* name : {"", "README", ".profile", "/home/u/.profile", "/tmp/dir.d/file",
                             "/tmp/dir.d/", "..", "."}) {
        EXPECT_TRUE(ext(name).isEmpty()) << name;
        EXPECT_TRUE(ext(name, true).isEmpty()) << name;
    }
}

TEST(Path, JoinPutsOneSeparatorBetweenParts)
{
    auto join = [](StringVector const& parts) { return Path::join(parts); };
    EXPECT_EQ(join({String("/home/u/.config/verra"), String("ocio.txt")}),
              "/home/u/.config/verra/ocio.txt");
    EXPECT_EQ(join({String("/a/"), String("b")}), "/a/b");
    EXPECT_EQ(join({String("/a"), String("/b")}), "/a/b");
    EXPECT_EQ(join({String("/a/"), String("/b")}), "/a/b");
    EXPECT_EQ(join({String(""), String("a"), String(), String("b")}), "a/b");
    EXPECT_TRUE(join(StringVector()).isEmpty());
}

TEST(Path, EmptyPathAnswersEmptyAndFalse)
{
    for (Path const& path : {Path(), Path(String(), true)}) {
        EXPECT_TRUE(path.isEmpty());
        EXPECT_FALSE(path.isFile());
        EXPECT_FALSE(path.isDirectory());
        EXPECT_TRUE(path.canonical().isEmpty());
        EXPECT_TRUE(path.normalized().isEmpty());
    }
}

TEST(Path, LeadingTildeExpandsToHome)
{
    verra_test::EnvGuard const home("HOME");
    home.set("/home/tester");
    EXPECT_EQ(Path(String("~/x.ocio"), true).str(), "/home/tester/x.ocio");
    EXPECT_EQ(Path(String("~"), true).str(), "/home/tester");
    EXPECT_EQ(Path(String("~/x.ocio"), false).str(), "~/x.ocio");
    EXPECT_EQ(Path(String("~other/x"), true).str(), "~other/x");
    EXPECT_EQ(Path(String("/a/~"), true).str(), "/a/~");
}

TEST(Path, UnexpandedPathSharesTheTextBody)
{
    String const text("/configs/studio.ocio");
    Path const path(text, true);
    EXPECT_FALSE(path.isEmpty());
    EXPECT_EQ(path.str().body(), text.body());
}

TEST(Path, IsFileTellsFilesFromDirectoriesAndMissingPaths)
{
    verra_test::TempDir const tmp;
    std::string const file = tmp.write("config.ocio", "ocio_profile_version: 2\n");
    std::string const dir = tmp.mkdir("configs.d");
    std::filesystem::create_symlink(file, tmp.file("link.ocio"));

    EXPECT_TRUE(Path(String(file.c_str()), true).isFile());
    EXPECT_TRUE(Path(String(tmp.file("link.ocio").c_str()), true).isFile());
    EXPECT_FALSE(Path(String(dir.c_str()), true).isFile());
    EXPECT_FALSE(Path(String(tmp.file("missing.ocio").c_str()), true).isFile());

    EXPECT_TRUE(Path(String(dir.c_str()), true).isDirectory());
    EXPECT_FALSE(Path(String(file.c_str()), true).isDirectory());
}

TEST(Path, CanonicalResolvesLinksAndDotDot)
{
    verra_test::TempDir const tmp;
    tmp.write("real/sub/c.ocio", "x");
    std::filesystem::create_directory_symlink(tmp.file("real"), tmp.file("link"));

    Path const linked(String(tmp.file("link/sub/../sub/./c.ocio").c_str()), true);
    EXPECT_EQ(linked.canonical(), tmp.file("real/sub/c.ocio").c_str());

    // A missing tail is folded lexically after the existing prefix resolves.
    Path const missing(String(tmp.file("link/gone/../new.ocio").c_str()), true);
    EXPECT_EQ(missing.canonical(), tmp.file("real/new.ocio").c_str());
}

TEST(Path, CanonicalOfARelativePathIsAbsolute)
{
    Path const relative(String("verra-missing-dir/x.ocio"), true);
    std::string const expected = (std::filesystem::current_path() / "verra-missing-dir/x.ocio").string();
    EXPECT_EQ(relative.canonical(), expected.c_str());
}

TEST(Path, NormalizedFoldsLexically)
{
    auto normalized = [](char const* text) { return Path(String(text), true).normalized(); };
    EXPECT_EQ(normalized("a/./b/../c"), "a/c");
    EXPECT_EQ(normalized("/x//y/../z.ocio"), "/x/z.ocio");
    EXPECT_EQ(normalized("../a"), "../a");
    EXPECT_EQ(normalized("$"), "$");
}

} // namespace
