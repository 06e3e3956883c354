// The number form of the daily tables and of the input summary.
#pragma once

#include <cstddef>
#include <string>

namespace nivora {

/// A value in a width, left aligned: rounded half away from zero at five decimals, then cut to the width. If
/// the integer part with its sign does not fit, the value takes the exponent form, whose mantissa of seven
/// digits is cut: 123456789 is "1.2345E8" in eight characters. A missing value is blank, as is an infinite
/// one, which only the sum of values near the largest Double can be. A zero has no sign.
///
/// Intended: the exponent stays whole, and the mantissa takes the room that is left, even if no digit of it
/// fits. The largest Single is "3.402E38" in eight characters, "3.E38" in five, "3E38" in four and "E38" in
/// three; the same number with a minus sign is "-3.40E38", "-3E38", "-E38" and "E38". The cells of the lapse
/// rate table have four and three characters; the exponent shows that a value there is far beyond any real
/// one.
[[nodiscard]] std::string Format_Value(double value, std::size_t width);

/// A whole number in the same form, with ".0000" instead of decimals.
[[nodiscard]] std::string format_whole_value(double value, std::size_t width);

/// A whole number without a point, right aligned; blank if it is missing.
/// A number that is too long takes the exponent form.
[[nodiscard]] std::string right_aligned_whole(double value, std::size_t width);

}  // namespace nivora
