// How opening a damaged basin into the working file ends.
#include "base/durable_file.h"
#include "store/basin_check.h"
#include "store/basin_copy.h"
#include "store/database.h"
#include "store/table_io.h"
#include "store/transactions.h"
#include "tests/support/basin_file.h"
#include "tests/support/killed_change.h"
#include "tests/support/page_damage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

class CheckedOpening : public testing::Test {
protected:
    CheckedOpening() {
        BasinDatabase::create_template(user_);
        BasinDatabase database{user_, Access::ReadWrite};
        std::vector<PhysicalRow> rows;
        for (int day = 0; day < 4000; ++day)
            rows.push_back({.zone = 1, .date = 30000 + day, .runoff = static_cast<float>(day)});
        database.create_table(sim_results_table());
        atomically_if(database, [&] {
            add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
            database.execute("INSERT INTO SimResults (Zone, Date) SELECT Zone, Date FROM PhysicalData");
            return true;
        });
        folder_.write("new.mdb", "work of before");
    }

    void expect_refused(const std::string& table) const {
        const std::string before = file_bytes(user_);
        EXPECT_EQ(refused([&] { copy_into_work_file(user_, work_); }), StoreFault::Damaged);
        const std::string text = refusal_text([&] { copy_into_work_file(user_, work_); });
        EXPECT_THAT(text, HasSubstr("The file '" + path_text(user_) + "' is damaged in the table '" + table));
        EXPECT_THAT(text, HasSubstr("nivora-batch salvage \"" + path_text(user_) + "\" NEW.mdb"));
        EXPECT_EQ(file_bytes(work_), "work of before");
        EXPECT_TRUE(file_bytes(user_) == before);
    }

    /// Expects the working file to have all rows of the record and no results.
    void expect_opened_without_results() const {
        BasinDatabase work{work_, Access::ReadOnly};
        EXPECT_FALSE(work.has_table(k_sim_results));
        EXPECT_EQ(
            work.sql().execAndGet("SELECT count(*) FROM PhysicalData WHERE Runoff = Date - 30000").getInt(),
            4000);
        EXPECT_TRUE(structure_damage(work).empty());
    }

    TemporaryFolder folder_;
    fs::path user_ = folder_ / "user.mdb";
    fs::path work_ = folder_ / "new.mdb";
};

TEST_F(CheckedOpening, AnIndexThatDoesNotMatchItsRowsIsRefused) {
    empty_index(user_, "PhysicalData.key");
    expect_refused("PhysicalData");
}

TEST_F(CheckedOpening, ADeclarationWithAnotherFieldIsRefused) {
    misname_field(user_, "\"Tavg\" FLOAT", "\"Tawg\"");
    expect_refused("PhysicalData");
}

TEST_F(CheckedOpening, DamagedResultsAloneAreLeftOutAndTheUsersFileStays) {
    damage_first_page(user_, "SimResults", std::string(64, '\x7f'));
    const std::string before = file_bytes(user_);
    EXPECT_TRUE(copy_into_work_file(user_, work_));
    expect_opened_without_results();
    EXPECT_TRUE(file_bytes(user_) == before);
}

TEST_F(CheckedOpening, SoundResultsAreOpened) {
    EXPECT_FALSE(copy_into_work_file(user_, work_));
    BasinDatabase work{work_, Access::ReadOnly};
    EXPECT_EQ(work.sql().execAndGet("SELECT count(*) FROM SimResults").getInt(), 4000);
}

#ifndef _WIN32
TEST_F(CheckedOpening, DamagedResultsAreLeftOutEvenIfAnInterruptedChangeIsUndone) {
    damage_first_page(user_, "SimResults", std::string(64, '\x7f'));
    kill_during_change(user_, "UPDATE PhysicalData SET Runoff = -1");
    const std::string before = file_bytes(user_);
    EXPECT_TRUE(copy_into_work_file(user_, work_));
    expect_opened_without_results();
    EXPECT_TRUE(file_bytes(user_) == before);
    EXPECT_EQ(folder_.entries().size(), 3U) << "the two basins and the journal";
}

TEST_F(CheckedOpening, DamageBesideAnInterruptedChangeNamesTheUsersFile) {
    empty_index(user_, "PhysicalData.key");
    kill_during_change(user_, "UPDATE PhysicalData SET Runoff = -1");
    expect_refused("PhysicalData");
}
#endif

}  // namespace
}  // namespace nivora
