// A copy of cells under the headers of their columns.

#include "tests/widgets/grid_fixture.h"

namespace nivora {
namespace {

class GridHeadersCopyTest : public GridTest {
protected:
    void copy_under_headers() { key(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier); }
};

TEST_F(GridHeadersCopyTest, CtrlShiftCCopiesTheBlockUnderItsHeaders) {
    select(0, 1, 1, 3);
    copy_under_headers();
    EXPECT_EQ(clipboard(), "Amount\tCount\tDay\n0.125\t0\t10/01/1980\n1.125\t1\t10/02/1980\n");
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), "0.125\t0\t10/01/1980\n1.125\t1\t10/02/1980\n");
}

TEST_F(GridHeadersCopyTest, AHeaderOfSeveralLinesIsCopiedAsOne) {
    cells_->rename(Column::k_number, QStringLiteral(" Amount\nof \t rain "));
    go_to(4, Column::k_number);
    copy_under_headers();
    EXPECT_EQ(clipboard(), "Amount of rain\n4.125\n");
}

TEST_F(GridHeadersCopyTest, LockedCellsAndTheWholeGridAreCopiedUnderHeaders) {
    cells_->locked_cells.insert({0, 0});
    grid_->selectAll();
    copy_under_headers();
    EXPECT_EQ(QString::fromStdString(clipboard()).count(QLatin1Char('\n')), k_rows + 1);
    EXPECT_TRUE(clipboard().starts_with("Name\tAmount\tCount\tDay\tUnits\nt0\t0.125\t0\t"));
}

TEST_F(GridHeadersCopyTest, WithoutACellNothingIsCopiedUnderHeaders) {
    put_on_clipboard(QStringLiteral("kept"));
    show_grid(0);
    put_on_clipboard(QStringLiteral("kept"));
    copy_under_headers();
    EXPECT_EQ(clipboard(), "kept");
}

TEST_F(GridHeadersCopyTest, AnOpenEditorKeepsItsTextWhenHeadersAreCopied) {
    put_on_clipboard(QStringLiteral("kept"));
    go_to(1, Column::k_number);
    key(Qt::Key_F2);
    ASSERT_NE(editor(), nullptr);
    type("9");
    copy_under_headers();
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(clipboard(), "kept");
}

}  // namespace
}  // namespace nivora
