// Tables of the open basin that are written to CSV files and read from them.
#include "session/table_files.h"

#include "base/durable_file.h"
#include "base/scripted_dialogs.h"
#include "prep/table_sample.h"
#include "store/basin_store.h"
#include "store/monthly_table.h"
#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A basin of two zones with two days of daily variables in each: on day 1 of October 1980 a precipitation of
/// 0.65 in zone 1 and none stored in zone 2, on day 2 one of 1 in both.
class TableFilesTest : public testing::Test {
protected:
    TableFilesTest() {
        session_.basin.Work_File = file_.path();
        session_.basin.Basin_File = user_.path() / "alp.mdb";
        session_.basin.ZoneCount = 2;
        session_.basin.basin_units = Units::English;
        session_.file_names.begin_in(user_.path());
        BasinDatabase database = file_.open();
        BasinDescription basin = read_basin_description(database);
        basin.zones = 2;
        basin.units = Units::English;
        write_basin_description(database, basin);
        std::vector<PhysicalRow> rows;
        for (std::int16_t zone = 1; zone <= 2; ++zone) {
            for (int day = 1; day <= 2; ++day) {
                PhysicalRow row;
                row.zone = zone;
                row.date = first_ + day - 1;
                row.tavg = 33.3F;
                if (day == 2) row.precip = 1.0F;
                if (day == 1 && zone == 1) row.precip = 0.65F;
                rows.push_back(row);
            }
        }
        add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
    }

    [[nodiscard]] fs::path in_folder(const char* name) const { return user_.path() / path_from_utf8(name); }
    static std::string text_of(const fs::path& file) { return read_whole_file(file, 1U << 24U); }
    [[nodiscard]] LoadResult load(const fs::path& file, const TableLoad& wanted) const {
        BasinDatabase database = file_.open();
        return load_table(database, bytes_of_file(file), wanted, true);
    }

    /// The table of averages, and the simulation "wet" with its parameters.
    void add_tables() {
        BasinDatabase database = file_.open();
        Ensure_Monthly_Table(database);
        database.create_table(parameter_table("wet"));
        Simulation wet;
        wet.name = "wet";
        wet.units = Units::English;
        session_.basin.simulations.push_back(wet);
        add_rows<Simulation>(database, template_table(k_simulation_index), std::vector<Simulation>{wet});
    }

    const DayCount first_ = *day_count({1980, 10, 1});
    BasinFile file_;
    TemporaryFolder user_;
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
};

TEST_F(TableFilesTest, AWrittenTableHasUnitsInItsHeadersAndReadsBackEqual) {
    const fs::path file = in_folder("Schnee \"ü\" |x.csv");
    write_table(session_.basin, k_physical_data, true, file);
    const std::string text = text_of(file);
    EXPECT_THAT(
        text,
        StartsWith(
            "Zone,Date,Runoff (ft³/s),Tmax (°F),Tmin (°F),Tavg (°F),Precip (inches),SCA,NetRadiation\n"));
    EXPECT_THAT(text, HasSubstr("\n1,1980-10-01,,,,33.3,0.65,"));
    const LoadResult result = load(file, {.table = k_physical_data});
    EXPECT_EQ(result.equal, 4);
    EXPECT_EQ(result.added + result.changed + result.refused, 0);
}

TEST_F(TableFilesTest, WithoutUnitsTheHeadersAreTheNamesOfTheFields) {
    write_table(session_.basin, k_physical_data, false, in_folder("plain.csv"));
    EXPECT_THAT(text_of(in_folder("plain.csv")), StartsWith("Zone,Date,Runoff,Tmax,Tmin,Tavg,Precip,SCA,"));
}

TEST_F(TableFilesTest, MonthlyAveragesAndParametersReadBackEqual) {
    add_tables();
    {
        BasinDatabase database = file_.open();
        ParameterRow row;
        row.zone = 1;
        row.date = first_;
        row.lapse_rate = 3.3F;
        row.an = 0.21F;
        add_rows<ParameterRow>(database, parameter_table("wet"), std::vector<ParameterRow>{row});
        database.execute("UPDATE BasinAverages SET PrecipN = 0.7 WHERE Zone = 1 AND Month = 'Jan'");
    }
    constexpr int k_months_of_zones = 24;
    // Each zone has twelve months.
    for (const auto& [table, rows] : {std::pair{k_basin_averages, k_months_of_zones}, std::pair{"wet", 1}}) {
        SCOPED_TRACE(table);
        const fs::path file = in_folder("table.csv");
        write_table(session_.basin, table, true, file);
        const LoadResult result = load(file, {.table = table});
        EXPECT_EQ(result.equal, rows);
        EXPECT_EQ(result.added + result.changed + result.refused, 0);
    }
    EXPECT_THAT(text_of(in_folder("table.csv")),
                AllOf(HasSubstr(",LapseRate (°F per 1000 ft),"), HasSubstr(",LagTime (hours),")));
}

TEST_F(TableFilesTest, TheBasinIsNeverReadOrReplacedAsATable) {
    EXPECT_THAT(unreadable_table(session_.basin, file_.path()), HasSubstr("the open basin itself"));
    EXPECT_THAT(unreadable_table(session_.basin, user_.path()), HasSubstr("no file with a table"));
    EXPECT_THAT(unreadable_table(session_.basin, in_folder("absent.csv")), HasSubstr("no file with a table"));
    const std::string before = text_of(file_.path());
    EXPECT_THROW(write_table(session_.basin, k_physical_data, true, file_.path()), FileError);
    fs::create_symlink(file_.path(), in_folder("link.csv"));
    EXPECT_THAT(unreadable_table(session_.basin, in_folder("link.csv")), HasSubstr("the open basin itself"));
    EXPECT_THROW(write_table(session_.basin, k_physical_data, true, in_folder("link.csv")), FileError);
    EXPECT_EQ(text_of(file_.path()), before);
}

TEST_F(TableFilesTest, ResultsCanBeWrittenWhileTheyAreThoseOfTheLastRun) {
    const auto names = [](const std::vector<ChosenTable>& tables) {
        std::vector<std::string> captions;
        captions.reserve(tables.size());
        for (const ChosenTable& each : tables) captions.push_back(each.caption);
        return captions;
    };
    EXPECT_THAT(names(writable_tables(session_.basin)), ElementsAre("Daily variables"))
        << "a fresh basin has no other";
    add_tables();
    EXPECT_THAT(names(writable_tables(session_.basin)),
                ElementsAre("Daily variables", "Long-term monthly averages", "Parameters of wet"));
    session_.basin.Output_Valid = true;
    EXPECT_THAT(names(writable_tables(session_.basin)),
                ElementsAre("Daily variables", "Long-term monthly averages", "Parameters of wet",
                            "Results of the last run"));
    EXPECT_THAT(names(loadable_tables(session_.basin)),
                ElementsAre("Daily variables", "Long-term monthly averages", "Parameters of wet"));
}

TEST_F(TableFilesTest, ALoadedTableIsAChangedInput) {
    session_.basin.Output_Valid = true;
    session_.run.ClimateStep = 4;
    dialogs_.then(Answer::No);
    EXPECT_FALSE(results_may_be_lost(session_));
    EXPECT_TRUE(session_.basin.Output_Valid);
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(results_may_be_lost(session_));
    table_was_loaded(session_);
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_EQ(session_.run.ClimateStep, 0);
    EXPECT_TRUE(results_may_be_lost(session_)) << "there is nothing left to lose";
}

TEST_F(TableFilesTest, HeadersSayWhatColumnsAreAndASecondOneOfAMeaningIsLeftToTheUser) {
    const TableSample sample = read_sample(
        bytes_of_text("zone;DATE;Precip (mm);precip;Wind\n1;1980-10-01;6,5;1;9\n2;\n"), std::nullopt, 5);
    EXPECT_EQ(sample.separator, ';');
    EXPECT_EQ(sample.rows.size(), 2U);
    EXPECT_EQ(sample.fault, "");
    BasinDatabase database = file_.open();
    const auto choices = guessed_columns(sample, column_meanings(database, k_physical_data, false));
    std::vector<std::string> found;
    found.reserve(choices.size());
    for (const ColumnChoice& choice : choices) found.push_back(choice.meaning);
    EXPECT_THAT(found, ElementsAre("Zone", "Date", "Precip", "", ""));
}

TEST_F(TableFilesTest, ASampleEndsAtItsRowsAndAtWhatIsNoText) {
    EXPECT_EQ(read_sample(bytes_of_text("a,b\n1,2\n3,4\n5,6\n"), std::nullopt, 2).rows.size(), 2U);
    EXPECT_THAT(read_sample(bytes_of_text("SQLite format 3"), std::nullopt, 2).fault, StartsWith("Line 1: "));
    EXPECT_EQ(read_sample(bytes_of_text(""), std::nullopt, 2).fault, "The file is empty.");
}

TEST_F(TableFilesTest, TwoUnitsOfOneFieldAreRefused) {
    TableLoad wanted{.table = k_physical_data, .wide_field = "Precip"};
    state_columns(wanted, {{.header = "Date", .meaning = "Date", .unit = {}},
                           {.header = "P1", .meaning = "A", .unit = "mm"},
                           {.header = "P2", .meaning = "B", .unit = "cm"}});
    write_whole_file(in_folder("wide.csv"), "Date,P1,P2\n1980-10-03,25.4,50.8\n");
    EXPECT_THROW(static_cast<void>(load(in_folder("wide.csv"), wanted)), TableFault);
    state_columns(wanted, {{.header = "Date", .meaning = "Date", .unit = {}},
                           {.header = "P1", .meaning = "A", .unit = "mm"},
                           {.header = "P2", .meaning = "B", .unit = "mm"}});
    // 25.4 mm are 1 in, 50.8 mm are 2 in.
    EXPECT_EQ(load(in_folder("wide.csv"), wanted).added, 2);
    EXPECT_THAT(file_.column("SELECT Precip FROM PhysicalData ORDER BY rowid DESC LIMIT 2"),
                ElementsAre("2.0", "1.0"));
}

TEST_F(TableFilesTest, TwoColumnsOfDaysAreRefused) {
    TableLoad wanted{.table = k_physical_data, .zone = "A"};
    state_columns(wanted, {{.header = "Begin", .meaning = "Date", .unit = {}},
                           {.header = "End", .meaning = "Date", .unit = {}},
                           {.header = "P", .meaning = "Precip", .unit = {}}});
    write_whole_file(in_folder("two.csv"), "Begin,End,P\n1980-10-03,1980-10-04,1\n");
    EXPECT_THROW(static_cast<void>(load(in_folder("two.csv"), wanted)), TableFault);
    EXPECT_THAT(file_.column("SELECT 1 FROM PhysicalData WHERE Date > " + std::to_string(first_ + 1)),
                IsEmpty());
}

}  // namespace
}  // namespace nivora
