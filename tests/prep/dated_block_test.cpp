// Copied cells that are placed by their dates and headings.
#include "prep/dated_block.h"

#include "tests/prep/prep_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t k_tcrit = 2;
constexpr std::size_t k_block_an = 3;

class DatedBlockTest : public PrepTest {
protected:
    DatedBlockTest() {
        make_parameter_table("wet");
        add_parameters("wet", {parameter_day(1, october(1), 0.5F), parameter_day(1, october(2), 0.5F),
                               parameter_day(1, october(4), 0.5F)});
    }

    /// Where the cells of a block are placed, as "row column text".
    std::vector<std::string> placed(const CellBlock& cells, std::size_t active = 1) {
        const auto block = read_dated_block(cells);
        if (!block) return {"not dated"};
        const DailyEditor table{file_.path(),
                                DataView::Parameters,
                                {.table = "wet", .fields = daily_fields(DataView::Parameters), .period = {}}};
        places_ = place_by_date(*block, table, active);
        std::vector<std::string> texts;
        for (const DatedValue& value : places_.values) {
            texts.push_back(std::to_string(value.row) + " " + std::to_string(value.column) + " " +
                            value.text);
        }
        return texts;
    }

    DatedPlaces places_;
};

TEST_F(DatedBlockTest, ABlockNeedsAHeadingAndADateInEveryOtherLine) {
    EXPECT_TRUE(read_dated_block({{"Date", "AN"}, {"10/01/1980", "1"}}));
    EXPECT_TRUE(read_dated_block({{"Day", "AN"}, {"1980-10-01", "1"}, {"", ""}}));
    EXPECT_FALSE(read_dated_block({{"10/01/1980", "1"}}));
    EXPECT_FALSE(read_dated_block({{"Date", "AN"}}));
    EXPECT_FALSE(read_dated_block({{"Date"}, {"10/01/1980"}}));
    EXPECT_FALSE(read_dated_block({{"Date", "AN"}, {"10/01/1980", "1"}, {"Sum", "1"}}));
    EXPECT_FALSE(read_dated_block({{"1", "2"}, {"3", "4"}}));
    EXPECT_FALSE(read_dated_block({}));
}

TEST_F(DatedBlockTest, LinesGoToTheirDaysAndColumnsToTheirHeadings) {
    EXPECT_THAT(
        placed({{"Date", "tcrit", "AN (cm/°C)"}, {"10/4/1980", "4", "0.4"}, {"10/01/1980", "1", "0.1"}}),
        ElementsAre("2 2 4", "2 3 0.4", "0 2 1", "0 3 0.1"));
    EXPECT_EQ(places_.days, 2U);
    EXPECT_EQ(places_.first, october(1));
    EXPECT_EQ(places_.last, october(4));
    EXPECT_THAT(places_.headers, ElementsAre("Tcrit", "AN"));
}

TEST_F(DatedBlockTest, OtherDaysAndUnknownHeadingsAreOmittedAndNamed) {
    EXPECT_THAT(placed({{"Date", "Wind", "AN"}, {"10/03/1980", "3", "0.3"}, {"10/02/1980", "2", "0.2"}}),
                ElementsAre("1 3 0.2"));
    EXPECT_EQ(places_.other_days, 1U);
    EXPECT_THAT(places_.unknown, ElementsAre("Wind"));
    const Message question = dated_paste_question(places_);
    EXPECT_EQ(question.text,
              "The clipboard holds dates with values of AN: 1 day of this table, 10/02/1980 to 10/02/1980.\n"
              "1 date of the clipboard is not in this table.\n"
              "These headings name no column of this table: Wind.\n"
              "Paste each value at its date? No pastes them cell by cell from the active cell.");
    EXPECT_EQ(question.buttons, Buttons::YesNoCancel);
}

TEST_F(DatedBlockTest, ColumnsWithoutAKnownHeadingGoSideBySideFromTheActiveOneOn) {
    EXPECT_THAT(placed({{"Date", "a", "b"}, {"10/01/1980", "1", "2"}}, k_tcrit),
                ElementsAre("0 2 1", "0 3 2"));
    EXPECT_THAT(placed({{"Date", "a"}, {"10/01/1980", "1"}}, 0), ElementsAre("0 1 1"));
    EXPECT_THAT(placed({{"Date", "a", "b"}, {"10/01/1980", "1", "2"}}, 9), ElementsAre("0 9 1"));
    EXPECT_THAT(places_.unknown, ElementsAre("b"));
}

TEST_F(DatedBlockTest, AnEmptyCellIsPlacedToo) {
    EXPECT_THAT(placed({{"Date", "AN"}, {"10/01/1980", ""}}), ElementsAre("0 3 "));
    EXPECT_EQ(places_.values[0].column, k_block_an);
}

TEST_F(DatedBlockTest, ADayInTwoLinesIsRefusedWithBothLines) {
    static_cast<void>(
        placed({{"Date", "AN"}, {"10/01/1980", "1"}, {"", ""}, {"10/02/1980", "2"}, {"1980-10-01", "3"}}));
    const Message question = dated_paste_question(places_);
    EXPECT_EQ(question.text,
              "The date 10/01/1980 is in lines 2 and 5 of the clipboard. Its values can't be placed by date: "
              "remove one of the two and copy again.\n"
              "OK pastes cell by cell from the active cell, Cancel pastes nothing.");
    EXPECT_EQ(question.buttons, Buttons::OkCancel);
    EXPECT_EQ(question.default_answer, Answer::Cancel);
}

TEST_F(DatedBlockTest, AColumnInTwoHeadingsIsRefusedWithBothHeadings) {
    static_cast<void>(placed({{"Date", "AN", "Tcrit", " an (cm/°C)"}, {"10/01/1980", "1", "2", "3"}}));
    EXPECT_EQ(
        dated_paste_question(places_).text,
        "The headings 'AN' and 'an (cm/°C)' of the clipboard name the same column, AN. Its values can't be "
        "placed by date: remove one of the two and copy again.\n"
        "OK pastes cell by cell from the active cell, Cancel pastes nothing.");
    EXPECT_EQ(dated_paste_question(places_).buttons, Buttons::OkCancel);
}

TEST_F(DatedBlockTest, ADuplicateDateOutsideTheTableIsIgnored) {
    EXPECT_THAT(placed({{"Date", "AN"}, {"10/01/1990", "1"}, {"10/01/1990", "2"}, {"10/01/1980", "3"}}),
                ElementsAre("0 3 3"));
    EXPECT_EQ(dated_paste_question(places_).buttons, Buttons::YesNoCancel);
}

TEST_F(DatedBlockTest, ABlockOfOtherDaysIsNotPlaced) {
    EXPECT_THAT(placed({{"Date", "AN"}, {"10/01/1990", "1"}}), IsEmpty());
    EXPECT_EQ(places_.days, 0U);
}

}  // namespace
}  // namespace nivora
