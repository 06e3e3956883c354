// A JSON text with the line of each of its values.
#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nivora {

/// A text as JSON. Places are written as in `zones[1].area`; the text as a whole is the empty place.
struct LocatedJson {
    nlohmann::ordered_json value = {};
    std::map<std::string, std::size_t> lines = {};                      ///< from 1, by place
    std::vector<std::pair<std::string, std::size_t>> second_keys = {};  ///< keys that an object has twice
    std::string syntax_problem = {};  ///< why the text is not JSON; empty if it is
    std::size_t problem_line = 0;
};

[[nodiscard]] LocatedJson read_located_json(std::string_view text);

/// A member of a place.
[[nodiscard]] std::string member_place(const std::string& place, std::string_view key);
/// An element of a place, from 0.
[[nodiscard]] std::string element_place(const std::string& place, std::size_t index);

}  // namespace nivora
