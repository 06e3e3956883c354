#include "store/whole_work.h"

#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace nivora {
namespace {

/// Work on a table of its own in a basin file.
class WholeWork : public testing::Test {
protected:
    WholeWork() { database.execute("CREATE TABLE Work (Number INTEGER)"); }

    void write(int number) { database.execute("INSERT INTO Work VALUES (" + std::to_string(number) + ")"); }
    int sum() {
        SQLite::Statement query{database.sql(), "SELECT COALESCE(SUM(Number), 0) FROM Work"};
        query.executeStep();
        return query.getColumn(0).getInt();
    }

    BasinFile file;
    BasinDatabase database = file.open();
};

TEST_F(WholeWork, StaysWhenItIsDone) {
    as_a_whole(database, [&] {
        write(1);
        write(2);
    });
    EXPECT_TRUE(as_a_whole_if(database, [&] {
        write(4);
        return true;
    }));
    EXPECT_EQ(sum(), 7);
}

TEST_F(WholeWork, IsTakenBackWhereItGivesUp) {
    EXPECT_FALSE(as_a_whole_if(database, [&] {
        write(1);
        return false;
    }));
    EXPECT_EQ(sum(), 0);
    as_a_whole(database, [&] { write(2); });  // the connection is free for more
    EXPECT_EQ(sum(), 2);
}

TEST_F(WholeWork, IsTakenBackWhereItThrows) {
    EXPECT_THROW(as_a_whole(database,
                            [&] {
                                write(1);
                                throw std::runtime_error{"no"};
                            }),
                 std::runtime_error);
    EXPECT_THROW(as_a_whole(database,
                            [&] {
                                write(1);
                                database.execute("INSERT INTO Missing VALUES (1)");
                            }),
                 StoreError);
    EXPECT_EQ(sum(), 0);
}

TEST_F(WholeWork, WithinATransactionOfTheCallerTakesBackItsOwnPartAlone) {
    EXPECT_TRUE(database.in_transaction([&] {
        write(1);
        as_a_whole_if(database, [&] {
            write(2);
            as_a_whole(database, [&] { write(4); });
            return false;
        });
        as_a_whole(database, [&] { write(8); });
        return true;
    }));
    EXPECT_EQ(sum(), 9);
}

TEST_F(WholeWork, GoesWithTheTransactionOfTheCaller) {
    EXPECT_FALSE(database.in_transaction([&] {
        as_a_whole(database, [&] { write(1); });
        return false;
    }));
    EXPECT_EQ(sum(), 0);
}

}  // namespace
}  // namespace nivora
