// Random results tables for the tests that compare two ways through one.
#pragma once

#include "tests/engine/engine_fixture.h"

#include <algorithm>
#include <array>
#include <limits>
#include <random>
#include <vector>

namespace nivora {

/// Reproducible random numbers.
class Chance {
public:
    explicit Chance(unsigned seed) : engine_(seed) {}

    /// From 0 to below the limit.
    int below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }
    bool one_in(int count) { return below(count) == 0; }
    double between(double low, double high) {
        return low + (high - low) * (static_cast<double>(engine_()) / 4294967296.0);
    }

private:
    std::mt19937 engine_;
};

inline float wild_value(Chance& chance) {
    constexpr float k_infinite = std::numeric_limits<float>::infinity();
    constexpr float k_huge = std::numeric_limits<float>::max();
    constexpr float k_tiny = std::numeric_limits<float>::denorm_min();
    constexpr std::array k_values{k_missing, k_infinite, -k_infinite, -0.0F,    k_huge,     -k_huge,
                                  k_tiny,    -k_tiny,    -1.0F,       1.5F,     1.0e-5F,    1.0e7F,
                                  1.0e12F,   0.999F,     1.0e20F,     -1.0e20F, 31.999998F, 0.000005F};
    return k_values.at(static_cast<std::size_t>(chance.below(static_cast<int>(k_values.size()))));
}

/// A results table as a run builds it, with the settings of the run; some tables have missing or wild values,
/// and some aren't full.
struct RandomTable {
    SimResults table;
    BasinInputs inputs;
    RunState run;
};

inline void fill_inputs(RandomTable& made, Chance& chance, int zones, int days) {
    BasinInputs& in = made.inputs;
    in.zones = static_cast<std::size_t>(zones);
    in.areas = {0.0};
    in.elevations = {0.0};
    for (int zone = 1; zone <= zones; ++zone) {
        in.areas.push_back(chance.one_in(200) ? 1.0e38 : chance.between(1.0, 900.0));
        in.elevations.push_back(chance.one_in(100) ? 1.0e9 : 400.0 + 300.0 * zone);
    }
    in.reference_elevation = chance.between(0.0, 3000.0);
    in.basin_area = chance.between(1.0, 9000.0);
    in.melt_season_start = chance.one_in(3) ? 10 : 4;
    in.units = chance.one_in(3) ? Units::English : Units::Metric;
    in.temperature_max_min = chance.one_in(3);
    for (bool* basinwide : {&in.temperature_basinwide, &in.precipitation_basinwide, &in.lapse_rate_basinwide,
                            &in.critical_temperature_basinwide, &in.runoff_coefficients_basinwide})
        *basinwide = !chance.one_in(3);
    in.precipitation_threshold = chance.one_in(3) ? 0.5F : 6.0F;
    RunState& run = made.run;
    run.RunStart = date_of(2000, 1 + chance.below(12), 1 + chance.below(28));
    run.RunEnd = run.RunStart + days - 1;
    in.start = run.RunStart;
    in.end = run.RunEnd - (chance.one_in(5) ? 5 : 0);
    run.ClimateStep = chance.one_in(2) ? 0 : chance.below(7);
    run.NoSnow = chance.one_in(4);
    run.InitialRunoff = static_cast<float>(chance.between(0.0, 20.0));
    run.UpdateInterval = chance.one_in(4) ? 1 + chance.below(9) : 0;
    if (chance.one_in(3)) run.LagDistribution = {3.0F, 0.5F, 0.3F, 0.2F};
    if (chance.one_in(50)) run.WinterPrecip[1][1] = run.ClimateSums[1][2][2] = 3.4e38F;
}

/// A row with the values of a mountain basin.
inline void fill_row(SimResults& t, std::size_t row, Chance& chance, double warmth) {
    const double temperature = 14.0 * warmth + chance.between(-6.0, 6.0);
    const bool wet = chance.one_in(3);
    const auto set = [row](std::vector<float>& column, std::vector<float>& changed, double value) {
        column[row] = static_cast<float>(value);
        changed[row] = static_cast<float>(value * 1.0625);
    };
    set(t.TMax, t.TMaxCC, temperature + 6.0);
    set(t.Tmin, t.TminCC, temperature - 6.0);
    set(t.TAvg, t.TAvgCC, chance.one_in(20) ? 0.0 : temperature);
    set(t.Precip, t.PrecipCC, wet ? chance.between(0.0, 3.0) : 0.0);
    const double cover = std::clamp(0.5 - 0.8 * warmth, 0.0, 1.0);
    t.SCA[row] = t.SCACC[row] = t.SCAclimWAMA[row] = static_cast<float>(cover);
    set(t.LR, t.LRCC, 0.65);
    set(t.Tcrit, t.TcritCC, chance.between(0.0, 3.0));
    set(t.AN, t.ANCC, chance.between(0.3, 0.7));
    set(t.CS, t.CSCC, chance.between(0.3, 1.0));
    set(t.CR, t.CRCC, chance.between(0.3, 1.0));
    t.RCA[row] = t.RCACC[row] = warmth > 0.0 ? 1.0F : 0.0F;
    t.LagTime[row] = t.LagTimeCC[row] = warmth > 0.0 ? 12.0F : 20.0F;
    t.ActualQ[row] = static_cast<float>(chance.between(1.0, 30.0));
    t.Xcoeff[row] = t.XcoeffCC[row] = chance.one_in(60) ? 3.0 : 1.02;
    t.YCoeff[row] = t.YCoeffCC[row] = 0.06;
    t.DailyQPresent[row] = chance.between(1.0, 30.0);
    t.MDCincl[row] = t.MDCexcl[row] = 0.0F;
}

inline void make_wild(SimResults& t, Chance& chance) {
    std::vector<std::vector<float>*> columns{
        &t.TAvg, &t.TAvgCC, &t.TMax,    &t.Precip,  &t.PrecipCC,    &t.SCA,       &t.SCACC,
        &t.LR,   &t.LRCC,   &t.Tcrit,   &t.TcritCC, &t.AN,          &t.ANCC,      &t.CS,
        &t.CR,   &t.RCA,    &t.LagTime, &t.Tmin,    &t.SCAclimWAMA, &t.ZonalMelt, &t.ActualQ};
    for (int count = 1 + chance.below(4); count > 0; --count) {
        auto& column = *columns[static_cast<std::size_t>(chance.below(static_cast<int>(columns.size())))];
        const auto row = static_cast<std::size_t>(chance.below(static_cast<int>(t.size())));
        column[row] = wild_value(chance);
        if (chance.one_in(10)) t.Xcoeff[row] = as_double(wild_value(chance));
    }
}

[[nodiscard]] inline RandomTable random_table(unsigned seed) {
    Chance chance{seed};
    constexpr std::array k_zones{1, 2, 3, 9, 10, 16};
    const int zones = k_zones.at(static_cast<std::size_t>(chance.below(6)));
    const int days = chance.one_in(20) ? 256 + chance.below(300) : 1 + chance.below(60);
    RandomTable made;
    fill_inputs(made, chance, zones, days);
    made.table.resize(static_cast<std::size_t>(zones * days));
    const double year = days < 100 ? days : 366.0;
    for (int zone = 1; zone <= zones; ++zone) {
        for (int day = 0; day < days; ++day) {
            const auto row = static_cast<std::size_t>((zone - 1) * days + day);
            made.table.Zone[row] = static_cast<std::int16_t>(zone);
            made.table.Date[row] = made.run.RunStart + day;
            fill_row(made.table, row, chance, -std::cos(6.28 * (day + zone) / year));
        }
    }
    if (chance.one_in(3)) make_wild(made.table, chance);
    if (chance.one_in(10)) made.table.Date.back() += 1;  // not full
    return made;
}

}  // namespace nivora
