#include "bench/bench_basin.h"

#include "engine/run_statistics.h"
#include "engine/runoff_simulation.h"
#include "engine/snow_melt.h"
#include "engine/zone_inputs.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

constexpr int k_year = 366;
constexpr const char* k_simulation = "last year";

DayCount first_day() { return *day_count({1990, 10, 1}); }

/// The course of a year, from -1 (mid winter) to 1 (mid summer).
double season(DayCount day) {
    const int ordinal = day_of_year(day);
    return -std::cos(2.0 * 3.14159265358979 * (ordinal - 20) / 365.0);
}

/// A number from 0 to 1 that looks random but is reproducible.
double chance(DayCount day, int salt) {
    auto state = static_cast<std::uint64_t>(day) * 0x9E3779B97F4A7C15ULL + static_cast<std::uint64_t>(salt);
    state = (state ^ (state >> 30U)) * 0xBF58476D1CE4E5B9ULL;
    state = (state ^ (state >> 27U)) * 0x94D049BB133111EBULL;
    return static_cast<double>((state ^ (state >> 31U)) >> 11U) / 9007199254740992.0;
}

PhysicalRow variables(int zone, DayCount day) {
    const double warm = season(day);
    const double wet = chance(day, 1) > 0.65 ? 3.0 * chance(day, 2) * chance(day, 3) : 0.0;
    const double cover = std::clamp(0.5 - 0.9 * warm + 0.06 * zone, 0.0, 1.0);
    return {.zone = static_cast<std::int16_t>(zone),
            .date = day,
            .runoff = static_cast<float>(12.0 + 10.0 * warm),
            .tmax = static_cast<float>(9.0 + 11.0 * warm),
            .tmin = static_cast<float>(-1.0 + 9.0 * warm),
            .tavg = static_cast<float>(4.0 + 10.0 * warm + 3.0 * chance(day, 4)),
            .precip = static_cast<float>(wet),
            .sca = static_cast<float>(cover),
            .net_radiation = 0.0F};
}

ParameterRow parameters(int zone, DayCount day) {
    const double warm = season(day);
    return {.zone = static_cast<std::int16_t>(zone),
            .date = day,
            .tcrit = 1.5F,
            .lag_hours = warm > 0.0 ? 12.0F : 20.0F,
            .lapse_rate = 0.65F,
            .an = static_cast<float>(0.45 + 0.1 * warm),
            .cs = 0.8F,
            .cr = 0.7F,
            .rca = static_cast<std::int16_t>(warm > 0.0 ? 1 : 0),
            .xcoeff = 1.02,
            .ycoeff = 0.06};
}

Simulation simulation(DayCount start, DayCount end) {
    Simulation definition;
    definition.name = k_simulation;
    definition.start = start;
    definition.end = end;
    definition.units = Units::Metric;
    definition.temperature_values = std::int16_t{0};
    for (auto* option :
         {&definition.temperature, &definition.precipitation, &definition.lapse_rate,
          &definition.runoff_coefficients, &definition.critical_temperature, &definition.recession}) {
        *option = Distribution::Basinwide;
    }
    definition.initial_runoff = 5.0F;
    definition.precipitation_threshold = 6.0F;
    return definition;
}

std::vector<Zone> zones_of(int count) {
    std::vector<Zone> zones;
    for (int zone = 1; zone <= count; ++zone) {
        Zone row;
        row.id = std::string(1, static_cast<char>('A' + zone - 1));
        row.area = 30.0 + zone;
        row.elevation = 1200.0 + 120.0 * zone;
        zones.push_back(row);
    }
    return zones;
}

}  // namespace

BasinState bench_basin(int zones, int days) {
    BasinState basin;
    basin.Units_Code = Units::Metric;
    basin.ZoneCount = zones;
    basin.zones_text = std::to_string(zones);
    basin.reference_elevation_text = "1800";
    basin.latitude_text = "46";
    basin.zones = zones_of(zones);
    basin.basin_area_text = basin_area_text(basin.zones);
    basin.simulations = {simulation(first_day(), first_day() + days - 1)};
    select_simulation(basin, 0);
    return basin;
}

SimResults bench_results(int zones, int days) {
    SimResults t;
    t.resize(static_cast<std::size_t>(zones) * static_cast<std::size_t>(days));
    std::size_t row = 0;
    for (int zone = 1; zone <= zones; ++zone) {
        for (int day = 0; day < days; ++day, ++row) {
            const PhysicalRow v = variables(zone, first_day() + day);
            const ParameterRow p = parameters(zone, first_day() + day);
            t.Zone[row] = v.zone;
            t.Date[row] = v.date;
            t.ActualQ[row] = v.runoff;
            t.TMax[row] = v.tmax;
            t.Tmin[row] = v.tmin;
            t.TAvg[row] = v.tavg;
            t.Precip[row] = v.precip;
            t.SCA[row] = v.sca;
            t.LR[row] = p.lapse_rate;
            t.Tcrit[row] = p.tcrit;
            t.AN[row] = p.an;
            t.CS[row] = p.cs;
            t.CR[row] = p.cr;
            t.LagTime[row] = p.lag_hours;
            t.RCA[row] = static_cast<float>(*p.rca);
            t.Xcoeff[row] = p.xcoeff;
            t.YCoeff[row] = p.ycoeff;
            t.MDCincl[row] = t.MDCexcl[row] = 0.0F;
        }
    }
    return t;
}

RunState bench_run(int days) {
    RunState run;
    run.RunKind = k_year_round_simulation;
    run.RunStart = first_day();
    run.RunEnd = first_day() + days - 1;
    run.InitialRunoff = 5.0F;
    return run;
}

void run_stages(SimResults& results, BasinState& basin, RunState& run, Dialogs& dialogs) {
    StatisticsReach statistics = StatisticsReach::Nothing;
    if (!Run_Model(results, {basin, run, dialogs}, statistics) || statistics != StatisticsReach::All)
        std::abort();
}

void write_bench_basin(const std::filesystem::path& path, int zones, int years) {
    std::filesystem::remove(path);
    BasinDatabase::create_template(path);
    BasinDatabase database{path, Access::ReadWrite};
    const DayCount last = first_day() + static_cast<DayCount>(365.25 * years) - 1;
    const DayCount start = last - k_year + 1;
    std::vector<PhysicalRow> daily;
    std::vector<ParameterRow> parameter_rows;
    for (int zone = 1; zone <= zones; ++zone) {
        for (DayCount day = std::min(first_day(), start); day <= last; ++day)
            daily.push_back(variables(zone, day));
        for (DayCount day = start; day <= last; ++day) parameter_rows.push_back(parameters(zone, day));
    }
    const Simulation definition = simulation(start, last);
    const std::vector<Zone> zone_list = zones_of(zones);
    BasinDescription header = read_basin_description(database);
    header.name = "Benchmark basin (made up)";
    header.zones = static_cast<std::int16_t>(zones);
    header.units = Units::Metric;
    header.reference_elevation = 1800.0;
    header.latitude = 46.0;
    atomically_if(database, [&] {
        write_basin_description(database, header);
        add_rows<Zone>(database, template_table(k_zone_description), zone_list);
        add_rows<Simulation>(database, template_table(k_simulation_index), std::span{&definition, 1});
        add_rows<PhysicalRow>(database, template_table(k_physical_data), daily);
        database.create_table(parameter_table(k_simulation));
        database.create_daily_index(k_simulation);
        add_rows<ParameterRow>(database, parameter_table(k_simulation), parameter_rows);
        return true;
    });
}

}  // namespace nivora
