// The walk through a full table gives the bits, messages and state of the walk row by row.

#include "engine/snow_table.h"
#include "engine/step_columns.h"
#include "tests/engine/engine_fixture.h"

#include <cstring>
#include <limits>
#include <random>

namespace nivora {
namespace {

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

float wild_value(Chance& chance) {
    constexpr float k_infinite = std::numeric_limits<float>::infinity();
    constexpr float k_huge = std::numeric_limits<float>::max();
    constexpr float k_tiny = std::numeric_limits<float>::denorm_min();
    constexpr std::array k_values{k_missing, k_infinite, -k_infinite, -0.0F,    k_huge,     -k_huge,
                                  k_tiny,    -k_tiny,    -1.0F,       1.5F,     1.0e-5F,    1.0e7F,
                                  1.0e12F,   0.999F,     1.0e20F,     -1.0e20F, 31.999998F, 0.000005F};
    return k_values.at(static_cast<std::size_t>(chance.below(static_cast<int>(k_values.size()))));
}

struct Case {
    SimResults table;
    BasinInputs inputs;
    RunState run;
};

void fill_inputs(Case& made, Chance& chance, int zones, int days) {
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
void fill_row(SimResults& t, std::size_t row, Chance& chance, double warmth) {
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

void make_wild(SimResults& t, Chance& chance) {
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

Case random_case(unsigned seed) {
    Chance chance{seed};
    constexpr std::array k_zones{1, 2, 3, 9, 10, 16};
    const int zones = k_zones.at(static_cast<std::size_t>(chance.below(6)));
    const int days = chance.one_in(20) ? 256 + chance.below(300) : 1 + chance.below(60);
    Case made;
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

/// Answers every question in the same way and writes it down.
class NotedDialogs : public ScriptedDialogs {
public:
    explicit NotedDialogs(Answer answer) : answer_(answer) {}
    Answer message(const Message& message) override {
        told += message.title + "|" + message.text + "\n";
        return answer_;
    }
    std::string told;

private:
    Answer answer_;
};

/// What the stages returned and told.
std::string stages(Case& made, const RunRows& rows, Answer answer) {
    NotedDialogs dialogs{answer};
    std::string ends;
    ends += Zone_Inputs(made.table, rows, made.inputs, made.run, dialogs) ? "inputs " : "no inputs ";
    Snow_Melt(made.table, rows, made.inputs, made.run, dialogs);
    const bool custom = made.run.LagDistribution[0] > 0.0F;
    const bool reached = custom ? Runoff_Custom_Lag(made.table, rows, made.inputs, made.run, dialogs)
                                : Runoff_Simulation(made.table, rows, made.inputs, made.run, dialogs);
    ends += reached ? "runoff " : "cancelled ";
    Run_Statistics(made.table, rows, made.run, dialogs);
    return ends + dialogs.told;
}

template <typename Values>
void expect_same_bits(const Values& a, const Values& b, const char* name) {
    ASSERT_EQ(a.size(), b.size()) << name;
    EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size() * sizeof(a[0])), 0) << name;
}

void expect_same_state(const RunState& a, const RunState& b) {
    const auto numbers = [](const RunState& run) {
        std::vector<float> values{run.LapseUnit,        run.SnowStore,    run.AvgMeasuredQ,
                                  run.MeasuredVolume,   run.AvgComputedQ, run.ComputedVolume,
                                  run.VolumeDifference, run.CoefficientR2};
        const auto add = [&](const auto& more) { values.insert(values.end(), more.begin(), more.end()); };
        add(run.FinalQ);
        for (const auto& stores : run.EndingStores) add(stores);
        for (const auto& zone : run.WinterPrecip) add(zone);
        for (const auto& zone : run.ClimateSums) {
            for (const auto& step : zone) add(step);
        }
        return values;
    };
    expect_same_bits(numbers(a), numbers(b), "state");
    EXPECT_EQ(a.MeltSeasonStart, b.MeltSeasonStart);
    EXPECT_EQ(a.statistics, b.statistics);
    ASSERT_EQ(a.notes.size(), b.notes.size());
    for (std::size_t i = 0; i < a.notes.size(); ++i)
        EXPECT_EQ(note_text(a.notes[i], Units::Metric), note_text(b.notes[i], Units::Metric));
}

/// Works a case both ways. @return whether the snow of the table was worked zone by zone
bool expect_equal_walks(const Case& made, Answer answer) {
    Case by_zone = made;
    Case by_row = made;
    const RunRows rows = run_rows(made.table, made.run.RunStart, made.run.RunEnd);
    RunRows ordered = rows;
    ordered.days_of_full_table = 0;
    EXPECT_EQ(stages(by_zone, rows, answer), stages(by_row, ordered, answer));
    std::vector<std::string> names;
    SimResults::visit_named(by_zone.table, [&](const char* name, const auto& column) {
        SimResults::visit_named(by_row.table, [&](const char* other, const auto& expected) {
            if constexpr (std::is_same_v<decltype(column), decltype(expected)>) {
                if (std::string{name} == other) expect_same_bits(column, expected, name);
            }
        });
    });
    expect_same_state(by_zone.run, by_row.run);
    return rows.days_of_full_table > 0 && is_plain_snow(step_columns(by_zone.table, made.run.ClimateStep));
}

TEST(FullTable, GivesTheBitsMessagesAndStateOfTheWalkRowByRow) {
    int plain = 0;
    constexpr int k_tables = 4000;
    for (unsigned seed = 1; seed <= k_tables; ++seed) {
        const Case made = random_case(seed);
        const Answer answer = seed % 4 == 0 ? Answer::Cancel : Answer::Ok;
        if (expect_equal_walks(made, answer)) ++plain;
        ASSERT_FALSE(::testing::Test::HasFailure()) << "table " << seed;
    }
    // Otherwise the comparison says nothing about the walk zone by zone.
    EXPECT_GT(plain, k_tables / 2);
    EXPECT_LT(plain, k_tables * 9 / 10);
}

TEST(FullTable, IsOneWithZonesFromOneAndAllDays) {
    SimResults t;
    t.resize(6);
    t.Zone = {1, 1, 1, 2, 2, 2};
    t.Date = {10, 11, 12, 10, 11, 12};
    EXPECT_EQ(run_rows(t, 10, 12).days_of_full_table, 3U);
    EXPECT_EQ(run_rows(t, 10, 11).days_of_full_table, 0U);
    t.Zone = {2, 2, 2, 3, 3, 3};
    EXPECT_EQ(run_rows(t, 10, 12).days_of_full_table, 0U);
    t.Zone = {1, 1, 1, 3, 3, 3};
    EXPECT_EQ(run_rows(t, 10, 12).days_of_full_table, 0U);
    t.Zone = {1, 1, 1, 2, 2, 2};
    t.Date = {10, 11, 12, 10, 11, 13};
    EXPECT_EQ(run_rows(t, 10, 13).days_of_full_table, 0U);
}

TEST(FullTable, SnowIsPlainWithoutNegativeZerosMissingOrLargeValues) {
    SimResults t;
    t.resize(2);
    for (auto* column : {&t.ZoneDD, &t.AN, &t.Precip, &t.SCA}) fill(*column, 0.5);
    EXPECT_TRUE(is_plain_snow(step_columns(t, 0)));
    for (const float wild : {-0.0F, k_missing, -1.0F, std::numeric_limits<float>::infinity()}) {
        for (auto* column : {&t.ZoneDD, &t.AN, &t.Precip, &t.SCA}) {
            (*column)[1] = wild;
            EXPECT_FALSE(is_plain_snow(step_columns(t, 0))) << wild;
            (*column)[1] = 0.5F;
        }
    }
}

}  // namespace
}  // namespace nivora
