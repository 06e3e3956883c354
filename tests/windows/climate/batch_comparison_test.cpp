#include "batch/command_line.h"
#include "tests/windows/climate/control_window_fixture.h"

#include <sstream>

namespace nivora {
namespace {

/// Compares steps that are run in the window with those of the program without windows.
class BatchComparisonTest : public ControlWindowTest {
protected:
    static void batch(const std::vector<std::string>& arguments) {
        std::vector<const char*> argv{"nivora-batch"};
        for (const std::string& argument : arguments) argv.push_back(argument.c_str());
        std::ostringstream out;
        std::ostringstream err;
        EXPECT_EQ(run_command_line(static_cast<int>(argv.size()), argv.data(), out, err), 0) << err.str();
    }
    static SimResults results(const std::filesystem::path& file) {
        BasinDatabase database{file, Access::ReadOnly};
        return load_results(database);
    }
};

TEST_F(BatchComparisonTest, TheSampleBasinEndsInTheSameBits) {
    const std::filesystem::path other = user_ / "other.mdb";
    std::filesystem::copy_file(std::filesystem::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb", file_);
    batch({"scenario", path_text(file_), "--simulation", "ellervane-1997-98", "--name", k_scenario,
           "--winter-end", "1998-03-31", "--edit", "1:1997-10-01:1998-09-30:0:2:0", "--edit",
           "2:1997-10-01:1998-09-30:1:1.1:0"});
    std::filesystem::copy_file(file_, other);
    batch({"climate", path_text(other), "--simulation", "ellervane-1997-98", "--scenario", k_scenario});

    session_.basin = opened_basin(file_);
    select_simulation(session_.basin, find_simulation(session_.basin, "ellervane-1997-98").value());
    open();
    choose(k_scenario);
    for (int step = 1; step <= k_climate_steps; ++step) {
        for (int zone = 1; step == 5 && zone <= session_.basin.ZoneCount; ++zone) dialogs_.then_text("0");
        box(step)->click();
        ASSERT_EQ(session_.climate.steps_done, step);
    }
    const SimResults clicked = results(file_);
    ASSERT_EQ(clicked.size(), 5U * 365U);
    EXPECT_EQ(differing_columns(clicked, results(other)), std::vector<std::string>{});
}

}  // namespace
}  // namespace nivora
