// The checks of numpy pixel arrays.

#include "arrays.h"

#include <climits>
#include <cstdint>

namespace verra_python {

namespace {

std::string shapeOf(py::array const& array)
{
    std::string shape = "(";
    for (py::ssize_t axis = 0; axis < array.ndim(); ++axis) {
        shape += (axis == 0 ? "" : ", ") + std::to_string(array.shape(axis));
    }
    return shape + (array.ndim() == 1 ? ",)" : ")");
}

} // namespace

PixelArray checkedPixels(py::handle object, ArrayRule const& rule)
{
    std::string const expected =
        std::string(rule.argument) + ": expected " + rule.expected +
        (rule.inPlace ? ", C-contiguous and writeable (it is converted in place)" : ", C-contiguous");
    if (!py::isinstance<py::array>(object)) {
        throw py::type_error(expected + "; got " + std::string(py::str(py::type::handle_of(object).attr("__name__"))));
    }
    auto const array = py::reinterpret_borrow<py::array>(object);
    bool const rightType = rule.type == Channel::Uint8 ? py::isinstance<py::array_t<std::uint8_t>>(object)
                                                       : py::isinstance<py::array_t<float>>(object);
    if (!rightType) {
        throw py::type_error(expected + "; got dtype " + std::string(py::str(array.dtype())));
    }
    py::ssize_t const channels = array.ndim() == 3 ? array.shape(2) : 0;
    if (channels != rule.channels && channels != rule.otherChannels) {
        throw py::value_error(expected + "; got shape " + shapeOf(array));
    }
    py::ssize_t const height = array.shape(0);
    py::ssize_t const width = array.shape(1);
    if (height == 0 || width == 0) {
        throw py::value_error(expected + ", with at least one pixel; got shape " + shapeOf(array));
    }
    if (height > INT_MAX || width > INT_MAX ||
        static_cast<std::uint64_t>(height) * static_cast<std::uint64_t>(width) > 0xFFFFFFFFull) {
        throw py::value_error(expected + ", of at most 4294967295 pixels; got shape " + shapeOf(array));
    }
    if ((array.flags() & py::array::c_style) == 0) {
        throw py::value_error(expected + "; got a non-contiguous array" +
                              (rule.inPlace ? " (a contiguous copy would be converted, not your array)"
                                            : " (numpy.ascontiguousarray makes a contiguous copy)"));
    }
    if ((array.flags() & py::detail::npy_api::NPY_ARRAY_ALIGNED_) == 0) {
        throw py::value_error(expected + "; got a misaligned array");
    }
    if (rule.inPlace && !array.writeable()) {
        throw py::value_error(expected + "; got a read-only array");
    }
    PixelArray pixels;
    pixels.buffer = array.request(rule.inPlace);
    pixels.data = pixels.buffer.ptr;
    pixels.width = static_cast<int>(width);
    pixels.height = static_cast<int>(height);
    pixels.channels = static_cast<int>(channels);
    return pixels;
}

} // namespace verra_python
