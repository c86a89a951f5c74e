#pragma once
// What the binding's files share: the one lock that serialises every call
// into the module and the toolkit, the capture of the module's error log
// during such a call, the conversion of names between C++ and Python, and
// the declarations that put each file's functions on the Python module.

#include <pybind11/pybind11.h>

#include <verra_sdk/kit/display_view.h>

#include <orv/log.h>

#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace verra_python {

namespace py = pybind11;

/// The error lines the module logs while it is alive, instead of standard
/// error; the sink in place before is restored on destruction. Create it
/// only under `moduleLock()`: the sink is process-wide.
class ErrorCapture {
public:
    ErrorCapture() : m_previous(orv::setErrorSink([this](char const* line) { m_lines.emplace_back(line); })) {}
    ~ErrorCapture() { orv::setErrorSink(std::move(m_previous)); }
    ErrorCapture(ErrorCapture const&) = delete;
    ErrorCapture& operator=(ErrorCapture const&) = delete;

    /// The lines logged so far, joined by line ends; `otherwise` when none.
    std::string message(std::string_view otherwise) const;

private:
    std::vector<std::string> m_lines;
    orv::ErrorSink m_previous;
};

/// A file that cannot be read or written; raised in Python as OSError.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Serialises every call into the module and the toolkit, which keep
/// process-wide state without locks.
std::mutex& moduleLock();

/// Runs `work(capture)` with the GIL released, under `moduleLock()`, with
/// the module's error log captured, and returns what it returns. The lock is
/// only ever taken without the GIL, so a thread waiting for it never holds
/// the GIL that the holder may need. `work` must not touch Python objects;
/// it may throw pybind11's builtin exceptions (value_error, ...), which
/// reach Python once the GIL is back.
template <class Work>
auto callModule(Work&& work)
{
    py::gil_scoped_release const release;
    std::lock_guard<std::mutex> const lock(moduleLock());
    ErrorCapture capture;
    return std::forward<Work>(work)(capture);
}

/// Makes FileError raise OSError.
void registerExceptions();

/// A Python str of the bytes `text`; bytes that are not UTF-8 (names are
/// bytes to OpenColorIO) become U+FFFD.
py::str text(std::string_view text);

/// A Python list of str.
py::list texts(std::vector<std::string> const& items);

/// "'a', 'b', 'c'".
std::string quoted(std::vector<std::string> const& names);

/// Raises ValueError "unknown colour space '<typed>'" with the closest
/// names (call under `moduleLock()`).
[[noreturn]] void throwUnknownColorSpace(std::string const& typed);

/// `typed` as the toolkit resolves it (aliases, roles, inactive spaces),
/// or ValueError as `throwUnknownColorSpace` (call under `moduleLock()`).
std::string resolvedColorSpace(std::string const& typed);

/// Looks as OpenColorIO takes them: a str as it is, a sequence of str
/// joined by ", " (with the GIL held).
std::string looksText(py::handle looks);

/// Context variables from a dict of str.
using ContextDict = std::map<std::string, std::string>;

/// `context` as the toolkit takes it.
orv::verra_sdk::kit::ContextVariables contextOf(ContextDict const& context);

/// Raises the toolkit's `error` about a transform: RuntimeError for what
/// OpenColorIO could not do ("cannot ..."), ValueError for the caller's
/// names and arguments.
[[noreturn]] void throwTransformError(std::string const& error);

/// The config's display/view transform from the typed colour space `from`,
/// `display` and `view` (None: the config's defaults), `looks`, inverted or
/// not, with `context`, checked against the config in use (call under
/// `moduleLock()`). Raises ValueError for an unknown name, naming the valid
/// choices, and without a config file; RuntimeError when OpenColorIO cannot
/// build or invert the transform.
orv::verra_sdk::kit::DisplayView chooseView(std::string const& from, std::optional<std::string> const& display,
                                            std::optional<std::string> const& view, std::string const& looks,
                                            bool inverse, ContextDict const& context);

// Each file's functions, added to the module `m`.
void addCatalogue(py::module_& m);
void addColors(py::module_& m);
void addPixels(py::module_& m);
void addFiles(py::module_& m);

} // namespace verra_python
