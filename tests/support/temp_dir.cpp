#include "support/temp_dir.h"

#include <OpenImageIO/filesystem.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace verra_test {

namespace stdfs = std::filesystem;

TempDir::TempDir()
{
    std::error_code ec;
    stdfs::path const made = stdfs::temp_directory_path(ec) / OIIO::Filesystem::unique_path("verra-test-%%%%-%%%%");
    if (ec || !stdfs::create_directory(made, ec)) {
        ADD_FAILURE() << "cannot create " << made << ": " << ec.message();
    }
    m_path = stdfs::weakly_canonical(made, ec).string();
}

TempDir::~TempDir()
{
    std::error_code ignored;
    stdfs::remove_all(m_path, ignored);
}

std::string TempDir::write(std::string const& relative, std::string const& content) const
{
    std::string const full = file(relative);
    std::error_code ignored;
    stdfs::create_directories(stdfs::path(full).parent_path(), ignored);
    EXPECT_TRUE(OIIO::Filesystem::write_text_file(full, content)) << "cannot write " << full;
    return full;
}

std::string TempDir::mkdir(std::string const& relative) const
{
    std::string const full = file(relative);
    std::error_code ec;
    EXPECT_TRUE(stdfs::create_directories(full, ec) || !ec) << "cannot create " << full << ": " << ec.message();
    return full;
}

std::string readFile(std::string const& path)
{
    std::string content;
    return OIIO::Filesystem::read_text_file(path, content) ? content : std::string();
}

} // namespace verra_test
