// The number form of the daily tables and of the input summary.
#pragma once

#include <cstddef>
#include <string>

namespace nivora {

/// A value in a width, left aligned: rounded half away from zero at five decimals, then cut to the width. A
/// number whose integer part, sign included, does not fit takes the exponent form, its mantissa of seven
/// digits cut: 123456789 is "1.2345E8" in eight characters. A missing value is blank, a zero bears no sign.
///
/// @param value at least 4 characters of room for every Single
[[nodiscard]] std::string Format_Value(double value, std::size_t width);

/// A whole number in the same form: ".0000" behind it, cut to the width.
[[nodiscard]] std::string format_whole_value(double value, std::size_t width);

/// A whole number at the right end of a width, without a point; blank where it is missing.
[[nodiscard]] std::string right_aligned_whole(double value, std::size_t width);

}  // namespace nivora
