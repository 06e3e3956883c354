#include "store/rows.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

Simulation full_row() {
    return {.name = "Spring",
            .run_number = 4,
            .start = 35156,  // 1996-04-01: day 36526 (2000-01-01) minus 1370 days
            .end = 35338,    // 1996-09-30: 182 days later
            .units = Units::English,
            .temperature_values = 1,
            .temperature = Distribution::ByZone,
            .precipitation = Distribution::Basinwide,
            .lapse_rate = Distribution::ByZone,
            .runoff_coefficients = Distribution::Basinwide,
            .critical_temperature = Distribution::ByZone,
            .recession = Distribution::Basinwide,
            .initial_runoff = 12.5F,
            .precipitation_threshold = 0.1F,
            .initial_x = 0.884,
            .initial_y = 0.0677,
            .comments = "none"};
}

TEST(SimulationCell, TextsOfAFullRow) {
    const Simulation row = full_row();
    EXPECT_EQ(row.text(1), "Spring");
    EXPECT_EQ(row.text(2), "4");
    EXPECT_EQ(row.text(3), "04/01/1996");
    EXPECT_EQ(row.text(4), "09/30/1996");
    EXPECT_EQ(row.text(5), "English");
    EXPECT_EQ(row.text(6), "Max/Min");
    EXPECT_EQ(row.text(7), "By Zone");
    EXPECT_EQ(row.text(8), "Basinwide");
    EXPECT_EQ(row.text(9), "By Zone");
    EXPECT_EQ(row.text(10), "Basinwide");
    EXPECT_EQ(row.text(11), "By Zone");
    EXPECT_EQ(row.text(12), "Basinwide");
    EXPECT_EQ(row.text(15), "0.884");
    EXPECT_EQ(row.text(16), "0.0677");
    EXPECT_EQ(row.text(17), "none");
}

TEST(SimulationCell, Column13IsTheInitialRunoffAndColumn14TheThreshold) {
    const Simulation row = full_row();
    EXPECT_EQ(row.text(13), "12.5");
    EXPECT_EQ(row.text(14), "0.1");
    EXPECT_EQ(row.value(13), 12.5);
    EXPECT_EQ(row.value(14), static_cast<double>(0.1F));
}

TEST(SimulationCell, TextsOfTheOtherCodes) {
    Simulation row = full_row();
    row.units = Units::Metric;
    row.temperature_values = 0;
    row.recession = Distribution::ByZone;
    EXPECT_EQ(row.text(5), "Metric");
    EXPECT_EQ(row.text(6), "Average");
    EXPECT_EQ(row.text(12), "By Zone");
}

TEST(SimulationCell, OfACodeThatIsInNoListIsEmpty) {
    Simulation row = full_row();
    row.units = Units{2};
    row.temperature_values = -1;
    EXPECT_EQ(row.text(5), "");
    EXPECT_EQ(row.text(6), "");
    EXPECT_EQ(row.value(5), 2.0);
    EXPECT_EQ(row.value(6), -1.0);
}

TEST(SimulationCell, ValuesOfAFullRow) {
    const Simulation row = full_row();
    EXPECT_EQ(row.value(2), 4.0);
    EXPECT_EQ(row.value(3), 35156.0);
    EXPECT_EQ(row.value(4), 35338.0);
    EXPECT_EQ(row.value(5), 1.0);
    EXPECT_EQ(row.value(6), 1.0);
    EXPECT_EQ(row.value(7), 1.0);
    EXPECT_EQ(row.value(8), 0.0);
    EXPECT_EQ(row.value(9), 1.0);
    EXPECT_EQ(row.value(10), 0.0);
    EXPECT_EQ(row.value(11), 1.0);
    EXPECT_EQ(row.value(12), 0.0);
    EXPECT_EQ(row.value(15), 0.884);
    EXPECT_EQ(row.value(16), 0.0677);
}

TEST(SimulationCell, OfTextHasNoValue) {
    EXPECT_EQ(full_row().value(1), std::nullopt);
    EXPECT_EQ(full_row().value(17), std::nullopt);
}

TEST(SimulationCell, OfAnEmptyRowIsEmpty) {
    const Simulation row;
    for (int column = 1; column <= 17; ++column) {
        EXPECT_EQ(row.text(column), "") << column;
        EXPECT_EQ(row.value(column), std::nullopt) << column;
    }
}

TEST(SimulationCell, OutsideTheSeventeenColumnsIsEmpty) {
    for (const int column : {-1, 0, 18}) {
        EXPECT_EQ(full_row().text(column), "") << column;
        EXPECT_EQ(full_row().value(column), std::nullopt) << column;
    }
}

}  // namespace
}  // namespace nivora
