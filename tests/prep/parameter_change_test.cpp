// One parameter changed in many zones and days at once.
#include "prep/parameter_change.h"

#include "tests/prep/prep_fixture.h"

#include <cmath>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;

/// The parameter table "wet" of two zones from 30 September to 2 October 1980; day 0 is 30 September. The
/// degree-day factors are 0.5, 0.25 and 0.1 in zone 1, and 0.4, missing and 0.2 in zone 2.
class ParameterChangeTest : public PrepTest {
protected:
    ParameterChangeTest() {
        make_parameter_table("wet");
        select("wet", october(0), october(2));
        add("wet", 1, 0, 0.5F);
        add("wet", 1, 1, 0.25F);
        add("wet", 1, 2, 0.1F);
        add("wet", 2, 0, 0.4F);
        add("wet", 2, 1, k_missing);
        add("wet", 2, 2, 0.2F);
        basin_.Output_Valid = true;
    }

    void add(const std::string& table, std::int16_t zone, int day, float an) {
        ParameterRow row = parameter_day(zone, october(day), an);
        row.rca = 1;
        row.lag_hours = 18.0F;
        row.xcoeff = 0.9;
        add_parameters(table, {row});
    }
    static ParameterChange change(ParameterAction action, double number, const char* field = "An") {
        return {.field = field,
                .action = action,
                .number = number,
                .zones = {1, 2},
                .days = {october(0), october(2)}};
    }
    ParameterPreview preview(const ParameterChange& wanted) {
        return preview_parameter_change(database_, "wet", wanted);
    }
    ParameterPreview make(const ParameterChange& wanted) {
        return make_parameter_change(basin_, database_, "wet", wanted);
    }
    /// The stored values of a field, zone by zone.
    std::vector<std::string> stored(const std::string& field = "An") {
        return rows("SELECT " + field + " FROM wet ORDER BY Zone, Date");
    }
};

TEST_F(ParameterChangeTest, APreviewChangesNothing) {
    const auto before = stored();
    const ParameterPreview shown = preview(change(ParameterAction::Multiply, 2.0));
    EXPECT_EQ(stored(), before);
    EXPECT_FALSE(basin_.Basin_Changed);
    EXPECT_EQ(shown.rows, 6);
    EXPECT_EQ(shown.changed, 5);
    EXPECT_EQ(shown.missing, 1);
    EXPECT_EQ(shown.refused, 0);
    EXPECT_THAT(shown.refusal, IsEmpty());
    // 0.1 to 0.5 as Singles; twice a Single is exact
    EXPECT_THAT(shown.before, Optional(ValueRange{as_double(0.1F), 0.5}));
    EXPECT_THAT(shown.after, Optional(ValueRange{2.0 * as_double(0.1F), 1.0}));
    ASSERT_EQ(shown.first.size(), 6U);
    EXPECT_EQ(shown.first[1].zone, 1);
    EXPECT_EQ(shown.first[1].date, october(1));
    EXPECT_EQ(shown.first[1].before, 0.25);
    EXPECT_EQ(shown.first[1].after, 0.5);
    EXPECT_EQ(shown.first[3].zone, 2);
    EXPECT_TRUE(std::isnan(shown.first[4].before));
    EXPECT_TRUE(std::isnan(shown.first[4].after));
}

TEST_F(ParameterChangeTest, MultiplyLeavesMissingValues) {
    make(change(ParameterAction::Multiply, 2.0));
    EXPECT_THAT(stored(), ElementsAre("1.0", "0.5", "0.200000002980232", "0.800000011920929", "-",
                                      "0.400000005960464"));
}

TEST_F(ParameterChangeTest, AddRoundsToTheSingleThatAnEditGives) {
    make(change(ParameterAction::Add, 0.1));
    const auto values = read_table<ParameterRow>(database_, parameter_table("wet"));
    EXPECT_EQ(values[0].an, 0.6F);
    EXPECT_EQ(values[1].an, 0.35F);
    EXPECT_EQ(values[2].an, 0.2F);
    EXPECT_TRUE(is_missing(values[4].an));
}

TEST_F(ParameterChangeTest, SetFillsMissingValues) {
    const ParameterPreview made = make(change(ParameterAction::Set, 0.25));
    EXPECT_THAT(stored(), ElementsAre("0.25", "0.25", "0.25", "0.25", "0.25", "0.25"));
    EXPECT_EQ(made.changed, 5) << "one row had the value already";
    EXPECT_EQ(made.missing, 0);
    EXPECT_THAT(made.after, Optional(ValueRange{0.25, 0.25}));
}

TEST_F(ParameterChangeTest, ReachesTheChosenZonesDaysAndMonths) {
    ParameterChange wanted = change(ParameterAction::Set, 9.0);
    wanted.zones = {2};
    wanted.days = {october(1), october(2)};
    EXPECT_EQ(make(wanted).rows, 2);
    EXPECT_THAT(stored(), ElementsAre("0.5", "0.25", "0.100000001490116", "0.400000005960464", "9.0", "9.0"));
    wanted = change(ParameterAction::Set, 7.0);
    wanted.months = {9};
    EXPECT_EQ(make(wanted).rows, 2);
    EXPECT_THAT(stored(), ElementsAre("7.0", "0.25", "0.100000001490116", "7.0", "9.0", "9.0"));
    wanted.months = {1, 12};
    EXPECT_EQ(make(wanted).rows, 0);
}

TEST_F(ParameterChangeTest, LeavesOtherParametersAlone) {
    make(change(ParameterAction::Set, 9.0));
    EXPECT_THAT(rows("SELECT DISTINCT RCA, LagTime, Xcoeff, Tcrit FROM wet"), ElementsAre("1 18.0 0.9 -"));
}

TEST_F(ParameterChangeTest, AValueThatACellRefusesRefusesTheWholeChange) {
    // A lag time lies between 0 and 42 hours: 18 + 24 is the longest that a cell takes.
    EXPECT_EQ(preview(change(ParameterAction::Add, 24.0, "LagTime")).refused, 0);
    const ParameterPreview refused = make(change(ParameterAction::Add, 24.5, "LagTime"));
    EXPECT_EQ(refused.refused, 6);
    EXPECT_EQ(refused.changed, 0);
    EXPECT_THAT(refused.refusal, HasSubstr("Zone A, 09/30/1980: 18 would become 42.5, but "));
    EXPECT_THAT(stored("DISTINCT LagTime"), ElementsAre("18.0"));
    EXPECT_FALSE(basin_.Basin_Changed);
    EXPECT_TRUE(is_free());
}

TEST_F(ParameterChangeTest, OneRefusedValueKeepsTheOthers) {
    // Only 0.5 grows beyond the largest Single, which is about 3.4E+38.
    const auto before = stored();
    const ParameterPreview refused = make(change(ParameterAction::Multiply, 8.0e38));
    EXPECT_EQ(refused.refused, 1);
    EXPECT_THAT(refused.refusal, HasSubstr("the number is too large"));
    EXPECT_EQ(stored(), before);
    EXPECT_TRUE(basin_.Output_Valid);
}

TEST_F(ParameterChangeTest, TheSwitchTakesWholeNumbersOnly) {
    EXPECT_THAT(preview(change(ParameterAction::Set, 0.5, "RCA")).refusal, HasSubstr("whole number"));
    EXPECT_EQ(preview(change(ParameterAction::Set, 2.0, "RCA")).refused, 6);
    make(change(ParameterAction::Set, 0.0, "rca"));
    EXPECT_THAT(rows("SELECT DISTINCT RCA, typeof(RCA) FROM wet"), ElementsAre("0 integer"));
}

TEST_F(ParameterChangeTest, CoefficientsKeepTheirDoubles) {
    make(change(ParameterAction::Multiply, 1.1, "Xcoeff"));
    const auto values = read_table<ParameterRow>(database_, parameter_table("wet"));
    EXPECT_EQ(values[0].xcoeff, 0.9 * 1.1);
}

TEST_F(ParameterChangeTest, MarksTheBasinAsAnEditDoes) {
    make(change(ParameterAction::Add, 0.0));
    EXPECT_FALSE(basin_.Basin_Changed) << "no value became another";
    make(change(ParameterAction::Add, 1.0));
    EXPECT_TRUE(basin_.Basin_Changed);
    EXPECT_TRUE(basin_.Input_Changed);
    EXPECT_FALSE(basin_.Output_Valid);
}

TEST_F(ParameterChangeTest, ThatTheStoreRefusesChangesNothing) {
    const auto before = stored();
    database_.execute(
        "CREATE TEMP TRIGGER full BEFORE UPDATE ON main.wet WHEN OLD.Zone = 2 BEGIN SELECT RAISE(ABORT, 'no "
        "room'); END");
    EXPECT_TRUE(refused([&] { make(change(ParameterAction::Set, 9.0)); }).has_value());
    EXPECT_EQ(stored(), before);
    EXPECT_FALSE(basin_.Basin_Changed);
    EXPECT_TRUE(is_free());
}

TEST_F(ParameterChangeTest, NeedsAParameterAndATable) {
    EXPECT_EQ(refused([&] { preview(change(ParameterAction::Set, 1.0, "Runoff")); }), StoreFault::Missing);
    database_.drop_table("wet");
    EXPECT_EQ(refused([&] { preview(change(ParameterAction::Set, 1.0)); }), StoreFault::Missing);
}

TEST_F(ParameterChangeTest, APreviewListsTheFirstRows) {
    for (int day = 3; day < 120; ++day) {
        add("wet", 1, day, 0.5F);
        add("wet", 2, day, 0.5F);
    }
    ParameterChange wanted = change(ParameterAction::Set, 1.0);
    wanted.days = {october(0), october(119)};
    const ParameterPreview shown = preview(wanted);
    EXPECT_EQ(shown.rows, 240);
    ASSERT_EQ(shown.first.size(), 200U);
    EXPECT_EQ(shown.first.back().zone, 2);
    EXPECT_EQ(shown.first.back().date, october(79));
}

TEST_F(ParameterChangeTest, NamesTheNineParameters) {
    std::vector<std::string> fields;
    for (const DailyColumn& column : parameter_columns()) fields.push_back(column.field);
    EXPECT_THAT(fields,
                ElementsAre("LapseRate", "Tcrit", "AN", "LagTime", "CS", "Cr", "RCA", "Xcoeff", "Ycoeff"));
    EXPECT_EQ(parameter_name("AN"), "Degree day factor");
    EXPECT_EQ(parameter_name("SCA"), "SCA");
}

}  // namespace
}  // namespace nivora
