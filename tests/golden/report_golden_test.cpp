// The reports of the sample basin, compared with kept ones byte by byte.
//
// The kept files have LF instead of CR LF, which is checked here, and no folder of the basin.

#include "tests/batch/batch_call.h"
#include "tests/reports/report_text.h"
#include "tests/support/comma_locale.h"
#include "tests/support/golden.h"

namespace nivora {
namespace {

struct ReportCase {
    const char* name;
    std::vector<std::string> run;     // how the results are made, without basin and simulation
    std::vector<std::string> report;  // more options of the reports
    bool english = false;
    const char* record = "ellervane-1997-98";  // of data/samples, without its ending
    const char* initial_runoff = "2.851";
};

void PrintTo(const ReportCase& reports, std::ostream* out) { *out << reports.name; }

/// The sample in inches, feet, °F and ft³/s.
void make_english(const std::string& basin) {
    BasinDatabase database{path_from_utf8(basin), Access::ReadWrite};
    for (const char* statement :
         {"UPDATE BasinDescription SET Units = 1, RefElev = RefElev * 3.28084",
          "UPDATE ZoneDescription SET ZoneArea = round(ZoneArea * 0.386102, 3), "
          "HypsometricElevation = round(HypsometricElevation * 3.28084)",
          // Initial runoff and threshold; these are the names of their fields in the file.
          "UPDATE SimulationIndex SET SimUnits = 1, SimPrecipThreshold = single(100.68), "
          "SimX = single(2.36)",
          "UPDATE PhysicalData SET Runoff = single(Runoff * 35.31467), Tmax = single(Tmax * 1.8 + 32), "
          "Tmin = single(Tmin * 1.8 + 32), Tavg = single(Tavg * 1.8 + 32), Precip = single(Precip / 2.54)",
          "UPDATE sample SET An = single(An / 4.572), LapseRate = single(LapseRate * 5.4864), "
          "Tcrit = single(Tcrit * 1.8)"}) {
        database.execute(statement);
    }
}

class SampleReports : public testing::TestWithParam<ReportCase> {
protected:
    void SetUp() override {
        const std::string samples = std::string{NIVORA_SOURCE_DIR} + "/data/samples/";
        printed({"import", samples + GetParam().record + ".NVR", basin_, "--name", "sample", "--latitude",
                 "46.5", "--initial-runoff", GetParam().initial_runoff});
        BasinDatabase{path_from_utf8(basin_), Access::ReadWrite}.execute(
            "UPDATE SimulationIndex SET SimRunNumber = 3, "
            "SimComments = 'Snow cover of the upper zones is read from pictures.' || char(13, 10) || "
            "'A second line: m³/s, Ötztal, 水文.'");
        if (GetParam().english) make_english(basin_);
        if (!GetParam().run.empty()) make_results();
    }

    void make_results() {
        if (GetParam().run.front() == "climate") {
            printed({"scenario", basin_, "--simulation", "sample", "--name", "warm and wet", "--winter-end",
                     "1998-03-31", "--edit",
                     "Average Temperature:1997-10-01:1998-09-30:Add/subtract to each:2:All", "--edit",
                     "Precipitation:1997-10-01:1998-09-30:Multiply each:1.1:All"});
        }
        std::vector<std::string> run{GetParam().run.front(), basin_, "--simulation", "sample"};
        run.insert(run.end(), GetParam().run.begin() + 1, GetParam().run.end());
        printed(run);
    }

    /// The bytes of all reports that a user may choose.
    std::string reports() {
        const std::string file = path_text(folder_ / "reports.txt");
        std::vector<std::string> call{"report", basin_, "--simulation", "sample",
                                      "--out",  file,   "--now",        "2026-03-05T13:30:15"};
        call.insert(call.end(), GetParam().report.begin(), GetParam().report.end());
        if (call.back() == "--climate-report") call.push_back(lasting_climate_report());
        EXPECT_EQ(printed(call), "");
        return file_bytes(folder_ / "reports.txt");
    }

    TemporaryFolder folder_;
    std::string basin_ = path_text(folder_ / "sample.mdb");

private:
    /// The report of step 5 without the lines that have the day of the test.
    std::string lasting_climate_report() {
        std::string lasting;
        for (const std::string& line : report_text_lines(file_bytes(folder_ / "NVR_DfGN.out"))) {
            const bool passing = line.starts_with("Date:") || line.find("Page") != std::string::npos;
            if (!passing) lasting += line + "\r\n";
        }
        return path_text(folder_.write("climate report.out", lasting));
    }
};

TEST_P(SampleReports, EqualTheKeptOnes) {
    std::string computed;
    for (std::string line : report_text_lines(reports())) {
        const std::size_t place = line.find(basin_);
        if (place != std::string::npos) line.replace(place, basin_.size(), "sample.mdb");
        computed += line + "\n";
    }
    expect_golden(std::string{"reports_"} + GetParam().name + ".txt", computed);
}

TEST_P(SampleReports, AreTheSameBytesWhereNumbersHaveACommaElsewhere) {
    const std::string plain = reports();
    {
        const CommaLocale language;
        EXPECT_TRUE(reports() == plain) << first_difference(plain, reports());
    }
    ProcessLocale locale;
    if (!locale.set_decimal_comma()) GTEST_SKIP() << "this machine has no locale with a decimal comma";
    EXPECT_TRUE(reports() == plain) << first_difference(plain, reports());
}

std::vector<ReportCase> report_cases() {
    const std::vector<std::string> year_round{"--kind", "year-round"};
    const auto evaluation = [](const char* step) {
        return std::vector<std::string>{"climate", "--scenario", "warm and wet", "--last-step", step};
    };
    const auto of_step = [](const char* step) {
        return std::vector<std::string>{"--step", step, "--scenario", "warm and wet"};
    };
    return {{"without_run", {}, {"--reports", "0,1,2,3"}},
            {"plain", {"run", "--kind", "year-round"}, year_round},
            {"forecast",
             {"run", "--kind", "year-round", "--forecast", "7"},
             {"--kind", "year-round", "--forecast", "7"}},
            {"no_snow", {"run", "--kind", "year-round", "--no-snow"}, {"--kind", "year-round", "--no-snow"}},
            {"english", {"run", "--kind", "year-round"}, year_round, true},
            // The year ends in winter, so that new snow is left.
            {"calendar_year",
             {"run", "--kind", "year-round"},
             {"--kind", "year-round", "--reports", "6,7"},
             false,
             "ellervane-1996",
             "1.978"},
            {"step_1", evaluation("1"), of_step("1")},
            {"step_2", evaluation("2"), of_step("2")},
            {"step_3", evaluation("3"), of_step("3")},
            {"step_6", evaluation("6"), {"--step", "6", "--scenario", "warm and wet", "--climate-report"}}};
}

INSTANTIATE_TEST_SUITE_P(Cases, SampleReports, testing::ValuesIn(report_cases()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace nivora
