// The next missing value of a column.

#include "widgets/grid_find.h"

#include "tests/widgets/grid_fixture.h"

namespace nivora {
namespace {

class GridFindTest : public GridTest {
protected:
    void clear_cell(int row, int column) {
        ASSERT_TRUE(cells_->take(row, column, QString{}));
        cells_->changed_block(row, column, row, column);
    }
    [[nodiscard]] std::string found(int column, int from, bool forward) const {
        const auto next = next_missing(*cells_, column, from, forward);
        if (!next) return "none";
        return std::to_string(next->row) + (next->wrapped ? " wrapped" : "");
    }
};

TEST_F(GridFindTest, TheSearchWrapsOnceAtBothEnds) {
    clear_cell(3, Column::k_number);
    clear_cell(7, Column::k_number);
    EXPECT_EQ(found(Column::k_number, 0, true), "3");
    EXPECT_EQ(found(Column::k_number, 3, true), "7");
    EXPECT_EQ(found(Column::k_number, 7, true), "3 wrapped");
    EXPECT_EQ(found(Column::k_number, 7, false), "3");
    EXPECT_EQ(found(Column::k_number, 3, false), "7 wrapped");
    EXPECT_EQ(found(Column::k_number, 0, false), "7 wrapped");
    EXPECT_EQ(found(Column::k_number, 9, true), "3 wrapped");
}

TEST_F(GridFindTest, TheOnlyMissingValueIsFoundFromItself) {
    clear_cell(4, Column::k_integer);
    EXPECT_EQ(found(Column::k_integer, 4, true), "4 wrapped");
    EXPECT_EQ(found(Column::k_integer, 4, false), "4 wrapped");
}

TEST_F(GridFindTest, NothingIsMissingInFullColumnsAndInTexts) {
    clear_cell(4, Column::k_text);
    clear_cell(4, Column::k_date);
    for (const int column : {0, 1, 2, 3, 4}) EXPECT_EQ(found(column, 2, true), "none") << column;
    show_grid(0);
    EXPECT_EQ(found(Column::k_number, 0, true), "none");
}

}  // namespace
}  // namespace nivora
