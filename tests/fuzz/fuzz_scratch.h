#pragma once
// A scratch folder for the fuzz targets that need files, removed at exit.
//
// Made under $TMPDIR (else /tmp) as a canonical path, so the module's report,
// which names the canonical file, can be compared with the path written.

#include "fuzz_check.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include <unistd.h>

namespace verra_fuzz {

class ScratchDir {
public:
    ScratchDir()
    {
        char const* base = std::getenv("TMPDIR");
        std::string const pattern = std::string(base != nullptr && *base != '\0' ? base : "/tmp") + "/verra-fuzz-XXXXXX";
        std::vector<char> buffer(pattern.begin(), pattern.end());
        buffer.push_back('\0');
        char const* made = ::mkdtemp(buffer.data());
        FUZZ_CHECK(made != nullptr, "mkdtemp makes the scratch folder");
        m_path = std::filesystem::canonical(made).string();
    }
    ScratchDir(ScratchDir const&) = delete;
    ScratchDir& operator=(ScratchDir const&) = delete;
    ~ScratchDir()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    /// The full path of `name` inside the folder.
    std::string file(std::string const& name) const { return m_path + "/" + name; }

    /// Writes `size` bytes to `name` (replacing it) and gives its full path.
    std::string write(std::string const& name, char const* data, std::size_t size) const
    {
        std::string const full = file(name);
        std::ofstream out(full, std::ios::binary | std::ios::trunc);
        out.write(data, static_cast<std::streamsize>(size));
        out.close();
        FUZZ_CHECK(out.good(), "the scratch file is written");
        return full;
    }

private:
    std::string m_path;
};

} // namespace verra_fuzz
