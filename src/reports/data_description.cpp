#include "reports/data_description.h"

#include "base/number_text.h"
#include "store/daily_table.h"

#include <fmt/format.h>

namespace nivora {
namespace {

constexpr std::size_t k_value_column = 43;
constexpr std::size_t k_area_column = 13;
constexpr std::size_t k_elevation_column = 43;

void write_pair(ReportLines& lines, const std::string& label, const std::string& value) {
    lines.text(label);
    if (!value.empty()) lines.tab(k_value_column).user_text(value);
    lines.end_line();
}

/// First and last day of the daily data; empty without any.
std::string record_text(BasinDatabase& database) {
    const RecordExtent record = scan_daily_table(database, k_physical_data);
    if (record.count == 0) return {};
    return long_date_text(record.first) + " to " + long_date_text(record.last);
}

void write_basin(ReportLines& lines, const ReportSources& sources) {
    const BasinState& basin = sources.basin;
    const UnitWords& words = unit_words(basin.basin_units);
    write_pair(lines, "Description:", basin.basin_description);
    write_pair(lines, "Units of Measurement:", words.name);
    write_pair(lines, "Number of Zones:", std::to_string(basin.ZoneCount));
    write_pair(lines, fmt::format("Reference Elevation ({}):", words.elevation),
               basin.reference_elevation_text);
    write_pair(lines, "Latitude (dec):", basin.latitude_text);
    write_pair(lines, "Longitude (dec):", basin.longitude_text);
    write_pair(lines, fmt::format("Basin Area ({}):", words.area), basin.basin_area_text);
    write_pair(lines, "Period of record:", record_text(sources.database));
    lines.end_line();
}

void write_simulation(ReportLines& lines, const Simulation& simulation, Units units) {
    write_pair(lines, "Temperature Values:", simulation.text(6));
    write_pair(lines, "Temperature Distribution:", simulation.text(7));
    write_pair(lines, "Precipitation Distribution:", simulation.text(8));
    write_pair(lines, "Lapse Rate Distribution:", simulation.text(9));
    write_pair(lines, "Runoff Coefficient Distribution:", simulation.text(10));
    write_pair(lines, "Critical Temp Distribution:", simulation.text(11));
    write_pair(lines, "X/Y Recession Coefficient Distribution:", simulation.text(12));
    write_pair(lines, fmt::format("Initial Runoff ({}):", unit_words(units).discharge_letters),
               simulation.text(13));
    write_pair(lines, "Precipitation Threshold:", simulation.text(14));
    lines.end_line();
    const std::string comments = simulation.comments.value_or("");
    if (comments.empty()) return;
    lines.line("Comments:");
    write_comment_lines(lines, comments);
    lines.end_line();
}

void write_zones(ReportLines& lines, const BasinState& basin) {
    const UnitWords& words = unit_words(basin.basin_units);
    lines.text("Zone ID").tab(k_area_column).text(fmt::format("Zone Area ({})", words.area));
    lines.tab(k_elevation_column);
    lines.line(fmt::format("Hypsometric Mean Elevation ({})", words.elevation));
    for (int number = 1; number <= basin.ZoneCount; ++number) {
        lines.text(zone_letter(number));
        const auto index = static_cast<std::size_t>(number - 1);
        const Zone zone = index < basin.zones.size() ? basin.zones[index] : Zone{};
        if (zone.area) lines.tab(k_area_column).text(double_text(*zone.area));
        if (zone.elevation) lines.tab(k_elevation_column).text(double_text(*zone.elevation));
        lines.end_line();
    }
}

}  // namespace

void write_data_description(ReportLines& lines, int& pages, const ReportSources& sources) {
    write_report_head(lines, report_head(sources), report_title(Report::DataDescription, 0), k_narrow_head);
    write_basin(lines, sources);
    if (const Simulation* simulation = sources.basin.current_simulation()) {
        write_simulation(lines, *simulation, sources.basin.Units_Code);
    }
    write_zones(lines, sources.basin);
    end_report_page(lines, pages, sources.now);
}

}  // namespace nivora
