#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> field_names(BasinDatabase& database, const std::string& table) {
    std::vector<std::string> names;
    for (const Field& field : database.table_fields(table)) names.push_back(field.name);
    return names;
}

TEST(TableNames, AreComparedWithoutRegardToCase) {
    const BasinFile file;
    BasinDatabase database = file.open();
    database.create_table(parameter_table("Spring 1996"));
    EXPECT_EQ(database.stored_name("SPRING 1996"), "Spring 1996");
    EXPECT_EQ(database.existing_table("SPRING 1996"), "Spring 1996");
    EXPECT_TRUE(database.has_table("spring 1996"));
    EXPECT_TRUE(database.has_table("basindescription"));
    EXPECT_EQ(database.table_fields("sPRING 1996").size(), 11U);
}

TEST(TableNames, AreComparedWithoutRegardToCaseInOtherScripts) {
    const BasinFile file;
    BasinDatabase database = file.open();
    database.create_table(parameter_table("\u00D6tztal"));
    database.create_table(parameter_table("\u0420\u0435\u043A\u0430"));
    EXPECT_EQ(database.stored_name("\u00F6TZTAL"), "\u00D6tztal");
    EXPECT_EQ(database.stored_name("o\u0308tztal"), "\u00D6tztal");
    EXPECT_EQ(database.stored_name("\u0440\u0415\u041A\u0410"), "\u0420\u0435\u043A\u0430");
    EXPECT_EQ(database.table_fields("\u00F6TZTAL").size(), 11U);
    EXPECT_FALSE(database.has_table("otztal"));
}

TEST(TableNames, ThatDifferOnlyInCaseAreInUse) {
    const BasinFile file;
    BasinDatabase database = file.open();
    database.create_table(parameter_table("\u00D6tztal"));
    EXPECT_EQ(refused([&] { database.create_table(parameter_table("\u00F6TZTAL")); }), StoreFault::Exists);
    EXPECT_EQ(refused([&] { database.create_table(parameter_table("physicaldata")); }), StoreFault::Exists);
    EXPECT_EQ(database.table_names().size(), 6U);
}

TEST(TableNames, AreListedInTheOrderOfTheirCreation) {
    const BasinFile file;
    BasinDatabase database = file.open();
    database.create_table(parameter_table("b"));
    database.create_table(parameter_table("a"));
    EXPECT_THAT(database.table_names(), ElementsAre("BasinDescription", "ZoneDescription", "SimulationIndex",
                                                    "PhysicalData", "ClimateScenarioIndex", "b", "a"));
}

TEST(TableNames, OfTheDatabaseEngineItselfAreNotListed) {
    const BasinFile file;
    file.change("CREATE TABLE counted (n INTEGER PRIMARY KEY AUTOINCREMENT); ANALYZE");
    BasinDatabase database = file.open();
    EXPECT_EQ(database.table_names().size(), 6U);
    EXPECT_FALSE(database.has_table("sqlite_sequence"));
}

class UserNames : public testing::TestWithParam<const char*> {};

TEST_P(UserNames, ServeAsTableNames) {
    const BasinFile file;
    const std::string name = GetParam();
    {
        BasinDatabase database = file.open();
        database.create_table(parameter_table(name));
        database.create_daily_index(name);
        std::vector<ParameterRow> rows(1);
        rows[0].tcrit = 0.75F;
        add_rows<ParameterRow>(database, parameter_table(name), rows);
    }
    BasinDatabase database = file.open();
    EXPECT_EQ(database.stored_name(name), name);
    EXPECT_EQ(database.table_fields(name).size(), 11U);
    const auto rows = read_table<ParameterRow>(database, parameter_table(name));
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].tcrit, 0.75F);
    clear_table(database, name);
    EXPECT_TRUE(read_table<ParameterRow>(database, parameter_table(name)).empty());
    database.drop_table(name);
    EXPECT_FALSE(database.has_table(name));
    EXPECT_EQ(database.table_names().size(), 5U);
}

INSTANTIATE_TEST_SUITE_P(WithOddCharacters, UserNames,
                         testing::Values("Spring 1996", "a\"b", "\"", "it's", "''", "100%", "a_b%c", " a ",
                                         "-1", "1996", "select", "table", "a;b", "a--b", "/*", "a,b", "(x)",
                                         "$1", "?", ":name", "@x", "a\\b", "line\nend",
                                         "\u00D6tztal \U0001F3D4", "x\"); DROP TABLE BasinDescription; --",
                                         "sqlit\u00E9_x"));

TEST(CreateTable, RefusesANameThatIsNotText) {
    const BasinFile file;
    BasinDatabase database = file.open();
    EXPECT_NE(refused([&] { database.create_table(parameter_table(std::string{"a\0b", 3})); }), std::nullopt);
    EXPECT_EQ(database.table_names().size(), 5U);
}

TEST(CreateTable, RefusesANameThatTheDatabaseEngineKeepsForItself) {
    const BasinFile file;
    BasinDatabase database = file.open();
    EXPECT_EQ(refused([&] { database.create_table(parameter_table("sqlite_run")); }), StoreFault::Statement);
}

TEST(CreateTable, RefusesATableThatExists) {
    const BasinFile file;
    BasinDatabase database = file.open();
    database.create_table(sim_results_table());
    EXPECT_EQ(refused([&] { database.create_table(sim_results_table()); }), StoreFault::Exists);
    EXPECT_THAT(refusal_text([&] { database.create_table(sim_results_table()); }), HasSubstr("'SimResults'"));
}

TEST(TableFields, ComeByPositionWithTheirTypes) {
    const BasinFile file;
    BasinDatabase database = file.open();
    database.create_table({"All kinds",
                           {{"i", FieldType::Integer},
                            {"l", FieldType::Long},
                            {"s", FieldType::Single},
                            {"d", FieldType::Double},
                            {"t", FieldType::Date},
                            {"x", FieldType::Text, 7},
                            {"y", FieldType::Text}}});
    const std::vector<Field> fields = database.table_fields("All kinds");
    ASSERT_EQ(fields.size(), 7U);
    EXPECT_THAT(field_names(database, "All kinds"), ElementsAre("i", "l", "s", "d", "t", "x", "y"));
    EXPECT_EQ(fields[0].type, FieldType::Integer);
    EXPECT_EQ(fields[1].type, FieldType::Long);
    EXPECT_EQ(fields[2].type, FieldType::Single);
    EXPECT_EQ(fields[3].type, FieldType::Double);
    EXPECT_EQ(fields[4].type, FieldType::Date);
    EXPECT_EQ(fields[5].type, FieldType::Text);
    EXPECT_EQ(fields[5].width, 7);
    EXPECT_EQ(fields[6].type, FieldType::Text);
    EXPECT_EQ(fields[6].width, 0);
}

TEST(FieldNames, AreComparedWithoutRegardToCase) {
    const BasinFile file;
    BasinDatabase database = file.open();
    database.create_table(sim_results_table());
    database.execute("INSERT INTO SimResults (CPr, Ycoeff) VALUES (1.5, 0.25)");
    EXPECT_EQ(database.sql().execAndGet("SELECT Cpr FROM simresults").getDouble(), 1.5);
    EXPECT_EQ(database.sql().execAndGet("SELECT YCOEFF FROM SIMRESULTS").getDouble(), 0.25);
}

TEST(MissingTable, IsRefusedByEveryCallThatNeedsOne) {
    const BasinFile file;
    BasinDatabase database = file.open();
    EXPECT_EQ(database.stored_name("Run"), std::nullopt);
    EXPECT_FALSE(database.has_table("Run"));
    EXPECT_FALSE(database.has_table(""));
    EXPECT_EQ(refused([&] { static_cast<void>(database.existing_table("Run")); }), StoreFault::Missing);
    const std::vector<ParameterRow> rows(1);
    EXPECT_EQ(refused([&] { static_cast<void>(database.table_fields("Run")); }), StoreFault::Missing);
    EXPECT_EQ(refused([&] { database.drop_table("Run"); }), StoreFault::Missing);
    EXPECT_EQ(refused([&] { database.create_daily_index("Run"); }), StoreFault::Missing);
    EXPECT_EQ(refused([&] { clear_table(database, "Run"); }), StoreFault::Missing);
    EXPECT_EQ(refused([&] { static_cast<void>(read_table<ParameterRow>(database, parameter_table("Run"))); }),
              StoreFault::Missing);
    EXPECT_EQ(refused([&] { add_rows<ParameterRow>(database, parameter_table("Run"), rows); }),
              StoreFault::Missing);
    EXPECT_THAT(refusal_text([&] { database.drop_table("Run"); }), HasSubstr("'Run'"));
}

TEST(DropTable, TakesTheNameInAnyCase) {
    const BasinFile file;
    BasinDatabase database = file.open();
    database.create_table(parameter_table("\u00D6tztal"));
    database.drop_table("\u00F6TZTAL");
    EXPECT_EQ(database.table_names().size(), 5U);
}

TEST(DropTable, RemovesItsIndexToo) {
    const BasinFile file;
    BasinDatabase database = file.open();
    for (int round = 0; round < 2; ++round) {
        database.create_table(parameter_table("Run"));
        database.create_daily_index("run");
        database.drop_table("Run");
    }
    EXPECT_THAT(file.column("SELECT count(*) FROM sqlite_schema WHERE type = 'index'"), ElementsAre("1"));
}

TEST(DropTable, WhileItIsReadFailsAsBusy) {
    const BasinFile file;
    BasinDatabase database = file.open();
    SQLite::Statement reading{database.sql(), "SELECT * FROM BasinDescription"};
    ASSERT_TRUE(reading.executeStep());
    EXPECT_EQ(refused([&] { database.drop_table(k_basin_description); }), StoreFault::Busy);
    EXPECT_TRUE(database.has_table(k_basin_description));
}

TEST(DailyIndex, OrdersTheReadingOfADailyTable) {
    const BasinFile file;
    BasinDatabase database = file.open();
    database.create_table(parameter_table("Run"));
    const std::string query = "EXPLAIN QUERY PLAN SELECT Tcrit FROM Run WHERE Zone = 1 AND Date >= 36526";
    const auto plan = [&] {
        SQLite::Statement steps{database.sql(), query};
        steps.executeStep();
        return steps.getColumn("detail").getString();
    };
    EXPECT_THAT(plan(), testing::StartsWith("SCAN"));
    database.create_daily_index("Run");
    EXPECT_THAT(plan(), HasSubstr("Run.key"));
}

TEST(DailyIndex, IsThereForTheObservedDataFromTheStart) {
    const BasinFile file;
    EXPECT_THAT(file.column("SELECT tbl_name FROM sqlite_schema WHERE type = 'index'"),
                ElementsAre("PhysicalData"));
}

TEST(Execute, RefusesWhatIsNotAStatement) {
    const BasinFile file;
    BasinDatabase database = file.open();
    EXPECT_EQ(refused([&] { database.execute("SELEKT 1"); }), StoreFault::Statement);
    EXPECT_EQ(refused([&] { database.execute("SELECT NoField FROM BasinDescription"); }),
              StoreFault::Statement);
}

}  // namespace
}  // namespace nivora
