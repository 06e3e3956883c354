#include "session/report_file.h"

#include "base/scripted_dialogs.h"
#include "tests/reports/report_fixture.h"

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::Not;

/// The basin and the run of the report tests, in a session with the program folder `folder_`.
class ReportFileTest : public ReportTest {
protected:
    ReportFileTest() { write_tables(); }

    ReportFileOutcome write(const std::vector<Report>& reports) {
        session_.basin = basin_;
        session_.basin.Work_File = file_.path();
        session_.run = run_;
        return write_report_file(session_, folder_.path(), reports, moment());
    }
    [[nodiscard]] std::string content() const { return file_bytes(path_); }

    const std::filesystem::path path_ = folder_ / "NVRrpts.out";
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
};

TEST_F(ReportFileTest, OneRequestIsOneFileThatReplacesTheFormerOne) {
    folder_.write("NVRrpts.out", "an older and much longer report\r\n");
    const auto outcome = write({Report::Temperatures, Report::DataDescription});
    EXPECT_FALSE(outcome.problem);
    ASSERT_TRUE(outcome.file);
    EXPECT_EQ(outcome.file->path, path_);
    EXPECT_EQ(outcome.file->made, 2);
    EXPECT_EQ(outcome.file->text, content());
    EXPECT_THAT(content(), HasSubstr("Current data description"));
    EXPECT_LT(content().find("Current data description"), content().find("Temperature Values"));
    EXPECT_THAT(content(), Not(HasSubstr("older")));
    // Pages are counted from 1 in each file.
    EXPECT_EQ(content().substr(content().find("Page") + 13, 3), "1\r\n");
}

TEST_F(ReportFileTest, ARefusedReportEndsTheRequestAndThoseBeforeItAreInTheFile) {
    run_.LastRunSimulation = "another";
    const auto outcome = write({Report::DataDescription, Report::DegreeDays, Report::DeficitGain});
    ASSERT_TRUE(outcome.problem);
    EXPECT_EQ(outcome.problem->title, "Missing data!");
    ASSERT_TRUE(outcome.file);
    EXPECT_EQ(outcome.file->made, 1);
    EXPECT_THAT(content(), HasSubstr("Current data description"));
    EXPECT_THAT(content(), Not(HasSubstr("Zone Degree Days")));
}

TEST_F(ReportFileTest, ARefusalOfTheFirstReportLeavesAnEmptyFile) {
    folder_.write("NVRrpts.out", "before\r\n");
    run_.LastRunSimulation = "another";
    const auto outcome = write({Report::DegreeDays});
    EXPECT_TRUE(outcome.problem);
    ASSERT_TRUE(outcome.file);
    EXPECT_EQ(outcome.file->made, 0);
    EXPECT_EQ(content(), "");
}

TEST_F(ReportFileTest, TheClimateReportComesFromTheProgramFolder) {
    run_.ClimateStep = 6;
    const auto missing = write({Report::DeficitGain});
    ASSERT_TRUE(missing.problem);
    EXPECT_THAT(missing.problem->text, HasSubstr("NVR_DfGN.out"));
    folder_.write("NVR_DfGN.out", "Zone A gains\n");
    EXPECT_FALSE(write({Report::DeficitGain}).problem);
    EXPECT_EQ(content(), "Zone A gains\r\n");
}

TEST_F(ReportFileTest, AHugeClimateReportIsCopiedToItsLastLine) {
    constexpr int k_lines = 300'000;
    std::string report;
    std::string copied;
    for (int line = 1; line <= k_lines; ++line) {
        const std::string text = "Zone A gains " + std::to_string(line);
        report += text + "\n";
        copied += text + "\r\n";
    }
    folder_.write("NVR_DfGN.out", report);
    run_.ClimateStep = 6;
    const auto outcome = write({Report::DeficitGain});
    EXPECT_FALSE(outcome.problem);
    ASSERT_TRUE(outcome.file);
    EXPECT_TRUE(content() == copied);
    EXPECT_TRUE(outcome.file->text == copied);
}

TEST_F(ReportFileTest, AFileThatCannotBeWrittenStaysAndTheMessageNamesItAndTheRemedy) {
    folder_.write("NVRrpts.out", "before\r\n");
    std::filesystem::permissions(path_, std::filesystem::perms::owner_read);
    const auto outcome = write({Report::DataDescription});
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
    EXPECT_FALSE(outcome.file);
    ASSERT_TRUE(outcome.problem);
    EXPECT_EQ(outcome.problem->icon, Icon::Stop);
    EXPECT_THAT(outcome.problem->text, HasSubstr("NVRrpts.out"));
    EXPECT_THAT(outcome.problem->text, HasSubstr("produce the reports again"));
    EXPECT_EQ(content(), "before\r\n");
    EXPECT_EQ(folder_.entries().size(), 1U) << "nothing is left beside it";
}

TEST_F(ReportFileTest, AFolderOfThatNameIsReportedAndStays) {
    std::filesystem::create_directory(path_);
    const auto outcome = write({Report::DataDescription});
    EXPECT_FALSE(outcome.file);
    ASSERT_TRUE(outcome.problem);
    EXPECT_THAT(outcome.problem->text, HasSubstr("it is a folder"));
    EXPECT_TRUE(std::filesystem::is_directory(path_));
}

TEST_F(ReportFileTest, ABasinOfThatNameIsNotReplaced) {
    basin_.Basin_File = folder_.write("NVRrpts.out", "a basin");
    const auto outcome = write({Report::DataDescription});
    EXPECT_FALSE(outcome.file);
    EXPECT_TRUE(outcome.problem);
    EXPECT_EQ(content(), "a basin");
}

TEST_F(ReportFileTest, AMissingWorkingCopyIsReportedAndTheFileStays) {
    folder_.write("NVRrpts.out", "before\r\n");
    session_.basin = basin_;
    session_.basin.Work_File = folder_ / "gone.mdb";
    const std::vector<Report> reports{Report::DataDescription};
    const auto outcome = write_report_file(session_, folder_.path(), reports, moment());
    EXPECT_FALSE(outcome.file);
    ASSERT_TRUE(outcome.problem);
    EXPECT_THAT(outcome.problem->text, HasSubstr("gone.mdb"));
    EXPECT_EQ(content(), "before\r\n");
}

TEST_F(ReportFileTest, AMissingTableIsReportedAndTheReportsBeforeItAreInTheFile) {
    file_.change("DROP TABLE PhysicalData");
    const auto outcome = write({Report::Temperatures, Report::DegreeDayFactors});
    EXPECT_TRUE(outcome.problem);
    ASSERT_TRUE(outcome.file);
    EXPECT_EQ(outcome.file->made, 0);
    EXPECT_EQ(content(), "");
}

}  // namespace
}  // namespace nivora
