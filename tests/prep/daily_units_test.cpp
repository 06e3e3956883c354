#include "prep/daily_units.h"

#include "prep/daily_editor.h"
#include "store/basin_store.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(DailyUnits, FollowTheBasinsUnits) {
    EXPECT_EQ(daily_unit("Precip", k_metric), "cm");
    EXPECT_EQ(daily_unit("Precip", k_english), "inches");
    EXPECT_EQ(daily_unit("LapseRate", k_metric), "°C per 100 m");
    EXPECT_EQ(daily_unit("LapseRate", k_english), "°F per 1000 ft");
    EXPECT_EQ(daily_unit("Runoff", k_english), "ft³/s");
}

TEST(DailyUnits, AFieldOfTheChangedClimateHasTheUnitOfThePresentOne) {
    EXPECT_EQ(daily_unit("TMaxCC", k_metric), "°C");
    EXPECT_EQ(daily_unit("YCoeffCC", k_metric), "no unit");
    EXPECT_EQ(daily_unit("SCACC", k_metric), "a fraction, 0 to 1");
}

TEST(DailyUnits, EveryColumnOfEveryViewHasOne) {
    for (const DataView view :
         {DataView::PhysicalData, DataView::Parameters, DataView::Results, DataView::Scenario}) {
        for (const std::string& field : daily_fields(view)) {
            EXPECT_NE(daily_unit(field, k_metric), "") << field;
            EXPECT_NE(daily_unit(field, k_english), "") << field;
        }
    }
}

TEST(DailyUnits, AFieldOfNoDailyTableHasNone) {
    EXPECT_EQ(daily_unit("CC", k_metric), "");
    EXPECT_EQ(daily_unit("Comments", k_metric), "");
}

}  // namespace
}  // namespace nivora
