// Writes the sample basin "Ellervane at Corben Bridge" as two legacy data files.
//
//     make_sample FOLDER
//
// Nothing here was measured: the basin does not exist, and its weather, snow cover, runoff and parameters are
// inventions of this program. One continuous record of weather is drawn; a small water balance, deliberately
// another one than the program's model, turns it into snow, snow cover and discharge; and two periods are cut
// from that record. So the program's model meets runoff that it explains well but, as in nature, not fully.
//
// The same two files come out of every compiler and every run: the random numbers are made from integers, the
// arithmetic is + - * / and square roots, which are exactly rounded, and numbers become text by way of
// integers. Compile without contraction (-ffp-contract=off where that is not the default).

#include "made_up_record.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace sample;
using namespace std::chrono_literals;

constexpr double k_rain_threshold_cm = 6;

/// Ordinal of a day in its own year, 1 January being 1.
[[nodiscard]] int day_of_year(Day day) {
    return static_cast<int>((day - Day{Date{day}.year() / 1 / 1}).count()) + 1;
}

// ---- Parameters of the model: what a modeller would set by hand ----

struct Parameters {
    int from;                     ///< month and day, MMDD
    double critical_temperature;  ///< °C
    double lag_hours;
    double lapse_rate;         ///< °C per 100 m
    double degree_day_factor;  ///< cm per °C and day, of the middle zone
    double snow_runoff;        ///< Cs
    double rain_runoff;        ///< Cr
    double rain_everywhere;    ///< RCA: 0 rain counts on the snow-free part, 1 on the whole zone
};

constexpr std::array<Parameters, 14> k_parameters{{
    {101, 2.50, 22, 0.55, 0.35, 0.90, 0.80, 0},
    {301, 2.50, 22, 0.62, 0.35, 0.90, 0.80, 0},
    {401, 2.25, 22, 0.65, 0.38, 0.90, 0.78, 1},
    {416, 2.25, 15, 0.65, 0.40, 0.88, 0.78, 1},
    {501, 2.00, 12, 0.67, 0.43, 0.86, 0.75, 1},
    {516, 1.75, 12, 0.67, 0.46, 0.84, 0.74, 1},
    {601, 1.50, 9, 0.68, 0.50, 0.78, 0.70, 1},
    {616, 1.25, 8, 0.68, 0.53, 0.77, 0.68, 1},
    {701, 1.00, 6, 0.67, 0.56, 0.72, 0.62, 1},
    {801, 0.75, 8, 0.66, 0.60, 0.68, 0.58, 1},
    {901, 1.25, 10, 0.62, 0.55, 0.70, 0.62, 1},
    {1001, 1.75, 14, 0.58, 0.42, 0.78, 0.70, 0},
    {1101, 2.25, 20, 0.55, 0.36, 0.86, 0.76, 0},
    {1201, 2.50, 22, 0.53, 0.35, 0.90, 0.80, 0},
}};

/// Snow ripens later higher up: what the degree-day factor of a zone differs from that of the middle one.
constexpr std::array<double, k_zone_count> k_degree_day_factor_shift{0.02, 0.01, 0.0, -0.01, -0.02};

[[nodiscard]] const Parameters& parameters_on(Day day) {
    const Parameters* current = &k_parameters.front();
    for (const Parameters& later : k_parameters) {
        if (later.from <= month_and_day(day)) current = &later;
    }
    return *current;
}

// ---- What the sections of a file take from the record ----

/// One day of one zone with all that the sections hold.
struct FileDay {
    const Parameters& parameters;
    const StationDay& station;
    const ZoneDay& local;
    double discharge;
    std::size_t zone;

    /// Zone 1 bears the reference station, the others their own temperature.
    [[nodiscard]] double shift() const { return zone == 0 ? 0.0 : local.temperature_shift; }
};

struct Section {
    int decimals;
    bool fixed_decimals;  ///< zeros at the end of the decimals stay
    bool by_zone;         ///< one series for each zone, otherwise one for the basin
    double (*value)(const FileDay&);
};

constexpr std::array<Section, 13> k_sections{{
    {3, true, false, [](const FileDay& day) { return day.discharge; }},
    {1, false, true, [](const FileDay& day) { return day.station.maximum + day.shift(); }},
    {1, false, true, [](const FileDay& day) { return day.station.minimum + day.shift(); }},
    {1, false, true, [](const FileDay& day) { return day.station.mean + day.shift(); }},
    {2, false, true,
     [](const FileDay& day) { return day.zone == 0 ? day.station.precipitation : day.local.precipitation; }},
    {2, false, true, [](const FileDay& day) { return day.local.cover; }},
    {2, false, true, [](const FileDay& day) { return day.parameters.critical_temperature; }},
    {0, false, true, [](const FileDay& day) { return day.parameters.lag_hours; }},
    {2, false, true, [](const FileDay& day) { return day.parameters.lapse_rate; }},
    {2, false, true,
     [](const FileDay& day) {
         return day.parameters.degree_day_factor + k_degree_day_factor_shift[day.zone];
     }},
    {2, false, true, [](const FileDay& day) { return day.parameters.snow_runoff; }},
    {2, false, true, [](const FileDay& day) { return day.parameters.rain_runoff; }},
    {0, false, true, [](const FileDay& day) { return day.parameters.rain_everywhere; }},
}};

// ---- Text of a file ----

/// A number with at most `decimals` decimals, half away from zero.
[[nodiscard]] std::string number_text(double value, int decimals, bool fixed_decimals) {
    double scale = 1;
    for (int place = 0; place < decimals; ++place) scale *= 10;
    const long long scaled = std::llround(value * scale);
    std::string digits = std::to_string(scaled < 0 ? -scaled : scaled);
    const auto places = static_cast<std::size_t>(decimals);
    if (digits.size() <= places) digits.insert(0, places + 1 - digits.size(), '0');
    std::string whole = digits.substr(0, digits.size() - places);
    std::string part = digits.substr(digits.size() - places);
    while (!fixed_decimals && part.ends_with('0')) part.pop_back();
    if (!part.empty()) whole += '.' + part;
    return scaled < 0 ? '-' + whole : whole;
}

/// Puts three or more equal values into one text with a repeat, "3*0.5".
[[nodiscard]] std::vector<std::string> with_repeats(const std::vector<std::string>& values) {
    std::vector<std::string> texts;
    for (std::size_t at = 0; at < values.size();) {
        std::size_t end = at + 1;
        while (end < values.size() && values[end] == values[at]) ++end;
        const std::size_t count = end - at;
        if (count >= 3) {
            texts.push_back(std::to_string(count) + '*' + values[at]);
        } else {
            texts.insert(texts.end(), count, values[at]);
        }
        at = end;
    }
    return texts;
}

/// The lines of a section: twelve texts a line, "/" behind the last.
[[nodiscard]] std::string section_lines(const std::vector<std::string>& texts) {
    constexpr std::size_t k_texts_a_line = 12;
    std::string lines;
    for (std::size_t at = 0; at < texts.size(); ++at) {
        lines += texts[at];
        if (at + 1 == texts.size()) return lines + "/\r\n";
        lines += (at + 1) % k_texts_a_line == 0 ? "\r\n" : ",";
    }
    return lines;
}

struct Period {
    const char* file_name;
    Date start;
    Date end;
    const char* recession_x;
    const char* recession_x_later;
    const char* recession_y;
    const char* recession_y_later;
    const char* recession_change;  ///< MMDD, or an empty text between quote marks
};

constexpr std::array<Period, 2> k_periods{{
    {"ellervane-1996.NVR", 1996y / 1 / 1, 1996y / 12 / 31, "1", "1", "0.04", "0.04", "\"\""},
    {"ellervane-1997-98.NVR", 1997y / 10 / 1, 1998y / 9 / 30, "1", "0.98", "0.04", "0.03", "0615"},
}};

/// The values of a zone by the day of the year; days outside the period hold 0.
[[nodiscard]] std::vector<std::string> zone_values(const Record& record, const Period& period,
                                                   const Section& section, std::size_t zone) {
    std::vector<std::string> values(366, number_text(0, section.decimals, section.fixed_decimals));
    for (Day day = period.start; day <= Day{period.end}; day += std::chrono::days{1}) {
        const auto at = static_cast<std::size_t>((day - k_record_start).count());
        const FileDay file_day{parameters_on(day), record.weather[at], record.zones[zone][at],
                               record.discharge[at], zone};
        values[static_cast<std::size_t>(day_of_year(day) - 1)] =
            number_text(section.value(file_day), section.decimals, section.fixed_decimals);
    }
    return values;
}

[[nodiscard]] std::string section_text(const Record& record, const Period& period, const Section& section) {
    std::vector<std::string> texts;
    const std::size_t series = section.by_zone ? k_zone_count : 1;
    for (std::size_t zone = 0; zone < series; ++zone) {
        const std::vector<std::string> of_zone = with_repeats(zone_values(record, period, section, zone));
        texts.insert(texts.end(), of_zone.begin(), of_zone.end());
    }
    return section_lines(texts);
}

[[nodiscard]] std::string month_and_day_text(Date date) {
    const std::string text = std::to_string(month_and_day(Day{date}));
    return text.size() < 4 ? '0' + text : text;
}

[[nodiscard]] std::string header_text(const Period& period) {
    constexpr std::size_t k_unused_items = 12;  // items 5 to 16
    constexpr std::size_t k_area_pairs = 8;
    const std::string metric = "0";
    std::vector<std::string> lines{"Version 3.2", month_and_day_text(period.start), metric,
                                   month_and_day_text(period.end)};
    lines.insert(lines.end(), k_unused_items, "0");
    lines.push_back('"' + std::string{k_basin_name} + '"');
    lines.push_back(std::to_string(k_zone_count));
    lines.push_back(std::to_string(static_cast<int>(period.start.year())));
    lines.insert(lines.end(), {"0", period.recession_x, period.recession_x_later, period.recession_y,
                               period.recession_y_later, period.recession_change,
                               number_text(k_reference_elevation_m, 0, false),
                               number_text(k_rain_threshold_cm, 2, false), "0"});
    for (std::size_t pair = 0; pair < k_area_pairs; ++pair) {
        const Zone zone = pair < k_zone_count ? k_zones[pair] : Zone{};
        lines.push_back(number_text(zone.area_km2, 2, false) + ',' + number_text(zone.elevation_m, 0, false));
    }
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    return text;
}

[[nodiscard]] bool write_period(const Record& record, const Period& period,
                                const std::filesystem::path& folder) {
    std::string text = header_text(period);
    for (const Section& section : k_sections) text += section_text(record, period, section);
    std::ofstream file{folder / period.file_name, std::ios::binary};
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    return !file.fail();
}

}  // namespace

int main(int argument_count, char** arguments) {
    if (argument_count != 2) {
        std::cerr << "usage: make_sample FOLDER\n";
        return 2;
    }
    const Record record = make_record();
    for (const Period& period : k_periods) {
        if (!write_period(record, period, arguments[1])) {
            std::cerr << "make_sample: cannot write " << period.file_name << " in " << arguments[1] << '\n';
            return 1;
        }
    }
    return 0;
}
