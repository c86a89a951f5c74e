#pragma once
// Collects the lines written to orv::logError while the object lives.

#include <orv/log.h>

#include <string>
#include <vector>

namespace verra_test {

/// Installs a sink that records every error line; restores the previous sink
/// on destruction.
class LogCapture {
public:
    LogCapture() : m_previous(orv::setErrorSink([this](char const* line) { m_lines.emplace_back(line); })) {}
    ~LogCapture() { orv::setErrorSink(m_previous); }
    LogCapture(LogCapture const&) = delete;
    LogCapture& operator=(LogCapture const&) = delete;

    std::vector<std::string> const& lines() const { return m_lines; }
    void clear() { m_lines.clear(); }

private:
    std::vector<std::string> m_lines;
    orv::ErrorSink m_previous;
};

} // namespace verra_test
