#include "session/definition_rules.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(BasinBoxText, EachBoxHasATextOfItsOwn) {
    BasinState basin;
    int number = 0;
    for (; number <= static_cast<int>(BasinBox::Longitude); ++number)
        basin_box_text(basin, static_cast<BasinBox>(number)) = std::to_string(number);
    EXPECT_EQ(number, 6);
    EXPECT_EQ(basin.basin_name, "0");
    EXPECT_EQ(basin.zones_text, "1");
    EXPECT_EQ(basin.reference_elevation_text, "2");
    EXPECT_EQ(basin.latitude_text, "3");
    EXPECT_EQ(basin.basin_description, "4");
    EXPECT_EQ(basin.longitude_text, "5");
}

TEST(ShownUnits, AreTheChosenOnesUntilTheyAreFixed) {
    BasinState basin;
    basin.basin_units = Units::NotFixed;
    EXPECT_EQ(shown_units(basin, std::nullopt), Units::Metric);
    EXPECT_EQ(shown_units(basin, Units::English), Units::English);
    basin.basin_units = Units::Metric;
    EXPECT_EQ(shown_units(basin, Units::English), Units::Metric);
    basin.basin_units = Units::English;
    EXPECT_EQ(shown_units(basin, std::nullopt), Units::English);
}

/// Where Enter leads, step by step, from the name to the zone grid.
std::vector<AfterEnter> way(bool units_open, bool zones_open) {
    std::vector<AfterEnter> steps;
    AfterEnter at{.box = BasinBox::Name};
    while (at.place == AfterEnter::Place::Box && steps.size() < 10)
        steps.push_back(at = after_enter(at.box, units_open, zones_open));
    return steps;
}

TEST(AfterEnter, GoesFromTheNameToTheUnitsWhileTheyAreOpen) {
    EXPECT_EQ(way(true, false), std::vector<AfterEnter>{{.place = AfterEnter::Place::UnitsList}});
    EXPECT_EQ(way(true, true), way(true, false));
}

TEST(AfterEnter, GoesThroughTheBoxesToTheZoneGrid) {
    std::vector<AfterEnter> boxes{{.box = BasinBox::ReferenceElevation},
                                  {.box = BasinBox::Latitude},
                                  {.box = BasinBox::Longitude},
                                  {.box = BasinBox::Description},
                                  {.place = AfterEnter::Place::ZoneGrid}};
    EXPECT_EQ(way(false, false), boxes);
    boxes.insert(boxes.begin(), AfterEnter{.box = BasinBox::Zones});
    EXPECT_EQ(way(false, true), boxes);
}

TEST(UnusualZoneQuestion, IsNotAskedAgainAboutValuesThatWereConfirmed) {
    BasinState basin;
    basin.basin_units = Units::Metric;
    basin.zones = {{.id = "A", .area = 25000000.0, .elevation = 1500.0}};  // above 10,000,000 km²
    UnusualZoneQuestion question;
    auto asked = question.open_for(basin);
    ASSERT_TRUE(asked.has_value());
    EXPECT_EQ(asked->zone, 1);
    EXPECT_TRUE(question.open_for(basin).has_value()) << "a No leaves the question open";
    question.confirm(*asked);
    EXPECT_FALSE(question.open_for(basin).has_value());
    basin.zones[0].area = 25000001.0;
    asked = question.open_for(basin);
    EXPECT_TRUE(asked.has_value()) << "another value is another question";
    question.confirm(*asked);
    question.forget();
    EXPECT_TRUE(question.open_for(basin).has_value()) << "another basin";
}

TEST(UnusualZoneQuestion, IsNotAskedAboutUsualZones) {
    BasinState basin;
    basin.basin_units = Units::Metric;
    basin.zones = {{.id = "A", .area = 12.5, .elevation = 1500.0}};
    EXPECT_FALSE(UnusualZoneQuestion{}.open_for(basin).has_value());
}

}  // namespace
}  // namespace nivora
