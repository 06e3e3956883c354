// The chapters on calibration and samples quote what the program prints.
#include "tests/batch/study_call.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;

class ManualStudiesTest : public StudyFolder {
protected:
    [[nodiscard]] static std::string chapter(const std::string& name) {
        return file_bytes(std::filesystem::path{NIVORA_SOURCE_DIR} / "docs/manual" / name);
    }
    [[nodiscard]] std::string study_output(const std::string& command,
                                           const std::vector<std::string>& more) const {
        const BatchResult result = study(command, more);
        EXPECT_EQ(result.status, 0) << result.err;
        return result.out;
    }
};

const std::vector<std::string> k_three{"--free", "Degree Day Factors:multiply:0.7..1.4:All",
                                       "--free", "Critical Temperature:add:-1..1:All",
                                       "--free", "Recession Coefficient x:multiply:0.9..1.05:All"};

TEST_F(ManualStudiesTest, TheCalibrationIsWhatTheProgramPrints) {
    std::vector<std::string> options = k_three;
    options.insert(options.end(), {"--fit", "1998-04-01..1998-09-30", "--check", "1997-10-01..1998-03-31"});
    EXPECT_THAT(chapter("29-calibration.md"),
                HasSubstr("```\n" + study_output("calibrate", options) + "```\n"));
    const std::string front =
        study_output("calibrate", {"--free", "Degree Day Factors:multiply:0.7..1.4:All", "--free",
                                   "Recession Coefficient x:multiply:0.9..1.05:All", "--objective", "KGE",
                                   "--objective", "NSE of logs", "--evaluations", "400"});
    const auto lines = lines_of(front);
    ASSERT_GT(lines.size(), 10U);
    for (std::size_t i = 6; i < 11; ++i)
        EXPECT_THAT(chapter("29-calibration.md"), HasSubstr("\n" + lines[i] + "\n"));
}

TEST_F(ManualStudiesTest, TheSampleIsWhatTheProgramPrints) {
    std::vector<std::string> options = k_three;
    options.insert(options.end(), {"--runs", "5000", "--sensitivity", "--keep", "NSE>0.9", "--out",
                                   path("runs.csv"), "--bands", path("bands.csv")});
    EXPECT_THAT(chapter("30-samples.md"), HasSubstr("```\n" + study_output("sample", options) + "```\n"));
}

}  // namespace
}  // namespace nivora
