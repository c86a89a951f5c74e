#include "support/log_capture.h"

namespace verra_test {

LogCapture::LogCapture()
    : m_previous(orv::setErrorSink([this](char const* line) { m_lines.emplace_back(line); }))
{
}

LogCapture::~LogCapture() { orv::setErrorSink(m_previous); }

} // namespace verra_test
