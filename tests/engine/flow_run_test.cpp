// The discharge without a results table is that of the stages, to the bit.

#include "engine/flow_run.h"

#include "tests/engine/random_table.h"

#include <cstring>

namespace nivora {
namespace {

/// The discharge of the stages, and whether they told of a limited recession.
struct StagedFlow {
    std::vector<double> computed;
    bool limited = false;
    bool completed = false;
};

StagedFlow staged_flow(const RandomTable& made) {
    RandomTable worked = made;
    ScriptedDialogs dialogs;
    for (int i = 0; i < 9; ++i) dialogs.then(Answer::Ok);
    const RunRows rows = run_rows(worked.table, worked.run.RunStart, worked.run.RunEnd);
    StagedFlow flow;
    flow.completed = Zone_Inputs(worked.table, rows, worked.inputs, worked.run, dialogs);
    Snow_Melt(worked.table, rows, worked.inputs, worked.run, dialogs);
    const bool custom = worked.run.LagDistribution[0] > 0.0F;
    const bool reached = custom ? Runoff_Custom_Lag(worked.table, rows, worked.inputs, worked.run, dialogs)
                                : Runoff_Simulation(worked.table, rows, worked.inputs, worked.run, dialogs);
    flow.completed = flow.completed && reached;
    for (const auto& asked : dialogs.messages())
        flow.limited = flow.limited || asked.message.text == k_limit_text;
    const std::size_t days = worked.table.size() / worked.inputs.zones;
    flow.computed.assign(worked.table.DailyQ.begin(),
                         worked.table.DailyQ.begin() + static_cast<std::ptrdiff_t>(days));
    return flow;
}

/// As a run builds its table: nothing computed yet.
RandomTable plain_table(unsigned seed) {
    RandomTable made = random_table(seed);
    made.run.ClimateStep = 0;
    return made;
}

std::size_t days_of_table(const RandomTable& made) { return made.table.size() / made.inputs.zones; }

bool is_full(const RandomTable& made) {
    return run_rows(made.table, made.run.RunStart, made.run.RunEnd).days_of_full_table > 0;
}

void expect_flow(const FlowRun& flow, const RandomTable& made) {
    const StagedFlow expected = staged_flow(made);
    ASSERT_TRUE(expected.completed);
    ASSERT_EQ(flow.computed().size(), expected.computed.size());
    EXPECT_EQ(std::memcmp(flow.computed().data(), expected.computed.data(),
                          expected.computed.size() * sizeof(double)),
              0);
    EXPECT_EQ(flow.limited(), expected.limited);
}

TEST(FlowRun, GivesTheBitsOfTheStages) {
    constexpr int k_tables = 6000;
    int computed = 0;
    int limited = 0;
    int with_distribution = 0;
    int heavy = 0;
    for (unsigned seed = 1; seed <= k_tables; ++seed) {
        const RandomTable made = plain_table(seed);
        if (!is_full(made)) continue;
        FlowRun flow{made.inputs, made.run, days_of_table(made)};
        FlowRun narrow{made.inputs, made.run, days_of_table(made), false};
        const bool plain = flow.compute(flow_columns(made.table));
        ASSERT_EQ(narrow.compute(flow_columns(made.table)), plain);
        if (!plain) continue;
        expect_flow(flow, made);
        expect_flow(narrow, made);
        ASSERT_FALSE(::testing::Test::HasFailure()) << "table " << seed;
        ++computed;
        limited += flow.limited() ? 1 : 0;
        with_distribution += made.run.LagDistribution[0] > 0.0F ? 1 : 0;
        heavy += made.inputs.precipitation_threshold == 0.5F ? 1 : 0;
    }
    // Otherwise the comparison says nothing.
    EXPECT_GT(computed, k_tables / 2);
    EXPECT_LT(computed, k_tables * 9 / 10);
    EXPECT_GT(limited, k_tables / 100);
    EXPECT_GT(with_distribution, k_tables / 10);
    EXPECT_GT(heavy, k_tables / 10);
}

/// A plain table without missing or wild values.
RandomTable good_table() {
    for (unsigned seed = 1;; ++seed) {
        RandomTable made = plain_table(seed);
        if (!is_full(made) || made.inputs.zones < 3 || days_of_table(made) < 40) continue;
        FlowRun flow{made.inputs, made.run, days_of_table(made)};
        if (flow.compute(flow_columns(made.table))) return made;
    }
}

TEST(FlowRun, ComputesOtherInputsWithTheSameWorkingMemory) {
    RandomTable made = good_table();
    FlowRun flow{made.inputs, made.run, days_of_table(made)};
    ASSERT_TRUE(flow.compute(flow_columns(made.table)));
    const std::vector<double> before{flow.computed().begin(), flow.computed().end()};
    for (float& factor : made.table.AN) factor *= 1.5F;
    ASSERT_TRUE(flow.compute(flow_columns(made.table)));
    expect_flow(flow, made);
    EXPECT_FALSE(std::equal(before.begin(), before.end(), flow.computed().begin()));
}

TEST(FlowRun, ForgetsTheLimitOfAFormerRun) {
    RandomTable made = good_table();
    FlowRun flow{made.inputs, made.run, days_of_table(made)};
    fill(made.table.Xcoeff, 3.0);
    ASSERT_TRUE(flow.compute(flow_columns(made.table)));
    EXPECT_TRUE(flow.limited());
    fill(made.table.Xcoeff, 0.5);
    ASSERT_TRUE(flow.compute(flow_columns(made.table)));
    EXPECT_FALSE(flow.limited());
}

TEST(FlowRun, GivesTheBitsForTemperaturesThatAreZeroWithASign) {
    RandomTable made = good_table();
    made.inputs.temperature_max_min = made.inputs.temperature_basinwide = false;
    made.inputs.units = Units::Metric;
    fill(made.table.TAvg, -0.0);
    FlowRun flow{made.inputs, made.run, days_of_table(made)};
    ASSERT_TRUE(flow.compute(flow_columns(made.table)));
    expect_flow(flow, made);
}

TEST(FlowRun, ReadsOnlyTheFirstZoneOfABasinwideColumn) {
    RandomTable made = good_table();
    made.inputs.temperature_max_min = false;
    made.inputs.temperature_basinwide = made.inputs.precipitation_basinwide = true;
    made.inputs.lapse_rate_basinwide = made.inputs.critical_temperature_basinwide = true;
    made.inputs.runoff_coefficients_basinwide = true;
    const std::size_t days = days_of_table(made);
    FlowColumns in = flow_columns(made.table);
    for (Column* column :
         {&in.average_temperature, &in.precipitation, &in.lapse_rate, &in.critical_temperature,
          &in.snow_coefficient, &in.rain_coefficient, &in.lag_hours})
        *column = column->first(days);
    in.recession_x = in.recession_x.first(days);
    in.recession_y = in.recession_y.first(days);
    in.maximum_temperature = in.minimum_temperature = {};
    FlowRun flow{made.inputs, made.run, days};
    ASSERT_TRUE(flow.compute(in));
    expect_flow(flow, made);
}

TEST(FlowRun, LeavesNoDischargeWhereAValueIsMissingOrWild) {
    RandomTable made = good_table();
    const std::size_t days = days_of_table(made);
    FlowRun flow{made.inputs, made.run, days};
    ASSERT_TRUE(flow.compute(flow_columns(made.table)));
    EXPECT_EQ(flow.computed().size(), days);
    const float cover = std::exchange(made.table.SCA[days + 3], k_missing);
    EXPECT_FALSE(flow.compute(flow_columns(made.table)));
    EXPECT_TRUE(flow.computed().empty());
    made.table.SCA[days + 3] = cover;
    EXPECT_TRUE(flow.compute(flow_columns(made.table)));
    made.table.AN[5] = -0.0F;  // would give a zero with another sign
    EXPECT_FALSE(flow.compute(flow_columns(made.table)));
}

TEST(FlowRun, LeavesNoDischargeWhereAColumnIsTooShort) {
    const RandomTable made = good_table();
    FlowColumns in = flow_columns(made.table);
    in.cover = in.cover.first(in.cover.size() - 1);
    FlowRun flow{made.inputs, made.run, days_of_table(made)};
    EXPECT_FALSE(flow.compute(in));
}

TEST(FlowRun, LeavesNoDischargeWhereAnElevationIsBeyondASingle) {
    RandomTable made = good_table();
    made.inputs.elevations[2] = 1.0e39;
    FlowRun flow{made.inputs, made.run, days_of_table(made)};
    EXPECT_FALSE(flow.compute(flow_columns(made.table)));
}

}  // namespace
}  // namespace nivora
