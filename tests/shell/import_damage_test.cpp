// Legacy files that can't be read: one message that says where, and an unchanged basin.
#include "base/durable_file.h"
#include "tests/shell/import_window_fixture.h"

namespace nivora {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class ImportDamageTest : public ImportWindowTest {
protected:
    /// Expects one stop message about the file and nothing else.
    void expect_refused(const std::filesystem::path& file, const std::string& where) {
        const std::size_t before = dialogs_.messages().size();
        expect_nothing_from(file);
        ASSERT_EQ(dialogs_.messages().size(), before + 1);
        EXPECT_EQ(last_message().title, "Import failed");
        EXPECT_EQ(last_message().icon, Icon::Stop);
        EXPECT_EQ(last_message().buttons, Buttons::Ok);
        EXPECT_THAT(last_message().text, HasSubstr(where));
        EXPECT_TRUE(dialogs_.inputs().size() == inputs_) << "no name is asked for";
    }
    /// Imports into a fresh basin, and into one that has a simulation.
    void expect_refused_everywhere(const LegacyParts& parts, const std::string& where) {
        expect_refused(legacy(parts), where);
        import_first();
        inputs_ = dialogs_.inputs().size();
        expect_refused(legacy(parts), where);
    }

    std::size_t inputs_ = 0;
};

TEST_F(ImportDamageTest, AMessageNamesFileLineAndSection) {
    LegacyParts parts;
    parts.section(LegacySection::Tavg) = "366*8,12,x1,366*2/";
    const auto file = legacy(parts);
    expect_refused(file, "'x1' is not a number");
    // Section 4 is on line 40.
    EXPECT_THAT(last_message().text,
                AllOf(StartsWith("The file '" + path_text(file) + "' can't be read as a legacy data file. "),
                      HasSubstr("Line 40, daily section 4 (Tavg): "), EndsWith("The basin is unchanged.")));
}

TEST_F(ImportDamageTest, LettersInAHeaderItemAreNamedByTheirItem) {
    LegacyParts parts;
    parts.x = "abc";
    expect_refused_everywhere(parts, "Line 21, header item 21: ");
}

TEST_F(ImportDamageTest, LettersInADailySectionAreNamedByTheSection) {
    LegacyParts parts;
    parts.section(LegacySection::RCA) = "366*1,366*none/";
    expect_refused_everywhere(parts, "Line 49, daily section 13 (RCA): ");
}

TEST_F(ImportDamageTest, ARepeatOfABillionIsRefused) {
    LegacyParts parts;
    parts.section(LegacySection::Precip) = "1000000000*0.5/";
    expect_refused_everywhere(parts, "Line 41, daily section 5 (Precip): more than 2928 values");
}

TEST_F(ImportDamageTest, ARepeatThatIsNegativeOrAFractionIsRefused) {
    for (const char* repeat : {"-3*1/", "0*1/", "1.5*1/", "x*1/"}) {
        LegacyParts parts;
        parts.section(LegacySection::SCA) = repeat;
        expect_refused(legacy(parts), "Line 42, daily section 6 (SCA): the repeat count of");
    }
}

TEST_F(ImportDamageTest, MoreThanEightZonesAreRefused) {
    for (const char* zones : {"9", "16"}) {
        LegacyParts parts;
        parts.zones = zones;
        expect_refused(legacy(parts), "Line 18, header item 18: a legacy file has at most 8 zones");
    }
}

TEST_F(ImportDamageTest, NoZonesOrAHugeNumberOfThemAreRefused) {
    for (const char* zones : {"0", "-1", "17", "1e9", "two"}) {
        LegacyParts parts;
        parts.zones = zones;
        expect_refused(legacy(parts), "Line 18, header item 18: ");
    }
}

TEST_F(ImportDamageTest, AMissingLastSlashIsRefused) {
    LegacyParts parts;
    parts.section(LegacySection::RCA) = "366*1,366*0";
    expect_refused_everywhere(parts, "daily section 13 (RCA): the file ends before the '/'");
}

TEST_F(ImportDamageTest, AFileThatIsCutOffIsRefusedWhereverThatIs) {
    const std::string text = LegacyParts{}.text();
    // Without its last "/" the last section has no end.
    // Steps of seven reach every line and many places within a line.
    for (std::size_t length = 0; length + 2 < text.size(); length += 7) {
        SCOPED_TRACE(length);
        expect_refused(user_.write("alder.NVR", text.substr(0, length)), "Line ");
        if (HasFailure()) return;
    }
    import_first();
    inputs_ = dialogs_.inputs().size();
    for (std::size_t length = 3; length + 2 < text.size(); length += 53) {
        SCOPED_TRACE(length);
        expect_refused(user_.write("alder.NVR", text.substr(0, length)), "Line ");
        if (HasFailure()) return;
    }
}

TEST_F(ImportDamageTest, BinaryFilesAreRefused) {
    std::string bytes;
    for (int i = 0; i < 5000; ++i) bytes += static_cast<char>(i * 37 % 256);
    expect_refused(user_.write("alder.NVR", bytes), "Line 1, header item 1: ");
    expect_refused(user_.write("alder.NVR", std::string(300, '\0')), "Line 1, header item 1: ");
}

TEST_F(ImportDamageTest, AMissingFileAndAFolderAreReported) {
    expect_refused(user_ / "nowhere.NVR", "nowhere.NVR");
    std::filesystem::create_directory(user_ / "folder.NVR");
    expect_refused(user_ / "folder.NVR", "folder.NVR");
}

TEST_F(ImportDamageTest, AFileThatWasRepairedIsImportedAfterwards) {
    LegacyParts parts;
    parts.section(LegacySection::Tavg) = "x/";
    expect_refused(legacy(parts), "daily section 4 (Tavg)");
    import_first();
}

TEST_F(ImportDamageTest, AnyLineEndAndAByteOrderMarkAreRead) {
    LegacyParts parts;
    parts.line_end = "\r\n";
    leave_definition(0);
    name("first").import(user_.write("alder.NVR", "\xEF\xBB\xBF" + parts.text()));
    parts.line_end = "\r";
    leave_definition(0);
    name("second").answer(Answer::Yes).import(legacy(parts));
    EXPECT_THAT(simulations(), testing::ElementsAre("first", "second"));
}

}  // namespace
}  // namespace nivora
