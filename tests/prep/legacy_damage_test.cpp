// Legacy files that are cut, damaged or something else: each is refused with a message of one line.
#include "tests/prep/legacy_text.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// The reader's refusal of a text, if any. Any other exception ends the test.
std::optional<LegacyFileError> refusal(const std::string& text) {
    try {
        static_cast<void>(read_legacy_file(text));
        return std::nullopt;
    } catch (const LegacyFileError& error) {
        return error;
    }
}

int line_count(const std::string& text) {
    return static_cast<int>(std::count(text.begin(), text.end(), '\n')) + 1;
}

TEST(LegacyDamage, AFileCutAtAnyByteIsRefusedInOneLineThatSaysWhere) {
    LegacyParts parts;
    parts.change_day = "0402";
    parts.section(LegacySection::Precip) = "0.5,3*0.25\n300*0\n/";
    const std::string text = parts.text();
    // Only the line end after the last slash may be missing.
    for (std::size_t length = 0; length + 1 < text.size(); ++length) {
        SCOPED_TRACE(length);
        const auto error = refusal(text.substr(0, length));
        ASSERT_TRUE(error.has_value());
        const std::string said = error->what();
        EXPECT_THAT(said, StartsWith("Line " + std::to_string(error->line()) + ", "));
        EXPECT_EQ(said.find('\n'), std::string::npos);
        EXPECT_GE(error->line(), 1);
        EXPECT_LE(error->line(), line_count(text.substr(0, length)));
    }
    EXPECT_FALSE(refusal(text.substr(0, text.size() - 1)));
}

TEST(LegacyDamage, AFileOfEveryVersionCutAtAnyByteIsRefused) {
    for (const char* version : {"/", "Version 2.0", "Version 3.1"}) {
        LegacyParts parts;
        parts.version = version;
        parts.extra.reset();
        if (version != std::string{"Version 3.1"}) parts.threshold.reset();
        parts.item_16.reset();
        parts.line_end = "\r\n";
        const std::string text = parts.text();
        for (std::size_t length = 0; length + 2 < text.size(); ++length) {
            ASSERT_TRUE(refusal(text.substr(0, length)).has_value()) << version << " cut at " << length;
        }
        ASSERT_FALSE(refusal(text).has_value()) << version;
    }
}

TEST(LegacyDamage, AnEmptyFileIsRefused) {
    for (const char* text : {"", "\n", "\r\n\r\n", "   ", "\xEF\xBB\xBF"}) {
        const auto error = refusal(text);
        ASSERT_TRUE(error.has_value());
        EXPECT_THAT(error->what(), HasSubstr("header item 1"));
    }
}

TEST(LegacyDamage, AMissingLastSlashIsRefusedAtTheEndOfTheFile) {
    LegacyParts parts;
    parts.section(LegacySection::RCA) = "366*1,366*0";
    const auto error = refusal(parts.text());
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->line(), 50);  // after the 49 lines of the file
    EXPECT_THAT(error->what(), HasSubstr("daily section 13 (RCA)"));
    EXPECT_THAT(error->what(), HasSubstr("'/'"));
}

TEST(LegacyDamage, AMissingSlashInTheMiddleContinuesIntoTheNextSectionsAndIsRefused) {
    LegacyParts parts;
    parts.section(LegacySection::Tmax) = "366*12,366*6";
    // Tmax continues into the line of Tmin, so that one section is missing at the end.
    const auto error = refusal(parts.text());
    ASSERT_TRUE(error.has_value());
    EXPECT_THAT(error->what(), HasSubstr("daily section 13 (RCA)"));
}

TEST(LegacyDamage, AProgramAPictureOrADatabaseIsRefusedAtItsFirstItem) {
    for (const std::string& bytes :
         {std::string{"\x7f"
                      "ELF\x02\x01\x01\0\0\0\0\0\0\0",
                      14},
          std::string{"\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16}, std::string{"SQLite format 3\0\x10\0\1\1", 20},
          std::string(4096, '\0'), std::string(100000, '\xff')}) {
        const auto error = refusal(bytes);
        ASSERT_TRUE(error.has_value());
        EXPECT_THAT(error->what(), StartsWith("Line 1, header item 1: "));
        EXPECT_LT(std::string{error->what()}.size(), 300U);
    }
}

TEST(LegacyDamage, TextWithTwoBytesPerCharacterIsRefused) {
    std::string wide = "\xff\xfe";
    for (const char character : LegacyParts{}.text()) wide += {character, '\0'};
    EXPECT_TRUE(refusal(wide).has_value());
}

TEST(LegacyDamage, AZeroByteInAValueIsRefusedAndShownAsAPlaceholder) {
    LegacyParts parts;
    parts.section(LegacySection::Tmin) = std::string{"1,2\0,3/", 7};
    const auto error = refusal(parts.text());
    ASSERT_TRUE(error.has_value());
    EXPECT_THAT(error->what(), HasSubstr("Line 39, daily section 3 (Tmin): '2?' is not a number"));
}

TEST(LegacyDamage, OnlyTheStartOfAVeryLongValueIsShown) {
    LegacyParts parts;
    parts.section(LegacySection::Tmin) = std::string(1000000, 'q') + "/";
    const auto error = refusal(parts.text());
    ASSERT_TRUE(error.has_value());
    EXPECT_LT(std::string{error->what()}.size(), 200U);
}

TEST(LegacyDamage, ManyLinesWithoutAValueAreReadToTheEnd) {
    LegacyParts parts;
    parts.section(LegacySection::Tmin) = std::string(100000, '\n') + "3/";
    EXPECT_EQ(parts.read().value(LegacySection::Tmin, 0, day(1996, 1, 1)), 3.0F);
}

TEST(LegacyDamage, RandomChangesNeverDoMoreThanRefuse) {
    const unsigned seed = std::random_device{}();
    RecordProperty("seed", std::to_string(seed));
    std::mt19937 random{seed};
    constexpr std::string_view k_spice = "/,*\"\r\n .-+eED019x\0\xff";
    LegacyParts parts;
    parts.change_day = "0402";
    const std::string text = parts.text();
    int read = 0;
    int refused = 0;
    for (int round = 0; round < 4000; ++round) {
        std::string changed = text;
        const int changes = 1 + static_cast<int>(random() % 4);
        for (int change = 0; change < changes; ++change) {
            const std::size_t at = random() % changed.size();
            const char character = k_spice[random() % k_spice.size()];
            switch (random() % 3) {
                case 0: changed[at] = character; break;
                case 1: changed.insert(at, 1, character); break;
                default: changed.erase(at, 1 + random() % 5); break;
            }
        }
        try {
            const LegacyFile file = read_legacy_file(changed);
            ++read;
            ASSERT_LE(file.end - file.start + 1, 366) << "seed " << seed << " round " << round;
            ASSERT_GE(file.end, file.start) << "seed " << seed << " round " << round;
            ASSERT_GE(file.zones.size(), 1U) << "seed " << seed << " round " << round;
            ASSERT_LE(file.zones.size(), 8U) << "seed " << seed << " round " << round;
        } catch (const LegacyFileError&) {
            ++refused;
        }
    }
    // Some changes hit items that nobody uses; others break what is needed.
    EXPECT_GT(read, 0) << "seed " << seed;
    EXPECT_GT(refused, 0) << "seed " << seed;
}

}  // namespace
}  // namespace nivora
