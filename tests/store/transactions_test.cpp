#include "store/transactions.h"

#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* k_rename = "UPDATE BasinDescription SET BasinName = 'Ellervane'";

std::vector<std::string> basin_names(const BasinFile& file) {
    return file.column("SELECT BasinName FROM BasinDescription");
}

TEST(Transaction, StaysWhenItIsCommitted) {
    const BasinFile file;
    BasinDatabase database = file.open();
    {
        HeldTransaction transaction{database};
        database.execute(k_rename);
        database.create_table(parameter_table("Run"));
        transaction.commit();
    }
    EXPECT_THAT(basin_names(file), ElementsAre("Ellervane"));
    EXPECT_TRUE(database.has_table("Run"));
    EXPECT_THAT(file.folder().entries(), ElementsAre("basin.mdb"));
}

TEST(Transaction, IsRolledBackWithoutACommit) {
    const BasinFile file;
    BasinDatabase database = file.open();
    {
        const HeldTransaction transaction{database};
        database.execute(k_rename);
        database.create_table(parameter_table("Run"));
        database.drop_table(k_zone_description);
    }
    EXPECT_THAT(basin_names(file), ElementsAre("<basin name>"));
    EXPECT_FALSE(database.has_table("Run"));
    EXPECT_TRUE(database.has_table(k_zone_description));
    EXPECT_THAT(file.folder().entries(), ElementsAre("basin.mdb"));
}

TEST(Transaction, IsRolledBackByAnExceptionWhichIsPassedOn) {
    const BasinFile file;
    BasinDatabase database = file.open();
    const auto work = [&] {
        const HeldTransaction transaction{database};
        database.execute(k_rename);
        throw std::out_of_range("some fault");
    };
    EXPECT_THROW(work(), std::out_of_range);
    EXPECT_THAT(basin_names(file), ElementsAre("<basin name>"));
}

TEST(Transaction, IsRolledBackWhenAStatementOfItIsRefused) {
    const BasinFile file;
    BasinDatabase database = file.open();
    EXPECT_EQ(refused([&] {
                  HeldTransaction transaction{database};
                  database.execute(k_rename);
                  database.drop_table("no such table");
                  transaction.commit();
              }),
              StoreFault::Missing);
    EXPECT_THAT(basin_names(file), ElementsAre("<basin name>"));
}

TEST(Transaction, IsRolledBackWhenTheFileIsClosedInTheMiddle) {
    const BasinFile file;
    {
        BasinDatabase database = file.open();
        database.execute("BEGIN");
        database.execute(k_rename);
    }
    EXPECT_THAT(basin_names(file), ElementsAre("<basin name>"));
    EXPECT_THAT(file.folder().entries(), ElementsAre("basin.mdb"));
}

TEST(Transaction, InAnotherOneIsRefusedAndEndsBoth) {
    const BasinFile file;
    BasinDatabase database = file.open();
    bool inner_ran = false;
    EXPECT_EQ(refused([&] {
                  HeldTransaction outer{database};
                  database.execute(k_rename);
                  const HeldTransaction inner{database};
                  inner_ran = true;
                  outer.commit();
              }),
              StoreFault::Statement);
    EXPECT_FALSE(inner_ran);
    EXPECT_THAT(basin_names(file), ElementsAre("<basin name>"));
}

TEST(Transaction, LeavesTheFileFreeForTheNextOne) {
    const BasinFile file;
    BasinDatabase database = file.open();
    { const HeldTransaction first{database}; }
    HeldTransaction next{database};
    database.execute(k_rename);
    next.commit();
    EXPECT_THAT(basin_names(file), ElementsAre("Ellervane"));
}

// These two wait as long as a user has to: two seconds each.

TEST(BusyFile, RefusesATransactionWhileAnotherProgramWrites) {
    const BasinFile file;
    BasinDatabase database = file.open();
    SQLite::Database other{file.path().string(), SQLite::OPEN_READWRITE};
    other.exec("BEGIN IMMEDIATE");
    bool ran = false;
    const auto work = [&] {
        const HeldTransaction transaction{database};
        ran = true;
    };
    EXPECT_EQ(refused(work), StoreFault::Busy);
    EXPECT_FALSE(ran);
    EXPECT_EQ(database.table_names().size(), 5U) << "reading goes on beside a writer that has not committed";
    other.exec("ROLLBACK");
    EXPECT_EQ(refused(work), std::nullopt);
    EXPECT_TRUE(ran);
}

TEST(BusyFile, SaysThatAnotherProgramHoldsIt) {
    const BasinFile file;
    SQLite::Database other{file.path().string(), SQLite::OPEN_READWRITE};
    other.exec("BEGIN EXCLUSIVE");
    EXPECT_THAT(refusal_text([&] { static_cast<void>(file.open().table_names()); }),
                HasSubstr("in use by another program"));
}

}  // namespace
}  // namespace nivora
