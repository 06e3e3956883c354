#include "batch/evaluate_output.h"

#include "base/number_text.h"
#include "base/text.h"
#include "batch/json.h"

#include <fmt/format.h>

#include <ostream>

namespace nivora {
namespace {

constexpr const char* k_unknown = "not known";
constexpr std::size_t k_name_width = 32;
constexpr std::size_t k_value_width = 12;
constexpr std::size_t k_unit_width = 7;

/// A text with blanks up to a width, which counts characters and not bytes.
std::string left(const std::string& text, std::size_t width) {
    const std::size_t used = character_count(text);
    return text + std::string(used < width ? width - used : 0, ' ');
}

std::string right(const std::string& text, std::size_t width) {
    const std::size_t used = character_count(text);
    return std::string(used < width ? width - used : 0, ' ') + text;
}

/// A value that has no number prints as a word in text and as null in JSON.
std::string value_text(const std::optional<double>& value) {
    return value ? seven_digit_text(*value) : k_unknown;
}
std::string number_text(double value) { return is_missing(value) ? k_unknown : seven_digit_text(value); }

Json json_number(double value) { return is_missing(value) ? Json(nullptr) : Json(static_cast<float>(value)); }

/// The remark stands below, since lines of a terminal and of a page are short.
void print_measure(const MeasureRow& row, Units units, std::ostream& out) {
    out << left(row.name, k_name_width) << right(value_text(row.value), k_value_width) << "  "
        << left(measure_unit_text(row.unit, units), k_unit_width) << right(seven_digit_text(row.best), 4)
        << "  " << row.formula << '\n';
    if (!row.remark.empty()) out << "    " << row.remark << '\n';
}

void print_months(const PrintedComparison& comparison, std::ostream& out) {
    const ComparedDays& days = comparison.days;
    const auto months = bias_by_month(days.dates, days.measured, days.computed);
    out << fmt::format("\nBias by month (F9) in {}, computed - measured; positive = too much\n",
                       unit_words(comparison.units).discharge);
    out << "Month   Days    Measured    Computed        Bias    Bias (%)\n";
    for (std::size_t month = 1; month < months.size(); ++month) {
        const MonthBias& bias = months.at(month);
        if (bias.days == 0) continue;
        out << fmt::format("{:5}{:7}{:>12}{:>12}{:>12}{:>12}\n", month, bias.days, number_text(bias.measured),
                           number_text(bias.computed), number_text(bias.bias), number_text(bias.percent));
    }
}

Json measures_json(const PrintedComparison& comparison) {
    Json list = Json::array();
    for (const MeasureRow& row : measure_table(comparison.days, comparison.units)) {
        list.push_back({{"key", row.key},
                        {"name", std::string{trimmed(row.name)}},
                        {"formula", row.formula},
                        {"unit", measure_unit_text(row.unit, comparison.units)},
                        {"best", static_cast<float>(row.best)},
                        {"value", row.value ? json_number(*row.value) : Json(nullptr)},
                        {"remark", row.remark}});
    }
    return list;
}

Json months_json(const ComparedDays& days) {
    Json list = Json::array();
    const auto months = bias_by_month(days.dates, days.measured, days.computed);
    for (std::size_t month = 1; month < months.size(); ++month) {
        const MonthBias& bias = months.at(month);
        if (bias.days == 0) continue;
        list.push_back({{"month", month},
                        {"days", bias.days},
                        {"measured", json_number(bias.measured)},
                        {"computed", json_number(bias.computed)},
                        {"bias", json_number(bias.bias)},
                        {"percent", json_number(bias.percent)}});
    }
    return list;
}

}  // namespace

std::string months_text(const MonthSet& months) {
    if (months == all_months()) return "all";
    std::string text;
    for (std::size_t month = 1; month < months.size(); ++month) {
        if (!months.at(month)) continue;
        std::size_t last = month;
        while (last + 1 < months.size() && months.at(last + 1)) ++last;
        if (!text.empty()) text += ',';
        text += last == month ? fmt::format("{}", month) : fmt::format("{}-{}", month, last);
        month = last;
    }
    return text;
}

void print_measures(const PrintedComparison& comparison, std::ostream& out) {
    const MissingDays& missing = comparison.days.missing;
    out << fmt::format("Measures of '{}', {} to {}, months: {}\n", comparison.simulation,
                       iso_date_text(comparison.period.start), iso_date_text(comparison.period.end),
                       months_text(comparison.months));
    out << "Basin Name:  " << comparison.basin << '\n';
    out << "Computed discharge:  "
        << (comparison.fresh ? "a fresh run in memory" : "the results in the basin, as they stand") << '\n';
    out << fmt::format(
        "Days:  {} asked for, {} compared, {} left out ({} without measured, {} without computed "
        "discharge)\n\n",
        missing.asked, missing.asked - missing.left_out, missing.left_out, missing.measured,
        missing.computed);
    out << left("Measure", k_name_width) << right("Value", k_value_width) << "  "
        << left("Unit", k_unit_width) << "Best  Formula\n";
    for (const MeasureRow& row : measure_table(comparison.days, comparison.units))
        print_measure(row, comparison.units, out);
    print_months(comparison, out);
}

void print_measures_json(const PrintedComparison& comparison, std::ostream& out) {
    const MissingDays& missing = comparison.days.missing;
    Json json = Json::object();
    json["simulation"] = comparison.simulation;
    json["from"] = iso_date_text(comparison.period.start);
    json["to"] = iso_date_text(comparison.period.end);
    json["months"] = months_text(comparison.months);
    json["results"] = comparison.fresh ? "fresh" : "stored";
    json["days"] = {{"asked", missing.asked},
                    {"compared", missing.asked - missing.left_out},
                    {"leftOut", missing.left_out},
                    {"withoutMeasured", missing.measured},
                    {"withoutComputed", missing.computed}};
    json["measures"] = measures_json(comparison);
    json["biasByMonth"] = months_json(comparison.days);
    out << printed(json);
}

}  // namespace nivora
