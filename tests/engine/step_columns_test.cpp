#include "engine/step_columns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using ::testing::IsEmpty;

TEST(SimResults, EveryStepBut1And3WorksOnTheChangedClimate) {
    for (int step = 0; step <= 6; ++step) {
        EXPECT_EQ(uses_changed_climate(step), step == 2 || step >= 4) << step;
    }
}

TEST(StepColumns, ThePresentClimateWorksOnItsOwnColumns) {
    SimResults table;
    table.resize(1);
    for (const int step : {0, 1, 3}) {
        const StepColumns columns = step_columns(table, step);
        EXPECT_EQ(columns.average_temperature.data(), table.TAvg.data()) << step;
        EXPECT_EQ(columns.precipitation.data(), table.Precip.data()) << step;
        EXPECT_EQ(columns.recession_y.data(), table.YCoeff.data()) << step;
        EXPECT_EQ(columns.cover.data(), table.SCA.data()) << step;
    }
}

TEST(StepColumns, TheChangedClimateWorksOnThoseThatEndInCC) {
    SimResults table;
    table.resize(1);
    for (const int step : {2, 4, 5, 6}) {
        const StepColumns columns = step_columns(table, step);
        EXPECT_EQ(columns.average_temperature.data(), table.TAvgCC.data()) << step;
        EXPECT_EQ(columns.precipitation.data(), table.PrecipCC.data()) << step;
        EXPECT_EQ(columns.recession_y.data(), table.YCoeffCC.data()) << step;
    }
}

TEST(StepColumns, TheCoverOfTheChangedClimateDependsOnTheStep) {
    SimResults table;
    table.resize(1);
    EXPECT_EQ(step_columns(table, 2).cover.data(), table.SCACC.data());
    EXPECT_EQ(step_columns(table, 4).cover.data(), table.SCA.data());
    EXPECT_EQ(step_columns(table, 5).cover.data(), table.SCA.data());
    EXPECT_EQ(step_columns(table, 6).cover.data(), table.SCAclimWAMA.data());
}

TEST(StepColumns, Step3ComputesThePresentDischargeThatStep6ComparesWith) {
    SimResults table;
    table.resize(1);
    for (int step = 0; step <= 6; ++step) {
        const StepColumns columns = step_columns(table, step);
        EXPECT_EQ(columns.computed.data(), step == 3 ? table.DailyQPresent.data() : table.DailyQ.data())
            << step;
        if (step == 6) {
            EXPECT_EQ(columns.measured_present.data(), table.DailyQPresent.data());
        } else {
            EXPECT_THAT(columns.measured_present, IsEmpty()) << step;
        }
    }
}

}  // namespace
}  // namespace nivora
