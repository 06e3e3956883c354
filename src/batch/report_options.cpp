#include "batch/report_options.h"

#include "base/calendar.h"
#include "base/iso_date.h"

#include <algorithm>

namespace nivora {
namespace {

constexpr std::size_t k_date_length = 10;
constexpr int k_hours_a_day = 24;
constexpr int k_sixty = 60;
constexpr double k_seconds_a_day = 86400.0;

bool is_digit(char character) { return character >= '0' && character <= '9'; }

/// A number of two digits below a bound.
std::optional<int> two_digits(std::string_view text, int bound) {
    if (text.size() != 2 || !std::all_of(text.begin(), text.end(), is_digit)) return std::nullopt;
    const int value = (text[0] - '0') * 10 + (text[1] - '0');
    return value < bound ? std::optional{value} : std::nullopt;
}

}  // namespace

std::optional<std::vector<Report>> read_report_numbers(std::string_view text) {
    std::vector<Report> reports;
    while (true) {
        const std::string_view number = text.substr(0, text.find(','));
        if (number.size() != 1 || number[0] < '0' || number[0] >= '0' + k_reports) return std::nullopt;
        reports.push_back(static_cast<Report>(number[0] - '0'));
        if (number.size() == text.size()) return reports;
        text.remove_prefix(number.size() + 1);
    }
}

std::optional<double> read_iso_moment(std::string_view text) {
    constexpr std::string_view k_form = "yyyy-mm-ddThh:mm:ss";
    if (text.size() != k_form.size() || text[k_date_length] != 'T') return std::nullopt;
    const auto day = read_iso_date(text.substr(0, k_date_length));
    const auto hours = two_digits(text.substr(11, 2), k_hours_a_day);
    const auto minutes = two_digits(text.substr(14, 2), k_sixty);
    const auto seconds = two_digits(text.substr(17, 2), k_sixty);
    if (!day || !hours || !minutes || !seconds || text[13] != ':' || text[16] != ':') return std::nullopt;
    return static_cast<double>(*day) + ((*hours * k_sixty + *minutes) * k_sixty + *seconds) / k_seconds_a_day;
}

}  // namespace nivora
