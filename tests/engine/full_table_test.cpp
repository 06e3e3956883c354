// The walk through a full table gives the bits, messages and state of the walk row by row.

#include "engine/snow_table.h"
#include "engine/step_columns.h"
#include "tests/engine/random_table.h"

#include <cstring>

namespace nivora {
namespace {

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
std::string stages(RandomTable& made, const RunRows& rows, Answer answer) {
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

/// Works a table both ways. @return whether the snow of the table was worked zone by zone
bool expect_equal_walks(const RandomTable& made, Answer answer) {
    RandomTable by_zone = made;
    RandomTable by_row = made;
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
        const RandomTable made = random_table(seed);
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
