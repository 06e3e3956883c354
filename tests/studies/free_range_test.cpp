#include "studies/free_range.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::HasSubstr;

BasinInputs three_zones() {
    BasinInputs inputs;
    inputs.zones = 3;
    inputs.temperature_basinwide = inputs.precipitation_basinwide = true;
    inputs.lapse_rate_basinwide = inputs.runoff_coefficients_basinwide = true;
    return inputs;
}

FreeRange range_of(std::string_view text, const BasinInputs& inputs = three_zones()) {
    const auto read = read_free_range(text, inputs);
    if (const auto* problem = std::get_if<std::string>(&read)) {
        ADD_FAILURE() << *problem;
        return {};
    }
    return std::get<FreeRange>(read);
}

std::string problem_of(std::string_view text, const BasinInputs& inputs = three_zones()) {
    const auto read = read_free_range(text, inputs);
    const auto* problem = std::get_if<std::string>(&read);
    return problem == nullptr ? "no problem" : *problem;
}

std::vector<std::size_t> zones_of(const FreeRange& range) {
    std::vector<std::size_t> zones;
    for (std::size_t zone = 0; zone < range.zones.size(); ++zone) {
        if (range.zones.at(zone)) zones.push_back(zone);
    }
    return zones;
}

TEST(FreeRange, HasVariableActionLimitsAndZones) {
    const FreeRange range = range_of(" Degree Day Factors : Multiply : 0.7 .. 1.4 : All ");
    EXPECT_EQ(range.variable, StudyVariable::DegreeDayFactor);
    EXPECT_EQ(range.action, AdjustAction::Multiply);
    EXPECT_EQ(range.low, 0.7);
    EXPECT_EQ(range.high, 1.4);
    EXPECT_EQ(zones_of(range), (std::vector<std::size_t>{1, 2, 3}));
    EXPECT_FALSE(range.days);
    EXPECT_EQ(range.text, "Degree Day Factors : Multiply : 0.7 .. 1.4 : All");
}

TEST(FreeRange, TakesFieldsLettersNumbersAndDays) {
    const FreeRange range = range_of("an:add:-1..-0.5:a,3:1996-04-01..1996-09-30");
    EXPECT_EQ(range.variable, StudyVariable::DegreeDayFactor);
    EXPECT_EQ(range.action, AdjustAction::Add);
    EXPECT_EQ(range.low, -1.0);
    EXPECT_EQ(range.high, -0.5);
    EXPECT_EQ(zones_of(range), (std::vector<std::size_t>{1, 3}));
    ASSERT_TRUE(range.days);
    EXPECT_EQ(iso_date_text(range.days->start), "1996-04-01");
    EXPECT_EQ(iso_date_text(range.days->end), "1996-09-30");
}

TEST(FreeRange, MayHaveNoWidth) { EXPECT_EQ(range_of("SCA:set:1..1:A").high, 1.0); }

TEST(FreeRange, GivesAnAdjustment) {
    const Adjustment adjustment = range_of("An:multiply:0.5..2:B").at(1.25);
    EXPECT_EQ(adjustment.variable, StudyVariable::DegreeDayFactor);
    EXPECT_EQ(adjustment.number, 1.25);
    EXPECT_TRUE(adjustment.zones[2]);
    EXPECT_FALSE(adjustment.zones[1]);
}

TEST(FreeRange, SaysWhatIsWrongWithAText) {
    EXPECT_THAT(problem_of("An:multiply:1..2"), HasSubstr("not of the form VARIABLE:ACTION:LOW..HIGH:ZONES"));
    EXPECT_THAT(problem_of("An:multiply:1..2:A:x:y"), HasSubstr("not of the form"));
    EXPECT_THAT(
        problem_of("Wind:multiply:1..2:All"),
        testing::AllOf(
            testing::StartsWith(
                "'Wind' is not a variable that a study can change; they are Average Temperature (Tavg), "),
            testing::EndsWith(", Recession Coefficient y (Ycoeff)")));
    EXPECT_EQ(problem_of("An:double:1..2:All"), "'double' is not an action: give set, add or multiply");
    EXPECT_EQ(problem_of("An:multiply:1-2:All"), "'1-2' is not a range such as 0.7..1.4");
    EXPECT_EQ(problem_of("An:multiply:..2:All"), "'..2' is not a range such as 0.7..1.4");
    EXPECT_EQ(problem_of("An:multiply:1..x:All"), "'x' is not a number");
    EXPECT_EQ(problem_of("An:multiply:y..2:All"), "'y' is not a number");
    EXPECT_EQ(problem_of("An:multiply:2..1:All"),
              "the range '2..1' is reversed: the lower number comes first");
    for (const std::string text : {"inf", "-inf", "nan", "1e999"})
        EXPECT_EQ(problem_of("An:multiply:1.." + text + ":All"), "'" + text + "' is not a finite number");
    EXPECT_EQ(problem_of("An:multiply:0,7..1,4:All"), "'0,7' is not a number");
    EXPECT_EQ(problem_of("An:multiply:1..2:Q"),
              "'Q' is not a zone: give All, or letters or numbers with commas");
    EXPECT_EQ(problem_of("An:multiply:1..2:A,"),
              "'' is not a zone: give All, or letters or numbers with commas");
    EXPECT_EQ(problem_of("An:multiply:1..2:D"), "the basin has no zone 'D'");
    EXPECT_EQ(problem_of("An:multiply:1..2:4"), "the basin has no zone '4'");
    EXPECT_EQ(problem_of("An:multiply:1..2:1.5"),
              "'1.5' is not a zone: give All, or letters or numbers with commas");
    EXPECT_EQ(problem_of("An:multiply:1..2:A:1996-04-01"),
              "'1996-04-01' is not a period such as 1996-04-01..1996-09-30");
    EXPECT_EQ(problem_of("An:multiply:1..2:A:1996-04-31..1996-05-01"),
              "'1996-04-31' is not a date such as 1996-04-01");
    EXPECT_EQ(problem_of("An:multiply:1..2:A:1996-05-01..1996-04-01"),
              "the period '1996-05-01..1996-04-01' ends before it starts");
}

TEST(FreeRange, RefusesWhatTheSimulationDoesNotUseOrHasBasinwide) {
    EXPECT_EQ(problem_of("Tmax:add:-1..1:All"), "the simulation does not use 'Maximum Temperature'");
    EXPECT_EQ(problem_of("Precip:multiply:0.5..2:A"),
              "the simulation has 'Precipitation' basinwide: its zones must be All");
    EXPECT_EQ(problem_of("Xcoeff:multiply:0.5..2:A,B"),
              "the simulation has 'Recession Coefficient x' basinwide: its zones must be All");
    BasinInputs by_zone = three_zones();
    by_zone.precipitation_basinwide = false;
    EXPECT_EQ(problem_of("Precip:multiply:0.5..2:A", by_zone), "no problem");
    by_zone.temperature_basinwide = false;
    EXPECT_EQ(problem_of("LapseRate:multiply:0.5..2:All", by_zone),
              "the simulation does not use 'Temperature Lapse Rate'");
}

}  // namespace
}  // namespace nivora
