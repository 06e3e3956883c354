#include "store/table_io.h"
#include "store/transactions.h"
#include "tests/support/basin_file.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace nivora {
namespace {

/// Writes into a table of its own in a basin file.
class AtomicWork : public testing::Test {
protected:
    AtomicWork() { database.execute("CREATE TABLE Work (Number INTEGER)"); }

    void write(int number) { database.execute("INSERT INTO Work VALUES (" + std::to_string(number) + ")"); }
    int sum() {
        SQLite::Statement query{database.sql(), "SELECT COALESCE(SUM(Number), 0) FROM Work"};
        query.executeStep();
        return query.getColumn(0).getInt();
    }

    BasinFile file;
    BasinDatabase database = file.open();
};

TEST_F(AtomicWork, StaysWhenItCompletes) {
    atomically(database, [&] {
        write(1);
        write(2);
    });
    EXPECT_TRUE(atomically_if(database, [&] {
        write(4);
        return true;
    }));
    EXPECT_EQ(sum(), 7);
}

TEST_F(AtomicWork, IsRolledBackIfItGivesUp) {
    EXPECT_FALSE(atomically_if(database, [&] {
        write(1);
        return false;
    }));
    EXPECT_EQ(sum(), 0);
    atomically(database, [&] { write(2); });  // the connection can be used again
    EXPECT_EQ(sum(), 2);
}

TEST_F(AtomicWork, IsRolledBackIfItThrows) {
    EXPECT_THROW(atomically(database,
                            [&] {
                                write(1);
                                throw std::runtime_error{"no"};
                            }),
                 std::runtime_error);
    EXPECT_THROW(atomically(database,
                            [&] {
                                write(1);
                                database.execute("INSERT INTO Missing VALUES (1)");
                            }),
                 StoreError);
    EXPECT_EQ(sum(), 0);
}

TEST_F(AtomicWork, WithinATransactionOfTheCallerRollsBackOnlyItsOwnPart) {
    HeldTransaction transaction{database};
    write(1);
    atomically_if(database, [&] {
        write(2);
        atomically(database, [&] { write(4); });
        return false;
    });
    atomically(database, [&] { write(8); });
    transaction.commit();
    EXPECT_EQ(sum(), 9);
}

TEST_F(AtomicWork, IsRolledBackWithTheTransactionOfTheCaller) {
    {
        const HeldTransaction transaction{database};
        atomically(database, [&] { write(1); });
    }
    EXPECT_EQ(sum(), 0);
}

TEST_F(AtomicWork, AHeldTransactionIsRolledBackAtItsEnd) {
    {
        HeldTransaction held{database};
        write(1);
        EXPECT_TRUE(held.is_open());
        EXPECT_EQ(sum(), 1);
    }
    EXPECT_EQ(sum(), 0);
    write(2);  // the connection can be used again
    EXPECT_EQ(sum(), 2);
}

TEST_F(AtomicWork, AHeldTransactionThatWasCommittedStays) {
    {
        HeldTransaction held{database};
        write(1);
        held.commit();
        EXPECT_FALSE(held.is_open());
        held.roll_back();
    }
    EXPECT_EQ(sum(), 1);
}

TEST_F(AtomicWork, WithinAHeldTransactionAPartCanBeRolledBackAlone) {
    HeldTransaction held{database};
    write(1);
    EXPECT_FALSE(atomically_if(database, [&] {
        write(2);
        return false;
    }));
    held.commit();
    EXPECT_EQ(sum(), 1);
}

}  // namespace
}  // namespace nivora
