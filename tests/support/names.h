#pragma once
// Name lists as plain strings, for comparisons with readable failure output.

#include <orv/string_vector.h>

#include <string>
#include <vector>

namespace verra_test {

using Names = std::vector<std::string>;

/// The texts of `list`, in order.
inline Names texts(orv::StringVector const& list)
{
    Names out;
    for (orv::String const& s : list) {
        out.emplace_back(s.buf());
    }
    return out;
}

} // namespace verra_test
