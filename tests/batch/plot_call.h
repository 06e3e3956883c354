// Calls of the command that draws and describes plots.
#pragma once

#include "tests/batch/run_basin.h"
#include "tests/climate/climate_run_fixture.h"

namespace nivora {

/// Calls the command on a file, with a fixed date and time.
[[nodiscard]] inline BatchResult plot_on(const std::string& basin, const std::string& simulation,
                                         const std::vector<std::string>& more) {
    std::vector<std::string> arguments{"plot",     basin,   "--simulation",
                                       simulation, "--now", "2026-03-05T13:30:15"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return batch(arguments);
}

/// One zone over three days, whose discharge recedes from 10: 9, 8.1, 7.29. Measured are 10, 8 and 6.
class PlotCommandTest : public testing::Test {
protected:
    [[nodiscard]] BatchResult plot(const std::string& number,
                                   const std::vector<std::string>& more = {}) const {
        std::vector<std::string> options{"--plot", number};
        options.insert(options.end(), more.begin(), more.end());
        return plot_on(basin.basin(), "alder", options);
    }
    /// The description of a plot that must be made.
    [[nodiscard]] nlohmann::json described(const std::string& number,
                                           std::vector<std::string> more = {}) const {
        more.emplace_back("--describe");
        const BatchResult result = plot(number, more);
        EXPECT_EQ(result.status, 0) << result.err;
        return result.status == 0 ? nlohmann::json::parse(result.out) : nlohmann::json::object();
    }
    /// The refusal of a plot, as JSON.
    [[nodiscard]] nlohmann::json refused(const std::string& number,
                                         std::vector<std::string> more = {}) const {
        more.emplace_back("--describe");
        const BatchResult result = plot(number, more);
        EXPECT_EQ(result.status, 1);
        return nlohmann::json::parse(result.out, nullptr, false);
    }

    RunBasin basin;
};

}  // namespace nivora
