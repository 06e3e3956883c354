#include "prep/daily_units.h"

#include "prep/daily_editor.h"
#include "store/basin_store.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(DailyUnits, FollowTheBasinsUnits) {
    EXPECT_EQ(daily_unit("Precip", Units::Metric), "cm");
    EXPECT_EQ(daily_unit("Precip", Units::English), "inches");
    EXPECT_EQ(daily_unit("LapseRate", Units::Metric), "°C per 100 m");
    EXPECT_EQ(daily_unit("LapseRate", Units::English), "°F per 1000 ft");
    EXPECT_EQ(daily_unit("Runoff", Units::English), "ft³/s");
}

TEST(DailyUnits, AFieldOfTheChangedClimateHasTheUnitOfThePresentOne) {
    EXPECT_EQ(daily_unit("TMaxCC", Units::Metric), "°C");
    EXPECT_EQ(daily_unit("YCoeffCC", Units::Metric), "no unit");
    EXPECT_EQ(daily_unit("SCACC", Units::Metric), "a fraction, 0 to 1");
}

TEST(DailyUnits, EveryColumnOfEveryViewHasOne) {
    for (const DataView view :
         {DataView::PhysicalData, DataView::Parameters, DataView::Results, DataView::Scenario}) {
        for (const std::string& field : daily_fields(view)) {
            EXPECT_NE(daily_unit(field, Units::Metric), "") << field;
            EXPECT_NE(daily_unit(field, Units::English), "") << field;
        }
    }
}

TEST(DailyUnits, AFieldOfNoDailyTableHasNone) {
    EXPECT_EQ(daily_unit("CC", Units::Metric), "");
    EXPECT_EQ(daily_unit("Comments", Units::Metric), "");
}

}  // namespace
}  // namespace nivora
