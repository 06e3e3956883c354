// The header of a legacy file: versions, items, quotes, zones.
#include "tests/prep/legacy_text.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::DoubleEq;
using testing::HasSubstr;
using testing::Optional;

/// The reader's refusal of a file; empty if it reads the file.
std::string refusal(const LegacyParts& parts) {
    try {
        static_cast<void>(parts.read());
    } catch (const LegacyFileError& error) {
        return error.what();
    }
    return {};
}

LegacyParts of_version(const std::string& version, bool has_threshold, bool has_extra) {
    LegacyParts parts;
    parts.version = version;
    parts.threshold = has_threshold ? std::optional<std::string>{"4.5"} : std::nullopt;
    parts.extra = has_extra ? std::optional<std::string>{"77"} : std::nullopt;
    return parts;
}

// The zones follow item 27 and the extra value: they are right only if the
// reader read exactly the items of this version.
void expect_alder_zones(const LegacyFile& file) {
    ASSERT_EQ(file.zones.size(), 2U);
    EXPECT_EQ(file.zones[0].area, 40.0);
    EXPECT_EQ(file.zones[0].elevation, 1500.0);
    EXPECT_EQ(file.zones[1].area, 60.0);
    EXPECT_EQ(file.zones[1].elevation, 2500.0);
}

TEST(LegacyVersion, ASlashMeansVersionOne) {
    const LegacyFile file = of_version("/", false, false).read();
    EXPECT_EQ(file.version, 1.0F);
    expect_alder_zones(file);
}

TEST(LegacyVersion, UpToTwoAFileHasNoThresholdOfItsOwn) {
    for (const char* version : {"/", "Version 1.00", "Version 1.9", "Version 2.0", "Version 2"}) {
        SCOPED_TRACE(version);
        const LegacyFile file = of_version(version, false, false).read();
        EXPECT_THAT(file.rain_threshold, Optional(DoubleEq(6.0)));
        expect_alder_zones(file);
    }
}

TEST(LegacyVersion, AboveTwoAFileHasAThresholdOfItsOwn) {
    for (const char* version : {"Version 2.1", "Version 2.01", "Version 3.0", "Version 3.1"}) {
        SCOPED_TRACE(version);
        const LegacyFile file = of_version(version, true, false).read();
        EXPECT_THAT(file.rain_threshold, Optional(DoubleEq(4.5)));
        expect_alder_zones(file);
    }
}

TEST(LegacyVersion, AboveThreePointOneAFileHasOneMoreNumber) {
    for (const char* version : {"Version 3.11", "Version 3.2", "Version 4"}) {
        SCOPED_TRACE(version);
        const LegacyFile file = of_version(version, true, true).read();
        EXPECT_THAT(file.rain_threshold, Optional(DoubleEq(4.5)));
        expect_alder_zones(file);
    }
}

// 3.1 as a Single is 3.0999999046, as a Double 3.1000000000000001: only as Singles are the two equal.
TEST(LegacyVersion, AVersionIsComparedAsASingle) {
    const LegacyFile file = of_version("Version 3.1", true, false).read();
    EXPECT_EQ(file.version, 3.1F);
    expect_alder_zones(file);

    // 3.10000001 as a Single is 3.1, too: Singles are 2.4E-07 apart here.
    expect_alder_zones(of_version("Version 3.10000001", true, false).read());
}

TEST(LegacyVersion, ItsNumberStartsAtTheNinthCharacter) {
    EXPECT_EQ(of_version("Format #3.2", true, true).read().version, 3.2F);
    EXPECT_EQ(of_version("\"Version 3.2\"", true, true).read().version, 3.2F);
    EXPECT_EQ(of_version("Version  2.1", true, false).read().version, 2.1F);
}

TEST(LegacyVersion, AFirstItemWithoutANumberIsRefused) {
    for (const char* version : {"Version", "Version ", "3.2", "Version x", "//", "Version -1", "Version 0"}) {
        SCOPED_TRACE(version);
        EXPECT_THAT(refusal(of_version(version, true, true)), HasSubstr("Line 1, header item 1: "));
    }
}

TEST(LegacyVersion, AMissingExtraNumberIsRefusedAtItsLine) {
    LegacyParts parts;
    parts.extra = "forty";
    EXPECT_THAT(refusal(parts), HasSubstr("Line 28, the number after header item 27: "));
    EXPECT_THAT(refusal(parts), HasSubstr("'forty' is not a number"));
}

TEST(LegacyThreshold, TheDefaultOfAnEnglishFileIs2Point36Inches) {
    LegacyParts parts = of_version("Version 2.0", false, false);
    parts.units = "1";
    EXPECT_THAT(parts.read().rain_threshold, Optional(DoubleEq(2.36)));
}

TEST(LegacyThreshold, TheFilesOwnOneIsUsedInEnglishUnitsToo) {
    LegacyParts parts;
    parts.units = "1";
    EXPECT_THAT(parts.read().rain_threshold, Optional(DoubleEq(5.0)));
}

TEST(LegacyThreshold, OneThatASingleCannotHoldIsRefused) {
    LegacyParts parts;
    parts.threshold = "1e39";  // the largest Single is 3.4E+38
    EXPECT_THAT(refusal(parts), HasSubstr("Line 27, header item 27: "));
}

TEST(LegacyThreshold, LettersAreRefused) {
    LegacyParts parts;
    parts.threshold = "heavy";
    EXPECT_THAT(refusal(parts), HasSubstr("Line 27, header item 27: "));
}

TEST(LegacyUnits, ZeroIsMetricAndAnythingElseEnglish) {
    for (const auto& [item, english] : std::vector<std::pair<std::string, bool>>{
             {"0", false}, {" 0 ", false}, {"\"0\"", false}, {"1", true}, {"2", true}, {"-1", true}}) {
        SCOPED_TRACE(item);
        LegacyParts parts;
        parts.units = item;
        EXPECT_EQ(parts.read().english, english);
    }
}

TEST(LegacyItem16, AFileMayOmitIt) {
    LegacyParts parts;
    parts.item_16.reset();
    const LegacyFile file = parts.read();
    EXPECT_EQ(file.basin_name, "Alder Brook");
    EXPECT_EQ(file.start, day(1996, 4, 1));
    EXPECT_EQ(file.x, 0.9);
    EXPECT_THAT(file.rain_threshold, Optional(DoubleEq(5.0)));
    expect_alder_zones(file);
}

TEST(LegacyItem16, ItsContentDoesNotCount) {
    for (const char* content : {"0", "", "2", "1996", "\"a, b\""}) {
        SCOPED_TRACE(content);
        LegacyParts parts;
        parts.item_16 = content;
        const LegacyFile file = parts.read();
        EXPECT_EQ(file.basin_name, "Alder Brook");
        expect_alder_zones(file);
    }
}

TEST(LegacyItem16, TheOldestFormMayOmitItToo) {
    LegacyParts parts = of_version("/", false, false);
    parts.item_16.reset();
    expect_alder_zones(parts.read());
}

TEST(LegacyHeader, TheItemsThatNobodyUsesMayHoldAnything) {
    for (const char* filler : {"", "letters", "\"quoted, with a comma\"", "-1e99"}) {
        SCOPED_TRACE(filler);
        LegacyParts parts;
        parts.filler = filler;
        expect_alder_zones(parts.read());
    }
}

TEST(LegacyHeader, ItsItemsMayBeOnOneLine) {
    LegacyParts parts;
    std::string text = parts.text();
    const std::size_t header_end = text.find("366*");
    for (std::size_t at = 0; at + 1 < header_end; ++at) {
        if (text[at] == '\n') text[at] = ',';
    }
    const LegacyFile file = read_legacy_file(text);
    EXPECT_EQ(file.basin_name, "Alder Brook");
    expect_alder_zones(file);
    EXPECT_EQ(file.value(LegacySection::Runoff, 0, day(1996, 4, 1)), 10.0F);
}

TEST(LegacyHeader, APairMayBeOnTwoLines) {
    LegacyParts parts;
    parts.pairs[0] = "40\n1500";
    expect_alder_zones(parts.read());
}

TEST(LegacyHeader, BlanksAroundItemsDoNotCount) {
    LegacyParts parts;
    parts.pairs[0] = "  40 ,\t1500  ";
    parts.year = " 1996 ";
    parts.start = "  0401";
    const LegacyFile file = parts.read();
    expect_alder_zones(file);
    EXPECT_EQ(file.start, day(1996, 4, 1));
}

TEST(LegacyHeader, RecessionAndElevationComeFromTheirItems) {
    LegacyParts parts;
    parts.change_day = "0402";
    const LegacyFile file = parts.read();
    EXPECT_EQ(file.x, 0.9);
    EXPECT_EQ(file.x_later, 0.8);
    EXPECT_EQ(file.y, 0.05);
    EXPECT_EQ(file.y_later, 0.04);
    EXPECT_THAT(file.reference_elevation, Optional(DoubleEq(1800.0)));
}

TEST(LegacyHeader, ABlankReferenceElevationIsMissing) {
    LegacyParts parts;
    parts.reference_elevation = "";
    EXPECT_EQ(parts.read().reference_elevation, std::nullopt);
}

TEST(LegacyHeader, LettersForANumberAreRefusedAtTheirLine) {
    LegacyParts parts;
    parts.x = "zero";
    EXPECT_THAT(refusal(parts), HasSubstr("Line 21, header item 21: "));
    parts = {};
    parts.y = "1,5";  // the 5 is read as the later y, and the later y as the change day
    parts.y_later = "not read";
    parts.change_day = "0402";
    EXPECT_THAT(refusal(parts), HasSubstr("Line 24, header item 25: "));
    parts = {};
    parts.reference_elevation = "high";
    EXPECT_THAT(refusal(parts), HasSubstr("Line 26, header item 26: "));
    parts = {};
    parts.pairs[1] = "60,steep";
    EXPECT_THAT(refusal(parts), HasSubstr("Line 30, header item 31: "));
}

TEST(LegacyHeader, ANumberTooLargeForADoubleIsRefused) {
    LegacyParts parts;
    parts.pairs[0] = "1e400,1500";
    EXPECT_THAT(refusal(parts), HasSubstr("Line 29, header item 28: "));
}

// A line of a binary file may have any length and contain control characters, which a terminal would execute.
TEST(LegacyHeader, ARefusalShowsAtMostTheStartOfAnItemAndNoControlCharacters) {
    LegacyParts parts;
    parts.x = "\x1b[2J" + std::string(100000, 'x');
    const std::string said = refusal(parts);
    EXPECT_THAT(said, HasSubstr("Line 21, header item 21: "));
    EXPECT_LT(said.size(), 200U);
    EXPECT_EQ(said.find('\x1b'), std::string::npos);
}

TEST(LegacyZones, OneToEightAreRead) {
    for (int zones = 1; zones <= 8; ++zones) {
        SCOPED_TRACE(zones);
        LegacyParts parts;
        parts.zones = std::to_string(zones);
        parts.pairs = legacy_pairs(zones);
        const LegacyFile file = parts.read();
        ASSERT_EQ(file.zones.size(), static_cast<std::size_t>(zones));
        EXPECT_EQ(file.zones.back().area, zones * 10.0);
        EXPECT_EQ(file.zones.back().elevation, 900.0 + zones * 100.0);
    }
}

TEST(LegacyZones, APairAfterTheLastZoneIsSkipped) {
    LegacyParts parts;
    parts.zones = "1";
    const LegacyFile file = parts.read();
    ASSERT_EQ(file.zones.size(), 1U);
    EXPECT_EQ(file.zones[0].area, 40.0);
}

TEST(LegacyZones, APairAfterTheLastZoneMayBeBlank) {
    LegacyParts parts;
    parts.zones = "1";
    for (std::size_t pair = 1; pair < parts.pairs.size(); ++pair) parts.pairs[pair] = ",";
    const LegacyFile file = parts.read();
    ASSERT_EQ(file.zones.size(), 1U);
    EXPECT_EQ(file.zones[0].area, 40.0);
    parts.pairs[0] = ",";
    EXPECT_THAT(refusal(parts), HasSubstr("the area of a zone is not a number"));
}

TEST(LegacyZones, NineAreRefusedAtTheirLine) {
    LegacyParts parts;
    parts.zones = "9";
    EXPECT_THAT(refusal(parts), HasSubstr("Line 18, header item 18: "));
    EXPECT_THAT(refusal(parts), HasSubstr("at most 8 zones"));
}

TEST(LegacyZones, NoneNegativeFractionalHugeAndLettersAreRefused) {
    for (const char* zones : {"0", "-1", "1.5", "17", "1000000000000", "two", ""}) {
        SCOPED_TRACE(zones);
        LegacyParts parts;
        parts.zones = zones;
        EXPECT_THAT(refusal(parts), HasSubstr("Line 18, header item 18: "));
    }
}

TEST(LegacyZones, FewerThanEightPairsAreRefused) {
    LegacyParts parts;
    parts.pairs.resize(2);
    EXPECT_THAT(refusal(parts), HasSubstr("header item"));
}

TEST(LegacyName, TheQuotesOfFreeFormatInputAreNotPartOfIt) {
    for (const char* version : {"Version 3.11", "Version 3.2"}) {
        SCOPED_TRACE(version);
        LegacyParts parts;
        parts.version = version;
        parts.name = "\"Alder, upper gauge\"";
        EXPECT_EQ(parts.read().basin_name, "Alder, upper gauge");
        parts.name = "Alder Brook";
        EXPECT_EQ(parts.read().basin_name, "Alder Brook");
    }
}

TEST(LegacyName, UpTo3Point11QuotesOfItsOwnAreRemoved) {
    LegacyParts parts;
    parts.version = "Version 3.11";
    parts.name = "\"\"Alder Brook\"\"";
    EXPECT_EQ(parts.read().basin_name, "Alder Brook");
    LegacyParts old = of_version("/", false, false);
    old.name = "\"\"Alder Brook\"\"";
    EXPECT_EQ(old.read().basin_name, "Alder Brook");
}

TEST(LegacyName, Above3Point11QuotesOfItsOwnStay) {
    LegacyParts parts;
    parts.name = "\"\"Alder Brook\"\"";
    EXPECT_EQ(parts.read().basin_name, "\"Alder Brook\"");
}

TEST(LegacyName, QuotesInsideItStay) {
    for (const char* version : {"Version 3.11", "Version 3.2"}) {
        SCOPED_TRACE(version);
        LegacyParts parts;
        parts.version = version;
        parts.name = "\"The \"Alder\" Brook\"";
        EXPECT_EQ(parts.read().basin_name, "The \"Alder\" Brook");
    }
}

TEST(LegacyName, AQuoteThatIsNeverClosedEndsWithItsLine) {
    LegacyParts parts;
    parts.name = "\"Alder Brook";
    const LegacyFile file = parts.read();
    EXPECT_EQ(file.basin_name, "Alder Brook");
    expect_alder_zones(file);
}

TEST(LegacyName, ItMayBeEmpty) {
    LegacyParts parts;
    parts.name = "\"\"";
    EXPECT_EQ(parts.read().basin_name, "");
}

TEST(LegacyName, LettersOfTheOldCodePageBecomeUtf8) {
    LegacyParts parts;
    parts.name = "\"Gr\xfcnbach \x80\"";  // code page 1252: u with diaeresis, euro sign
    EXPECT_EQ(parts.read().basin_name, "Gr\xc3\xbcnbach \xe2\x82\xac");
}

TEST(LegacyName, Utf8Stays) {
    LegacyParts parts;
    parts.name = "\"\xe5\xb1\xb1\xe5\xb7\x9d Gr\xc3\xbcnbach\"";
    EXPECT_EQ(parts.read().basin_name, "\xe5\xb1\xb1\xe5\xb7\x9d Gr\xc3\xbcnbach");
}

}  // namespace
}  // namespace nivora
