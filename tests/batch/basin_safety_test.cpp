// What the commands never do to a basin: overwrite it, work on a damaged one, share it, or leave it locked.
#include "batch/commands.h"
#include "store/basin_opening.h"
#include "tests/batch/run_basin.h"
#include "tests/support/killed_change.h"
#include "tests/support/other_program.h"
#include "tests/support/printed_seed.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

class BasinSafety : public YearBasinTest {
protected:
    /// Changes the root page of a table in the list of tables, which is on the first page of a small basin.
    void set_root(const std::string& name, std::size_t page) const {
        const std::string text = "CREATE TABLE \"" + name + "\"";
        const std::size_t at = basin.bytes().find(text);
        ASSERT_NE(at, std::string::npos);
        put(at - 1, std::string(1, static_cast<char>(page)));
    }
    /// Adds a second scenario.
    [[nodiscard]] BatchResult add_scenario() const {
        return batch({"scenario", file(), "--simulation", "alder", "--name", "second", "--edit",
                      "1:1996-01-01:1996-12-31:0:2:0"});
    }
    /// Imports the same legacy file as another simulation.
    [[nodiscard]] BatchResult import_again() const {
        return batch({"import", basin.file(), file(), "--name", "b"});
    }
};

TEST_F(BasinSafety, AReportIsNeverWrittenOverTheBasin) {
    fs::create_symlink(file(), basin.path("soft.out"));
    fs::create_hard_link(file(), basin.path("hard.out"));
    const std::string before = basin.bytes();
    for (const char* report : {"basin.mdb", "soft.out", "hard.out", "basin.mdb-journal"}) {
        const BatchResult result = climate({"--report", basin.path(report)});
        EXPECT_EQ(result.status, 1) << report;
        EXPECT_THAT(result.err, HasSubstr("The report can't be written: ")) << report;
        EXPECT_TRUE(basin.bytes() == before) << report;
    }
}

TEST_F(BasinSafety, ABasinWithTheReportsNameIsKept) {
    const std::string named = basin.path("NVR_DfGN.out");
    fs::rename(file(), named);
    const std::string before = file_bytes(named);
    EXPECT_EQ(batch({"climate", named, "--simulation", "alder", "--scenario", "warmer"}).status, 1);
    EXPECT_TRUE(file_bytes(named) == before);
}

TEST_F(BasinSafety, NoOutputReplacesAnotherBasinOrAFileThatIsMarkedReadOnly) {
    fs::copy_file(file(), basin.path("other.mdb"));
    const std::string before = basin.bytes();
    EXPECT_THAT(export_table("alder", "other.mdb").err, HasSubstr("it is a basin"));
    EXPECT_TRUE(file_bytes(basin.path("other.mdb")) == before);
    basin.folder().write("kept.csv", "kept");
    fs::permissions(basin.path("kept.csv"), fs::perms::owner_read);
    EXPECT_THAT(export_table("alder", "kept.csv").err, HasSubstr("marked read-only"));
    EXPECT_EQ(file_bytes(basin.path("kept.csv")), "kept");
}

TEST_F(BasinSafety, PartFilesOfKilledCommandsAreClearedByTheNextOne) {
    for (const char* name : {"basin.mdb.999999999-1.part", "basin.mdb.999999999-1.part-journal",
                             "t.csv.999999999-2.part", "new.mdb.999999999-3.part"}) {
        basin.folder().write(name, "half");
    }
    EXPECT_EQ(export_table("alder", "t.csv").status, 0);
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb", "new.mdb.999999999-3.part", "t.csv"));
    EXPECT_EQ(batch({"import", basin.file(), basin.path("new.mdb")}).status, 0);
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb", "new.mdb", "t.csv"));
}

// Otherwise the journal would be rolled back into the new basin.
TEST_F(BasinSafety, AnImportIntoANewFileRemovesTheJournalOfADeletedBasin) {
    basin.folder().write("new.mdb-journal", "left");
    EXPECT_EQ(batch({"import", basin.file(), basin.path("new.mdb")}).status, 0);
    EXPECT_FALSE(fs::exists(basin.path("new.mdb-journal")));
}

#ifndef _WIN32
TEST_F(BasinSafety, AKilledWriteIsUndoneByTheNextCommandWhicheverItIs) {
    const std::string sound = basin.exported("PhysicalData");
    const std::vector<std::vector<std::string>> commands{
        {"simulations", file()},
        {"export", file(), "PhysicalData", "--csv", basin.path("t.csv")},
        {"run", file(), "--simulation", "alder"},
        {"climate", file(), "--simulation", "alder", "--scenario", "warmer"},
        {"scenario", file(), "--simulation", "alder", "--name", "second", "--edit",
         "1:1996-01-01:1996-12-31:0:2:0"},
        {"check", file()}};
    for (const auto& command : commands) {
        kill_during_change(file(), "UPDATE PhysicalData SET Runoff = -1");
        const BatchResult result = batch(command);
        EXPECT_EQ(result.status, 0) << command[0] << ": " << result.err;
        EXPECT_FALSE(fs::exists(file() + "-journal")) << command[0];
        EXPECT_EQ(basin.exported("PhysicalData"), sound) << command[0];
    }
}

TEST_F(BasinSafety, AReadOnlyFileWithAKilledWriteIsReadThroughAPrivateCopy) {
    const std::string sound = basin.exported("PhysicalData");
    kill_during_change(file(), "UPDATE PhysicalData SET Runoff = -1");
    const std::string before = basin.bytes();
    fs::permissions(file(), fs::perms::owner_read);
    EXPECT_EQ(basin.exported("PhysicalData"), sound);
    EXPECT_TRUE(basin.bytes() == before);
    EXPECT_TRUE(fs::exists(file() + "-journal"));
    EXPECT_THAT(basin.run().err, HasSubstr("cannot be written"));
    EXPECT_TRUE(basin.bytes() == before);
}

TEST_F(BasinSafety, ABasinThatAnotherProgramHoldsIsRefusedAfterTheWait) {
    const std::string before = basin.bytes();
    {
        const OtherProgram other{[&](const std::function<void()>& hold) {
            const OpenBasin held = open_to_write(file(), std::chrono::seconds{10});
            hold();
        }};
        for (const auto& command : std::vector<std::vector<std::string>>{
                 {"run", file(), "--simulation", "alder", "--wait", "0"},
                 {"climate", file(), "--simulation", "alder", "--scenario", "warmer", "--wait", "0"},
                 {"export", file(), "alder", "--csv", basin.path("t.csv"), "--wait", "0"},
                 {"import", basin.file(), file(), "--name", "b", "--wait", "0"}}) {
            const BatchResult result = batch(command);
            EXPECT_EQ(result.status, 1) << command[0];
            EXPECT_THAT(result.err, HasSubstr("is in use by another program")) << command[0];
        }
    }
    EXPECT_TRUE(basin.bytes() == before);
    EXPECT_EQ(basin.run().status, 0);
}

// The other program still holds the basin when the command starts, and
// releases it before the command's wait ends.
TEST_F(BasinSafety, ACommandWaitsForAnotherProgramAndThenWorks) {
    const std::string alone = basin.run().out;
    OtherProgram other{[&](const std::function<void()>& hold) {
        const OpenBasin held = open_to_write(file(), std::chrono::seconds{10});
        hold();
    }};
    std::thread lets_go{[&] {
        std::this_thread::sleep_for(std::chrono::milliseconds{700});
        other.finish();
    }};
    const BatchResult result = basin.run({"--wait", "60"});
    lets_go.join();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, alone);
}

/// Starts a run on the basin whenever the command prints a line.
class Intruder : public std::streambuf {
public:
    explicit Intruder(std::string file) : file_(std::move(file)) {}
    [[nodiscard]] int tries() const { return tries_; }
    [[nodiscard]] int successes() const { return successes_; }

protected:
    int overflow(int character) override {
        if (character != '\n') {
            text_ += static_cast<char>(character);
            return character;
        }
        // The notes are printed at the end, after the evaluation has released the basin.
        const bool at_end = text_.rfind("Note: ", 0) == 0;
        text_.clear();
        if (at_end) return character;
        ++tries_;
        const std::string line = std::string{"'"} + NIVORA_BATCH_PROGRAM + "' run '" + file_ +
                                 "' --simulation alder --kind year-round --wait 0 >/dev/null 2>&1";
        if (std::system(line.c_str()) == 0) ++successes_;
        return character;
    }

private:
    std::string file_;
    std::string text_;  ///< the part of the current line that was printed
    int tries_ = 0;
    int successes_ = 0;
};

TEST_F(BasinSafety, NobodyChangesTheResultsBetweenTheStepsOfAnEvaluation) {
    const BatchResult alone = climate();
    Intruder intruder{file()};
    std::ostream err{&intruder};
    std::ostringstream out;
    BatchDialogs dialogs{err, false};
    ClimateCommand command;
    command.basin = file();
    command.simulation = "alder";
    command.scenario = "warmer";
    static_cast<void>(climate_command(command, dialogs, out));
    EXPECT_GT(intruder.tries(), 0);
    EXPECT_EQ(intruder.successes(), 0);
    EXPECT_EQ(out.str(), alone.out);
}
#endif

TEST_F(BasinSafety, ATableInPlaceOfAnotherIsRefusedByEveryCommand) {
    ASSERT_EQ(basin.run().status, 0);
    set_root("SimResults", first_page_of(file(), "PhysicalData"));
    const std::string before = basin.bytes();
    for (const auto& result :
         {basin.run(), climate(), export_table("PhysicalData", "t.csv"), batch({"simulations", file()}),
          batch({"check", file()}), add_scenario(), import_again()}) {
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.err + result.out, HasSubstr("PhysicalData"));
    }
    EXPECT_TRUE(basin.bytes() == before);
    EXPECT_FALSE(fs::exists(basin.path("t.csv")));
}

TEST_F(BasinSafety, ADamagedIndexIsRefusedWithItsTable) {
    empty_index(file(), "PhysicalData.key");
    const std::string before = basin.bytes();
    for (const auto& result :
         {basin.run(), climate(), batch({"check", file()}), add_scenario(), import_again()}) {
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.err + result.out, HasSubstr("PhysicalData"));
    }
    EXPECT_TRUE(basin.bytes() == before);
}

TEST_F(BasinSafety, ARunReplacesADamagedResultsTable) {
    ASSERT_EQ(basin.run().status, 0);
    const std::string sound = basin.exported("SimResults");
    damage_first_page(file(), "SimResults", std::string(64, '\x7f'));
    EXPECT_THAT(batch({"check", file()}).out, HasSubstr("SimResults: "));
    EXPECT_THAT(export_table("SimResults", "t.csv").err, HasSubstr("is damaged in the table 'SimResults'"));
    const BatchResult result = basin.run();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(basin.exported("SimResults"), sound);
    EXPECT_EQ(batch({"check", file()}).status, 0);
}

TEST_F(BasinSafety, ADeclarationWithAnotherFieldIsRefused) {
    const std::size_t at = basin.bytes().find("\"Tavg\" FLOAT");
    ASSERT_NE(at, std::string::npos);
    put(at + 3, "w");
    EXPECT_THAT(basin.run().err, HasSubstr("is called 'Tawg', not 'Tavg'"));
}

TEST_F(BasinSafety, CheckFindsNothingInASoundBasin) {
    ASSERT_EQ(climate().status, 0);
    const BatchResult result = batch({"check", file()});
    EXPECT_EQ(result.status, 0) << result.out;
    EXPECT_THAT(result.out, HasSubstr("is sound"));
}

TEST_F(BasinSafety, CheckReportsRowsThatAreDuplicateMissingOrOutOfRange) {
    const auto found = [&](const std::string& change) {
        basin.execute(change);
        const BatchResult result = batch({"check", file()});
        EXPECT_EQ(result.status, 1) << change;
        return result.out;
    };
    EXPECT_THAT(found("DELETE FROM alder WHERE rowid = 10"),
                HasSubstr("alder: zone 1 has 365 of the 366 days of the simulation 'alder'"));
    EXPECT_THAT(found("INSERT INTO PhysicalData SELECT * FROM PhysicalData WHERE rowid = 2"),
                HasSubstr("PhysicalData: zone 1, 1996-01-02 appears 2 times"));
    EXPECT_THAT(found("UPDATE PhysicalData SET SCA = 1.5 WHERE rowid = 7"), HasSubstr("row 7: SCA is 1.5"));
    EXPECT_THAT(found("UPDATE PhysicalData SET Tmax = 'warm' WHERE rowid = 9"),
                HasSubstr("row 9: Tmax holds 'warm', which is not a valid FLOAT"));
}

TEST_F(BasinSafety, SalvageOfASoundBasinCopiesEveryRow) {
    ASSERT_EQ(climate().status, 0);
    const BatchResult result = salvage();
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    EXPECT_EQ(batch({"check", salvaged()}).status, 0);
    for (const char* table : {"BasinDescription", "ZoneDescription", "SimulationIndex", "PhysicalData",
                              "alder", "ClimateScenarioIndex", "warmer", "SimResults"}) {
        ASSERT_EQ(batch({"export", salvaged(), table, "--csv", basin.path("s.csv")}).status, 0) << table;
        EXPECT_EQ(file_bytes(basin.path("s.csv")), basin.exported(table)) << table;
    }
}

TEST_F(BasinSafety, SalvageListsWhatItCouldNotCopyAndKeepsTheDamagedFile) {
    damage_first_page(file(), "alder", std::string(200, '\x7f'));
    const std::string before = basin.bytes();
    const BatchResult result = batch({"salvage", file(), salvaged()});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.out, HasSubstr("PhysicalData: 366 rows\n"));
    EXPECT_THAT(result.out, HasSubstr("alder: 0 rows\n    not copied: "));
    EXPECT_TRUE(basin.bytes() == before);
    EXPECT_EQ(batch({"salvage", file(), salvaged()}).status, 1);  // a file of that name exists
}

TEST_F(BasinSafety, SalvageReadsTablesWhoseDeclarationIsDamaged) {
    const std::string sound = basin.exported("PhysicalData");
    const std::size_t at = basin.bytes().find("CREATE TABLE \"PhysicalData\"");
    ASSERT_NE(at, std::string::npos);
    put(at, "CRFATE");
    EXPECT_EQ(basin.run().status, 1);
    const BatchResult result = batch({"salvage", file(), salvaged()});
    EXPECT_EQ(result.status, 0) << result.out << result.err;
    ASSERT_EQ(batch({"export", salvaged(), "PhysicalData", "--csv", basin.path("s.csv")}).status, 0);
    EXPECT_EQ(file_bytes(basin.path("s.csv")), sound);
}

/// A basin with random damage. A changed value within a row cannot be told from a valid
/// one, so the damage is done to the structure.
std::string damaged(const std::string& sound, std::mt19937& random) {
    std::string bytes = sound;
    const std::size_t pages = bytes.size() / 4096;
    switch (random() % 4) {
        case 0: return bytes.substr(0, random() % bytes.size());
        case 1: {  // in the list of tables
            char& byte = bytes[random() % 4096];
            byte = static_cast<char>(byte ^ (1 << random() % 8));
            return bytes;
        }
        case 2: {  // in a page header
            char& byte = bytes[(random() % pages) * 4096 + random() % 12];
            byte = static_cast<char>(byte ^ (1 << random() % 8));
            return bytes;
        }
        default:
            for (std::size_t at = (random() % pages) * 4096, end = at + 4096; at < end; ++at)
                bytes[at] = static_cast<char>(random());
            return bytes;
    }
}

/// The CSV without its line of field names, which may differ in case.
std::string rows_of(const std::string& csv) { return csv.substr(csv.find('\n')); }

TEST_F(BasinSafety, ADamagedBasinIsRefusedOrGivesTheNumbersOfTheSoundOne) {
    const std::string run_output = basin.run().out;
    const std::string climate_output = climate().out;
    const std::string sound = basin.bytes();
    const std::string sound_csv = basin.exported("PhysicalData");
    std::mt19937 random{printed_seed()};
    for (int i = 0; i < 20; ++i) {
        SCOPED_TRACE(i);
        const std::string bytes = damaged(sound, random);
        const auto fresh = [&] {
            for (const std::string& name : basin.names()) {
                if (name != "alder.NVR") fs::remove(basin.path(name));
            }
            basin.folder().write("basin.mdb", bytes);
        };
        fresh();
        const BatchResult run = basin.run();
        ASSERT_TRUE(run.status == 1 || run.out == run_output) << run.out;
        fresh();
        const BatchResult evaluation = climate();
        ASSERT_TRUE(evaluation.status == 1 || evaluation.out == climate_output) << evaluation.out;
        fresh();
        const BatchResult exported = export_table("PhysicalData", "t.csv");
        ASSERT_EQ(exported.status == 0, fs::exists(basin.path("t.csv")));
        if (exported.status == 0) {
            ASSERT_TRUE(rows_of(file_bytes(basin.path("t.csv"))) == rows_of(sound_csv));
        }
        static_cast<void>(salvage());
        if (fs::exists(salvaged())) {
            ASSERT_THAT(batch({"check", salvaged()}).err, Not(HasSubstr("damaged")));
        }
        ASSERT_TRUE(basin.bytes() == bytes);
    }
}

TEST_F(BasinSafety, AWaitThatIsNotANumberOfSecondsIsWrongUsage) {
    for (const char* wait : {"-1", "soon", "86401", ""}) {
        EXPECT_EQ(basin.run({"--wait", wait}).status, 2) << wait;
    }
    EXPECT_EQ(basin.run({"--wait", "0"}).status, 0);
}

}  // namespace
}  // namespace nivora
