// The lock, the capture of the error log, and the exceptions of the binding.

#include "binding.h"

namespace verra_python {

std::string ErrorCapture::message(std::string_view otherwise) const
{
    std::string joined;
    for (std::string const& line : m_lines) {
        joined += (joined.empty() ? "" : "\n") + line;
    }
    return joined.empty() ? std::string(otherwise) : joined;
}

std::mutex& moduleLock()
{
    static std::mutex s_lock;
    return s_lock;
}

void registerExceptions()
{
    py::register_exception_translator([](std::exception_ptr thrown) {
        try {
            if (thrown) {
                std::rethrow_exception(thrown);
            }
        } catch (FileError const& error) {
            PyErr_SetString(PyExc_OSError, error.what());
        }
    });
}

} // namespace verra_python
