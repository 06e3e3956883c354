// The text of a range within which a study changes a variable.
#include "base/calendar.h"
#include "studies/free_range.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;

class StudyRangesTest : public testing::Test {
protected:
    StudyRangesTest() {
        inputs.zones = 3;
        inputs.temperature_basinwide = true;
        inputs.lapse_rate_basinwide = true;
        inputs.precipitation_basinwide = true;
    }

    [[nodiscard]] FreeRange range(const std::string& text) const {
        const auto read = read_free_range(text, inputs);
        if (const auto* problem = std::get_if<std::string>(&read)) {
            ADD_FAILURE() << text << ": " << *problem;
            return {};
        }
        return std::get<FreeRange>(read);
    }
    /// Why a text is refused; empty if it is not.
    [[nodiscard]] std::string refusal(const std::string& text) const {
        const auto read = read_free_range(text, inputs);
        const auto* problem = std::get_if<std::string>(&read);
        return problem == nullptr ? std::string{} : *problem;
    }
    [[nodiscard]] static std::vector<std::size_t> zones_of(const FreeRange& range) {
        std::vector<std::size_t> zones;
        for (std::size_t zone = 0; zone < range.zones.size(); ++zone)
            if (range.zones.at(zone)) zones.push_back(zone);
        return zones;
    }

    BasinInputs inputs;
};

TEST_F(StudyRangesTest, ARangeHasVariableActionLimitsZonesAndDays) {
    const FreeRange read = range("Degree Day Factor:multiply:0.7..1.4:A,3:1996-04-01..1996-06-30");
    EXPECT_EQ(read.variable, StudyVariable::DegreeDayFactor);
    EXPECT_EQ(read.action, AdjustAction::Multiply);
    EXPECT_EQ(read.low, 0.7);
    EXPECT_EQ(read.high, 1.4);
    EXPECT_EQ(zones_of(read), (std::vector<std::size_t>{1, 3}));
    EXPECT_EQ(iso_date_text(read.days->start), "1996-04-01");
    EXPECT_EQ(iso_date_text(read.days->end), "1996-06-30");
    const Adjustment adjustment = read.at(1.1);
    EXPECT_EQ(adjustment.number, 1.1);
    EXPECT_EQ(adjustment.zones, read.zones);
    EXPECT_EQ(adjustment.days, read.days);
}

TEST_F(StudyRangesTest, FieldNamesBlanksCaseAndSignsDoNotMatter) {
    const FreeRange read = range(" xCOEFF : SET : -.5 .. 1e0 : all ");
    EXPECT_EQ(read.variable, StudyVariable::RecessionX);
    EXPECT_EQ(read.action, AdjustAction::Set);
    EXPECT_EQ(read.low, -0.5);
    EXPECT_EQ(read.high, 1.0);
    EXPECT_EQ(zones_of(read), (std::vector<std::size_t>{1, 2, 3}));
    EXPECT_FALSE(read.days);
    EXPECT_EQ(range("An:add:1..2:b").action, AdjustAction::Add);
}

TEST_F(StudyRangesTest, ARangeMayHaveNoWidthButNotARunBackwards) {
    EXPECT_EQ(range("An:multiply:1..1:All").low, range("An:multiply:1..1:All").high);
    EXPECT_THAT(refusal("An:multiply:1.4..0.7:All"), HasSubstr("reversed"));
    EXPECT_THAT(refusal("An:multiply:1..2:All:1996-06-30..1996-04-01"), HasSubstr("ends before it starts"));
    EXPECT_EQ(refusal("An:multiply:1..2:All:1996-04-01..1996-04-01"), "");
}

TEST_F(StudyRangesTest, LimitsAreTwoFiniteNumbers) {
    for (const char* limits : {"", "..", "1..", "..2", "1", "1-2", "a..2", "1..b", "1..2..3", "1,5..2"})
        EXPECT_NE(refusal(std::string{"An:set:"} + limits + ":All"), "") << limits;
    for (const char* limits :
         {"0..inf", "-inf..0", "nan..1", "0..nan", "0..1e999", "-1e999..0", "0..infinity"})
        EXPECT_NE(refusal(std::string{"An:set:"} + limits + ":All"), "") << limits;
}

TEST_F(StudyRangesTest, WhatIsNotOfTheFormIsRefused) {
    for (const char* text : {"", "An", "An:set:1..2", "An:set:1..2:All:1996-04-01..1996-04-02:more", ":::"})
        EXPECT_NE(refusal(text), "") << text;
    EXPECT_THAT(refusal("Runoff:multiply:1..2:All"), HasSubstr("'Runoff' is not a variable"));
    EXPECT_THAT(refusal("An:divide:1..2:All"), HasSubstr("'divide' is not an action"));
    for (const char* days : {"", "1996-04-01", "1.4.1996..2.4.1996", "1996-02-30..1996-03-01"})
        EXPECT_NE(refusal(std::string{"An:set:1..2:All:"} + days), "") << days;
}

TEST_F(StudyRangesTest, APeriodHasADayOfTheSimulation) {
    inputs.start = read_date("1996-04-01");
    inputs.end = read_date("1996-09-30");
    EXPECT_EQ(refusal("An:set:1..2:All:1995-01-01..1996-04-01"), "");
    EXPECT_EQ(refusal("An:set:1..2:All:1996-09-30..1997-01-01"), "");
    EXPECT_EQ(refusal("An:set:1..2:All:1995-01-01..1996-03-31"),
              "the simulation, from 1996-04-01 to 1996-09-30, has no day from 1995-01-01 to 1996-03-31");
    EXPECT_THAT(refusal("An:set:1..2:All:1996-10-01..1997-01-01"), HasSubstr("has no day"));
}

TEST_F(StudyRangesTest, ZonesAreThoseOfTheBasin) {
    EXPECT_THAT(refusal("An:set:1..2:D"), HasSubstr("the basin has no zone 'D'"));
    EXPECT_THAT(refusal("An:set:1..2:4"), HasSubstr("the basin has no zone '4'"));
    for (const char* zones : {"", "0", "A,", "AB", "1.5", "-1", "Q", "17", "A;B"})
        EXPECT_NE(refusal(std::string{"An:set:1..2:"} + zones), "") << zones;
}

TEST_F(StudyRangesTest, ABasinwideVariableIsNotChangedByZone) {
    EXPECT_EQ(refusal("Precip:multiply:0.9..1.1:All"), "");
    EXPECT_EQ(refusal("Precip:multiply:0.9..1.1:A,B,C"), "");
    EXPECT_THAT(refusal("Precip:multiply:0.9..1.1:A"), HasSubstr("basinwide: its zones must be All"));
    EXPECT_THAT(refusal("Xcoeff:multiply:0.9..1.1:B"), HasSubstr("basinwide"));
    EXPECT_THAT(refusal("LapseRate:multiply:0.9..1.1:B,C"), HasSubstr("basinwide"));
    inputs.precipitation_basinwide = false;
    EXPECT_EQ(refusal("Precip:multiply:0.9..1.1:A"), "");
    EXPECT_EQ(refusal("Cs:multiply:0.9..1.1:B"), "");
}

TEST_F(StudyRangesTest, AVariableThatTheSimulationDoesNotUseIsRefused) {
    EXPECT_THAT(refusal("Tmax:add:-1..1:All"), HasSubstr("does not use 'Maximum Temperature'"));
    EXPECT_EQ(refusal("Tavg:add:-1..1:All"), "");
    inputs.temperature_max_min = true;
    EXPECT_EQ(refusal("Tmax:add:-1..1:All"), "");
    EXPECT_THAT(refusal("Tavg:add:-1..1:All"), HasSubstr("does not use"));
    inputs.temperature_basinwide = false;
    EXPECT_THAT(refusal("LapseRate:add:-1..1:All"), HasSubstr("does not use"));
}

}  // namespace
}  // namespace nivora
