#include "base/units.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(UnitWords, AreThoseOfEnglishUnitsForEnglishAlone) {
    EXPECT_STREQ(unit_words(Units::English).area, "mi²");
    for (const Units units : {Units::Metric, Units::NotFixed, Units{2}})
        EXPECT_STREQ(unit_words(units).area, "km²") << static_cast<int>(units);
}

TEST(UnitWords, AreTheSameQuantitiesInBothSystems) {
    const UnitWords& metric = unit_words(Units::Metric);
    const UnitWords& english = unit_words(Units::English);
    EXPECT_STREQ(metric.name, "Metric");
    EXPECT_STREQ(english.name, "English");
    EXPECT_STREQ(metric.elevation, "m");
    EXPECT_STREQ(english.elevation, "ft");
    EXPECT_STREQ(metric.depth, "cm");
    EXPECT_STREQ(english.depth, "in");
    EXPECT_STREQ(english.depth_word, "inches");
    EXPECT_STREQ(metric.discharge, "m³/s");
    EXPECT_STREQ(english.discharge, "ft³/s");
    EXPECT_STREQ(metric.discharge_letters, "CMS");
    EXPECT_STREQ(english.discharge_letters, "CFS");
    EXPECT_STREQ(metric.degree_day_factor, "cm/(°C·day)");
    EXPECT_STREQ(english.degree_day_factor, "inches/(°F·day)");
}

// Intended: the statistics write feet as "f", not as "ft".
TEST(UnitWords, StatisticsShortenFeetToOneLetter) {
    EXPECT_STREQ(unit_words(Units::Metric).length_letter, "m");
    EXPECT_STREQ(unit_words(Units::English).length_letter, "f");
}

TEST(Units, OnlyThreeNumbersAreUnits) {
    EXPECT_TRUE(is_known(Units::NotFixed));
    EXPECT_TRUE(is_known(Units::Metric));
    EXPECT_TRUE(is_known(Units::English));
    EXPECT_FALSE(is_known(Units{2}));
    EXPECT_FALSE(is_known(Units{-2}));
}

}  // namespace
}  // namespace nivora
