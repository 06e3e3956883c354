#include "engine/run_driver.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <limits>

namespace nivora {
namespace {

using Place = RunMenuProblem::Place;

class RunMenu : public EngineTest {
protected:
    void SetUp() override { start(3, date_of(2001, 6, 1), 1); }

    void expect_problem(const std::string& text, const std::string& title, Place place, int zone = 0) {
        const auto problem = run_menu_problem(basin);
        ASSERT_TRUE(problem.has_value());
        EXPECT_EQ(problem->message.text, text);
        EXPECT_EQ(problem->message.title, title);
        EXPECT_EQ(problem->message.buttons, Buttons::Ok);
        EXPECT_EQ(problem->place, place);
        EXPECT_EQ(problem->zone, zone);
    }

    void expect_zone_problem(const std::string& text, int zone) {
        expect_problem(text, "Invalid zone description", Place::Zone, zone);
    }
};

constexpr const char* k_area_text = "Zone area must be greater than zero!";
constexpr const char* k_order_text = "Hypsometric elevations must be in increasing order by zone";

TEST_F(RunMenu, FindsNoProblemInACompleteBasin) { EXPECT_FALSE(run_menu_problem(basin).has_value()); }

TEST_F(RunMenu, NeedsASelectedSimulation) {
    basin.current_row.reset();

    expect_problem("Identify a simulation before attempting a calculation!", "Simulation Error!",
                   Place::None);
}

TEST_F(RunMenu, NeedsAReferenceElevation) {
    for (const char* text : {"", "   "}) {
        basin.reference_elevation_text = text;

        expect_problem("Please provide a basin reference elevation before continuing",
                       "Missing a required value", Place::ReferenceElevation);
        EXPECT_EQ(run_menu_problem(basin)->message.icon, Icon::Stop);
    }
}

TEST_F(RunMenu, NeedsAnAreaInEveryZone) {
    basin.zones[1].area = 0.0;

    expect_zone_problem(k_area_text, 2);
}

TEST_F(RunMenu, AnEmptyAreaCountsAs0) {
    basin.zones[2].area.reset();

    expect_zone_problem(k_area_text, 3);
}

TEST_F(RunMenu, ANegativeOrNonNumericAreaIsRefusedByTheMenuAndByARun) {
    for (const double area : {-20.0, -0.0, std::numeric_limits<double>::quiet_NaN()}) {
        basin.zones[1].area = area;
        const auto problem = run_menu_problem(basin);
        ASSERT_TRUE(problem.has_value()) << area;
        EXPECT_EQ(problem->message.text, "Zone area must be greater than zero!") << area;
        ASSERT_TRUE(zone_area_problem(basin).has_value()) << area;
        EXPECT_EQ(zone_area_problem(basin)->zone, 2) << area;
    }
    basin.zones[1].area = 0.001;
    EXPECT_FALSE(run_menu_problem(basin).has_value());
    EXPECT_FALSE(zone_area_problem(basin).has_value());
}

TEST_F(RunMenu, NeedsElevationsThatIncrease) {
    basin.zones[2].elevation = basin.zones[1].elevation;
    expect_zone_problem(k_order_text, 3);

    basin.zones[1].elevation = 900.0;
    expect_zone_problem(k_order_text, 2);
}

TEST_F(RunMenu, TheFirstZoneMayLieAtTheSeaButNotBelow) {
    basin.zones[0].elevation = 0.0;
    EXPECT_FALSE(run_menu_problem(basin).has_value());
    basin.zones[0].elevation = -0.000005;
    EXPECT_FALSE(run_menu_problem(basin).has_value());
    basin.zones[0].elevation = -0.00001;
    expect_zone_problem(k_order_text, 1);
    basin.zones[0].elevation = -1.0;
    expect_zone_problem(k_order_text, 1);
}

TEST_F(RunMenu, ChecksASimulationBeforeTheReferenceBeforeTheZonesInOrder) {
    basin.current_row.reset();
    basin.reference_elevation_text = "";
    basin.zones[0].elevation = -1.0;
    basin.zones[1].area = 0.0;

    EXPECT_EQ(run_menu_problem(basin)->place, Place::None);
    basin.current_row = 0;
    EXPECT_EQ(run_menu_problem(basin)->place, Place::ReferenceElevation);
    basin.reference_elevation_text = "0";
    expect_zone_problem(k_order_text, 1);
    basin.zones[0].area = 0.0;  // within a zone the area comes first
    expect_zone_problem(k_area_text, 1);
}

TEST_F(RunMenu, ZonesBeyondTheBasinAreNotChecked) {
    basin.zones[2].area = 0.0;
    basin.ZoneCount = 2;

    EXPECT_FALSE(run_menu_problem(basin).has_value());
}

TEST(RunCaptions, AreThoseOfTheMenu) {
    EXPECT_STREQ(simulation_caption(0), "&Melt Season Simulation");
    EXPECT_STREQ(simulation_caption(1), "&Year round Simulation");
    EXPECT_STREQ(forecast_caption(0), "&Melt Season Forecast");
    EXPECT_STREQ(forecast_caption(1), "&Year round Forecast");
}

TEST(SimulationChoice, LeavesTheKindToTheItem) {
    RunState run;
    run.UpdateInterval = 5;

    choose_simulation(run);

    EXPECT_EQ(run.RunKind, -1);
    EXPECT_EQ(run.UpdateInterval, 0);
}

class ForecastChoice : public ::testing::Test {
protected:
    RunState run;
    ScriptedDialogs dialogs;

    bool choose(int index, std::optional<std::string> answer) {
        run.UpdateInterval = 4;
        dialogs.then_text(std::move(answer));
        return choose_forecast(run, dialogs, index);
    }

    void TearDown() override {
        EXPECT_TRUE(dialogs.complaints().empty());
        EXPECT_EQ(dialogs.answers_left(), 0U);
    }
};

TEST_F(ForecastChoice, AsksForTheInterval) {
    EXPECT_TRUE(choose(0, "3"));

    ASSERT_EQ(dialogs.inputs().size(), 1U);
    EXPECT_EQ(dialogs.inputs()[0].title, "Enter Forecast Frequency");
    EXPECT_EQ(dialogs.inputs()[0].prompt,
              "Enter the frequency (1-9 days) for updating simulated runoff with observed values");
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(ForecastChoice, SetsKindAndTitle) {
    EXPECT_TRUE(choose(0, "3"));
    EXPECT_EQ(run.RunKind, k_melt_season_forecast);
    EXPECT_EQ(run.RunTitle, "Melt Season Forecast");

    EXPECT_TRUE(choose(1, "3"));
    EXPECT_EQ(run.RunKind, k_year_round_forecast);
    EXPECT_EQ(run.RunTitle, "Year round Forecast");
}

TEST_F(ForecastChoice, Takes1To9) {
    for (int interval = 1; interval <= 9; ++interval) {
        EXPECT_TRUE(choose(1, std::to_string(interval)));
        EXPECT_EQ(run.UpdateInterval, interval);
    }
}

TEST_F(ForecastChoice, BlanksAroundTheDigitDoNotCount) {
    EXPECT_TRUE(choose(1, " 5 "));
    EXPECT_EQ(run.UpdateInterval, 5);
}

TEST_F(ForecastChoice, AnythingElseIsRefusedButKindAndTitleAreSet) {
    using Answers = std::vector<std::optional<std::string>>;
    for (const auto& answer : Answers{"", "0", "10", "x", "-", " ", "12", "1.", "05", "5x", std::nullopt}) {
        SCOPED_TRACE(answer.value_or("cancelled"));
        run.RunKind = k_year_round_simulation;
        run.RunTitle = "Year round Simulation";
        const std::size_t before = dialogs.messages().size();

        EXPECT_FALSE(choose(0, answer));

        ASSERT_EQ(dialogs.messages().size(), before + 1);
        expect_message(dialogs.messages().back(),
                       "Updating interval for forecasting must be 1-9 (days).  Forecast run aborted.",
                       "Invalid forecast frequency!");
        EXPECT_EQ(dialogs.messages().back().message.buttons, Buttons::Ok);
        EXPECT_EQ(run.UpdateInterval, 0);
        EXPECT_EQ(run.RunKind, k_melt_season_forecast);
        EXPECT_EQ(run.RunTitle, "Melt Season Forecast");
    }
}

}  // namespace
}  // namespace nivora
