#include "reports/report_tables.h"

#include "tests/reports/report_fixture.h"

namespace nivora {
namespace {

class ReportTablesTest : public ReportTest {
protected:
    ReportTablesTest() { write_tables(); }

    [[nodiscard]] ReportTables tables() { return {sources().database, {first_day(), last_day()}}; }
    void execute(const std::string& statement) { file_.open().execute(statement); }

    const ReportFields melt_{.table = k_sim_results, .fields = {"ZonalMelt", "M1S"}, .zones = 2};
    const ReportFields runoff_{.table = k_sim_results, .fields = {"DailyQ"}, .zones = 1};
    const ReportFields both_{.table = k_sim_results, .fields = {"M1S", "DailyQ"}, .zones = 2};
};

TEST_F(ReportTablesTest, AReportHasItsFieldsInItsOwnOrder) {
    ReportTables read = tables();
    read.expect(melt_);
    read.expect(runoff_);
    read.expect(both_);
    // Fields of the fixture: ZonalMelt 1, M1S 2, each plus 0.1 for a zone and 0.01 for a day; DailyQ 20 plus
    // the zone plus 0.01 for a day.
    const ReportColumns melt = read.read(melt_);
    EXPECT_FLOAT_EQ(static_cast<float>(melt.at(2, 0, first_day())), 1.21F);
    EXPECT_FLOAT_EQ(static_cast<float>(melt.at(1, 1, last_day())), 2.14F);
    EXPECT_EQ(melt.column(2, 1).size(), 4U);
    const ReportColumns both = read.read(both_);
    EXPECT_FLOAT_EQ(static_cast<float>(both.at(2, 0, first_day())), 2.21F);
    EXPECT_DOUBLE_EQ(both.at(2, 1, first_day()), 22.01);
    EXPECT_DOUBLE_EQ(read.read(runoff_).at(1, 0, last_day()), 21.04);
}

TEST_F(ReportTablesTest, ATableIsReadOnceForAllReportsThatAreExpected) {
    ReportTables read = tables();
    read.expect(melt_);
    read.expect(runoff_);
    EXPECT_DOUBLE_EQ(read.read(runoff_).at(1, 0, first_day()), 21.01);
    execute("UPDATE SimResults SET ZonalMelt = 9");
    EXPECT_FLOAT_EQ(static_cast<float>(read.read(melt_).at(1, 0, first_day())), 1.11F);
    // A report that was not expected reads its own fields.
    EXPECT_EQ(tables().read(melt_).at(1, 0, first_day()), 9.0);
}

TEST_F(ReportTablesTest, AReportOfMoreFieldsOrZonesThanExpectedReadsThemItself) {
    ReportTables read = tables();
    read.expect(runoff_);
    EXPECT_DOUBLE_EQ(read.read(both_).at(2, 1, first_day()), 22.01);
    ReportFields zones = runoff_;
    zones.zones = 2;
    EXPECT_DOUBLE_EQ(read.read(zones).at(2, 0, first_day()), 22.01);
}

TEST_F(ReportTablesTest, AFieldThatCannotBeReadLeavesTheOtherReportsAlone) {
    execute("UPDATE SimResults SET M1S = 'much' WHERE Zone = 2");
    ReportTables read = tables();
    read.expect(runoff_);
    read.expect(melt_);
    EXPECT_DOUBLE_EQ(read.read(runoff_).at(1, 0, first_day()), 21.01);
    EXPECT_EQ(refusal_text([&] { static_cast<void>(read.read(melt_)); }),
              "The field 'M1S' holds text instead of a number.");
}

TEST_F(ReportTablesTest, AMissingTableIsAnErrorOfTheReportThatShowsIt) {
    const ReportFields none{.table = "none", .fields = {"An"}, .zones = 1};
    ReportTables read = tables();
    read.expect(none);
    read.expect(runoff_);
    EXPECT_EQ(refused([&] { static_cast<void>(read.read(none)); }), StoreFault::Missing);
    EXPECT_DOUBLE_EQ(read.read(runoff_).at(1, 0, first_day()), 21.01);
}

}  // namespace
}  // namespace nivora
