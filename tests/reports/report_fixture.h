// A basin of two zones with four days of results, and the state of a program after that run.
#pragma once

#include "engine/results_store.h"
#include "reports/report_generator.h"
#include "store/table_io.h"
#include "tests/reports/report_text.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

namespace nivora {

/// 30 January to 2 February 2001. Each value is a base of its field plus 0.1 times the zone plus 0.01 times
/// the day (1 to 4), so that a report shows where it came from: zone 2 on the third day adds 0.23.
class ReportTest : public testing::Test {
protected:
    static DayCount first_day() { return *day_count({2001, 1, 30}); }
    static DayCount last_day() { return *day_count({2001, 2, 2}); }
    static double moment() { return static_cast<double>(*day_count({2026, 3, 5})) + 0.5; }

    ReportTest() {
        basin_.basin_name = "Alder";
        basin_.basin_description = "Upper Alder valley";
        basin_.Basin_File = "alder.mdb";
        basin_.basin_units = Units::Metric;
        basin_.Units_Code = Units::Metric;
        basin_.ZoneCount = 2;
        basin_.zones_text = "2";
        basin_.reference_elevation_text = "1500";
        basin_.latitude_text = "46.5";
        basin_.basin_area_text = "30";
        basin_.zones = {{.id = "A", .area = 10.0, .elevation = 1600.5},
                        {.id = "B", .area = 20.0, .elevation = 2100.0}};
        Simulation simulation;
        simulation.name = "wy2001";
        simulation.run_number = std::int16_t{4};
        simulation.start = first_day();
        simulation.end = last_day();
        simulation.units = Units::Metric;
        simulation.temperature_values = std::int16_t{0};
        simulation.temperature = Distribution::ByZone;
        simulation.precipitation = Distribution::Basinwide;
        simulation.initial_runoff = 2.5F;
        simulation.precipitation_threshold = 6.0F;
        simulation.comments = "First line\r\nand a second";
        basin_.simulations = {simulation};
        select_simulation(basin_, 0);
        basin_.Output_Valid = true;
        run_.LastRunSimulation = "wy2001";
        run_.RunKind = k_year_round_simulation;
        run_.RunTitle = "Year round Simulation";
        run_.RunStart = first_day();
        run_.RunEnd = last_day();
    }

    Simulation& simulation() { return basin_.simulations[0]; }

    static float of(double base, int zone, int day) {
        return static_cast<float>(base + 0.1 * zone + 0.01 * day);
    }

    /// Daily variables, parameters and results of both zones on all four days.
    void write_tables() {
        BasinDatabase database = file_.open();
        database.create_table(parameter_table("wy2001"));
        std::vector<PhysicalRow> variables;
        std::vector<ParameterRow> parameters;
        for (int zone = 1; zone <= 2; ++zone) {
            for (int day = 1; day <= 4; ++day) {
                PhysicalRow physical;
                physical.zone = static_cast<std::int16_t>(zone);
                physical.date = first_day() + day - 1;
                physical.tmax = of(9.0, zone, day);
                physical.tmin = of(-5.0, zone, day);
                physical.tavg = of(3.0, zone, day);
                variables.push_back(physical);
                ParameterRow parameter;
                parameter.zone = physical.zone;
                parameter.date = physical.date;
                parameter.an = of(0.0, zone, day);
                parameter.cs = of(1.0, zone, day);
                parameter.cr = of(2.0, zone, day);
                parameter.lapse_rate = of(3.0, zone, day);
                parameter.tcrit = of(4.0, zone, day);
                parameter.rca = std::int16_t{1};
                parameter.lag_hours = 18.0F;
                parameter.xcoeff = 9.0;
                parameter.ycoeff = 0.9;
                parameters.push_back(parameter);
            }
        }
        add_rows<PhysicalRow>(database, template_table(k_physical_data), variables);
        add_rows<ParameterRow>(database, parameter_table("wy2001"), parameters);
        write_results(database);
    }

    [[nodiscard]] ReportSources sources() {
        if (!database_) database_ = std::make_unique<BasinDatabase>(file_.path(), Access::ReadOnly);
        return {*database_, basin_, run_, moment()};
    }

    /// The lines of one report, which must not be refused.
    std::vector<std::string> lines(Report report) {
        const ReportSources from = sources();
        ReportGenerator generator{from, figures_, climate_report_};
        const auto refusal = generator.add(report);
        EXPECT_FALSE(refusal) << refusal->text;
        return report_text_lines(generator.text());
    }
    /// The line of a day (1 to 4) in each block of a daily report.
    std::vector<std::string> day_lines(Report report, int day) {
        const int day_of_month = civil_date(first_day() + day - 1).day;
        return lines_that_begin(
            lines(report), std::string(day_of_month < 10 ? 3 : 2, ' ') + std::to_string(day_of_month) + " ");
    }
    /// The values of such a line, which follow the columns of the day.
    static std::string values(const std::string& line) {
        std::string text = line.substr(4);
        const std::size_t first = text.find_first_not_of(' ');
        const std::size_t last = text.find_last_not_of(' ');
        return first == std::string::npos ? std::string{} : text.substr(first, last - first + 1);
    }

    BasinFile file_;
    TemporaryFolder folder_;
    std::filesystem::path climate_report_ = folder_ / "NVR_DfGN.out";
    BasinState basin_;
    RunState run_;
    RunFigures figures_;

private:
    static void write_results(BasinDatabase& database) {
        SimResults results;
        results.resize(8);
        std::size_t row = 0;
        for (int zone = 1; zone <= 2; ++zone) {
            for (int day = 1; day <= 4; ++day, ++row) {
                results.Zone[row] = static_cast<std::int16_t>(zone);
                results.Date[row] = first_day() + day - 1;
                fill_row(results, row, zone, day);
            }
        }
        ResultsReplacement replacement{database};
        replacement.commit(results);
    }
    static void fill_row(SimResults& results, std::size_t row, int zone, int day) {
        const auto set = [&](std::vector<float>& column, double base) { column[row] = of(base, zone, day); };
        set(results.ActualQ, 1.0), set(results.TMaxCC, 11.0), set(results.TminCC, -7.0);
        set(results.TAvgCC, 5.0), set(results.Precip, 2.0), set(results.PrecipCC, 4.0), set(results.SCA, 0.0);
        set(results.SCACC, 0.5), set(results.SCAclimWAMA, 0.3), set(results.ZoneDD, 6.0);
        set(results.ZoneDDCC, 7.0), set(results.LR, 0.0), set(results.LRCC, 1.0), set(results.Tcrit, 2.0);
        set(results.TcritCC, 3.0), set(results.AN, 0.0), set(results.ANCC, 1.0), set(results.CS, 2.0);
        set(results.CSCC, 3.0), set(results.CR, 4.0), set(results.CRCC, 5.0), set(results.Cpr, 3.0);
        set(results.M1S, 2.0), set(results.ZonalMelt, 1.0);
        results.LagTime[row] = 18.0F;
        results.LagTimeCC[row] = 12.0F;
        results.RCA[row] = 1.0F;
        results.RCACC[row] = 0.0F;
        results.Xcoeff[row] = zone + 0.04 + 0.01 * day;
        results.XcoeffCC[row] = 8.0;
        results.YCoeff[row] = 0.01 * (zone + day);
        results.YCoeffCC[row] = 0.8;
        results.DailyQ[row] = 20.0 + zone + 0.01 * day;
        results.DailyQPresent[row] = 30.0 + zone + 0.01 * day;
    }

    std::unique_ptr<BasinDatabase> database_;
};

}  // namespace nivora
