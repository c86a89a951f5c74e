#pragma once
// orv::math::RgbaT: one colour of four channels.

#include <type_traits>

namespace orv::math {

/// Four channels r, g, b, a of type T, in that order and nothing else;
/// trivially copyable, passed by value.
template <class T>
struct RgbaT {
    T r;
    T g;
    T b;
    T a;
};

static_assert(std::is_trivially_copyable_v<RgbaT<double>>);
static_assert(std::is_standard_layout_v<RgbaT<double>>);
static_assert(sizeof(RgbaT<double>) == 4 * sizeof(double));

} // namespace orv::math
