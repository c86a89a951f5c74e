#pragma once
// A temporary folder that lives as long as the object, and file helpers.

#include <string>

namespace verra_test {

/// Creates a fresh folder under the system's temporary folder ($TMPDIR or
/// /tmp); removes it and all it holds on destruction.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(TempDir const&) = delete;
    TempDir& operator=(TempDir const&) = delete;

    /// The folder's absolute, canonical path (no trailing separator).
    std::string const& path() const { return m_path; }
    /// `path() + "/" + relative`.
    std::string file(std::string const& relative) const { return m_path + "/" + relative; }
    /// Writes `content` to `relative` (creating parent folders) and returns
    /// its full path. Fails the current test on an I/O error.
    std::string write(std::string const& relative, std::string const& content) const;
    /// Creates the folder `relative` (and parents); returns its full path.
    std::string mkdir(std::string const& relative) const;

private:
    std::string m_path;
};

/// The whole content of the file at `path`, or "" when it cannot be read.
std::string readFile(std::string const& path);

} // namespace verra_test
