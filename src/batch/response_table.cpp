#include "batch/response_table.h"

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "batch/scenario_edit.h"
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

/// Takes the fields of both climates, which stand side by side.
void read_figures(Fields& fields, ResponseFigures& changed, ResponseFigures& present, int zones) {
    const auto both = [&](const auto& read) {
        read(changed);
        read(present);
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
    const auto centre =
        flow.centre_of_mass ? std::optional{whole_day(*flow.centre_of_mass)} : std::optional<DayCount>{};
    return fmt::format("{:>12}{:>12}{:>12}{:>14}{:>14}{:>14}{:>12}", shown(figures.winter),
                       shown(figures.summer), shown(figures.year), shown_day(flow.median_day),
                       shown_day(centre), highest ? iso_date_text(flow.highest_day) : k_unknown,
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

Json point_json(const ResponsePoint& point, Units units) {
    Json json{{"temperature", point.change.degrees},
              {"precipitation", point.change.precipitation},
              {"done", point.done()}};
    if (!point.done()) {
        json["problem"] = point.problem;
        return json;
    }
    add_figures(json, point.changed);
    json["notes"] = notes_json(point.notes, units);
    return json;
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
    for (const char* name : k_names) names += fmt::format(",{0},{0} present", name);
    for (int zone = 1; zone <= zones; ++zone)
        names += fmt::format(",Last snow {0},Last snow {0} present", zone_letter(zone));
    return names + ",Notes,Problem\n";
}

std::string response_line(const ResponsePoint& point, int zones) {
    std::string line = fmt::format("{},{},{}", point.index, shortest_text(point.change.degrees),
                                   shortest_text(point.change.precipitation));
    if (point.done()) {
        const auto changed = fields_of(point.changed);
        const auto present = fields_of(point.present);
        for (std::size_t i = 0; i < changed.size(); ++i) line += "," + changed[i] + "," + present[i];
    } else {
        line.append(2 * (k_names.size() + static_cast<std::size_t>(zones)), ',');
    }
    std::string problem = point.problem;
    std::replace(problem.begin(), problem.end(), '\n', ' ');
    return line + fmt::format(",{},{}\n", point.note_count, in_quotes(problem));
}

std::optional<ResponsePoint> read_response_line(std::string_view line, int zones) {
    auto parts = split(line);
    const std::size_t wanted = k_first_figure + 2 * (k_names.size() + static_cast<std::size_t>(zones)) + 2;
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
    if (const ResponsePoint* present = first_done(points))
        out << fmt::format("{:>26}{}\n", "present climate", shown_figures(present->present));
    for (const ResponsePoint& point : points) {
        out << fmt::format("{:>11}{:>15}", single_text(point.change.degrees),
                           single_text(point.change.precipitation));
        if (point.done()) {
            out << shown_figures(point.changed) << fmt::format("{:>7}", point.note_count);
        } else {
            out << "  not done: " << point.problem;
        }
        out << '\n';
    }
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
