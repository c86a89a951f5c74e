#include <orv/file.h>

#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using orv::File;
using orv::String;

String str(std::string const& text) { return String(std::string_view(text)); }

TEST(File, ReadReturnsTheWholeContentFromTheStart)
{
    verra_test::TempDir const tmp;
    std::string const path = tmp.write("ocio.txt", "  /configs/studio.ocio\r\n");
    File file;
    ASSERT_TRUE(file.open(str(path), File::Read, File::Binary));
    EXPECT_TRUE(file.isOpen());
    EXPECT_EQ(file.read().view(), "  /configs/studio.ocio\r\n");
    EXPECT_EQ(file.read().view(), "  /configs/studio.ocio\r\n");
}

TEST(File, ReadKeepsLargeBinaryContentIntact)
{
    verra_test::TempDir const tmp;
    std::string content;
    for (int i = 0; i < 3 * 65536 + 7; ++i) {
        content += static_cast<char>(i * 7 % 256);
    }
    std::string const path = tmp.write("blob.bin", content);
    File file;
    ASSERT_TRUE(file.open(str(path), File::Read, File::Binary));
    EXPECT_TRUE(file.read().view() == content);
}

TEST(File, OpenFailsOnMissingFilesDirectoriesAndEmptyPaths)
{
    verra_test::TempDir const tmp;
    File file;
    EXPECT_FALSE(file.open(str(tmp.file("missing.txt")), File::Read, File::Binary));
    EXPECT_FALSE(file.open(str(tmp.path()), File::Read, File::Binary));
    EXPECT_FALSE(file.open(str(tmp.path()), File::Write, File::Binary));
    EXPECT_FALSE(file.open(String(), File::Read, File::Binary));
    EXPECT_FALSE(file.isOpen());
    EXPECT_TRUE(file.read().isEmpty());
}

TEST(File, ClosedOrUnopenedFileReadsNothing)
{
    verra_test::TempDir const tmp;
    std::string const path = tmp.write("ocio.txt", "/a.ocio");
    File const never;
    EXPECT_FALSE(never.isOpen());

    File file;
    ASSERT_TRUE(file.open(str(path), File::Read, File::Binary));
    File const copy = file;
    file.close();
    EXPECT_FALSE(copy.isOpen()); // closing closes it for every handle
    EXPECT_TRUE(file.read().isEmpty());
    file.close();
}

TEST(File, OpenClosesThePreviousFile)
{
    verra_test::TempDir const tmp;
    File file;
    ASSERT_TRUE(file.open(str(tmp.write("a.txt", "first")), File::Read, File::Binary));
    ASSERT_TRUE(file.open(str(tmp.write("b.txt", "second")), File::Read, File::Text));
    EXPECT_EQ(file.read().view(), "second");
    EXPECT_FALSE(file.open(str(tmp.file("missing.txt")), File::Read, File::Binary));
    EXPECT_FALSE(file.isOpen());
}

TEST(File, WriteAndAppendStoreText)
{
    verra_test::TempDir const tmp;
    std::string const path = tmp.file("out.txt");
    File file;
    ASSERT_TRUE(file.open(str(path), File::Write, File::Binary));
    EXPECT_TRUE(file.write(String("one ")));
    EXPECT_TRUE(file.write(String("two")));
    EXPECT_TRUE(file.read().isEmpty()); // not open for reading
    EXPECT_EQ(verra_test::readFile(path), "one two");

    ASSERT_TRUE(file.open(str(path), File::Append, File::Binary));
    EXPECT_TRUE(file.write(String(" three")));
    file.close();
    EXPECT_FALSE(file.write(String("four")));
    EXPECT_EQ(verra_test::readFile(path), "one two three");

    ASSERT_TRUE(file.open(str(path), File::Read, File::Binary));
    EXPECT_FALSE(file.write(String("x")));
}

} // namespace
