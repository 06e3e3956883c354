// Calendar days as day counts, and their text forms.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace nivora {

/// A calendar day as the number of days since 1899-12-30, which is day 0.
using DayCount = std::int64_t;

struct CivilDate {
    int year = 1899;
    int month = 12;  ///< 1 to 12
    int day = 30;    ///< 1 to 31

    bool operator==(const CivilDate&) const = default;
};

/// The first and last year that a date may have.
inline constexpr int k_first_year = 1900;
inline constexpr int k_last_year = 2300;

/// A number further from day 0 than this, on either side, is not a date: about 2,700 years.
inline constexpr double k_largest_day = 1.0e6;

/// The day count of a date of the Gregorian calendar; nothing if there is no such day.
[[nodiscard]] std::optional<DayCount> day_count(const CivilDate& date);
[[nodiscard]] CivilDate civil_date(DayCount day);

/// The number of a day in its own year; 1 January is 1.
[[nodiscard]] int day_of_year(DayCount day);

/// The calendar day of a date that may have a time part. A date out of range gives the largest day of
/// the same sign.
[[nodiscard]] DayCount whole_day(double date);

/// The current local date and time, with the time of day as the fraction.
[[nodiscard]] double local_now();

/// "mm/dd/yyyy"
[[nodiscard]] std::string long_date_text(DayCount day);
/// "m/d/yyyy"
[[nodiscard]] std::string short_date_text(DayCount day);
/// "yyyy-mm-dd"
[[nodiscard]] std::string iso_date_text(DayCount day);
/// A date with its time part: the ISO date alone at midnight, otherwise followed by "Thh:mm:ss".
[[nodiscard]] std::string iso_moment_text(double date);
/// "h:mm:ss AM/PM" of the time part of a date, rounded to the second.
[[nodiscard]] std::string time_text(double date);

/// Reads m/d/yyyy with one or two digits for month and day, or yyyy-mm-dd. Blanks around the
/// date are ignored.
///
/// @return nothing if the text is not a date or its year is outside 1900 to 2300
[[nodiscard]] std::optional<DayCount> read_date(std::string_view text);

}  // namespace nivora
