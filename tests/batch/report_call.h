// Calls of the command that writes reports, on basins whose runs can be worked by hand.
#pragma once

#include "reports/report_catalogue.h"
#include "tests/batch/run_basin.h"
#include "tests/climate/climate_run_fixture.h"
#include "tests/reports/report_text.h"

#include <algorithm>

namespace nivora {

/// Calls the command on a file, with a fixed date and time.
[[nodiscard]] inline BatchResult report_on(const std::string& basin, const std::string& simulation,
                                           const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments{"report",   basin,   "--simulation",
                                       simulation, "--now", "2026-03-05T13:30:15"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return batch(arguments);
}

/// The numbers of the reports in the text of a plain run.
[[nodiscard]] inline std::vector<int> numbers_in(const std::string& text) {
    std::vector<int> numbers;
    const auto lines = report_text_lines(text);
    for (const Report report : k_all_reports) {
        const bool titled = std::find(lines.begin(), lines.end(), report_title(report, 0)) != lines.end();
        const bool summary =
            report == Report::InputSummary && text.find("Input Summary Report") != std::string::npos;
        if (titled || summary) numbers.push_back(static_cast<int>(report));
    }
    return numbers;
}

/// One zone over three days, whose discharge recedes from 10: 9, 8.1, 7.29.
class ReportCommandTest : public testing::Test {
protected:
    [[nodiscard]] BatchResult report(const std::vector<std::string>& more = {}) const {
        return report_on(basin.basin(), "alder", more);
    }
    [[nodiscard]] std::string out() const { return file_bytes(basin.path("NVRrpts.out")); }
    [[nodiscard]] std::string line(const std::string& head) const {
        const auto found = lines_that_begin(report_text_lines(out()), head);
        return found.empty() ? "(no line)" : found.front();
    }

    RunBasin basin;
};

/// The six days of a climate evaluation whose figures are worked by hand in the tests of the steps.
class ClimateReportTest : public testing::Test {
protected:
    ClimateReportTest() {
        SixDays days;
        days.write(file);
        write_scenario(file, k_scenario, static_cast<double>(SixDays::winter_end()), {days.plus_one});
    }

    [[nodiscard]] BatchResult evaluate(const std::string& last_step) const {
        return batch({"climate", path_text(file), "--simulation", "Test", "--scenario", k_scenario,
                      "--last-step", last_step});
    }
    [[nodiscard]] BatchResult report(const std::string& step, const std::vector<std::string>& more = {},
                                     const std::string& scenario = k_scenario) const {
        std::vector<std::string> options{"--step", step, "--scenario", scenario};
        options.insert(options.end(), more.begin(), more.end());
        return report_on(path_text(file), "Test", options);
    }
    [[nodiscard]] std::string out() const { return file_bytes(folder / "NVRrpts.out"); }
    [[nodiscard]] std::string line(const std::string& head) const {
        const auto found = lines_that_begin(report_text_lines(out()), head);
        return found.empty() ? "(no line)" : found.front();
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "basin.mdb";
};

}  // namespace nivora
