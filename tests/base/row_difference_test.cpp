#include "base/row_difference.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

using Rows = std::vector<std::string>;

TEST(RowDifference, EqualListsGainAndLoseNothing) {
    EXPECT_EQ(row_difference({}, {}), RowDifference{});
    EXPECT_EQ(row_difference({"a", "b"}, {"a", "b"}), (RowDifference{.first = 2}));
}

TEST(RowDifference, ARowIsInsertedAtTheStartBetweenOrAtTheEnd) {
    EXPECT_EQ(row_difference({"b", "c"}, {"a", "b", "c"}), (RowDifference{.first = 0, .inserted = 1}));
    EXPECT_EQ(row_difference({"a", "c"}, {"a", "b", "c"}), (RowDifference{.first = 1, .inserted = 1}));
    EXPECT_EQ(row_difference({"a", "b"}, {"a", "b", "c"}), (RowDifference{.first = 2, .inserted = 1}));
}

TEST(RowDifference, ARowIsRemovedAtTheStartBetweenOrAtTheEnd) {
    EXPECT_EQ(row_difference({"a", "b", "c"}, {"b", "c"}), (RowDifference{.first = 0, .removed = 1}));
    EXPECT_EQ(row_difference({"a", "b", "c"}, {"a", "c"}), (RowDifference{.first = 1, .removed = 1}));
    EXPECT_EQ(row_difference({"a", "b", "c"}, {"a", "b"}), (RowDifference{.first = 2, .removed = 1}));
}

TEST(RowDifference, ARowWithAnotherNameIsRemovedAndInserted) {
    EXPECT_EQ(row_difference({"a", "b", "c"}, {"a", "x", "c"}),
              (RowDifference{.first = 1, .removed = 1, .inserted = 1}));
}

TEST(RowDifference, RowsOfOneNameAreCountedOnce) {
    // One of three equal rows is removed. The two left count as common
    // rows at the start, and not again at the end.
    EXPECT_EQ(row_difference({"a", "a", "a"}, {"a", "a"}), (RowDifference{.first = 2, .removed = 1}));
    EXPECT_EQ(row_difference({"a", "a"}, {"a", "a", "a"}), (RowDifference{.first = 2, .inserted = 1}));
}

TEST(RowDifference, ListsWithoutACommonRowChangeEntirely) {
    EXPECT_EQ(row_difference({"a", "b"}, {"x", "y", "z"}),
              (RowDifference{.first = 0, .removed = 2, .inserted = 3}));
    EXPECT_EQ(row_difference({}, {"x"}), (RowDifference{.first = 0, .inserted = 1}));
    EXPECT_EQ(row_difference({"x"}, {}), (RowDifference{.first = 0, .removed = 1}));
}

}  // namespace
}  // namespace nivora
