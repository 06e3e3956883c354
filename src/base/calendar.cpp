#include "base/calendar.h"

#include "base/text.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <ctime>

namespace nivora {
namespace {

constexpr std::chrono::sys_days k_day_zero{std::chrono::year{1899} / 12 / 30};
constexpr int k_seconds_a_day = 86400;

std::optional<int> read_digits(std::string_view text, std::size_t least, std::size_t most) {
    if (text.size() < least || text.size() > most) return std::nullopt;
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || text.front() == '-') return std::nullopt;
    return value;
}

/// Seconds after midnight, 0 to 86399; a time that rounds up to midnight stays on its day.
int second_of_day(double date) {
    const double seconds = std::floor((date - std::floor(date)) * k_seconds_a_day + 0.5);
    return std::min(static_cast<int>(seconds), k_seconds_a_day - 1);
}

std::optional<DayCount> day_from_parts(std::optional<int> year, std::optional<int> month,
                                       std::optional<int> day) {
    if (!year || !month || !day || *year < k_first_year || *year > k_last_year) return std::nullopt;
    return day_count({*year, *month, *day});
}

}  // namespace

std::optional<DayCount> day_count(const CivilDate& date) {
    if (date.month < 1 || date.month > 12 || date.day < 1 || date.day > 31) return std::nullopt;
    const std::chrono::year_month_day day{std::chrono::year{date.year},
                                          std::chrono::month{static_cast<unsigned>(date.month)},
                                          std::chrono::day{static_cast<unsigned>(date.day)}};
    if (!day.ok()) return std::nullopt;
    return (std::chrono::sys_days{day} - k_day_zero).count();
}

CivilDate civil_date(DayCount day) {
    const std::chrono::year_month_day date{k_day_zero + std::chrono::days{day}};
    return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day()))};
}

int day_of_year(DayCount day) {
    const int year = civil_date(day).year;
    return static_cast<int>(day - *day_count({year, 1, 1})) + 1;
}

DayCount whole_day(double date) {
    if (!(std::abs(date) <= k_largest_day)) date = std::copysign(k_largest_day, date);
    return static_cast<DayCount>(std::floor(date));
}

double local_now() {
    const std::time_t now = std::time(nullptr);
    const std::tm local = *std::localtime(&now);
    constexpr int k_first_year_of_tm = 1900;
    const auto day = day_count({local.tm_year + k_first_year_of_tm, local.tm_mon + 1, local.tm_mday});
    const int seconds = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
    return static_cast<double>(day.value_or(0)) + static_cast<double>(seconds) / k_seconds_a_day;
}

std::string long_date_text(DayCount day) {
    const CivilDate date = civil_date(day);
    return fmt::format("{:02}/{:02}/{:04}", date.month, date.day, date.year);
}

std::string short_date_text(DayCount day) {
    const CivilDate date = civil_date(day);
    return fmt::format("{}/{}/{:04}", date.month, date.day, date.year);
}

std::string iso_date_text(DayCount day) {
    const CivilDate date = civil_date(day);
    return fmt::format("{:04}-{:02}-{:02}", date.year, date.month, date.day);
}

std::string iso_moment_text(double date) {
    const int seconds = second_of_day(date);
    std::string text = iso_date_text(whole_day(date));
    if (seconds == 0) return text;
    return text + fmt::format("T{:02}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

std::string time_text(double date) {
    const int seconds = second_of_day(date);
    const int hour = seconds / 3600;
    const int shown = hour % 12 == 0 ? 12 : hour % 12;
    return fmt::format("{}:{:02}:{:02} {}", shown, seconds / 60 % 60, seconds % 60, hour < 12 ? "AM" : "PM");
}

std::optional<DayCount> read_date(std::string_view text) {
    const std::string_view shown = trimmed(text);
    const bool american = shown.find('/') != std::string_view::npos;
    const char separator = american ? '/' : '-';
    const std::size_t first = shown.find(separator);
    if (first == std::string_view::npos) return std::nullopt;
    const std::size_t second = shown.find(separator, first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    const std::string_view a = shown.substr(0, first);
    const std::string_view b = shown.substr(first + 1, second - first - 1);
    const std::string_view c = shown.substr(second + 1);
    if (american) return day_from_parts(read_digits(c, 4, 4), read_digits(a, 1, 2), read_digits(b, 1, 2));
    return day_from_parts(read_digits(a, 4, 4), read_digits(b, 2, 2), read_digits(c, 2, 2));
}

}  // namespace nivora
