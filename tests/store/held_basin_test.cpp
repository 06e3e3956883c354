// Copies over a basin that another program is using.
#include "base/durable_file.h"
#include "store/basin_copy.h"
#include "store/database.h"
#include "store/table_io.h"
#include "store/transactions.h"
#include "tests/support/killed_change.h"
#include "tests/support/other_program.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifndef _WIN32
namespace nivora {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

class HeldBasin : public testing::Test {
protected:
    HeldBasin() {
        make(user_, "theirs", 20000);
        make(work_, "ours", 10);
    }

    static void make(const fs::path& path, const std::string& name, int days) {
        BasinDatabase::create_template(path);
        BasinDatabase database{path, Access::ReadWrite};
        std::vector<PhysicalRow> rows;
        for (int day = 0; day < days; ++day) rows.push_back({.zone = 1, .date = 30000 + day, .runoff = 1.0F});
        atomically_if(database, [&] {
            BasinDescription header = read_basin_description(database);
            header.name = name;
            write_basin_description(database, header);
            add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
            return true;
        });
    }

    /// Another program in the middle of a transaction; with `changes` its changes are in the file already.
    [[nodiscard]] std::unique_ptr<OtherProgram> writer(const std::string& begin, bool changes) const {
        return std::make_unique<OtherProgram>([=, this](const std::function<void()>& hold) {
            BasinDatabase database{user_, Access::ReadWrite};
            database.execute("PRAGMA cache_size = 1");
            database.execute("PRAGMA cache_spill = 1");
            database.execute(begin);
            if (changes) database.execute("UPDATE PhysicalData SET Runoff = 2");
            hold();
            if (!changes) database.execute("UPDATE PhysicalData SET Runoff = 2");
            database.execute("COMMIT");
        });
    }

    [[nodiscard]] std::string refusal() const {
        try {
            copy_over_user_file(work_, user_);
        } catch (const FileError& error) {
            return error.what();
        }
        return "saved";
    }

    [[nodiscard]] double runoff() const {
        BasinDatabase database{user_, Access::ReadOnly};
        return database.sql().execAndGet("SELECT avg(Runoff) FROM PhysicalData").getDouble();
    }
    [[nodiscard]] static std::string name_in(const fs::path& file) {
        BasinDatabase database{file, Access::ReadOnly};
        return read_basin_description(database).name.value_or("");
    }

    TemporaryFolder folder_;
    fs::path user_ = folder_ / "user.mdb";
    fs::path work_ = folder_ / "new.mdb";
    fs::path journal_ = folder_ / "user.mdb-journal";
};

TEST_F(HeldBasin, IsNotReplacedWhileAnotherProgramWritesAndKeepsWhatThatProgramCommits) {
    for (const char* begin : {"BEGIN IMMEDIATE", "BEGIN EXCLUSIVE"}) {
        for (const bool changes : {false, true}) {
            SCOPED_TRACE(std::string{begin} + (changes ? ", with changes" : ""));
            BasinDatabase{user_, Access::ReadWrite}.execute("UPDATE PhysicalData SET Runoff = 1");
            const auto other = writer(begin, changes);
            EXPECT_EQ(refusal(),
                      "The file '" + path_text(user_) +
                          "' is in use by another program. Wait until that program has finished and save "
                          "again, or save under another name.");
            EXPECT_EQ(fs::exists(journal_), changes) << "the journal belongs to the other program";
            other->finish();
            EXPECT_EQ(runoff(), 2.0);
            EXPECT_EQ(name_in(user_), "theirs");
        }
    }
    EXPECT_EQ(refusal(), "saved");
    EXPECT_EQ(name_in(user_), "ours");
}

TEST_F(HeldBasin, TheJournalOfARefusedSaveStillUndoesTheChangeOfAProgramThatIsKilled) {
    {
        const auto other = writer("BEGIN EXCLUSIVE", true);
        EXPECT_NE(refusal(), "saved");
    }
    EXPECT_TRUE(fs::exists(journal_));
    EXPECT_EQ(BasinDatabase(user_, Access::ReadWrite)
                  .sql()
                  .execAndGet("SELECT avg(Runoff) FROM PhysicalData")
                  .getDouble(),
              1.0);
}

TEST_F(HeldBasin, TheJournalOfAKilledProgramDoesNotBlockASave) {
    kill_during_change(user_, "UPDATE PhysicalData SET Runoff = 2");
    EXPECT_EQ(refusal(), "saved");
    EXPECT_FALSE(fs::exists(journal_));
    EXPECT_TRUE(file_bytes(user_) == file_bytes(work_));
}

TEST_F(HeldBasin, AProgramThatOnlyReadsDoesNotBlockASaveAndContinuesOnTheOldFile) {
    OtherProgram reader{[&](const std::function<void()>& hold) {
        BasinDatabase database{user_, Access::ReadOnly};
        database.execute("BEGIN");
        static_cast<void>(read_basin_description(database));
        hold();
        if (read_basin_description(database).name != "theirs") throw std::runtime_error("another file");
    }};
    EXPECT_EQ(refusal(), "saved");
    EXPECT_EQ(name_in(user_), "ours");
    reader.finish();
}

TEST_F(HeldBasin, AWorkingFileThatAnotherProgramHoldsIsNotReplaced) {
    // Two instances in one program folder would share the working file.
    const OtherProgram other{[&](const std::function<void()>& hold) {
        BasinDatabase database{work_, Access::ReadWrite};
        database.execute("BEGIN IMMEDIATE");
        hold();
    }};
    EXPECT_THROW(copy_into_work_file(user_, work_), FileError);
    EXPECT_EQ(name_in(work_), "ours");
}

TEST_F(HeldBasin, AFileInWhichAnotherProgramWritesIsNotOpenedFromItsJournal) {
    const auto other = writer("BEGIN EXCLUSIVE", true);
    try {
        copy_into_work_file(user_, work_);
        FAIL() << "a change that is going on was copied";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.fault(), StoreFault::Busy);
    }
    EXPECT_EQ(name_in(work_), "ours");
    EXPECT_TRUE(fs::exists(journal_));
}

}  // namespace
}  // namespace nivora
#endif
