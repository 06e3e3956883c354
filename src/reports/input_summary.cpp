#include "reports/input_summary.h"

#include "base/number_text.h"
#include "base/single.h"
#include "reports/format_value.h"
#include "reports/page_head.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

namespace nivora {
namespace {

constexpr std::array<std::string_view, 9> k_fields{"AN",  "CS",      "CR",     "LR",    "Tcrit",
                                                   "RCA", "LagTime", "Xcoeff", "YCoeff"};
constexpr std::size_t k_table_fields = 7;  ///< those of the zones' tables
constexpr std::size_t k_rain_area_field = 5;
constexpr std::size_t k_x_field = 7;
constexpr std::size_t k_y_field = 8;
constexpr int k_second_half = 16;  ///< the day of a month that begins its second half
constexpr int k_changed_step = 6;
constexpr const char* k_table_head =
    " 1/16 |    a         Cs        Cr       Lr        Tc        RCA        L  ";
constexpr const char* k_statistic_pattern = "######.##";
constexpr const char* k_ratio_pattern = "#####.####";
constexpr const char* k_stale_line = "   No compute since data modification,  results not available   ";

/// The units that the summary prints.
struct SummaryUnits {
    const char* area;
    const char* elevation;
    const char* discharge;
    const char* depth;
    const char* legend;
};
constexpr SummaryUnits k_metric_units{
    " km²", " m", " m³/s", " cm", "Units: a - cm/°C·d       Lr - °C/100m       Tc - °C    Lag Time - hours"};
// Intended: English areas have the unit " m²".
constexpr SummaryUnits k_english_units{
    " m²", " ft", " f³/s", " in",
    "Units: a - in/(°F-32)·d       Lr - °F/1000ft       Tc - °F-32    Lag Time - hours"};

class SummaryWriter {
public:
    SummaryWriter(ReportLines& lines, const ReportSources& sources, const RunFigures& figures,
                  ReportTables& tables)
        : lines_(lines),
          sources_(sources),
          basin_(sources.basin),
          figures_(figures),
          head_(report_head(sources)),
          period_(report_period(sources.basin, sources.run).covered()),
          english_(sources.basin.Units_Code == Units::English),
          units_(english_ ? k_english_units : k_metric_units),
          basin_units_(sources.basin.basin_units == Units::English ? k_english_units : k_metric_units),
          step_(head_.climate_step.value_or(0)),
          columns_(tables.read(input_summary_fields(sources))) {}

    void write() {
        write_top();
        write_definition();
        write_names();
        for (int zone = 1; zone <= basin_.ZoneCount; ++zone) write_zone(zone);
        write_run();
        if (basin_.Input_Changed) {
            lines_.line(k_stale_line);
            return;
        }
        write_statistics();
        if (step_ == 3 || step_ == k_changed_step) write_stores();
    }

private:
    void write_top() {
        lines_.text(long_date_text(head_.today)).tab(29).text("Hollin Flow Model");
        lines_.tab(69).text("Version ").line(k_report_version);
        lines_.tab(30).text("Input Summary Report").tab(step_ > 0 ? 70 : 71);
        lines_.line(run_mark(head_.run_number, head_.climate_step));
        lines_.end_line();
        lines_.end_line();
    }

    void write_definition() {
        lines_.text("Basin Year     : ").text(years()).tab(32).text("Name: ");
        lines_.user_text(basin_.basin_name).end_line();
        lines_.text("Basin Area     : ").text(basin_.basin_area_text).text(basin_units_.area);
        lines_.tab(35).text("X: ").line(seven_digit_text(of_first_row(k_x_field)));
        lines_.text("Ref. Elevation : ").user_text(basin_.reference_elevation_text);
        if (!basin_.reference_elevation_text.empty()) lines_.text(basin_units_.elevation);
        lines_.tab(35).text("Y: ").line(seven_digit_text(of_first_row(k_y_field)));
        lines_.text("Begin Runoff   : ");
        if (figures_.initial_runoff)
            lines_.text(single_text(*figures_.initial_runoff)).text(units_.discharge);
        lines_.tab(32).text("Date: ").line(head_date(head_.start));
        const Simulation* simulation = basin_.current_simulation();
        lines_.text("Rain Threshold : ");
        if (simulation != nullptr && simulation->precipitation_threshold) {
            lines_.text(simulation->text(14)).text(units_.depth);
        }
        lines_.end_line();
        lines_.end_line();
    }

    /// The year of the start, followed by "-" and the year of the end if that is another one.
    [[nodiscard]] std::string years() const {
        if (!head_.start) return {};
        const int first = civil_date(*head_.start).year;
        const int last = head_.end ? civil_date(*head_.end).year : first;
        return last == first ? std::to_string(first) : fmt::format("{}-{}", first, last);
    }

    void write_names() {
        lines_.text("File: ").user_text(head_.file).end_line();
        lines_.text("Simulation: ").user_text(head_.simulation).end_line();
        lines_.end_line();
        lines_.line(units_.legend);
        lines_.end_line();
        const Simulation* simulation = basin_.current_simulation();
        const std::string comments = simulation == nullptr ? "" : simulation->comments.value_or("");
        if (!comments.empty()) {
            lines_.line("-- Program Comments --");
            write_comment_lines(lines_, comments);
        }
        lines_.end_line();
        lines_.end_line();
        if (step_ == 0) return;
        lines_.line("WARNING!  The parameter values displayed in the following table(s) are taken ");
        lines_.line("  from the input data.  Refer to the climate change scenario to determine");
        lines_.line("  how these parameters were shifted/adjusted during climate change processing.");
        lines_.end_line();
    }

    void write_zone(int zone) {
        lines_.text(" Zone ").line(zone_letter(zone));
        lines_.line(k_table_head);
        for (DayCount day = period_.start; day <= period_.end; ++day) {
            const int day_of_month = civil_date(day).day;
            if (day == period_.start || day_of_month == 1 || day_of_month == k_second_half)
                write_parameters(zone, day);
        }
        const auto index = static_cast<std::size_t>(zone - 1);
        const Zone* description = index < basin_.zones.size() ? &basin_.zones[index] : nullptr;
        lines_.text("Zone Area: ");
        if (description != nullptr && description->area) {
            lines_.text(double_text(*description->area)).text(basin_units_.area);
        }
        lines_.text("    Hypsometric Mean: ");
        if (description != nullptr && description->elevation) {
            lines_.text(double_text(*description->elevation)).text(basin_units_.elevation);
        }
        lines_.end_line();
        lines_.end_line();
        end_report_block(lines_);
    }

    void write_parameters(int zone, DayCount day) {
        const CivilDate date = civil_date(day);
        lines_.text(fmt::format("{:02}/{:02} |", date.month, date.day));
        for (std::size_t field = 0; field < k_table_fields; ++field) {
            const double value = columns_.at(zone, field, day);
            lines_.text("  ").text(field == k_rain_area_field ? format_whole_value(value, 8)
                                                              : Format_Value(value, 8));
        }
        lines_.end_line();
    }

    void write_run() {
        const RunState& run = sources_.run;
        lines_.text("Run Type: ");
        if (run.RunKind < k_melt_season_simulation) {
            lines_.text(run.RunTitle).text(" (updated with actual Q every ");
            lines_.text(std::to_string(run.UpdateInterval)).text(" days)");
        } else {
            lines_.text("SIMULATION");
        }
        lines_.line(step_ > 0 ? " (CHANGED CLIMATE)" : "");
        lines_.text("Mode    : ").line(run.NoSnow ? "No Snow" : "Normal");
    }

    void write_statistics() {
        std::string store_label = "Ending Snow on Store (cm)        : ";
        if (english_) store_label.replace(22, 2, "in");
        lines_.text(store_label).line(formatted(ending_store(), k_statistic_pattern));
        const bool changed = step_ == k_changed_step;
        const std::string unit = english_ ? "f³" : "m³";
        const auto volume_label = [&](const char* kind, const char* climate) {
            return changed ? fmt::format("Simulated Runoff Volume, {} Climate (10^6 {}) : ", climate, unit)
                           : fmt::format("{} Runoff Volume (10^6 {}) : ", kind, unit);
        };
        const auto average_label = [&](const char* kind, const char* climate) {
            return changed ? fmt::format("Average Simulated Runoff, {} Climate   ({}/s) : ", climate, unit)
                           : fmt::format("Average {} Runoff   ({}/s) : ", kind, unit);
        };
        write_figure(volume_label("Measured", "Present"), figures_.measured_volume, k_statistic_pattern);
        write_figure(average_label("Measured", "Present"), figures_.average_measured, k_statistic_pattern);
        lines_.end_line();
        write_figure(volume_label("Computed", "Changed"), figures_.computed_volume, k_statistic_pattern);
        write_figure(average_label("Computed", "Changed"), figures_.average_computed, k_statistic_pattern);
        lines_.end_line();
        write_figure("Coefficient of Determination (R²): ", figures_.r2, k_ratio_pattern);
        write_figure("Volume Difference (%)            : ", figures_.volume_difference, k_ratio_pattern);
    }

    /// The new snow left in each zone at the end of the present summer and of the changed one.
    void write_stores() {
        lines_.end_line();
        lines_.line(" Zone   Present  Changed");
        lines_.line("#    Climate  Climate");
        for (std::size_t zone = 0; zone < static_cast<std::size_t>(basin_.ZoneCount); ++zone) {
            lines_.tab(3).text(zone_letter(static_cast<int>(zone) + 1));
            write_store(9, figures_.present_stores, zone);
            if (step_ == k_changed_step) write_store(18, figures_.changed_stores, zone);
            lines_.end_line();
        }
    }

    void write_store(std::size_t column, const std::vector<float>& stores, std::size_t zone) {
        if (zone >= stores.size() || std::isnan(stores[zone])) return;
        lines_.tab(column).text(Format_Value(as_double(stores[zone]), 8));
    }

    void write_figure(const std::string& label, std::optional<float> figure, const char* pattern) {
        std::optional<double> value;
        if (figure) value = as_double(*figure);
        lines_.text(label).line(formatted(value, pattern));
    }

    static std::string formatted(std::optional<double> value, const char* pattern) {
        return value && !std::isnan(*value) ? format_number(*value, pattern) : std::string{};
    }

    /// The mean of the zones' stores, weighted by area; nothing without stores or areas.
    [[nodiscard]] std::optional<double> ending_store() const {
        double sum = 0.0;
        double area_sum = 0.0;
        for (std::size_t zone = 0; zone < figures_.ending_stores.size() && zone < basin_.zones.size();
             ++zone) {
            const double area = basin_.zones[zone].area.value_or(0.0);
            if (area == 0.0) continue;
            sum += as_double(figures_.ending_stores[zone]) * area;
            area_sum += area;
        }
        if (area_sum == 0.0) return std::nullopt;
        return sum / area_sum;
    }

    /// A field of the first row of the period, by day and then by zone.
    [[nodiscard]] double of_first_row(std::size_t field) const {
        for (DayCount day = period_.start; day <= period_.end; ++day) {
            for (int zone = 1; zone <= basin_.ZoneCount; ++zone) {
                if (has_row(zone, day)) return columns_.at(zone, field, day);
            }
        }
        return as_double(k_missing);
    }

    /// Whether the results have a row with any of the fields.
    [[nodiscard]] bool has_row(int zone, DayCount day) const {
        for (std::size_t field = 0; field < k_fields.size(); ++field) {
            if (!std::isnan(columns_.at(zone, field, day))) return true;
        }
        return false;
    }

    ReportLines& lines_;
    const ReportSources& sources_;
    const BasinState& basin_;
    const RunFigures& figures_;
    ReportHead head_;
    Period period_;
    bool english_;
    const SummaryUnits& units_;        ///< of the simulation
    const SummaryUnits& basin_units_;  ///< of areas and elevations
    int step_;
    ReportColumns columns_;
};

}  // namespace

ReportFields input_summary_fields(const ReportSources& sources) {
    return {.table = k_sim_results,
            .fields = {k_fields.begin(), k_fields.end()},
            .zones = sources.basin.ZoneCount};
}

void write_input_summary(ReportLines& lines, int& pages, const ReportSources& sources,
                         const RunFigures& figures, ReportTables& tables) {
    SummaryWriter{lines, sources, figures, tables}.write();
    end_report_page(lines, pages, sources.now);
}

}  // namespace nivora
