// Why a text that was typed or pasted can't be accepted, in words for the user.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace nivora {

// Each returns a clause without a full stop, such as "the calendar has no such day"; empty if the text is
// acceptable or blank.

[[nodiscard]] std::string number_refusal(std::string_view text);
/// A number that a 32-bit Single can hold.
[[nodiscard]] std::string single_refusal(std::string_view text);
/// A whole number that a 16-bit Integer can hold.
[[nodiscard]] std::string integer_refusal(std::string_view text);
[[nodiscard]] std::string date_refusal(std::string_view text);
/// An item of a list, without regard to case.
[[nodiscard]] std::string item_refusal(std::string_view text, std::span<const std::string> items);

/// The clause for a number outside its limits.
[[nodiscard]] std::string limits_refusal(double low, double high);

inline constexpr const char* k_number_too_large = "the number is too large";

}  // namespace nivora
