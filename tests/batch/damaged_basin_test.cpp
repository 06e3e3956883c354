// Basins that were forged, or damaged by a disk: what a command may change, and what salvage recovers.
#include "tests/batch/run_basin.h"
#include "tests/support/killed_change.h"

#include <SQLiteCpp/Statement.h>
#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

class DamagedBasin : public YearBasinTest {
protected:
    [[nodiscard]] std::string salvaged_rows(const std::string& table) const {
        const BatchResult result = batch({"export", salvaged(), table, "--csv", basin.path("s.csv")});
        EXPECT_EQ(result.status, 0) << table << ": " << result.err;
        return result.status == 0 ? file_bytes(basin.path("s.csv")) : std::string{};
    }
    /// Runs statements with a writable list of tables, as a hostile program can.
    void forge(const std::string& statements) const {
        SQLite::Database sql{file(), SQLite::OPEN_READWRITE};
        sql.exec("PRAGMA writable_schema = ON");
        sql.exec(statements);
    }
    [[nodiscard]] std::int64_t number(const std::string& query) const {
        SQLite::Database sql{file(), SQLite::OPEN_READONLY};
        return sql.execAndGet(query).getInt64();
    }
    void damage_results() const {
        ASSERT_EQ(basin.run().status, 0);
        damage_first_page(file(), "SimResults", std::string(64, '\x7f'));
        ASSERT_THAT(batch({"check", file()}).out, HasSubstr("SimResults: "));
    }
    /// Gives a row another number by changing the file's bytes; both numbers take two bytes there.
    void renumber(const std::string& table, int row, int other) const {
        const auto varint = [](int value) {
            return std::string{static_cast<char>(0x80 | value >> 7), static_cast<char>(value & 0x7F)};
        };
        const std::string before = basin.bytes();
        forge(fmt_update(table, row));
        const std::string marked = basin.bytes();
        basin.folder().write("basin.mdb", before);
        std::size_t changed = 0;  // the first changed byte after the file's header is in the row
        for (std::size_t at = 4096; at < before.size() && changed == 0; ++at)
            if (before[at] != marked[at]) changed = at;
        ASSERT_GT(changed, 0U);
        const std::size_t at = before.rfind(varint(row), changed);
        ASSERT_LT(changed - at, 60U);
        put(at, varint(other));
    }
    static std::string fmt_update(const std::string& table, int row) {
        return "UPDATE " + table + " SET Date = Date + 1 WHERE rowid = " + std::to_string(row);
    }
};

TEST_F(DamagedBasin, AForgedDeclarationCannotReachAnotherFile) {
    const std::string other = basin.path("other.mdb");
    fs::copy_file(file(), other);
    const std::string kept = file_bytes(other);
    damage_results();
    for (const char* type : {"table", "index"}) {
        SCOPED_TRACE(type);
        const bool table = std::string{type} == "table";
        forge(table ? "CREATE TABLE more (a)" : "CREATE INDEX more_key ON more (a)");
        forge("UPDATE sqlite_schema SET sql = sql || '; COMMIT; ATTACH ''" + other +
              "'' AS o; DROP TABLE o.PhysicalData; BEGIN' WHERE name = '" + (table ? "more" : "more_key") +
              "'");
        const std::string before = basin.bytes();
        const BatchResult result = basin.run();
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.err, HasSubstr("is not a statement that creates it"));
        EXPECT_TRUE(file_bytes(other) == kept);
        EXPECT_TRUE(basin.bytes() == before);
        if (table) forge("UPDATE sqlite_schema SET sql = 'CREATE TABLE more (a)' WHERE name = 'more'");
    }
}

TEST_F(DamagedBasin, ATableThatAUserAddedIsKeptIfTheResultsAreReplaced) {
    forge("CREATE TABLE more (a PRIMARY KEY, b DEFAULT 'x; y') WITHOUT ROWID");
    forge("DROP TABLE more");
    forge("CREATE TABLE more (a UNIQUE, b DEFAULT 'x; y'); INSERT INTO more (a) VALUES (7)");
    forge("CREATE INDEX more_key ON more (b)");
    damage_results();
    EXPECT_EQ(basin.run().status, 0);
    EXPECT_EQ(number("SELECT a FROM more WHERE b = 'x; y'"), 7);
    EXPECT_EQ(number("SELECT count(*) FROM sqlite_schema WHERE name IN ('more_key', 'alder.key', "
                     "'PhysicalData.key')"),
              3);
    EXPECT_EQ(batch({"check", file()}).status, 0);
}

TEST_F(DamagedBasin, SalvageLeavesATableItsNameIfAnotherListedOneIsLost) {
    basin.execute("ALTER TABLE alder RENAME TO \"1996\"");
    basin.execute("UPDATE SimulationIndex SET SimName = '1996'");
    basin.execute("UPDATE ClimateScenarioIndex SET SimulationFile = '1996'");
    basin.execute("INSERT INTO SimulationIndex (SimName) VALUES ('1997')");
    basin.execute(
        "INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile) VALUES ('1996', 'warmes')");
    const std::string sound = basin.exported("1996");
    const BatchResult result = salvage();
    EXPECT_THAT(result.out, HasSubstr("1996: 366 rows\n"));
    EXPECT_THAT(result.out, Not(HasSubstr("its name")));
    EXPECT_TRUE(salvaged_rows("1996") == sound);
    EXPECT_NE(salvaged_rows("warmer"), "");
}

TEST_F(DamagedBasin, SalvageRestoresTheNameAndTheIndexOfATable) {
    forge(
        "UPDATE sqlite_schema SET name = 'aldes', tbl_name = 'aldes', "
        "sql = replace(sql, 'alder', 'aldes') WHERE name = 'alder'");
    const BatchResult result = salvage();
    EXPECT_THAT(result.out, HasSubstr("its name, which was 'aldes'"));
    SQLite::Database made{salvaged(), SQLite::OPEN_READONLY};
    EXPECT_EQ(made.execAndGet("SELECT group_concat(name) FROM sqlite_schema WHERE type = 'index' AND "
                              "tbl_name = 'alder'")
                  .getString(),
              "alder.key");
}

TEST_F(DamagedBasin, SalvageContinuesAfterARowWithAWrongNumber) {
    const std::string sound = basin.exported("PhysicalData");
    for (const int wrong : {4396, 316, 172}) {
        SCOPED_TRACE(wrong);
        const std::string before = basin.bytes();
        ASSERT_NO_FATAL_FAILURE(renumber("PhysicalData", 300, wrong));
        const BatchResult result = salvage();
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.out, HasSubstr("PhysicalData: 366 rows\n"));
        EXPECT_THAT(result.out,
                    HasSubstr("the number of the row after row 299, which was " + std::to_string(wrong)));
        EXPECT_THAT(result.out, Not(HasSubstr("can't be read")));
        EXPECT_TRUE(salvaged_rows("PhysicalData") == sound);
        basin.folder().write("basin.mdb", before);
    }
}

TEST_F(DamagedBasin, SalvageNamesTheRowsOfALostPage) {
    // The rows of a page are those between the last row of the page
    // before and the first row of the page after.
    const std::string before = basin.bytes();
    const std::int64_t root = number("SELECT rootpage FROM sqlite_schema WHERE name = 'PhysicalData'");
    const std::size_t at = static_cast<std::size_t>(root - 1) * 4096;
    const auto byte = [&](std::size_t place) {
        return static_cast<std::size_t>(static_cast<unsigned char>(before[place]));
    };
    ASSERT_EQ(byte(at), 5U) << "a page that leads to others";
    const std::size_t second = at + byte(at + 14) * 256 + byte(at + 15);
    const std::size_t page = byte(second + 2) * 256 + byte(second + 3);
    put((page - 1) * 4096, std::string(4096, '\0'));
    const BatchResult result = salvage();
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.out, testing::ContainsRegex("PhysicalData: [12][0-9]+ rows\n *not copied: rows "
                                                   "[0-9]+ to [0-9]+, which can't be read\n"));
}

TEST_F(DamagedBasin, SalvageEndsWhereTheLargestRowNumberIsDamaged) {
    forge("INSERT INTO PhysicalData (rowid, Zone, Date) VALUES (9223372036854775807, 1, 40000)");
    EXPECT_THAT(salvage().out, HasSubstr("PhysicalData: 367 rows\n"));
}

TEST_F(DamagedBasin, ARefusedCommandKeepsTheFileWithItsDamagedResults) {
    damage_results();
    const std::string before = basin.bytes();
    const auto kept = [&](const BatchResult& result, const char* what) {
        EXPECT_EQ(result.status, 1) << what;
        EXPECT_NE(result.err, "") << what;
        EXPECT_TRUE(basin.bytes() == before) << what;
    };
    kept(batch({"run", file(), "--simulation", "birch"}), "simulation");
    kept(climate({}, "birch"), "simulation of an evaluation");
    kept(climate({}, "alder", "colder"), "scenario");
    kept(basin.run({"--kind", "melt-season", "--forecast", "12"}), "interval");
}

TEST_F(DamagedBasin, ARefusedPeriodKeepsTheFileWithItsDamagedResults) {
    damage_results();
    for (const char* change : {"UPDATE SimulationIndex SET SimEndDate = SimStartDate + 366",
                               "UPDATE SimulationIndex SET SimEndDate = SimStartDate + 365; UPDATE "
                               "ClimateScenarioIndex SET WinterEndDate = 1"}) {
        basin.execute(change);
        const std::string before = basin.bytes();
        EXPECT_EQ(climate().status, 1);
        EXPECT_TRUE(basin.bytes() == before) << change;
        if (std::string{change}.find("Winter") != std::string::npos) break;
        EXPECT_EQ(basin.run().status, 1);
        EXPECT_TRUE(basin.bytes() == before) << change;
    }
}

TEST_F(DamagedBasin, AZoneWithoutAreaRefusesTheRunBeforeTheResultsAreTouched) {
    ASSERT_EQ(basin.run().status, 0);
    for (const char* area : {"0", "-5", "NULL"}) {
        basin.execute(std::string{"UPDATE ZoneDescription SET ZoneArea = "} + area);
        const std::string before = basin.bytes();
        for (const BatchResult& result : {basin.run(), climate()}) {
            EXPECT_EQ(result.status, 1) << area;
            EXPECT_EQ(result.err, "Invalid zone description: Zone area must be greater than zero! [OK]\n");
            EXPECT_TRUE(basin.bytes() == before) << area;
        }
    }
}

#ifndef _WIN32
TEST_F(DamagedBasin, SalvageUndoesAKilledChangeEvenIfTheHeaderIsDamaged) {
    const std::string sound = basin.exported("PhysicalData");
    kill_during_change(file(), "UPDATE PhysicalData SET Runoff = -1");
    put(0, "sqlite");
    EXPECT_NE(salvage().out, "");
    EXPECT_TRUE(salvaged_rows("PhysicalData") == sound);
}
#endif

TEST_F(DamagedBasin, CheckReportsIntegersThatTheirFieldsCannotHold) {
    for (const auto& [value, fits] : std::vector<std::pair<const char*, bool>>{
             {"32767", true}, {"-32768", true}, {"32768", false}, {"-32769", false}}) {
        basin.execute(std::string{"UPDATE SimulationIndex SET SimRunNumber = "} + value);
        EXPECT_EQ(batch({"check", file()}).out.find("SimRunNumber holds") == std::string::npos, fits)
            << value;
    }
    basin.execute("UPDATE SimulationIndex SET SimRunNumber = 1");
    for (const auto& [value, fits] : std::vector<std::pair<const char*, bool>>{
             {"2147483647", true}, {"-2147483648", true}, {"2147483648", false}, {"-2147483649", false}}) {
        basin.execute(std::string{"UPDATE warmer SET Zones = "} + value);
        EXPECT_EQ(batch({"check", file()}).out.find("Zones holds") == std::string::npos, fits) << value;
    }
}

}  // namespace
}  // namespace nivora
