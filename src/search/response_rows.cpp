#include "search/response_rows.h"

#include "base/iso_date.h"
#include "base/number_text.h"
#include "base/single.h"
#include "search/study_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace nivora {
namespace {

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

/// What of a flow's highest day is known.
std::optional<DayCount> highest_day_of(const FlowFigures& flow) {
    return is_missing(flow.highest) ? std::nullopt : std::optional{flow.highest_day};
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

}  // namespace

std::optional<DayCount> centre_day(const FlowFigures& flow) {
    return flow.centre_of_mass ? std::optional{whole_day(*flow.centre_of_mass)} : std::nullopt;
}

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

}  // namespace nivora
