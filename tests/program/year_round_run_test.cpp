// The steps of a user from the welcome window to a saved basin, with keys and mouse.

#include "base/durable_file.h"
#include "tests/program/running_nivora.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <gmock/gmock.h>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr const char* k_statistics_title = "Statistics, Year round Simulation";

/// What the batch program prints for the same run on another copy, line by line: label and value.
std::vector<std::pair<std::string, std::string>> statistics_of_batch_program(const fs::path& basin) {
    const Finished run = run_program({NIVORA_PROGRAM_FOLDER "/nivora-batch", "run", basin.string(),
                                      "--simulation", "ellervane-1996", "--kind", "year-round"});
    EXPECT_EQ(run.status, 0) << run.printed;
    std::vector<std::pair<std::string, std::string>> lines;
    std::istringstream text{run.printed};
    for (std::string line; std::getline(text, line);) {
        const std::size_t value = line.find_last_of(' ');
        const std::size_t label_end = line.find("  ");
        if (label_end == std::string::npos || line.find("Name:") != std::string::npos) continue;
        lines.emplace_back(line.substr(0, label_end), line.substr(value + 1));
    }
    return lines;
}

class YearRoundRunTest : public ProgramTest {
protected:
    void choose_file(StartedProgram& program, const std::string& title, const std::string& name) {
        const auto box = await(program, title, "text", "File name:");
        ASSERT_TRUE(box);
        press(program, title, {"ctrl+a"});
        display().type(name);
        ASSERT_TRUE(wait_until([&] { return box->text() == name; })) << "typed: " << box->text();
        // The list of completions may be open now; then the dialog does not count as the active window, but
        // its box has the keyboard still.
        display().press({"Return"});
        await_gone(program, title);
    }

    /// Welcome, open, run, read, save under a new name, exit.
    void use_program(const UserFolders& folders, const Environment& locale);
};

void YearRoundRunTest::use_program(const UserFolders& folders, const Environment& locale) {
    const fs::path sample = folders.sample();
    const fs::path again = folders.sample("again.mdb");
    const std::string before = file_bytes(sample);
    const auto program = start(folders, locale);
    click(*program, k_welcome_title, "push button", "Start");
    ASSERT_TRUE(await_window(*program, k_main_title));

    open_menu(*program, "alt+f", "Open");
    display().press({"o"});
    ASSERT_NO_FATAL_FAILURE(choose_file(*program, "Open a NVR database", path_text(sample)));
    ASSERT_TRUE(await(*program, k_main_title, "label", path_text(sample)));
    click(*program, k_main_title, "cell", "ellervane-1997-98");
    ASSERT_TRUE(await(*program, k_main_title, "label", "ellervane-1997-98"));
    click(*program, k_main_title, "cell", "ellervane-1996");
    ASSERT_TRUE(await(*program, k_main_title, "label", "ellervane-1996"));

    open_menu(*program, "alt+r", "Simulation");
    display().press({"s"});
    ASSERT_TRUE(await(*program, k_main_title, "menu item", "Year round Simulation"));
    display().press({"y"});
    const auto results = await_window(*program, k_statistics_title);
    ASSERT_TRUE(results);
    const std::string shown = results->all_words();
    const auto expected = statistics_of_batch_program(again);
    EXPECT_EQ(expected.size(), 8U) << "the name of the simulation, six statistics, the last day";
    for (std::size_t line = 0; line + 1 < expected.size(); ++line) {
        EXPECT_THAT(shown, HasSubstr("] " + expected[line].second + "\n")) << expected[line].first;
    }
    EXPECT_THAT(shown, HasSubstr("Coefficient of Determination (R²)"));
    click(*program, k_statistics_title, "push button", "Done");
    await_gone(*program, k_statistics_title);

    open_menu(*program, "alt+f", "Save As ...");
    display().press({"a"});
    ASSERT_NO_FATAL_FAILURE(choose_file(*program, "Save a Nivora data base as ...", "kept by the test"));
    const fs::path kept = folders.documents() / "kept by the test.mdb";
    const bool saved_here = wait_until([&] { return fs::exists(kept); });
    EXPECT_TRUE(saved_here);
    ASSERT_TRUE(await(*program, k_main_title, "label", path_text(kept)));

    open_menu(*program, "alt+f", "Exit");
    display().press({"x"});
    EXPECT_EQ(program->status(), 0) << program->printed();

    EXPECT_TRUE(file_bytes(sample) == before) << "the basin that was opened has changed";
    SQLite::Database basin{path_text(kept), SQLite::OPEN_READONLY};
    EXPECT_EQ(basin.execAndGet("PRAGMA integrity_check").getString(), "ok");
    // 366 days of 1996 in five zones: 366 * 5 = 1830 rows.
    EXPECT_EQ(basin.execAndGet("SELECT count(*) FROM SimResults").getInt(), 1830);
    // The discharge of the basin is stored once for each of the 366 days.
    EXPECT_EQ(basin.execAndGet("SELECT count(DailyQ) FROM SimResults").getInt(), 366);
    EXPECT_EQ(basin.execAndGet("SELECT count(*) FROM SimulationIndex").getInt(), 2);
    const Finished rerun = run_program({NIVORA_PROGRAM_FOLDER "/nivora-batch", "run", kept.string(),
                                        "--simulation", "ellervane-1996", "--kind", "year-round"});
    EXPECT_EQ(rerun.status, 0);
    EXPECT_THAT(rerun.printed, HasSubstr(expected.front().second));
    EXPECT_THAT(file_bytes(folders.settings_file()), HasSubstr("SplashScreen%3A=1"));
    // The run was made before the basin had its second name.
    EXPECT_THAT(file_bytes(folders.settings_file().parent_path() / "../../Nivora/runs.list"),
                HasSubstr("\t" + path_text(sample) + "\tellervane-1996\t\tYear round Simulation\t"));
}

TEST_F(YearRoundRunTest, AUserOpensTheSampleRunsItReadsTheStatisticsAndSavesItUnderANewName) {
    const UserFolders folders;
    use_program(folders, {});
}

}  // namespace
}  // namespace nivora
