// Names between Python and the module: str from the module's bytes, typed
// colour-space names resolved as the program resolves them, display/view
// transforms chosen.

#include "binding.h"

#include <verra_sdk/kit/config_load.h>
#include <verra_sdk/kit/names.h>

namespace verra_python {

namespace kit = orv::verra_sdk::kit;

py::str text(std::string_view text)
{
    PyObject* const decoded = PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
    if (decoded == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::str>(decoded);
}

py::list texts(std::vector<std::string> const& items)
{
    py::list list;
    for (std::string const& item : items) {
        list.append(text(item));
    }
    return list;
}

std::string quoted(std::vector<std::string> const& names)
{
    std::string joined;
    for (std::string const& name : names) {
        joined += (joined.empty() ? "'" : ", '") + name + "'";
    }
    return joined;
}

void throwUnknownColorSpace(std::string const& typed)
{
    std::vector<std::string> const closest = kit::closestColorSpaces(typed);
    throw py::value_error(
        "unknown colour space '" + typed + "'" +
        (closest.empty() ? std::string(" (color_spaces() lists them all)") : "; closest: " + quoted(closest)));
}

std::string resolvedColorSpace(std::string const& typed)
{
    kit::ResolvedName resolved = kit::resolveColorSpace(typed);
    if (resolved.name.empty()) {
        throwUnknownColorSpace(typed);
    }
    return std::move(resolved.name);
}

std::string looksText(py::handle looks)
{
    if (py::isinstance<py::str>(looks)) {
        return looks.cast<std::string>();
    }
    std::string joined;
    for (py::handle look : py::iter(looks)) {
        joined += (joined.empty() ? "" : ", ") + look.cast<std::string>();
    }
    return joined;
}

kit::ContextVariables contextOf(ContextDict const& context)
{
    return {context.begin(), context.end()};
}

void throwTransformError(std::string const& error)
{
    // Names the config does not have are the caller's; a transform that
    // OpenColorIO cannot build is the config's.
    if (std::string_view(error).substr(0, 7) == "cannot ") {
        throw std::runtime_error(error);
    }
    throw py::value_error(error);
}

kit::DisplayView chooseView(std::string const& from, std::optional<std::string> const& display,
                            std::optional<std::string> const& view, std::string const& looks, bool inverse,
                            ContextDict const& context)
{
    if (!kit::configStatus().usesFile()) {
        throw py::value_error(
            "the built-in colour spaces have no displays or views; load a config with load_ocio_config()");
    }
    kit::DisplayView chosen;
    std::string error;
    if (!kit::chooseDisplayView(
            {resolvedColorSpace(from), display.value_or(""), view.value_or(""), looks, inverse, contextOf(context)},
            chosen, error)) {
        throwTransformError(error);
    }
    return chosen;
}

} // namespace verra_python
