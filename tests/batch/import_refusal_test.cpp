// Imports that are refused, invalid or without a name: they change no byte of a basin and leave no file.
#include "tests/batch/batch_call.h"

#include <SQLiteCpp/Statement.h>
#include <gmock/gmock.h>

#include <functional>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// Expects a call to be refused and to leave the folder's files unchanged, byte for byte.
void expect_nothing_changes(const BatchFolder& batch_folder, const std::function<BatchResult()>& call,
                            const std::string& said) {
    const std::vector<std::string> names = batch_folder.names();
    std::vector<std::string> contents;
    for (const std::string& name : names) {
        const bool file = std::filesystem::is_regular_file(batch_folder.path(name));
        contents.push_back(file ? file_bytes(batch_folder.path(name)) : std::string{});
    }
    const BatchResult result = call();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr(said));
    ASSERT_EQ(batch_folder.names(), names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!std::filesystem::is_regular_file(batch_folder.path(names[i]))) continue;
        EXPECT_TRUE(file_bytes(batch_folder.path(names[i])) == contents[i]) << names[i] << " has changed";
    }
}

/// The same import into a new basin and into an existing one.
void expect_refused(const LegacyParts& parts, const std::vector<std::string>& options,
                    const std::string& said) {
    const BatchFolder fresh{parts};
    expect_nothing_changes(
        fresh, [&] { return fresh.import(options); }, said);
    const BatchFolder filled;
    ASSERT_EQ(filled.import({"--name", "first"}).status, 0);
    filled.write(parts);
    expect_nothing_changes(
        filled, [&] { return filled.import(options); }, said);
}

TEST(ImportRefusal, AFileCutAtAnyByteChangesNothing) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    const std::string before = batch_folder.bytes();
    const std::string text = LegacyParts{}.text();
    const std::string fresh = batch_folder.path("fresh.mdb");
    for (std::size_t length = 0; length + 1 < text.size(); ++length) {
        batch_folder.folder().write("alder.NVR", text.substr(0, length));
        const BatchResult result = batch_folder.import();
        ASSERT_EQ(result.status, 1) << length;
        ASSERT_EQ(lines_of(result.err).size(), 1U) << length << ": " << result.err;
        ASSERT_THAT(result.err, HasSubstr("alder.NVR' can't be read as a legacy data file. Line ")) << length;
        ASSERT_TRUE(batch_folder.bytes() == before) << length;
        ASSERT_EQ(batch({"import", batch_folder.file(), fresh}).status, 1) << length;
    }
    EXPECT_THAT(batch_folder.names(), ElementsAre("alder.NVR", "basin.mdb"));
}

TEST(ImportRefusal, AnInvalidFileIsReportedWithFileSectionAndLine) {
    LegacyParts parts;
    parts.section(LegacySection::Precip) = "366*0.5,\nrain/";
    // The section's second line is line 42.
    expect_refused(parts, {},
                   "alder.NVR' can't be read as a legacy data file. Line 42, daily section 5 (Precip): "
                   "'rain' is not a number. [OK]\n");
}

TEST(ImportRefusal, BadRepeatsZonesAndMissingSlashesAreReportedInOneLine) {
    std::vector<std::pair<LegacyParts, std::string>> cases;
    for (const char* repeat : {"-3*1/", "1.5*1/", "1e9*1/"}) {
        LegacyParts parts;
        parts.section(LegacySection::Tavg) = repeat;
        cases.emplace_back(parts, "Line 40, daily section 4 (Tavg): ");
    }
    for (const char* zones : {"9", "0", "-2"}) {
        LegacyParts parts;
        parts.zones = zones;
        cases.emplace_back(parts, "Line 18, header item 18: ");
    }
    LegacyParts open_ended;
    open_ended.section(LegacySection::RCA) = "366*1";
    cases.emplace_back(open_ended, "daily section 13 (RCA): ");
    for (const auto& [parts, said] : cases) {
        SCOPED_TRACE(said);
        expect_refused(parts, {}, said);
    }
}

TEST(ImportRefusal, EmptyAndBinaryFilesAreRefused) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    for (const std::string& bytes : {std::string{}, std::string(5000, '\0'), batch_folder.bytes()}) {
        batch_folder.folder().write("alder.NVR", bytes);
        expect_nothing_changes(
            batch_folder, [&] { return batch_folder.import(); }, "Line 1, header item 1: ");
    }
}

TEST(ImportRefusal, AMissingFileIsRefused) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    for (const char* basin : {"basin.mdb", "fresh.mdb"}) {
        expect_nothing_changes(
            batch_folder,
            [&] {
                return batch({"import", batch_folder.path("none.NVR"), batch_folder.path(basin)});
            },
            "none.NVR' can't be read: there is no such file.");
    }
}

TEST(ImportRefusal, AFolderIsNotALegacyFile) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    std::filesystem::create_directory(batch_folder.path("folder.NVR"));
    expect_nothing_changes(
        batch_folder,
        [&] {
            return batch({"import", batch_folder.path("folder.NVR"), batch_folder.basin()});
        },
        "folder.NVR' can't be read: it is a folder.");
}

TEST(ImportRefusal, AFolderIsNotABasin) {
    const BatchFolder batch_folder;
    std::filesystem::create_directory(batch_folder.basin());
    expect_nothing_changes(
        batch_folder, [&] { return batch_folder.import(); }, "basin.mdb' is a folder");
    EXPECT_TRUE(std::filesystem::is_empty(batch_folder.basin()));
}

TEST(ImportRefusal, AFileThatIsNotABasinStaysAsItIs) {
    for (const std::string& bytes : {std::string{}, std::string{"a shopping list\n"}, std::string(4096, 'x'),
                                     std::string{"SQLite format 3\0", 16}}) {
        const BatchFolder batch_folder;
        batch_folder.folder().write("basin.mdb", bytes);
        expect_nothing_changes(
            batch_folder, [&] { return batch_folder.import(); }, "basin.mdb' is not a Nivora basin file");
    }
}

TEST(ImportRefusal, TheLegacyFileItselfIsNotABasin) {
    const BatchFolder batch_folder;
    expect_nothing_changes(
        batch_folder,
        [&] {
            return batch({"import", batch_folder.file(), batch_folder.file()});
        },
        "alder.NVR' is not a Nivora basin file");
}

TEST(ImportRefusal, ADatabaseOfAnotherProgramStaysAsItIs) {
    const BatchFolder batch_folder;
    {
        SQLite::Database other{batch_folder.basin(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
        other.exec("CREATE TABLE BasinDescription (BasinName TEXT)");
    }
    expect_nothing_changes(
        batch_folder, [&] { return batch_folder.import(); }, "is a database of another program");
}

TEST(ImportRefusal, ABasinOfANewerProgramStaysAsItIs) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    batch_folder.execute("PRAGMA user_version = 999");
    expect_nothing_changes(
        batch_folder, [&] { return batch_folder.import(); }, "newer version of Nivora");
}

TEST(ImportRefusal, ABasinCutInTheMiddleStaysAsItIs) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    const std::string whole = batch_folder.bytes();
    for (const std::size_t length :
         {std::size_t{50}, std::size_t{100}, std::size_t{5000}, whole.size() / 2}) {
        SCOPED_TRACE(length);
        batch_folder.folder().write("basin.mdb", whole.substr(0, length));
        expect_nothing_changes(
            batch_folder, [&] { return batch_folder.import(); }, "Import failed: ");
    }
}

TEST(ImportRefusal, AMissingFolderForTheBasinIsRefused) {
    const BatchFolder batch_folder;
    expect_nothing_changes(
        batch_folder,
        [&] {
            return batch({"import", batch_folder.file(), batch_folder.path("none/basin.mdb")});
        },
        "Import failed: ");
}

TEST(ImportRefusal, ANameLongerThanTheFileSystemHoldsIsRefused) {
    const BatchFolder batch_folder;
    expect_nothing_changes(
        batch_folder,
        [&] {
            return batch({"import", batch_folder.file(), batch_folder.path(std::string(300, 'n') + ".mdb")});
        },
        ": ");
}

TEST(ImportRefusal, OtherUnitsAreRefused) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    LegacyParts parts;
    parts.units = "1";
    batch_folder.write(parts);
    expect_nothing_changes(
        batch_folder, [&] { return batch_folder.import(); },
        "Import failed.  Simulation units inconsistent with basin.: You cannot mix English & Metric units in "
        "the same basin database.  Please create a new database [OK]\n");
}

TEST(ImportRefusal, AnotherNumberOfZonesIsRefused) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    LegacyParts parts;
    parts.zones = "1";
    batch_folder.write(parts);
    expect_nothing_changes(
        batch_folder, [&] { return batch_folder.import(); }, "Zones in import file don't match basin");
}

TEST(ImportRefusal, RefusingTheQuestionOfTheZonesEndsTheImport) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    LegacyParts parts;
    parts.pairs[0] = "41,1500";
    batch_folder.write(parts);
    expect_nothing_changes(
        batch_folder, [&] { return batch_folder.import({"--refuse"}); },
        "already exists.  Overwrite? [Cancel]\n");
}

TEST(ImportRefusal, RefusingToOverwriteASimulationEndsTheImport) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    expect_nothing_changes(
        batch_folder, [&] { return batch_folder.import({"--refuse"}); },
        "already contains a simulation named 'alder '.  Overwrite? [No]\n");
}

TEST(ImportRefusal, DatesWithMoreThanMonthAndDayAreRefusedWithItemAndLine) {
    LegacyParts parts;
    parts.end = "0403\xc3\xb9";
    expect_refused(parts, {}, "Line 4, header item 4: '0403\xc3\xb9' is not a date of 1996 in the form MMDD");
    parts.end = "3.157";
    expect_refused(parts, {}, "Line 4, header item 4: '3.157' is not a date of 1996 in the form MMDD");
}

TEST(ImportRefusal, ANegativeInitialRunoffIsRefused) {
    expect_refused(LegacyParts{}, {"--initial-runoff=-2.5"},
                   "Invalid initial runoff: The initial runoff is -2.5. A runoff cannot be below 0: give the "
                   "discharge of the day before the simulation starts. [OK]\n");
}

TEST(ImportRefusal, WithoutANameNothingIsImported) {
    for (const char* name : {"", "   "}) expect_refused({}, {"--name", name}, "Nothing was imported");
}

TEST(ImportRefusal, NamesWithInvalidCharactersAreReportedAsByThePrompt) {
    for (const char* name : {"a.b", "a!b", "a[b", "a]b", "a`b", "\xff"}) {
        SCOPED_TRACE(name);
        expect_refused({}, {"--name", name},
                       "Name the Imported Simulation: Invalid character(s) in name, please re-enter [OK]\n");
    }
}

TEST(ImportRefusal, NamesReservedByTheProgramOrItsStoreAreRefused) {
    for (const char* name : {"sqlite_master", "SimResults", "physicaldata", "BasinAverages"}) {
        SCOPED_TRACE(name);
        expect_refused({}, {"--name", name}, "Nothing was imported");
    }
}

TEST(ImportRefusal, AnOfferedNameWithAPointIsRefused) {
    const BatchFolder batch_folder;
    for (const char* file : {"alder.1996.NVR", "alder.Nvr"}) {
        batch_folder.folder().write(file, LegacyParts{}.text());
        expect_nothing_changes(
            batch_folder,
            [&] {
                return batch({"import", batch_folder.path(file), batch_folder.basin()});
            },
            "Invalid character(s) in name, please re-enter");
    }
}

TEST(ImportRefusal, MaxMinTemperaturesByZoneAreRefused) {
    expect_refused(
        {}, {"--temperature", "max-min", "--by-zone", "temperature"},
        "Max/min temperature problem: Max/min temperatures cannot currently be entered for each zone");
}

TEST(ImportRefusal, ALatitudeBeyondAPoleIsRefused) {
    for (const char* latitude : {"90.5", "-91", "1e30"})
        expect_refused({}, {"--latitude", latitude}, "Latitude");
}

TEST(ImportRefusal, AnImportThatTheStoreRefusesHalfWayIsUndone) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    batch_folder.execute("DROP TABLE SimulationIndex");  // which is read last
    expect_nothing_changes(
        batch_folder,
        [&] {
            return batch_folder.import({"--name", "second"});
        },
        "Import failed: ");
}

TEST(ImportRefusal, ABasinThatAnotherProgramHoldsStaysAsItIs) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    BasinDatabase other{batch_folder.basin(), Access::ReadWrite};
    other.execute("BEGIN IMMEDIATE");
    const std::string before = batch_folder.bytes();
    const BatchResult result = batch_folder.import({"--name", "second", "--wait", "0"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, StartsWith("Import failed: The file '"));
    EXPECT_THAT(result.err, HasSubstr("is in use by another program"));
    other.execute("ROLLBACK");
    EXPECT_TRUE(batch_folder.bytes() == before);
}

}  // namespace
}  // namespace nivora
