#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

namespace verra_test {

namespace stdfs = std::filesystem;

TempDir::TempDir()
{
    char const* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/verra-test-XXXXXX";
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    char* made = ::mkdtemp(buffer.data());
    if (!made) {
        ADD_FAILURE() << "mkdtemp failed for " << pattern;
        return;
    }
    m_path = stdfs::canonical(made).string();
}

TempDir::~TempDir()
{
    if (!m_path.empty()) {
        std::error_code ignored;
        stdfs::remove_all(m_path, ignored);
    }
}

std::string TempDir::file(std::string const& relative) const { return m_path + "/" + relative; }

std::string TempDir::write(std::string const& relative, std::string const& content) const
{
    std::string const full = file(relative);
    std::error_code ignored;
    stdfs::create_directories(stdfs::path(full).parent_path(), ignored);
    std::ofstream out(full, std::ios::binary);
    out << content;
    out.close();
    if (!out) {
        ADD_FAILURE() << "cannot write " << full;
    }
    return full;
}

std::string TempDir::mkdir(std::string const& relative) const
{
    std::string const full = file(relative);
    std::error_code ec;
    stdfs::create_directories(full, ec);
    if (ec) {
        ADD_FAILURE() << "cannot create " << full << ": " << ec.message();
    }
    return full;
}

std::string readFile(std::string const& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

} // namespace verra_test
