#include "base/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using std::literals::string_view_literals::operator""sv;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(OneLine, AControlCharacterIsABlank) {
    EXPECT_EQ(one_line("a\fb\x01"
                       "c\td\x7F"
                       "e"),
              "a b c d e");
    EXPECT_EQ(one_line("\0\x1F"sv), "  ");
    // The control characters above ASCII are U+0080 to U+009F; U+00A0 is the first character after them.
    EXPECT_EQ(one_line("a\u0080b\u0085c\u009Fd\u00A0e"), "a b c d\u00A0e");
}

TEST(OneLine, ALineEndIsABlankForEachOfItsCharacters) { EXPECT_EQ(one_line("a\r\nb\nc\rd"), "a  b c d"); }

TEST(OneLine, OtherTextStaysAsItIs) {
    EXPECT_EQ(one_line(""), "");
    EXPECT_EQ(one_line("  Ötztal, 水文: m³/s~ "), "  Ötztal, 水文: m³/s~ ");
    // A first byte of a character at the end of a text that was cut.
    EXPECT_EQ(one_line("a\xC2"), "a\xC2");
}

TEST(SplitLines, EachFormOfLineEndBeginsALine) {
    EXPECT_THAT(split_lines("one\r\ntwo\nthree\rfour"), ElementsAre("one", "two", "three", "four"));
}

TEST(SplitLines, EmptyLinesStay) {
    EXPECT_THAT(split_lines("one\r\n\r\ntwo"), ElementsAre("one", "", "two"));
    EXPECT_THAT(split_lines("one\n\rtwo"), ElementsAre("one", "", "two"));
    EXPECT_THAT(split_lines("\none"), ElementsAre("", "one"));
}

TEST(SplitLines, TheEndOfTheLastLineBeginsNone) {
    EXPECT_THAT(split_lines("one\r\n"), ElementsAre("one"));
    EXPECT_THAT(split_lines("\r"), ElementsAre(""));
    EXPECT_THAT(split_lines(""), IsEmpty());
}

TEST(SplitLines, ControlCharactersWithinALineAreBlanks) {
    EXPECT_THAT(split_lines("a\fb\n\x01\n\f\r\nc"), ElementsAre("a b", " ", " ", "c"));
}

}  // namespace
}  // namespace nivora
