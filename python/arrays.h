#pragma once
// numpy pixel arrays checked before the module sees them: the right dtype
// and shape, C-contiguous, aligned, and writeable when converted in place,
// so that the module works on the caller's memory or nothing happens.

#include "binding.h"

#include <pybind11/numpy.h>

namespace verra_python {

/// The element type an array must have.
enum class Channel { Uint8, Float32 };

/// What an argument must be, and the words that say so in an error.
struct ArrayRule {
    /// The argument's name, such as "pixels".
    char const* argument;
    Channel type;
    /// The accepted counts of channels (the last axis): one or two of them.
    int channels;
    int otherChannels;
    /// True when the array is converted in place (it must be writeable).
    bool inPlace;
    /// What is expected, as the error says it: "a float32 array of shape
    /// (H, W, 3) or (H, W, 4)".
    char const* expected;
};

/// A checked array of H × W pixels. The buffer export keeps numpy from
/// resizing or freeing the memory while the module works on it; destroy it
/// with the GIL held.
struct PixelArray {
    void* data = nullptr;
    int width = 0;
    int height = 0;
    int channels = 0;
    py::buffer_info buffer;
};

/// `object` checked against `rule`. Raises TypeError for something that is
/// not a numpy array or has another dtype (byte order included), ValueError
/// for another shape, no pixels, more pixels than the module takes (H × W
/// beyond 32 bits), a non-contiguous or misaligned array, or a read-only one
/// converted in place; each message names the argument, what is expected
/// and what was given.
PixelArray checkedPixels(py::handle object, ArrayRule const& rule);

} // namespace verra_python
