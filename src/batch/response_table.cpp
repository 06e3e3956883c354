#include "batch/response_table.h"

#include "base/iso_date.h"
#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>

namespace nivora {
namespace {

constexpr const char* k_unknown = "not known";
constexpr const char* k_none = "-";

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
