#include "base/clipboard_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ClipboardText, CellsAreSeparatedByTabsAndRowsEndInALineFeed) {
    EXPECT_EQ(clipboard_text({{"1.5", "2"}, {"", "-3"}}), "1.5\t2\n\t-3\n");
}

TEST(ClipboardText, ACellWithATabALineEndOrAQuoteMarkIsQuoted) {
    EXPECT_EQ(clipboard_text({{"a\tb", "c\nd", "say \"no\"", "plain"}}),
              "\"a\tb\"\t\"c\nd\"\t\"say \"\"no\"\"\"\tplain\n");
}

TEST(ClipboardText, LineEndsOfAnyKindEndARow) {
    EXPECT_THAT(
        read_clipboard_text("1\t2\r\n3\t4\n5\r6"),
        ElementsAre(ElementsAre("1", "2"), ElementsAre("3", "4"), ElementsAre("5"), ElementsAre("6")));
}

TEST(ClipboardText, ALineEndAtTheEndStartsNoFurtherRow) {
    EXPECT_THAT(read_clipboard_text("1\r\n"), ElementsAre(ElementsAre("1")));
    EXPECT_THAT(read_clipboard_text("1\n\n"), ElementsAre(ElementsAre("1"), ElementsAre("")));
}

TEST(ClipboardText, AnEmptyTextHasNoRows) { EXPECT_THAT(read_clipboard_text(""), IsEmpty()); }

TEST(ClipboardText, ATabAtTheEndLeavesAnEmptyCell) {
    EXPECT_THAT(read_clipboard_text("1\t"), ElementsAre(ElementsAre("1", "")));
    EXPECT_THAT(read_clipboard_text("\t\n1\t"), ElementsAre(ElementsAre("", ""), ElementsAre("1", "")));
}

TEST(ClipboardText, QuotedCellsKeepTheirTabsLineEndsAndQuoteMarks) {
    EXPECT_THAT(read_clipboard_text("\"a\tb\"\t\"c\r\nd\"\r\n\"say \"\"no\"\"\"\t\"\"\r\n"),
                ElementsAre(ElementsAre("a\tb", "c\r\nd"), ElementsAre("say \"no\"", "")));
}

TEST(ClipboardText, AnUnmatchedQuoteMarkIsACharacter) {
    EXPECT_THAT(read_clipboard_text("\"open\t2\n5\" pipe\t\"a\"b"),
                ElementsAre(ElementsAre("\"open", "2"), ElementsAre("5\" pipe", "\"a\"b")));
}

TEST(ClipboardText, WhatIsWrittenReadsBack) {
    const CellBlock cells{{"", "\"", "\"\""}, {"\n", "\t", "\r"}, {"1", "ü\n\"x\"\ty", ""}};
    EXPECT_EQ(read_clipboard_text(clipboard_text(cells)), cells);
}

std::vector<std::pair<std::size_t, std::size_t>> pieces(std::size_t first, std::size_t selected,
                                                        std::size_t copied, std::size_t rows) {
    std::vector<std::pair<std::size_t, std::size_t>> found;
    for (const PastePiece& piece : paste_pieces(first, selected, copied, rows))
        found.emplace_back(piece.to_row, piece.rows);
    return found;
}

using Piece = std::pair<std::size_t, std::size_t>;

TEST(PastePieces, ASelectionNoTallerThanTheCopyTakesItOnceAndWhole) {
    EXPECT_THAT(pieces(2, 1, 3, 10), ElementsAre(Piece{2, 3}));
    EXPECT_THAT(pieces(2, 3, 3, 10), ElementsAre(Piece{2, 3}));
}

TEST(PastePieces, TwoRowsOverSevenGoInPairsAndTheLastRowTakesTheFirstOfThePair) {
    EXPECT_THAT(pieces(0, 7, 2, 10), ElementsAre(Piece{0, 2}, Piece{2, 2}, Piece{4, 2}, Piece{6, 1}));
}

TEST(PastePieces, OneRowFillsTheSelection) {
    EXPECT_THAT(pieces(4, 3, 1, 10), ElementsAre(Piece{4, 1}, Piece{5, 1}, Piece{6, 1}));
}

TEST(PastePieces, PartsOutsideTheGridAreCut) {
    EXPECT_THAT(pieces(8, 1, 5, 10), ElementsAre(Piece{8, 2}));
    EXPECT_THAT(pieces(7, 9, 2, 10), ElementsAre(Piece{7, 2}, Piece{9, 1}));
    EXPECT_THAT(pieces(10, 1, 1, 10), IsEmpty());
}

TEST(PastePieces, AnEmptyCopyHasNoPieces) { EXPECT_THAT(pieces(0, 5, 0, 10), IsEmpty()); }

}  // namespace
}  // namespace nivora
