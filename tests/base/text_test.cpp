#include "base/text.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

using std::literals::string_literals::operator""s;
using std::literals::string_view_literals::operator""sv;

TEST(Trimmed, TakesBlanksTabsAndLineEndsOffBothSides) {
    EXPECT_EQ(trimmed(" \t\r\n\v\f a b \t\r\n\v\f "), "a b");
    EXPECT_EQ(trimmed("a"), "a");
    EXPECT_EQ(trimmed("a b"), "a b");
}

TEST(Trimmed, LeavesNothingOfABlankText) {
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed("   "), "");
    EXPECT_EQ(trimmed("\r\n"), "");
}

TEST(Trimmed, KeepsAZeroByte) { EXPECT_EQ(trimmed(" \0 "sv), "\0"sv); }

TEST(RightTrimmed, KeepsBlanksAtTheStart) {
    EXPECT_EQ(right_trimmed("  a \r\n"), "  a");
    EXPECT_EQ(right_trimmed("  "), "");
    EXPECT_EQ(right_trimmed(""), "");
}

TEST(SameName, IgnoresCaseInLatinScript) {
    EXPECT_TRUE(same_name("SimResults", "SIMRESULTS"));
    EXPECT_TRUE(same_name("simresults", "SimResults"));
    EXPECT_TRUE(same_name("\u00D6tztal", "\u00F6TZTAL"));
    EXPECT_TRUE(same_name("\u0141\u00D3D\u0179", "\u0142\u00F3d\u017A"));
}

TEST(SameName, IgnoresCaseInGreekAndCyrillicScript) {
    EXPECT_TRUE(same_name("\u041D\u0418\u0412\u0410", "\u043D\u0438\u0432\u0430"));
    EXPECT_TRUE(same_name("\u039F\u0394\u039F\u0399", "\u03BF\u03B4\u03BF\u03B9"));
}

TEST(SameName, TreatsBothSmallSigmasAsTheCapitalOne) {
    EXPECT_TRUE(same_name("\u039F\u0394\u039F\u03A3", "\u03BF\u03B4\u03BF\u03C2"));
    EXPECT_TRUE(same_name("\u039F\u0394\u039F\u03A3", "\u03BF\u03B4\u03BF\u03C3"));
}

TEST(SameName, TreatsTheSharpSAsTwo) {
    EXPECT_TRUE(same_name("Wei\u00DFsee", "WEISSSEE"));
    EXPECT_TRUE(same_name("Wei\u00DFsee", "weisssee"));
    EXPECT_TRUE(same_name("Wei\u00DFsee", "WEI\u1E9ESEE"));
}

TEST(SameName, TreatsAComposedLetterAsItsParts) {
    EXPECT_TRUE(same_name("\u00C9t\u00E9", "E\u0301te\u0301"));
    EXPECT_TRUE(same_name("\u00E9T\u00C9", "E\u0301te\u0301"));
}

TEST(SameName, KeepsDifferentNamesApart) {
    EXPECT_FALSE(same_name("a", "b"));
    EXPECT_FALSE(same_name("a", "\u00E4"));
    EXPECT_FALSE(same_name("a", "a "));
    EXPECT_FALSE(same_name("a", "aa"));
    EXPECT_FALSE(same_name("A", "\u0410"));  // the Cyrillic letter that looks the same
    EXPECT_FALSE(same_name("a", ""));
    EXPECT_FALSE(same_name("a\0b"sv, "a\0c"sv));
    EXPECT_TRUE(same_name("", ""));
}

TEST(SameName, ComparesATextThatIsNotUtf8ByteByByte) {
    EXPECT_TRUE(same_name("A\xFF", "A\xFF"));
    EXPECT_FALSE(same_name("A\xFF", "a\xFF"));
    EXPECT_FALSE(same_name("\xC4", "\xE4"));
}

TEST(FoldedName, IsItsOwnFoldedForm) {
    for (const char* name :
         {"Wei\u00DFsee", "E\u0301t\u00C9", "\u039F\u0394\u039F\u03A3", "A\xFF", "", "\u0130"}) {
        EXPECT_EQ(folded_name(folded_name(name)), folded_name(name)) << name;
    }
    EXPECT_EQ(folded_name("\u00C9E\u0301"), "\u00E9\u00E9");
}

TEST(IsUtf8, TakesWellFormedTexts) {
    EXPECT_TRUE(is_utf8(""));
    EXPECT_TRUE(is_utf8("plain"));
    EXPECT_TRUE(is_utf8("\u00FC\u20AC\U0001F3D4"));
    EXPECT_TRUE(is_utf8("\x7F"));
    EXPECT_TRUE(is_utf8("\xC2\x80"));
    EXPECT_TRUE(is_utf8("\xDF\xBF"));
    EXPECT_TRUE(is_utf8("\xE0\xA0\x80"));
    EXPECT_TRUE(is_utf8("\xED\x9F\xBF"));
    EXPECT_TRUE(is_utf8("\xEE\x80\x80"));
    EXPECT_TRUE(is_utf8("\xF0\x90\x80\x80"));
    EXPECT_TRUE(is_utf8("\xF4\x8F\xBF\xBF"));  // the last code point
}

TEST(IsUtf8, RefusesStrayAndMissingBytes) {
    EXPECT_FALSE(is_utf8("\x80"));
    EXPECT_FALSE(is_utf8("\xBF"));
    EXPECT_FALSE(is_utf8("a\xC3"));
    EXPECT_FALSE(is_utf8("\xC3("));
    EXPECT_FALSE(is_utf8("\xE2\x82"));
    EXPECT_FALSE(is_utf8("\xF0\x9F\x8F"));
    EXPECT_FALSE(is_utf8("\xFE"));
    EXPECT_FALSE(is_utf8("\xFF"));
}

TEST(IsUtf8, RefusesLongFormsSurrogatesAndValuesBeyondTheLastCodePoint) {
    EXPECT_FALSE(is_utf8("\xC0\x80"));
    EXPECT_FALSE(is_utf8("\xC1\xBF"));
    EXPECT_FALSE(is_utf8("\xE0\x9F\xBF"));
    EXPECT_FALSE(is_utf8("\xF0\x8F\xBF\xBF"));
    EXPECT_FALSE(is_utf8("\xED\xA0\x80"));
    EXPECT_FALSE(is_utf8("\xED\xBF\xBF"));
    EXPECT_FALSE(is_utf8("\xF4\x90\x80\x80"));
    EXPECT_FALSE(is_utf8("\xF5\x80\x80\x80"));
}

TEST(IsUtf8, RefusesAZeroByte) {
    EXPECT_FALSE(is_utf8("\0"sv));
    EXPECT_FALSE(is_utf8("a\0b"sv));
}

TEST(ToUtf8, LeavesUtf8AsItIs) {
    EXPECT_EQ(to_utf8("plain"), "plain");
    EXPECT_EQ(to_utf8("Stra\u00DFe \u20AC"), "Stra\u00DFe \u20AC");
    EXPECT_EQ(to_utf8(""), "");
}

TEST(ToUtf8, ReadsOtherBytesAsWindowsLatin1) {
    EXPECT_EQ(to_utf8("Stra\xDF"
                      "e"),
              "Stra\u00DFe");
    EXPECT_EQ(to_utf8("\xD6tztal"), "\u00D6tztal");
    EXPECT_EQ(to_utf8("\xA0\xFF"), "\u00A0\u00FF");
    EXPECT_EQ(to_utf8("12 \xB0"
                      "C"),
              "12 \u00B0C");
}

TEST(ToUtf8, KnowsTheCodePageFrom80To9F) {
    EXPECT_EQ(to_utf8("\x80\x82\x83\x84\x85\x86\x87"), "\u20AC\u201A\u0192\u201E\u2026\u2020\u2021");
    EXPECT_EQ(to_utf8("\x88\x89\x8A\x8B\x8C\x8E"), "\u02C6\u2030\u0160\u2039\u0152\u017D");
    EXPECT_EQ(to_utf8("\x91\x92\x93\x94\x95\x96\x97"), "\u2018\u2019\u201C\u201D\u2022\u2013\u2014");
    EXPECT_EQ(to_utf8("\x98\x99\x9A\x9B\x9C\x9E\x9F"), "\u02DC\u2122\u0161\u203A\u0153\u017E\u0178");
}

TEST(ToUtf8, KeepsTheFiveUndefinedBytesOfTheCodePage) {
    EXPECT_EQ(to_utf8("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
}

TEST(ToUtf8, ReadsAMixedTextEntirelyAsWindowsLatin1) {
    EXPECT_EQ(to_utf8("\u00E4\xE4"), "\u00C3\u00A4\u00E4");
}

TEST(ToUtf8, GivesWellFormedTextForEveryByte) {
    for (int byte = 1; byte < 256; ++byte) {
        const std::string text = "a"s + static_cast<char>(byte);
        EXPECT_TRUE(is_utf8(to_utf8(text))) << byte;
    }
}

TEST(Characters, AreCountedAndCutWhole) {
    EXPECT_EQ(character_count("Öäz"), 3U);
    EXPECT_EQ(character_count(""), 0U);
    EXPECT_EQ(first_characters("Öäz", 2), "Öä");
    EXPECT_EQ(first_characters("Öäz", 3), "Öäz");
    EXPECT_EQ(first_characters("Öäz", 9), "Öäz");
    EXPECT_EQ(first_characters("水x", 0), "");
}

}  // namespace
}  // namespace nivora
