// Numbers as text and text as numbers, with a point in every locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace nivora {

/// The default text of a Single: at most seven significant digits, without trailing zeros, "1E+07" from ten
/// million on and "1E-05" below 0.0001. A missing value gives an empty text, a negative zero "0".
[[nodiscard]] std::string single_text(float value);

/// The same form for a number that is not a Single: rounded once, to seven significant digits.
[[nodiscard]] std::string seven_digit_text(double value);

/// The same form with at most fifteen significant digits.
[[nodiscard]] std::string double_text(double value);

/// The default text of a Single with a leading blank in the place of a minus sign.
[[nodiscard]] std::string spaced_single_text(float value);

/// The shortest text that reads back to the same bits; empty for a missing value.
[[nodiscard]] std::string shortest_text(float value);
[[nodiscard]] std::string shortest_text(double value);

/// A number in a pattern of `#` (a digit if there is one), `0` (a digit always) and `.`.
///
/// Rounds half away from zero at the pattern's last decimal, on the fifteen significant digits that a Double
/// holds. The point of a pattern stays even if no digit follows, digits before the point are never cut, and a
/// result of zero has no sign. A missing value gives an empty text.
[[nodiscard]] std::string format_number(double value, std::string_view pattern);

/// The value of the leading numeric part of a text, 0 if there is none: "12abc" is 12, "." is 0, "1,5" is 1.
///
/// @return plus or minus infinity if the number is too large for a Double
[[nodiscard]] double leading_number(std::string_view text);

/// The value of a text that is entirely a number, apart from blanks around it; nothing for any other text,
/// for an empty one, and for a number too large for a Double.
[[nodiscard]] std::optional<double> exact_number(std::string_view text);

}  // namespace nivora
