#include "batch/response_table.h"

#include "base/iso_date.h"
#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "batch/study_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <ostream>

namespace nivora {
namespace {

constexpr const char* k_unknown = "not known";
constexpr const char* k_none = "-";
constexpr std::array<const char*, 7> k_names{"Winter",         "Summer",      "Year",   "Median day",
                                             "Centre of mass", "Highest day", "Highest"};
constexpr std::size_t k_first_figure = 3;  ///< behind number, temperature and precipitation

ResponseFigures figures_of(const ClimateState& state, SummaryRow row, FlowFigures flow, LastSnow snow) {
    return {.winter = state.summary(row, SummarySeason::Winter),
            .summer = state.summary(row, SummarySeason::Summer),
            .year = state.summary(row, SummarySeason::Year),
            .flow = flow,
            .snow = std::move(snow)};
}

template <typename Number>
std::string field(const std::optional<Number>& number) {
    return number ? shortest_text(*number) : std::string{};
}

std::string date_field(const std::optional<DayCount>& day) {
    return day ? iso_date_text(*day) : std::string{};
}

/// The fields of one climate, in the order of the names and then of the zones.
std::vector<std::string> fields_of(const ResponseFigures& figures) {
    const FlowFigures& flow = figures.flow;
    const bool highest = !is_missing(flow.highest);
    std::vector<std::string> fields{field(figures.winter),
                                    field(figures.summer),
                                    field(figures.year),
                                    date_field(flow.median_day),
                                    flow.centre_of_mass ? iso_date_text(whole_day(*flow.centre_of_mass)) : "",
                                    highest ? iso_date_text(flow.highest_day) : "",
                                    highest ? shortest_text(flow.highest) : ""};
    fields.reserve(fields.size() + figures.snow.size());
    for (const auto& day : figures.snow) fields.push_back(date_field(day));
    return fields;
}

std::optional<float> difference(const std::optional<float>& changed, const std::optional<float>& present) {
    if (!changed || !present) return std::nullopt;
    return static_cast<float>(as_double(*changed) - as_double(*present));
}

std::optional<DayCount> difference(const std::optional<DayCount>& changed,
                                   const std::optional<DayCount>& present) {
    return changed && present ? std::optional{*changed - *present} : std::nullopt;
}

std::optional<DayCount> centre_day(const FlowFigures& flow) {
    return flow.centre_of_mass ? std::optional{whole_day(*flow.centre_of_mass)} : std::nullopt;
}

/// What of a flow's highest day is known.
std::optional<DayCount> highest_day_of(const FlowFigures& flow) {
    return is_missing(flow.highest) ? std::nullopt : std::optional{flow.highest_day};
}

/// Changed minus present climate: volumes in their unit, days later.
struct ResponseChange {
    std::optional<float> winter;
    std::optional<float> summer;
    std::optional<float> year;
    std::optional<DayCount> median_day;
    std::optional<DayCount> centre;
    std::optional<DayCount> highest_day;
    std::optional<float> highest;
    std::vector<std::optional<DayCount>> snow;  ///< by zone
};

ResponseChange change_of(const ResponseFigures& changed, const ResponseFigures& present) {
    const FlowFigures& flow = changed.flow;
    const FlowFigures& before = present.flow;
    ResponseChange change{.winter = difference(changed.winter, present.winter),
                          .summer = difference(changed.summer, present.summer),
                          .year = difference(changed.year, present.year),
                          .median_day = difference(flow.median_day, before.median_day),
                          .centre = difference(centre_day(flow), centre_day(before)),
                          .highest_day = difference(highest_day_of(flow), highest_day_of(before)),
                          .highest = std::nullopt,
                          .snow = {}};
    if (!is_missing(flow.highest) && !is_missing(before.highest))
        change.highest = static_cast<float>(flow.highest - before.highest);
    change.snow.reserve(changed.snow.size());
    for (std::size_t zone = 0; zone < std::min(changed.snow.size(), present.snow.size()); ++zone)
        change.snow.push_back(difference(changed.snow[zone], present.snow[zone]));
    return change;
}

std::string days_field(const std::optional<DayCount>& days) { return days ? std::to_string(*days) : ""; }

/// The fields of a change, in the same order as those of a climate.
std::vector<std::string> fields_of(const ResponseChange& change) {
    std::vector<std::string> fields{field(change.winter),      field(change.summer),
                                    field(change.year),        days_field(change.median_day),
                                    days_field(change.centre), days_field(change.highest_day),
                                    field(change.highest)};
    fields.reserve(fields.size() + change.snow.size());
    for (const auto& days : change.snow) fields.push_back(days_field(days));
    return fields;
}

/// Reads fields one after the other; a fault stays.
class Fields {
public:
    explicit Fields(std::vector<std::string_view> fields) : fields_(std::move(fields)) {}

    template <typename Number>
    std::optional<Number> number() {
        const std::string_view text = next();
        if (text.empty()) return std::nullopt;
        const auto value = exact_number(text);
        if (!value) fault_ = true;
        return value ? std::optional{static_cast<Number>(*value)} : std::nullopt;
    }
    std::optional<DayCount> day() {
        const std::string_view text = next();
        if (text.empty()) return std::nullopt;
        const auto value = read_iso_date(text);
        if (!value) fault_ = true;
        return value;
    }
    std::string_view next() {
        if (at_ < fields_.size()) return fields_[at_++];
        fault_ = true;
        return {};
    }
    [[nodiscard]] bool fault() const { return fault_ || at_ != fields_.size(); }

private:
    std::vector<std::string_view> fields_;
    std::size_t at_ = 0;
    bool fault_ = false;
};

/// The fields of a line whose last one stands in quotation marks; nothing for another line.
std::optional<std::vector<std::string_view>> split(std::string_view line) {
    const std::size_t quote = line.find('"');
    if (quote == std::string_view::npos || line.size() < quote + 2 || line.back() != '"') return std::nullopt;
    const std::string_view last = line.substr(quote + 1, line.size() - quote - 2);
    std::vector<std::string_view> fields;
    fields.reserve(static_cast<std::size_t>(std::count(line.begin(), line.end(), ',')) + 1);
    std::string_view rest = line.substr(0, quote);
    while (!rest.empty()) {
        const std::size_t comma = rest.find(',');
        if (comma == std::string_view::npos) return std::nullopt;
        fields.push_back(rest.substr(0, comma));
        rest.remove_prefix(comma + 1);
    }
    fields.push_back(last);
    return fields;
}

/// Takes the fields of both climates, which stand side by side with their difference.
void read_figures(Fields& fields, ResponseFigures& changed, ResponseFigures& present, int zones) {
    const auto both = [&](const auto& read) {
        read(changed);
        read(present);
        static_cast<void>(fields.number<double>());
    };
    both([&](ResponseFigures& each) { each.winter = fields.number<float>(); });
    both([&](ResponseFigures& each) { each.summer = fields.number<float>(); });
    both([&](ResponseFigures& each) { each.year = fields.number<float>(); });
    both([&](ResponseFigures& each) { each.flow.median_day = fields.day(); });
    both([&](ResponseFigures& each) {
        if (const auto day = fields.day()) each.flow.centre_of_mass = static_cast<double>(*day);
    });
    both([&](ResponseFigures& each) { each.flow.highest_day = fields.day().value_or(0); });
    both([&](ResponseFigures& each) {
        each.flow.highest = fields.number<double>().value_or(as_double(k_missing));
    });
    for (int zone = 1; zone <= zones; ++zone)
        both([&](ResponseFigures& each) { each.snow.push_back(fields.day()); });
}

std::string unquoted(std::string_view text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '"') ++at;  // a doubled one stands for one
        if (at < text.size()) plain += text[at];
    }
    return plain;
}

std::string shown(std::optional<float> value) { return value ? single_text(*value) : k_unknown; }

std::string shown_day(const std::optional<DayCount>& day) { return day ? iso_date_text(*day) : k_unknown; }

std::string shown_figures(const ResponseFigures& figures) {
    const FlowFigures& flow = figures.flow;
    const bool highest = !is_missing(flow.highest);
    return fmt::format("{:>12}{:>12}{:>12}{:>14}{:>14}{:>14}{:>12}", shown(figures.winter),
                       shown(figures.summer), shown(figures.year), shown_day(flow.median_day),
                       shown_day(centre_day(flow)), highest ? iso_date_text(flow.highest_day) : k_unknown,
                       highest ? seven_digit_text(flow.highest) : k_unknown);
}

/// The first point that was done: the present climate is the same in all.
const ResponsePoint* first_done(const std::vector<ResponsePoint>& points) {
    const auto found =
        std::find_if(points.begin(), points.end(), [](const ResponsePoint& each) { return each.done(); });
    return found == points.end() ? nullptr : &*found;
}

Json number_json(const std::optional<float>& value) { return value ? Json(*value) : Json(nullptr); }

Json day_json(const std::optional<DayCount>& day) { return day ? Json(iso_date_text(*day)) : Json(nullptr); }

void add_figures(Json& json, const ResponseFigures& figures) {
    const FlowFigures& flow = figures.flow;
    json["runoff"] = {{"Winter", number_json(figures.winter)},
                      {"Summer", number_json(figures.summer)},
                      {"Year", number_json(figures.year)}};
    json["medianDay"] = day_json(flow.median_day);
    json["centreOfMass"] =
        flow.centre_of_mass ? Json(iso_date_text(whole_day(*flow.centre_of_mass))) : Json(nullptr);
    const bool known = !is_missing(flow.highest);
    json["highestDay"] = known ? Json(iso_date_text(flow.highest_day)) : Json(nullptr);
    json["highest"] = known ? Json(static_cast<float>(flow.highest)) : Json(nullptr);
    json["lastSnow"] = Json::object();
    int zone = 0;
    for (const auto& day : figures.snow) json["lastSnow"][zone_letter(++zone)] = day_json(day);
}

Json days_json(const std::optional<DayCount>& days) { return days ? Json(*days) : Json(nullptr); }

Json change_json(const ResponseChange& change) {
    Json json{{"runoff",
               {{"Winter", number_json(change.winter)},
                {"Summer", number_json(change.summer)},
                {"Year", number_json(change.year)}}},
              {"medianDay", days_json(change.median_day)},
              {"centreOfMass", days_json(change.centre)},
              {"highestDay", days_json(change.highest_day)},
              {"highest", number_json(change.highest)},
              {"lastSnow", Json::object()}};
    int zone = 0;
    for (const auto& days : change.snow) json["lastSnow"][zone_letter(++zone)] = days_json(days);
    return json;
}

Json point_json(const ResponsePoint& point, Units units) {
    Json json{{"temperature", point.change.degrees},
              {"precipitation", point.change.precipitation},
              {"done", point.done()}};
    if (!point.done()) {
        json["problem"] = point.problem;
        return json;
    }
    add_figures(json, point.changed);
    json["change"] = change_json(change_of(point.changed, point.present));
    json["notes"] = notes_json(point.notes, units);
    return json;
}

void print_change(const ClimateChange& change, std::ostream& out) {
    out << fmt::format("{:>11}{:>15}", single_text(change.degrees), single_text(change.precipitation));
}

void print_last_snow(const std::vector<std::optional<DayCount>>& snow, std::ostream& out) {
    for (const auto& day : snow) out << fmt::format("{:>14}", day ? iso_date_text(*day) : k_none);
    out << '\n';
}

/// A table of the dates, for those points that were done.
void print_snow_table(const std::vector<ResponsePoint>& points, const ResponsePoint& present,
                      std::ostream& out) {
    out << "\nLast day of snow by zone\n\n" << fmt::format("{:>11}{:>15}", "Temperature", "Precipitation");
    for (std::size_t zone = 1; zone <= present.present.snow.size(); ++zone)
        out << fmt::format("{:>14}", zone_letter(static_cast<int>(zone)));
    out << '\n' << fmt::format("{:>26}", "present climate");
    print_last_snow(present.present.snow, out);
    for (const ResponsePoint& point : points) {
        if (!point.done()) continue;
        print_change(point.change, out);
        print_last_snow(point.changed.snow, out);
    }
}

/// A table of the differences, for those points that were done.
void print_change_table(const std::vector<ResponsePoint>& points, const ResponsePoint& present,
                        std::ostream& out) {
    out << "\nChange against the present climate: runoff as above, days later\n\n"
        << fmt::format("{:>11}{:>15}{:>12}{:>12}{:>12}{:>12}{:>8}", "Temperature", "Precipitation", "Winter",
                       "Summer", "Year", "Median day", "Centre");
    for (std::size_t zone = 1; zone <= present.present.snow.size(); ++zone)
        out << fmt::format("{:>8}", "Snow " + zone_letter(static_cast<int>(zone)));
    out << '\n';
    const auto volume = [](const std::optional<float>& value) {
        return value ? single_text(*value) : std::string{k_none};
    };
    const auto days = [](const std::optional<DayCount>& value) {
        return value ? std::to_string(*value) : std::string{k_none};
    };
    for (const ResponsePoint& point : points) {
        if (!point.done()) continue;
        const ResponseChange change = change_of(point.changed, point.present);
        print_change(point.change, out);
        out << fmt::format("{:>12}{:>12}{:>12}{:>12}{:>8}", volume(change.winter), volume(change.summer),
                           volume(change.year), days(change.median_day), days(change.centre));
        for (const auto& zone : change.snow) out << fmt::format("{:>8}", days(zone));
        out << '\n';
    }
}

}  // namespace

ResponsePoint response_point(std::size_t index, const StudyBasin& study, const ClimateResponse& response) {
    ResponsePoint point{.index = index,
                        .change = response.change,
                        .problem = {},
                        .present = {},
                        .changed = {},
                        .notes = response.notes,
                        .note_count = response.notes.size()};
    if (!response.done) {
        point.problem = response.problem.empty() ? "the evaluation stopped" : response.problem;
        return point;
    }
    const auto& dates = study.measured.dates;
    point.present = figures_of(response.state, SummaryRow::Computed,
                               flow_figures(dates, response.flows.present), response.snow_present);
    point.changed = figures_of(response.state, SummaryRow::ClimateAffected,
                               flow_figures(dates, response.flows.changed), response.snow_changed);
    return point;
}

std::string response_names(int zones) {
    std::string names = "Point,Temperature,Precipitation";
    for (const char* name : k_names) names += fmt::format(",{0},{0} present,{0} change", name);
    for (int zone = 1; zone <= zones; ++zone)
        names += fmt::format(",Last snow {0},Last snow {0} present,Last snow {0} change", zone_letter(zone));
    return names + ",Notes,Problem\n";
}

std::string response_line(const ResponsePoint& point, int zones) {
    std::string line = fmt::format("{},{},{}", point.index, shortest_text(point.change.degrees),
                                   shortest_text(point.change.precipitation));
    if (point.done()) {
        const auto changed = fields_of(point.changed);
        const auto present = fields_of(point.present);
        const auto change = fields_of(change_of(point.changed, point.present));
        for (std::size_t i = 0; i < changed.size(); ++i)
            line += "," + changed[i] + "," + present[i] + "," + change[i];
    } else {
        line.append(3 * (k_names.size() + static_cast<std::size_t>(zones)), ',');
    }
    std::string problem = point.problem;
    std::replace(problem.begin(), problem.end(), '\n', ' ');
    return line + fmt::format(",{},{}\n", point.note_count, in_quotes(problem));
}

std::optional<ResponsePoint> read_response_line(std::string_view line, int zones) {
    auto parts = split(line);
    const std::size_t wanted = k_first_figure + 3 * (k_names.size() + static_cast<std::size_t>(zones)) + 2;
    if (!parts || parts->size() != wanted) return std::nullopt;
    ResponsePoint point;
    point.problem = unquoted(parts->back());
    parts->pop_back();
    Fields fields{std::move(*parts)};
    const auto index = fields.number<double>();
    const auto degrees = fields.number<float>();
    const auto precipitation = fields.number<float>();
    read_figures(fields, point.changed, point.present, zones);
    const auto notes = fields.number<double>();
    const auto is_count = [](const std::optional<double>& number) {
        return number && *number >= 0.0 && *number < 1.0e9 && *number == std::floor(*number);
    };
    if (fields.fault() || !is_count(index) || !is_count(notes) || !degrees || !precipitation)
        return std::nullopt;
    point.index = static_cast<std::size_t>(*index);
    point.change = {*degrees, *precipitation};
    point.note_count = static_cast<std::size_t>(*notes);
    return point;
}

void print_response(const ResponseHead& head, const std::vector<ResponsePoint>& points, std::ostream& out) {
    const UnitWords& words = unit_words(head.units);
    out << fmt::format("Response of '{}' to changes of its climate; the winter ends on {}\n", head.simulation,
                       iso_date_text(head.winter_end));
    out << "Basin Name:  " << head.basin << '\n';
    out << fmt::format("Runoff in 10^6 {}³, highest day in {}, changes of the temperature in {}\n\n",
                       words.length_letter, words.discharge, words.temperature);
    out << fmt::format("{:>11}{:>15}{:>12}{:>12}{:>12}{:>14}{:>14}{:>14}{:>12}{:>7}\n", "Temperature",
                       "Precipitation", "Winter", "Summer", "Year", "Median day", "Centre", "Highest day",
                       "Highest", "Notes");
    const ResponsePoint* present = first_done(points);
    if (present != nullptr)
        out << fmt::format("{:>26}{}\n", "present climate", shown_figures(present->present));
    for (const ResponsePoint& point : points) {
        print_change(point.change, out);
        if (point.done()) {
            out << shown_figures(point.changed) << fmt::format("{:>7}", point.note_count);
        } else {
            out << "  not done: " << point.problem;
        }
        out << '\n';
    }
    if (present == nullptr) return;
    print_snow_table(points, *present, out);
    print_change_table(points, *present, out);
}

Json response_json(const ResponseHead& head, const std::vector<ResponsePoint>& points) {
    Json json{{"simulation", head.simulation},
              {"winterEnd", iso_date_text(head.winter_end)},
              {"present", nullptr},
              {"points", Json::array()}};
    if (const ResponsePoint* present = first_done(points)) {
        json["present"] = Json::object();
        add_figures(json["present"], present->present);
    }
    for (const ResponsePoint& each : points) json["points"].push_back(point_json(each, head.units));
    return json;
}

}  // namespace nivora
