// A user's file that changes, or that others change, while the program has it open,
// and files that are not basins.

#include "base/durable_file.h"
#include "base/scripted_dialogs.h"
#include "session/basin_life.h"
#include "store/table_io.h"
#include "tests/support/temporary_folder.h"

#include <SQLiteCpp/Database.h>
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

namespace nivora {
namespace {

namespace fs = std::filesystem;

/// A program that has a user's basin open, with a change that is not saved yet.
class FileFaultsTest : public testing::Test {
protected:
    FileFaultsTest() {
        BasinDatabase::create_template(program_ / "null.mdb");
        life_.start();
        session_.basin.basin_name = "Alder Fork";
        session_.basin.basin_units = Units::Metric;
        session_.basin.Units_Code = Units::Metric;
        session_.basin.zones_text = "1";
        session_.basin.ZoneCount = 1;
        session_.basin.zones = {{.id = "A", .area = 12.5, .elevation = 1500.0}};
        Simulation definition;
        definition.name = "run 1";
        definition.start = *day_count({1996, 1, 1});
        definition.end = *day_count({1996, 12, 31});
        definition.units = Units::Metric;
        session_.basin.simulations = {definition};
        dialogs_.then_file(file_);
        life_.save_as();
        before_ = file_bytes(file_);
        session_.basin.basin_description = "changed";
        session_.basin.Basin_Changed = true;
    }

    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(user_.entries().size(), 1U) << "something lies beside the basin";
    }

    [[nodiscard]] static std::string description_in(const fs::path& file) {
        BasinDatabase database{file, Access::ReadOnly};
        return read_basin_description(database).description.value_or("");
    }

    void expect_told_that_it_was_not_saved() {
        ASSERT_FALSE(dialogs_.messages().empty());
        EXPECT_EQ(dialogs_.messages().back().message.title, "The basin was not saved");
        EXPECT_TRUE(session_.basin.Basin_Changed) << "the change is still to be saved";
    }

    /// Opens a file that is not a sound basin: expects its message, a fresh basin, and an unchanged file.
    ///
    /// @param second_sentence what the message says after the sentence about the format, or how that begins
    void expect_refused(const fs::path& other, const std::string& second_sentence = {}) {
        const std::string bytes = file_bytes(other);
        session_.basin.Basin_Changed = false;
        dialogs_.then_file(other);
        life_.open();
        ASSERT_FALSE(dialogs_.messages().empty());
        const Message& told = dialogs_.messages().back().message;
        EXPECT_EQ(told.title, "Error encountered while reading this basin database");
        const std::string begin = "The file you have selected, " + path_text(other) +
                                  ", has an unrecognized format" + second_sentence;
        EXPECT_EQ(told.text.substr(0, begin.size()), begin);
        EXPECT_EQ(told.text.size() > begin.size(), second_sentence.find("is damaged") != std::string::npos)
            << told.text;
        EXPECT_TRUE(life_.has_template_name());
        EXPECT_TRUE(file_bytes(other) == bytes);
    }

    TemporaryFolder program_;
    TemporaryFolder user_;
    TemporaryFolder others_;
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    BasinLife life_{session_, program_.path()};
    fs::path file_ = user_ / "alder.mdb";
    std::string before_;
};

TEST_F(FileFaultsTest, AFileThatWasDeletedWhileOpenIsCreatedBySave) {
    fs::remove(file_);
    life_.save();
    EXPECT_EQ(description_in(file_), "changed");
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(FileFaultsTest, AFolderThatWasDeletedWhileOpenIsReported) {
    fs::remove_all(user_.path());
    life_.save();
    expect_told_that_it_was_not_saved();
    fs::create_directory(user_.path());
    life_.save();
    EXPECT_EQ(description_in(file_), "changed") << "nothing was lost";
}

TEST_F(FileFaultsTest, AFileThatWasReplacedByAFolderIsReportedAndTheFolderStays) {
    fs::remove(file_);
    fs::create_directory(file_);
    std::ofstream{file_ / "of the user"} << "stays";
    life_.save();
    expect_told_that_it_was_not_saved();
    EXPECT_EQ(file_bytes(file_ / "of the user"), "stays");
}

TEST_F(FileFaultsTest, AFileThatWasMadeReadOnlyWhileOpenIsReportedAndUnchanged) {
    fs::permissions(file_, fs::perms::owner_read);
    life_.save();
    expect_told_that_it_was_not_saved();
    EXPECT_TRUE(file_bytes(file_) == before_);
}

TEST_F(FileFaultsTest, AFullDiskAtSaveIsReportedAndTheOldFileStaysWhole) {
    // A limit on the file size stands for the full disk: the copy of the basin can't be written to its end.
    // It is set in a child process, as it can't be lifted again.
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{fs::file_size(file_) - 1, fs::file_size(file_) - 1};
        setrlimit(RLIMIT_FSIZE, &limit);
        const std::size_t messages = dialogs_.messages().size();
        life_.save();
        const bool once = dialogs_.messages().size() == messages + 1;
        _exit(once && dialogs_.messages().back().message.title == "The basin was not saved" &&
                      session_.basin.Basin_Changed
                  ? 0
                  : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0)
        << "the user was not told once, or the change is lost";
    EXPECT_TRUE(file_bytes(file_) == before_);
}

TEST_F(FileFaultsTest, AnEmptyFileIsRefused) { expect_refused(others_.write("empty.mdb", "")); }

TEST_F(FileFaultsTest, ATruncatedBasinIsRefused) {
    const fs::path cut = others_.write("cut.mdb", before_.substr(0, before_.size() / 2));
    expect_refused(cut, ". The file '" + path_text(cut) + "' is damaged");
}

TEST_F(FileFaultsTest, AnotherApplicationsDatabaseIsRefused) {
    const fs::path other = others_ / "recipes.mdb";
    SQLite::Database{path_text(other), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE}.exec(
        "CREATE TABLE Recipes (Name TEXT); INSERT INTO Recipes VALUES ('Soup')");
    expect_refused(other);
}

TEST_F(FileFaultsTest, ABasinOfANewerProgramIsRefused) {
    const fs::path newer = others_ / "newer.mdb";
    fs::copy_file(file_, newer);
    SQLite::Database{path_text(newer), SQLite::OPEN_READWRITE}.exec("PRAGMA user_version = 9999");
    expect_refused(newer, ". The file '" + path_text(newer) +
                              "' was written by a newer version of Nivora (file version 9999, this program "
                              "reads up to 1). Please use the newer version.");
}

TEST_F(FileFaultsTest, ABasinWithoutOneOfItsTablesIsRefused) {
    const fs::path other = others_ / "halved.mdb";
    fs::copy_file(file_, other);
    SQLite::Database{path_text(other), SQLite::OPEN_READWRITE}.exec("DROP TABLE SimulationIndex");
    expect_refused(other, ". The file '" + path_text(other) +
                              "' is damaged in the table 'SimulationIndex': the table is missing. ");
}

}  // namespace
}  // namespace nivora
