#include "session/main_window_rules.h"

#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "session/availability.h"
#include "store/basin_marks.h"
#include "store/monthly_table.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace nivora {
namespace {

constexpr std::size_t k_longest_name = 50;
constexpr std::size_t k_longest_description = 255;

constexpr double k_largest_usual_area = 1e7;

double highest_elevation(Units basin_units) { return basin_units == Units::English ? 29035.0 : 8849.0; }

/// The limits of a box, and the message for a value outside them.
struct Limits {
    float low;
    float high;
    const char* text;
    const char* title;
};

std::optional<Limits> limits_of(BasinBox box, Units basin_units) {
    switch (box) {
        case BasinBox::Zones:
            return Limits{1.0F, 16.0F, "Number of zones must be between 1 and 16",
                          "Invalid zone specification"};
        case BasinBox::ReferenceElevation:
            return Limits{0.0F, static_cast<float>(highest_elevation(basin_units)),
                          "Basin elevation out of range!", "Unreasonable basin elevation"};
        case BasinBox::Latitude:
            return Limits{-90.0F, 90.0F, "Latitude must be between 90° North and 90° South (-90°)",
                          "Latitude out of range"};
        case BasinBox::Longitude:
            return Limits{-180.0F, 180.0F, "Longitude must be between 180° East and 180° West (-180°)",
                          "Longitude out of range"};
        default: return std::nullopt;
    }
}

std::optional<Message> limits_problem(const Limits& limits, double value) {
    if (value >= as_double(limits.low) && value <= as_double(limits.high)) return std::nullopt;
    return Message{.text = limits.text, .title = limits.title, .icon = Icon::Stop};
}

bool is_angle(BasinBox box) { return box == BasinBox::Latitude || box == BasinBox::Longitude; }

/// The unit of a header has the same width in both systems.
const char* elevation_word(Units basin_units) { return basin_units == Units::English ? "(ft)" : "(m) "; }

constexpr std::array<const char*, 11> k_zone_headers{"Zone ID",
                                                     "Zone Area (Km²)",
                                                     "Hypsometric Mean Elevation (m)",
                                                     "% NE Aspect",
                                                     "Avg Elevation, NE Aspect (m)",
                                                     "% SE Aspect",
                                                     "Avg Elevation, SE Aspect (m)",
                                                     "% NW Aspect",
                                                     "Avg Elevation, NW Aspect (m)",
                                                     "% SW Aspect",
                                                     "Avg Elevation, SW Aspect (m)"};

constexpr std::array<const char*, 17> k_simulation_headers{"Simulation Title ",
                                                           "Run#",
                                                           "Starting Date",
                                                           "Ending Date",
                                                           "Units",
                                                           "Temperature  Values",
                                                           "Temperature Distribution",
                                                           "Precipitation Distribution",
                                                           "Lapse Rate Distribution",
                                                           "Runoff Coefficient Distribution",
                                                           "Critical Temp Distribution",
                                                           "X/Y Recession Coefficient Distribution",
                                                           "Intital Runoff",
                                                           "Precipitation Threshold",
                                                           "X Recesion Coefficient",
                                                           "Y Recession Coefficient",
                                                           "Comments"};

std::vector<MonthlyRow> empty_months(int zones) {
    std::vector<MonthlyRow> rows;
    for (int zone = 1; zone <= zones; ++zone) {
        for (int month = 1; month <= 12; ++month) {
            rows.push_back({.zone = static_cast<std::int16_t>(zone), .month = month_name(month)});
        }
    }
    return rows;
}

}  // namespace

KeyVerdict key_verdict(BasinBox box, char32_t key, std::string_view text) {
    if (box == BasinBox::Name || box == BasinBox::Description) return KeyVerdict::Passes;
    if (key >= U'0' && key <= U'9') return KeyVerdict::Passes;
    if (key == U'-') {
        if (!is_angle(box)) return KeyVerdict::DroppedWithBeep;
        return text.find('-') == std::string_view::npos ? KeyVerdict::Passes : KeyVerdict::Dropped;
    }
    if (key == U'.' && is_angle(box)) {
        return text.find('.') == std::string_view::npos ? KeyVerdict::Passes : KeyVerdict::DroppedWithBeep;
    }
    return KeyVerdict::Dropped;
}

ChangedBox changed_box(BasinBox box, const std::string& text) {
    ChangedBox changed{.text = text, .beep = false, .message = std::nullopt};
    if (box == BasinBox::Name || box == BasinBox::Description) {
        const std::size_t most = box == BasinBox::Name ? k_longest_name : k_longest_description;
        changed.text = first_characters(text, most);
        changed.beep = changed.text.size() < text.size();
        return changed;
    }
    if (!is_angle(box) || text.find('-', 1) == std::string::npos) return changed;
    const char* name = box == BasinBox::Latitude ? "latitude" : "longitude";
    std::erase(changed.text, '-');
    changed.message =
        Message{.text = std::string{"If needed, negative sign must be the leftmost character of "} + name,
                .title = "Invalid character",
                .icon = Icon::Stop};
    return changed;
}

std::optional<Message> latitude_problem(double latitude) {
    return limits_problem(limits_of(BasinBox::Latitude, Units::NotFixed).value(), latitude);
}

std::optional<Message> left_box_problem(BasinBox box, const std::string& text, Units basin_units) {
    if (box == BasinBox::Name) {
        if (!text.empty()) return std::nullopt;
        return Message{.text = "A basin name is required!", .icon = Icon::Stop};
    }
    const auto limits = limits_of(box, basin_units);
    if (!limits || trimmed(text).empty()) return std::nullopt;
    return limits_problem(*limits, as_double(static_cast<float>(leading_number(text))));
}

bool is_checked_number(BasinBox box) { return limits_of(box, Units::Metric).has_value(); }

Message units_question() {
    return {.text = "All further data used in this basin must be expressed using these units.  Continue?",
            .title = "Are you sure you want to use these units?",
            .buttons = Buttons::YesNo};
}

Message zones_question() {
    return {.text =
                "Once the number of zones is defined for a basin it cannot be changed.  Are you sure about "
                "your zone definition?",
            .title = "Zone definition",
            .buttons = Buttons::YesNoCancel};
}

Message units_missing() {
    return {.text = "Please select a 'Units of Measurement' before continuing",
            .title = "No 'Units of Measurement' selected",
            .icon = Icon::Stop};
}

Message units_before_zones() {
    return {.text = "Select the numeric units that will be used in this basin before continuing",
            .title = "Numeric units are undefined",
            .icon = Icon::Stop};
}

std::optional<Message> add_simulation_problem(const Session& session) {
    const BasinState& basin = session.basin;
    const bool named = !basin.basin_name.empty() && basin.basin_name != k_unnamed_basin;
    if (named && basin.basin_units != Units::NotFixed && session.shell.zones_fixed_shown) return std::nullopt;
    return Message{
        .text =
            "Provide a name for the basin, the # of zones, and the units of measurement before creating a "
            "simulation",
        .icon = Icon::Stop};
}

Message no_snow_description() {
    return {
        .text =
            "When this menu is checked, the model is modified to run only year-round forecasts and "
            "simulations.  In 'no snow' mode, snow depletion information is disregarded by the model.  "
            "Instead, the unmelted precipitation from winter is carried forward into the melt season where "
            "it is melted in lieu of the snowcover.  In normal mode, the winter precip is held for melting "
            "only until the snowpack reaches 100% or until the melt season begins, whichever occurs first.\n"
            "Existing snow depletion data is unaffected while this option is 'on', but are not used for any "
            "plots or reports.",
        .title = "No Snow Description",
        .icon = Icon::Information};
}

std::optional<Message> toggle_no_snow(Session& session) {
    session.run.NoSnow = !session.run.NoSnow;
    no_snow_was_switched(session);
    if (!session.run.NoSnow) return std::nullopt;
    return no_snow_description();
}

void fix_units(Session& session, Units units) {
    BasinDatabase database{session.basin.Work_File, Access::ReadWrite};
    BasinDescription header = read_basin_description(database);
    header.units = units;
    HeldTransaction transaction{database};
    write_basin_description(database, header);
    transaction.commit();
    session.basin.basin_units = units;
    session.basin.Units_Code = units;
    units_were_fixed(session);
}

void fix_zones(Session& session, int zones) {
    std::vector<Zone> rows;
    for (int number = 1; number <= zones; ++number) rows.push_back({.id = zone_letter(number)});
    const auto months = empty_months(zones);
    BasinDatabase database{session.basin.Work_File, Access::ReadWrite};
    BasinDescription header = read_basin_description(database);
    header.zones = static_cast<std::int16_t>(zones);
    HeldTransaction transaction{database};
    write_basin_description(database, header);
    clear_table(database, k_zone_description);
    add_rows<Zone>(database, template_table(k_zone_description), rows);
    if (!database.has_table(k_basin_averages)) database.create_table(basin_averages_table());
    clear_table(database, k_basin_averages);
    add_rows<MonthlyRow>(database, basin_averages_table(), months);
    transaction.commit();
    session.basin.ZoneCount = zones;
    session.basin.zones_text = std::to_string(zones);
    session.basin.zones = rows;
    zones_were_fixed(session);
    mark_input_changed(session.basin);
}

void choose_simulation_row(Session& session, std::size_t row) {
    select_simulation(session.basin, row);
    simulation_was_selected(session);
}

void take_zone_areas(Session& session) {
    session.basin.basin_area_text = basin_area_text(session.basin.zones);
    zone_areas_were_typed(session);
}

std::optional<UnusualZones> unusual_zones(const BasinState& basin) {
    const double highest = highest_elevation(basin.basin_units);
    const UnitWords& words = unit_words(basin.basin_units);
    UnusualZones unusual;
    std::string lines;
    const auto add = [&](std::size_t zone, int column, const std::string& what) {
        if (unusual.zone == 0) {
            unusual.zone = static_cast<int>(zone + 1);
            unusual.column = column;
        }
        lines += "Zone " + std::to_string(zone + 1) + ": " + what + "\n";
    };
    for (std::size_t zone = 0; zone < basin.zones.size(); ++zone) {
        const double area = basin.zones[zone].area.value_or(0.0);
        const double elevation = basin.zones[zone].elevation.value_or(0.0);
        if (area > k_largest_usual_area) add(zone, 2, "area " + double_text(area) + " " + words.area);
        if (elevation > highest)
            add(zone, 3, "mean elevation " + double_text(elevation) + " " + words.elevation);
    }
    if (lines.empty()) return std::nullopt;
    unusual.question = {.text = "These zone values are unusually large:\n" + lines + "Are they right?",
                        .title = "Unusual zone values",
                        .icon = Icon::Warning,
                        .buttons = Buttons::YesNo,
                        .default_answer = Answer::No};
    return unusual;
}

std::string reference_elevation_label(Units basin_units) {
    return fmt::format("Reference Elevation ({}):", unit_words(basin_units).elevation);
}

std::string basin_area_label(Units basin_units) {
    return fmt::format("Basin Area ({}):", unit_words(basin_units).area);
}

std::string zone_header(int column, Units basin_units) {
    const std::string header = k_zone_headers.at(static_cast<std::size_t>(column - 1));
    const std::string elevation{elevation_word(basin_units)};
    switch (column) {
        case 2: return fmt::format("Zone Area ({})", unit_words(basin_units).area);
        case 3: return header.substr(0, 27) + elevation;
        case 5:
        case 7:
        case 9:
        case 11: return header.substr(0, 25) + elevation;
        default: return header;
    }
}

std::string simulation_header(int column, Units units) {
    if (column == 13 && units != Units::NotFixed) {
        return fmt::format("Initial Runoff ({})", unit_words(units).discharge_letters);
    }
    return k_simulation_headers.at(static_cast<std::size_t>(column - 1));
}

std::string doubled_ampersands(std::string_view text) {
    std::string doubled;
    for (const char character : text) {
        doubled.push_back(character);
        if (character == '&') doubled.push_back('&');
    }
    return doubled;
}

}  // namespace nivora
