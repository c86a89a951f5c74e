#pragma once
// JSON output of the subcommands' --json.

#include "console.h"

#include <nlohmann/json.hpp>

#include <string>
#include <utility>
#include <vector>

namespace colorconfig {

/// Members keep the order in which they are added.
using Json = nlohmann::ordered_json;

/// Each pair as an object {"name": first, `second`: second}.
inline Json pairsJson(std::vector<std::pair<std::string, std::string>> const& pairs, char const* second)
{
    Json list = Json::array();
    for (auto const& [name, value] : pairs) {
        list.push_back({{"name", name}, {second, value}});
    }
    return list;
}

/// Writes `json` to standard output, indented by two blanks, with a final
/// line end. Bytes that are not UTF-8 (names are bytes to OpenColorIO)
/// become U+FFFD.
inline void printJson(Json const& json)
{
    console::out(json.dump(2, ' ', false, Json::error_handler_t::replace));
}

} // namespace colorconfig
