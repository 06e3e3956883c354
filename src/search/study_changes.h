// What differs between a study that goes on and the same study when it was begun.
#pragma once

#include <string>
#include <string_view>

namespace nivora {

/// The parts of study_digest texts that differ, such as "zones, parameters"; empty where nothing differs, or
/// where the texts have other parts.
[[nodiscard]] std::string changed_inputs(std::string_view stored, std::string_view asked);

/// The options that differ, with the values that they had, such as "seed 1, no \"no snow\""; empty where
/// the texts are the same.
///
/// @param stored, asked JSON objects of options in one line
[[nodiscard]] std::string changed_option_values(std::string_view stored, std::string_view asked);

}  // namespace nivora
