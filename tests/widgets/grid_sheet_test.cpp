#include "widgets/grid_sheet.h"

#include "tests/widgets/grid_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;

class GridSheetTest : public GridTest {
protected:
    [[nodiscard]] PrintedSheet selected_sheet() const { return sheet_of(*grid_, selected_block(*grid_)); }
    [[nodiscard]] std::vector<std::string> heads() const {
        std::vector<std::string> texts;
        for (const SheetColumn& column : selected_sheet().columns) texts.push_back(column.head);
        return texts;
    }
};

TEST_F(GridSheetTest, WithoutASelectionTheWholeGridIsPrintedAsItShows) {
    go_to(3, 1);  // the active cell is not a selection
    const PrintedSheet sheet = selected_sheet();
    EXPECT_THAT(heads(), ElementsAre("Name", "Amount", "Count", "Day", "Units"));
    ASSERT_EQ(sheet.rows.size(), static_cast<std::size_t>(k_rows));
    EXPECT_THAT(sheet.rows[9], ElementsAre("t9", "9.13", "9", "10/10/1980", "Metric"));
    EXPECT_EQ(sheet.key_columns, 1U);
    EXPECT_EQ(selected_block(*grid_), std::nullopt);
}

TEST_F(GridSheetTest, NumbersAreRightAligned) {
    const PrintedSheet sheet = selected_sheet();
    EXPECT_EQ(sheet.columns[0].align, PrintAlign::Left);
    EXPECT_EQ(sheet.columns[1].align, PrintAlign::Right);
    EXPECT_EQ(sheet.columns[2].align, PrintAlign::Right);
    EXPECT_EQ(sheet.columns[3].align, PrintAlign::Left);
}

TEST_F(GridSheetTest, ASelectedBlockIsPrintedAloneWithTheColumnThatNamesItsRows) {
    select(2, 2, 4, 3);
    const PrintedSheet sheet = selected_sheet();
    EXPECT_THAT(heads(), ElementsAre("Name", "Count", "Day"));
    ASSERT_EQ(sheet.rows.size(), 3U);
    EXPECT_THAT(sheet.rows[0], ElementsAre("t2", "2", "10/03/1980"));
    EXPECT_THAT(sheet.rows[2], ElementsAre("t4", "4", "10/05/1980"));
}

TEST_F(GridSheetTest, AllOfAGridCanBePrintedInSpiteOfASelection) {
    select(2, 2, 4, 3);
    EXPECT_EQ(sheet_of(*grid_).rows.size(), static_cast<std::size_t>(k_rows));
}

TEST_F(GridSheetTest, TheFirstColumnIsPrintedOnceIfItIsSelected) {
    select(0, 0, 1, 1);
    EXPECT_THAT(heads(), ElementsAre("Name", "Amount"));
}

TEST_F(GridSheetTest, HiddenColumnsAreNotPrinted) {
    grid_->setColumnHidden(2, true);
    EXPECT_THAT(heads(), ElementsAre("Name", "Amount", "Day", "Units"));
}

TEST_F(GridSheetTest, ALargePrintIsAskedAboutByTheRowsThatItHas) {
    show_grid(100);  // 100 / 50 is two pages
    EXPECT_EQ(large_print_question(*grid_), std::nullopt);
    show_grid(151);
    const auto question = large_print_question(*grid_);
    ASSERT_TRUE(question);
    EXPECT_EQ(question->title, "Warning!  Potential large print job.");
    select(0, 0, 20, 1);
    EXPECT_EQ(large_print_question(*grid_), std::nullopt) << "21 rows are selected";
}

}  // namespace
}  // namespace nivora
