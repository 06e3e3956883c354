#include "store/simulation_days.h"

#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ParameterRow parameters(std::int16_t zone, DayCount date, float an = k_missing) {
    ParameterRow row;
    row.zone = zone;
    row.date = date;
    row.an = an;
    return row;
}

class SimulationDays : public testing::Test {
protected:
    SimulationDays() { database_.create_table(parameter_table("Wet")); }

    void add_variables(const std::vector<PhysicalRow>& rows) {
        add_rows<PhysicalRow>(database_, template_table(k_physical_data), rows);
    }
    void add_parameters(const std::vector<ParameterRow>& rows) {
        add_rows<ParameterRow>(database_, parameter_table("Wet"), rows);
    }

    /// The days of a period as "zone/day".
    [[nodiscard]] std::vector<std::string> days(const Period& period) {
        std::vector<std::string> texts;
        for (const SimulationDay& day : read_simulation_days(database_, "wet", period))
            texts.push_back(std::to_string(day.zone) + "/" + std::to_string(day.date));
        return texts;
    }

    BasinFile file_;
    BasinDatabase database_ = file_.open();
};

TEST_F(SimulationDays, AreThoseThatBothTablesHaveZoneByZone) {
    add_variables({{.zone = 2, .date = 100},
                   {.zone = 1, .date = 101},
                   {.zone = 1, .date = 100},
                   {.zone = 2, .date = 101},
                   {.zone = 1, .date = 102}});
    add_parameters(
        {parameters(1, 100), parameters(1, 101), parameters(2, 101), parameters(3, 101), parameters(1, 102)});
    EXPECT_THAT(days({100, 101}), ElementsAre("1/100", "1/101", "2/101"));
    EXPECT_THAT(days({103, 200}), IsEmpty());
}

TEST_F(SimulationDays, OfASimulationCalledZonesAreThoseOfItsTable) {
    add_variables({{.zone = 1, .date = 100}});
    database_.create_table(parameter_table("zones"));
    add_rows<ParameterRow>(database_, parameter_table("zones"), std::vector{parameters(1, 100)});
    EXPECT_EQ(read_simulation_days(database_, "zones", {100, 100}).size(), 1U);
}

TEST_F(SimulationDays, HaveTheFieldsOfBothTables) {
    add_variables({{.zone = 1,
                    .date = 100,
                    .runoff = 1.0F,
                    .tmax = 2.0F,
                    .tmin = 3.0F,
                    .tavg = 4.0F,
                    .precip = 5.0F,
                    .sca = 6.0F,
                    .net_radiation = 7.0F}});
    add_parameters({{.zone = 1,
                     .date = 100,
                     .tcrit = 9.0F,
                     .lag_hours = 11.0F,
                     .lapse_rate = 8.0F,
                     .an = 10.0F,
                     .cs = 12.0F,
                     .cr = 13.0F,
                     .rca = 14,
                     .xcoeff = 15.0,
                     .ycoeff = 16.0}});
    const auto read = read_simulation_days(database_, "Wet", {100, 100});
    ASSERT_EQ(read.size(), 1U);
    const SimulationDay& day = read.front();
    EXPECT_THAT(
        (std::vector{day.runoff, day.tmax, day.tmin, day.tavg, day.precip, day.sca, day.net_radiation}),
        ElementsAre(1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 7.0F));
    EXPECT_THAT((std::vector{day.lapse_rate, day.tcrit, day.an, day.lag, day.cs, day.cr, day.rca}),
                ElementsAre(8.0F, 9.0F, 10.0F, 11.0F, 12.0F, 13.0F, 14.0F));
    EXPECT_THAT((std::vector{day.x, day.y}), ElementsAre(15.0, 16.0));
}

TEST_F(SimulationDays, AMissingValueIsNaN) {
    add_variables({{.zone = 1, .date = 100}});
    add_parameters({parameters(1, 100)});
    const auto read = read_simulation_days(database_, "Wet", {100, 100});
    ASSERT_EQ(read.size(), 1U);
    EXPECT_TRUE(std::isnan(read[0].runoff));
    EXPECT_TRUE(std::isnan(read[0].rca));
    EXPECT_TRUE(std::isnan(read[0].x));
}

TEST_F(SimulationDays, WithoutATableOrWithATextAreRefused) {
    EXPECT_EQ(refused([&] {
                  static_cast<void>(read_simulation_days(database_, "none", {100, 101}));
              }),
              StoreFault::Statement);
    add_variables({{.zone = 1, .date = 100}});
    add_parameters({parameters(1, 100)});
    database_.execute("UPDATE Wet SET An = 'much'");
    EXPECT_EQ(refused([&] {
                  static_cast<void>(read_simulation_days(database_, "Wet", {100, 101}));
              }),
              StoreFault::Value);
}

TEST_F(SimulationDays, TheFirstParametersAreThoseOfTheFirstZoneOnItsFirstDay) {
    add_parameters({parameters(2, 99, 1.0F), parameters(1, 101, 2.0F), parameters(1, 100, 3.0F),
                    parameters(1, 98, 4.0F)});
    EXPECT_EQ(first_parameters(database_, "wet", {99, 101})->an, 3.0F);
    EXPECT_EQ(first_parameters(database_, "wet", {99, 99})->an, 1.0F);
    EXPECT_TRUE(std::isnan(first_parameters(database_, "wet", {99, 99})->tcrit));
}

TEST_F(SimulationDays, TheFirstParametersNeedATableAndADay) {
    EXPECT_FALSE(first_parameters(database_, "none", {99, 101}).has_value());
    EXPECT_FALSE(first_parameters(database_, "Wet", {99, 101}).has_value());
    add_parameters({parameters(1, 100)});
    database_.execute("UPDATE Wet SET RCA = 0.5");
    EXPECT_EQ(refused([&] {
                  static_cast<void>(first_parameters(database_, "Wet", {99, 101}));
              }),
              StoreFault::Value);
}

TEST_F(SimulationDays, TheDischargeOfADayIsThatOfItsFirstZone) {
    add_variables({{.zone = 3, .date = 100, .runoff = 3.0F},
                   {.zone = 2, .date = 100, .runoff = 2.0F},
                   {.zone = 1, .date = 101},
                   {.zone = 2, .date = 101, .runoff = 5.0F}});
    EXPECT_EQ(discharge_of_day(database_, 100).rows, 2);
    EXPECT_EQ(discharge_of_day(database_, 100).first, 2.0F);
    EXPECT_EQ(discharge_of_day(database_, 101).rows, 2);
    EXPECT_TRUE(std::isnan(discharge_of_day(database_, 101).first));
    EXPECT_EQ(discharge_of_day(database_, 102).rows, 0);
    EXPECT_TRUE(std::isnan(discharge_of_day(database_, 102).first));
}

TEST_F(SimulationDays, TheDischargeOfOtherZonesIsCountedButNotRead) {
    database_.execute("INSERT INTO PhysicalData (Zone, Date, Runoff) VALUES (1, 100, 2), (2, 100, 'much')");
    EXPECT_EQ(discharge_of_day(database_, 100).rows, 2);
    database_.execute("UPDATE PhysicalData SET Runoff = 'much'");
    EXPECT_EQ(refused([&] { static_cast<void>(discharge_of_day(database_, 100)); }), StoreFault::Value);
}

}  // namespace
}  // namespace nivora
