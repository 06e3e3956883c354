// The command that draws plots: its files, its list, its refusals, and what it leaves alone.

#include "tests/batch/plot_call.h"

#ifndef _WIN32
#include "tests/support/full_disk.h"
#endif

#include <QImage>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(PlotCommandTest, WritesEveryOutputThatIsAskedFor) {
    ASSERT_EQ(basin.run().status, 0);
    const std::string before = basin.bytes();
    const BatchResult result = plot("1", {"--out", basin.path("q.png"), "--text", basin.path("q.txt"),
                                          "--slurp", basin.path("q.flx"), "--describe"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(nlohmann::json::parse(result.out)["plot"], 1);
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb", "q.flx", "q.png", "q.txt"));
    EXPECT_EQ(file_bytes(basin.path("q.flx")), "1996 04 01 9\r\n1996 04 02 8.1\r\n1996 04 03 7.29\r\n");
    const auto lines = lines_of(file_bytes(basin.path("q.txt")));
    ASSERT_EQ(lines.size(), 19U);
    EXPECT_EQ(lines[4], "Run Date   : 3/5/2026 1:30:15 PM\r");
    EXPECT_EQ(lines[10], "Line#1: Measured Runoff\r");
    EXPECT_EQ(lines[11], "4/1/1996   10\r");
    EXPECT_EQ(lines[18], "4/3/1996   7.29\r");
    EXPECT_TRUE(basin.bytes() == before);
}

TEST_F(PlotCommandTest, PicturesHaveTheSizeThatIsAskedFor) {
    ASSERT_EQ(basin.run().status, 0);
    ASSERT_EQ(plot("1", {"--out", basin.path("q.png"), "--size", "800x450", "--dpi", "192"}).status, 0);
    const QImage image{QString::fromStdString(basin.path("q.png"))};
    EXPECT_EQ(image.size(), QSize(800, 450));
    EXPECT_EQ(image.dotsPerMeterX(), 7559);  // 192 / 0.0254
    ASSERT_EQ(plot("1", {"--out", basin.path("usual.bmp")}).status, 0);
    EXPECT_EQ(QImage{QString::fromStdString(basin.path("usual.bmp"))}.size(), QSize(1600, 900));
    ASSERT_EQ(plot("1", {"--out", basin.path("q.SVG")}).status, 0);
    EXPECT_THAT(file_bytes(basin.path("q.SVG")), HasSubstr("<svg"));
    ASSERT_EQ(plot("1", {"--out", basin.path("q.pdf")}).status, 0);
    EXPECT_THAT(file_bytes(basin.path("q.pdf")), StartsWith("%PDF"));
}

TEST_F(PlotCommandTest, PlotsOfInputNeedNoResults) {
    const auto json = described("5");
    EXPECT_EQ(json["zone"], nullptr);  // precipitation is given for the basin
    EXPECT_EQ(json["zone_label"], "Basinwide");
    EXPECT_EQ(refused("1")["refused"], "not offered");
    EXPECT_EQ(refused("4")["refused"], "not offered");
}

TEST_F(PlotCommandTest, ResultsOfOtherDatesAreNone) {
    ASSERT_EQ(basin.run().status, 0);
    basin.execute("UPDATE SimResults SET Date = Date + 1000");
    EXPECT_EQ(refused("1")["refused"], "not offered");
}

TEST_F(PlotCommandTest, ARefusalHasItsTextInBothPlacesAndNoFile) {
    const BatchResult result = plot("13", {"--describe", "--out", basin.path("q.png")});
    EXPECT_EQ(result.status, 1);
    const auto json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["form"], "nivora plot description 1");
    EXPECT_EQ(json["plot"], 13);
    EXPECT_EQ(json["step"], 0);
    EXPECT_EQ(result.err, "Plotting error: " + json["text"].get<std::string>() + " [OK]\n");
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
    EXPECT_EQ(plot("13", {"--out", basin.path("q.png")}).out, "");
}

TEST_F(PlotCommandTest, ResultsWithoutAValueCannotBePlotted) {
    ASSERT_EQ(basin.run().status, 0);
    basin.execute("UPDATE SimResults SET ZoneDD = NULL");
    const auto json = refused("4");
    EXPECT_EQ(json["refused"], "unable");
    EXPECT_EQ(json["text"], "Unable to plot All Zones.  Plotting error, missing or invalid data");
}

TEST_F(PlotCommandTest, WrongUsageHasOneClearLineAndNoJson) {
    ASSERT_EQ(basin.run().status, 0);
    const std::vector<std::vector<std::string>> calls{
        {"1", "--describe", "--zone", "A"},
        {"5", "--describe", "--zone", "A"},  // basinwide
        {"4", "--describe", "--zone", "B"},
        {"4", "--describe", "--zone", "Q"},
        {"4", "--describe", "--zone", "AB"},
        {"15", "--describe", "--zone", "all"},
        {"23", "--describe", "--zoom", "1,2,3,4"},
        {"23", "--describe", "--xmax", "40000"},
        {"14", "--describe", "--xmax", "1996-04-02"},
        {"14", "--describe", "--zoom", "1996-04-02,1996-04-03,0,1"},
        {"1", "--describe", "--zoom", "1,2,3"},
        {"1", "--describe", "--zoom", "1,2,3,4,5"},
        {"1", "--describe", "--zoom", "1,2,3,x"},
        {"1", "--describe", "--zoom", "1996-02-30,1996-04-03,0,1"},
        {"1", "--describe", "--xmax", "april"},
        {"1", "--describe", "--ymax", "1e39"},
        {"1", "--describe", "--ymax", "nan"},
        {"1", "--describe", "--grid-mode", "4"},
        {"1", "--describe", "--kind", "winter"},
        {"1", "--describe", "--no-snow"},
        {"1", "--describe", "--forecast", "10"},
        {"1", "--describe", "--step", "7", "--scenario", "warm"},
        {"1", "--describe", "--step", "6"},
        {"1", "--describe", "--step", "6", "--scenario", "none of that name"},
        {"1", "--describe", "--scenario", "warm"},
        {"1", "--describe", "--step", "0", "--scenario", "warm"},
        {"1", "--list", "--step", "0", "--scenario", "warm"},
        {"1", "--describe", "--melt-stop", "never"},
        {"1", "--describe", "--now", "2026-03-05"},
        {"1"},
        {"0", "--describe"},
        {"17", "--describe"},
        {"24", "--describe"},
        {"one", "--describe"},
        {"1", "--out", basin.path("q.gif")},
        {"1", "--out", basin.path("q.png"), "--size", "0x10"},
        {"1", "--out", basin.path("q.png"), "--size", "100000x10"},
        {"1", "--out", basin.path("q.png"), "--size", "800"},
        {"1", "--out", basin.path("q.png"), "--dpi", "0"},
        {"1", "--out", basin.path("q.png"), "--dpi", "nan"},
        {"1", "--text", basin.path("q.txt"), "--slurp", basin.path("q.txt")},
        {"1", "--describe", "--list"},
        {"1", "--describe", "--json"},
    };
    for (const auto& call : calls) {
        const BatchResult result = plot(call[0], {call.begin() + 1, call.end()});
        EXPECT_EQ(result.status, 2) << testing::PrintToString(call) << result.err;
        EXPECT_EQ(result.out, "") << testing::PrintToString(call);
        EXPECT_NE(result.err, "") << testing::PrintToString(call);
    }
    EXPECT_EQ(plot_on(basin.basin(), "birch", {"--plot", "1", "--describe"}).status, 2);
    EXPECT_EQ(plot_on(basin.basin(), "alder", {"--describe"}).status, 2);
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
}

TEST_F(PlotCommandTest, ASmallZoneLetterIsAZone) {
    ASSERT_EQ(basin.run().status, 0);
    EXPECT_EQ(described("4", {"--zone", "a"})["zone"], "A");
    EXPECT_EQ(described("4", {"--zone", "ALL"})["zone"], "all");
}

TEST_F(PlotCommandTest, WrongUsageSaysWhatToGive) {
    EXPECT_THAT(plot("1", {"--describe", "--step", "0", "--scenario", "warm"}).err,
                HasSubstr("--scenario: needs a --step above 0: step 0 is a run"));
    EXPECT_THAT(
        plot("1", {"--describe", "--xmax", "19996-04-02"}).err,
        HasSubstr("--xmax: '19996-04-02' is not a day of the calendar from 1900-01-01 to 2300-12-31"));
    EXPECT_THAT(plot("1", {"--describe", "--xmax", "1996-02-30"}).err,
                HasSubstr("--xmax: '1996-02-30' is not a day of the calendar from "));
    EXPECT_THAT(plot("1", {"--describe", "--zoom", "1996-04-02,9999-04-03,0,1"}).err,
                HasSubstr("--zoom: '9999-04-03' is not a day of the calendar from "));
    EXPECT_THAT(plot("1", {"--describe", "--xmax", "1e-2-3"}).err,
                HasSubstr("--xmax: '1e-2-3' is neither a date such as 1998-09-30 nor a number"));
    EXPECT_THAT(plot("1", {"--describe", "--zoom", "1996-04-02,1996-04-03,0"}).err,
                HasSubstr("--zoom: '1996-04-02,1996-04-03,0' is not a rectangle such as "));
}

TEST_F(PlotCommandTest, ABasinThatCannotBeReadHasOneLineAndNoJson) {
    for (const std::string& name : {basin.path("none.mdb"), basin.file(), basin.folder().path().string()}) {
        for (const char* output : {"--describe", "--list"}) {
            std::vector<std::string> options{output};
            if (options[0] == "--describe") options.insert(options.end(), {"--plot", "1"});
            const BatchResult result = plot_on(name, "alder", options);
            EXPECT_EQ(result.status, 1) << name;
            EXPECT_EQ(result.out, "") << name;
            EXPECT_THAT(result.err, StartsWith("The basin can't be read: "));
            EXPECT_THAT(result.err, HasSubstr(name));
            EXPECT_EQ(lines_of(result.err).size(), 1U) << result.err;
        }
    }
}

#ifndef _WIN32
TEST_F(PlotCommandTest, AFullDiskIsToldAndLeavesTheFilesAsTheyWere) {
    ASSERT_EQ(basin.run().status, 0);
    static_cast<void>(basin.folder().write("q.txt", "the last one"));
    const std::string before = basin.bytes();
    const auto on_full_disk = [&](rlim_t bytes, const std::vector<std::string>& options) {
        const FullDisk disk{bytes};
        return plot("1", options);
    };
    for (const std::string& name : {basin.path("q.png"), basin.path("q.svg"), basin.path("q.pdf")}) {
        const BatchResult result = on_full_disk(300, {"--out", name});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "The plot can't be written: The file '" + name +
                                  "' can't be written: the disk may be full. [OK]\n");
    }
    EXPECT_THAT(on_full_disk(300, {"--text", basin.path("q.txt"), "--describe"}).err,
                HasSubstr("q.txt' can't be written: the disk may be full."));
    EXPECT_THAT(on_full_disk(20, {"--slurp", basin.path("q.flx")}).err,
                HasSubstr("q.flx' can't be written: the disk may be full."));
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb", "q.txt"));
    EXPECT_EQ(file_bytes(basin.path("q.txt")), "the last one");
    EXPECT_TRUE(basin.bytes() == before);
}

TEST_F(PlotCommandTest, AFileWithoutRoomLeavesTheOthersAsTheyWere) {
    ASSERT_EQ(basin.run().status, 0);
    const std::vector<std::string> outputs{"--out",  basin.path("q.png"), "--size",  "1x1",
                                           "--text", basin.path("q.txt"), "--slurp", basin.path("q.flx")};
    {
        const FullDisk disk{300};  // There is room for the dot and for three days of flow, not for the text.
        EXPECT_EQ(plot("1", outputs).status, 1);
    }
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
    ASSERT_EQ(plot("1", outputs).status, 0);
    EXPECT_LT(file_bytes(basin.path("q.png")).size(), 300U);
    EXPECT_GT(file_bytes(basin.path("q.txt")).size(), 300U);
    EXPECT_LT(file_bytes(basin.path("q.flx")).size(), 300U);
}
#endif

TEST_F(PlotCommandTest, AWrongNameLeavesTheOtherFilesAsTheyWere) {
    ASSERT_EQ(basin.run().status, 0);
    const BatchResult result =
        plot("1", {"--out", basin.path("q.png"), "--slurp", basin.path("missing/q.flx")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("missing/q.flx"));
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
}

TEST_F(PlotCommandTest, NeverWritesOverABasinOrIntoAMissingFolder) {
    ASSERT_EQ(basin.run().status, 0);
    const std::string before = basin.bytes();
    EXPECT_EQ(plot("1", {"--text", basin.basin()}).status, 1);
    EXPECT_EQ(plot("1", {"--slurp", basin.basin()}).status, 1);
    EXPECT_EQ(plot("1", {"--out", basin.path("missing/q.png")}).status, 1);
    EXPECT_EQ(plot("1", {"--text", basin.path("missing/q.txt")}).status, 1);
    EXPECT_TRUE(basin.bytes() == before);
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
}

TEST_F(PlotCommandTest, ListsThePlotsWithTheReasonsOfThoseThatCannotBeMade) {
    const auto lines = lines_of(plot_on(basin.basin(), "alder", {"--list"}).out);
    ASSERT_EQ(lines.size(), 22U);
    EXPECT_THAT(lines[0], StartsWith(" 1  Runoff (Measured vs Computed): can't be made. The plot "));
    EXPECT_EQ(lines[4], " 5  Precipitation (P): can be made");
    EXPECT_THAT(lines[16], StartsWith("18  Simulated Runoff - Present vs. Changed Climate: can't be made. "));
    ASSERT_EQ(basin.run().status, 0);
    const auto list = nlohmann::json::parse(plot_on(basin.basin(), "alder", {"--list", "--json"}).out);
    ASSERT_EQ(list.size(), 22U);
    EXPECT_EQ(list[0]["plot"], 1);
    EXPECT_EQ(list[0]["title"], "Runoff (Measured vs Computed)");
    EXPECT_EQ(list[0]["available"], true);
    EXPECT_EQ(list[0]["reason"], nullptr);
    EXPECT_EQ(list[21]["plot"], 23);
    EXPECT_EQ(list[21]["available"], false);
    EXPECT_THAT(list[21]["reason"].get<std::string>(), HasSubstr("needs a year"));
}

/// The six days of a climate evaluation.
class ClimatePlotTest : public testing::Test {
protected:
    ClimatePlotTest() {
        SixDays days;
        days.write(file);
        write_scenario(file, k_scenario, static_cast<double>(SixDays::winter_end()), {days.plus_one});
    }

    [[nodiscard]] BatchResult evaluate(const std::string& last_step) const {
        return batch({"climate", path_text(file), "--simulation", "Test", "--scenario", k_scenario,
                      "--last-step", last_step});
    }
    [[nodiscard]] BatchResult plot(const std::string& number, const std::string& step) const {
        return plot_on(path_text(file), "Test",
                       {"--plot", number, "--step", step, "--scenario", k_scenario, "--describe"});
    }
    /// The bytes of two columns of the results.
    [[nodiscard]] std::string exported() const {
        EXPECT_EQ(
            batch({"export", path_text(file), "SimResults", "--csv", path_text(folder / "r.csv")}).status, 0);
        return file_bytes(folder / "r.csv");
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "basin.mdb";
};

TEST_F(ClimatePlotTest, StepsFourAndFiveHaveTheToldRefusal) {
    for (const char* step : {"4", "5"}) {
        const BatchResult result = plot("2", step);
        EXPECT_EQ(result.status, 1);
        const auto json = nlohmann::json::parse(result.out);
        EXPECT_EQ(json["refused"], "climate step");
        EXPECT_EQ(json["text"], "Plots are not available during this climate change step!");
        EXPECT_EQ(result.err,
                  "Plotting error: Plots are not available during this climate change step! [OK]\n");
    }
}

TEST_F(ClimatePlotTest, AStepHasItsPeriodTitleAndScenario) {
    ASSERT_EQ(evaluate("6").status, 0);
    const auto json = nlohmann::json::parse(plot("18", "6").out);
    EXPECT_EQ(json["step"], 6);
    EXPECT_EQ(json["period"], "04/01/2001 to 04/04/2001");
    EXPECT_EQ(json["scenario_line"], "Test, Warmer Scenario");
    EXPECT_EQ(json["right_column"], nlohmann::json({"Step 6", "3/5/2026", "Year round Simulation"}));
    EXPECT_EQ(json["slurp"].size(), 4U);
    EXPECT_EQ(json["summary"][0][0], "PresentC Runoff Volume (10  m³)");
}

TEST_F(ClimatePlotTest, AStepWithoutResultsHasThePlotsOfInput) {
    EXPECT_EQ(plot("2", "3").status, 0);
    EXPECT_EQ(plot("1", "3").status, 1);
}

TEST_F(ClimatePlotTest, PlotTwentyOneAloneChangesTheResults) {
    ASSERT_EQ(evaluate("6").status, 0);
    const std::string before = exported();
    for (const char* number : {"2", "15", "16", "18", "19"}) EXPECT_LT(plot(number, "6").status, 2) << number;
    EXPECT_TRUE(exported() == before);
    ASSERT_EQ(plot("21", "6").status, 0);
    const std::string after = exported();
    EXPECT_FALSE(after == before);
    ASSERT_EQ(plot("21", "6").status, 0);
    EXPECT_TRUE(exported() == after);
}

TEST_F(ClimatePlotTest, ABasinThatCannotBeWrittenStillHasPlotTwentyOne) {
    ASSERT_EQ(evaluate("6").status, 0);
    const std::string plain = plot("21", "6").out;
    std::filesystem::permissions(file, std::filesystem::perms::owner_read);
    const std::string bytes = file_bytes(file);
    const BatchResult result = plot("21", "6");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, plain);
    EXPECT_THAT(result.err, StartsWith("Note: AZMexcl, AZMexclWA and AZMwork of this plot are not stored"));
    EXPECT_TRUE(file_bytes(file) == bytes);
}

TEST_F(ClimatePlotTest, PlotTwentyOneLeavesTheBasinAsItWasIfItsFileCannotBeWritten) {
    ASSERT_EQ(evaluate("6").status, 0);
    const std::string before = file_bytes(file);
    const BatchResult result = plot_on(path_text(file), "Test",
                                       {"--plot", "21", "--step", "6", "--scenario", k_scenario, "--text",
                                        path_text(folder / "missing" / "p.txt")});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(file_bytes(file) == before);
}

TEST_F(ClimatePlotTest, AScenarioWithoutAWinterEndRefusesEveryPlotOfAStep) {
    BasinDatabase{file, Access::ReadWrite}.execute("UPDATE ClimateScenarioIndex SET WinterEndDate = NULL");
    const BatchResult result = plot("2", "6");
    EXPECT_EQ(result.status, 1);
    const auto json = nlohmann::json::parse(result.out);
    EXPECT_EQ(json["refused"], "not offered");
    EXPECT_THAT(json["text"].get<std::string>(), HasSubstr("has no winter end date"));
}

}  // namespace
}  // namespace nivora
