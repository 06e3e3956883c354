#include "plots/plot_screen.h"

#include "tests/plots/plot_values.h"
#include "tests/support/plot_basin.h"
#include "tests/support/random_trials.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;

constexpr PlotNumber k_cover = PlotNumber::SnowCover;
constexpr int k_all = 3;  ///< "All Zones" of a basin with two zones

/// A basin with two zones and eight days from October 1, 2001: the snow cover falls from 1 by 1/16 a day, and
/// is 1/16 lower in zone B.
class PlotScreenTest : public RandomTrials<testing::Test> {
protected:
    PlotScreenTest() {
        basin_.write_variables([](PhysicalRow& row, int zone, int day) {
            row.sca = 1.0F - 0.0625F * static_cast<float>(day + zone - 2);
            row.precip = static_cast<float>(day);
        });
        basin_.write_results([](SimResults& t, std::size_t row, int, int day) {
            t.ActualQ[row] = 10.0F * static_cast<float>(day);
            t.DailyQ[row] = 5.0 * day;
            t.DailyQPresent[row] = 4.0 * day;
            t.SCA[row] = 1.0F - 0.0625F * static_cast<float>(day);
            t.SCAclimWAMA[row] = 0.5F - 0.0625F * static_cast<float>(day);
        });
    }

    ScreenAnswer pick(PlotNumber plot) {
        BasinDatabase database = basin_.file.open(Access::ReadOnly);
        return screen_.pick(plot, database, basin_.sources());
    }
    ScreenAnswer pick_zone(int zone) {
        BasinDatabase database = basin_.file.open(Access::ReadOnly);
        return screen_.pick_zone(zone, database, basin_.sources());
    }
    ScreenAnswer zoom_out() {
        BasinDatabase database = basin_.file.open(Access::ReadOnly);
        return screen_.zoom_out(&database, basin_.sources());
    }
    void pick_zone_after(PlotNumber plot, int zone) {
        pick(plot);
        pick_zone(zone);
    }
    /// Replaces the snow cover by one that rises from 1/16 to 1/2 in all zones.
    void write_rising_cover() {
        basin_.file.open().execute("DELETE FROM PhysicalData");
        basin_.write_variables(
            [](PhysicalRow& row, int, int day) { row.sca = 0.0625F * static_cast<float>(day); });
    }
    /// The zone that the standing plot shows.
    int plotted_zone() { return screen_.plot() == nullptr ? 0 : screen_.plot()->zone.value_or(-1); }

    void expect_frame(float x_min, float x_max, float y_min, float y_max) {
        ASSERT_NE(screen_.plot(), nullptr);
        const PlotFrame& frame = screen_.plot()->frame;
        EXPECT_EQ(frame.x_min, x_min);
        EXPECT_EQ(frame.x_max, x_max);
        EXPECT_EQ(frame.y_min, y_min);
        EXPECT_EQ(frame.y_max, y_max);
    }
    void expect_whole_cover() {
        expect_frame(k_october_2001, k_october_2001 + 8.0F, 0.5F, 1.0F);
        EXPECT_FALSE(screen_.plot()->zoomed);
    }

    PlotBasin basin_{2, 8};
    PlotScreen screen_;
};

const WorldRectangle k_four_days{.x1 = 37166.0, .x2 = 37170.0, .y1 = 0.625, .y2 = 0.875};

void expect_nothing_to_do(const ScreenAnswer& answer) {
    EXPECT_FALSE(answer.draw);
    EXPECT_FALSE(answer.fill_boxes);
    EXPECT_FALSE(answer.message);
}

TEST_F(PlotScreenTest, HasNoPlotBeforeAPick) {
    EXPECT_EQ(screen_.plot(), nullptr);
    EXPECT_EQ(screen_.fallback(), nullptr);
    EXPECT_FALSE(screen_.picked());
    EXPECT_EQ(screen_.shown_zone(basin_.basin), k_all);
    for (const ScreenAnswer& answer :
         {pick_zone(1), screen_.redraw({"1", "2"}), screen_.zoom(k_four_days), zoom_out(),
          screen_.wheel({37168.0, 0.75}, 1.0), screen_.pan(1.0), screen_.after_resize(),
          screen_.release({1.0, 1.0}), screen_.next_grid()})
        expect_nothing_to_do(answer);
    EXPECT_FALSE(screen_.zoom_in());
}

TEST_F(PlotScreenTest, APickDrawsAndFillsTheBoxes) {
    const ScreenAnswer answer = pick(k_cover);
    EXPECT_TRUE(answer.draw);
    EXPECT_TRUE(answer.fill_boxes);
    EXPECT_FALSE(answer.message);
    EXPECT_FALSE(answer.store_melt);
    EXPECT_EQ(screen_.picked(), k_cover);
    EXPECT_EQ(screen_.boxes(), (BoxTexts{"10/09/2001", "1"}));
    // Zone B ends at 1 - 8/16.
    expect_whole_cover();
    EXPECT_EQ(plotted_zone(), k_all);
}

TEST_F(PlotScreenTest, Steps4And5AnswerWithAMessageAndThePlotStays) {
    basin_.take_step(3, 2);
    pick(PlotNumber::Precipitation);
    const Plot before = *screen_.plot();
    for (const int step : {4, 5}) {
        basin_.take_step(step, 2);
        for (const ScreenAnswer& answer : {pick(k_cover), pick_zone(1)}) {
            EXPECT_FALSE(answer.draw);
            ASSERT_TRUE(answer.message);
            EXPECT_EQ(answer.message->title, "Plotting error");
            EXPECT_EQ(answer.message->text, "Plots are not available during this climate change step!");
            EXPECT_FALSE(answer.message->information);
        }
        EXPECT_EQ(screen_.picked(), PlotNumber::Precipitation);
        ASSERT_NE(screen_.plot(), nullptr);
        EXPECT_EQ(screen_.plot()->head.title, before.head.title);
        EXPECT_EQ(screen_.step(), 3);
    }
}

TEST_F(PlotScreenTest, AFailedBuildLeavesItsTextAndNoPlot) {
    pick(PlotNumber::Precipitation);
    // The parameters have no rows.
    const ScreenAnswer answer = pick(PlotNumber::LagTime);
    EXPECT_TRUE(answer.draw);
    EXPECT_FALSE(answer.message);
    EXPECT_EQ(screen_.plot(), nullptr);
    ASSERT_NE(screen_.fallback(), nullptr);
    EXPECT_EQ(screen_.fallback()->text, unable_text("All Zones"));
    EXPECT_EQ(screen_.picked(), PlotNumber::LagTime);
    EXPECT_EQ(screen_.boxes(), BoxTexts{});
    expect_nothing_to_do(screen_.redraw({"1/1/2002", "5"}));
    expect_nothing_to_do(zoom_out());
    EXPECT_TRUE(screen_.after_resize().draw);
    pick(k_cover);
    EXPECT_EQ(screen_.fallback(), nullptr);
    EXPECT_NE(screen_.plot(), nullptr);
}

TEST_F(PlotScreenTest, APlotThatIsNotOfferedGivesAMessage) {
    pick(k_cover);
    basin_.results_current = false;
    const ScreenAnswer answer = pick(PlotNumber::Runoff);
    ASSERT_TRUE(answer.message);
    EXPECT_THAT(answer.message->text, HasSubstr("Run the simulation"));
    EXPECT_EQ(screen_.picked(), k_cover);
    expect_whole_cover();
}

TEST_F(PlotScreenTest, AZonePickBuildsThatZone) {
    pick(k_cover);
    EXPECT_TRUE(pick_zone(2).draw);
    EXPECT_EQ(plotted_zone(), 2);
    EXPECT_EQ(screen_.shown_zone(basin_.basin), 2);
    // 15/16 down to 8/16
    expect_frame(k_october_2001, k_october_2001 + 8.0F, 0.5F, 0.9375F);
    pick_zone(k_all);
    EXPECT_EQ(plotted_zone(), k_all);
    const ScreenAnswer answer = pick_zone(4);
    EXPECT_TRUE(answer.message);
    EXPECT_EQ(plotted_zone(), k_all);
}

TEST_F(PlotScreenTest, OnlyTheSnowCoverKeepsTheShownZone) {
    pick(PlotNumber::Precipitation);
    pick_zone(2);
    pick(k_cover);
    EXPECT_EQ(plotted_zone(), 2);
    pick(PlotNumber::Precipitation);
    EXPECT_EQ(plotted_zone(), k_all);
    pick(k_cover);
    EXPECT_EQ(plotted_zone(), k_all);
    pick_zone(2);
    pick(PlotNumber::Runoff);  // has no zones, and leaves the list as it is
    EXPECT_EQ(plotted_zone(), -1);
    EXPECT_EQ(screen_.shown_zone(basin_.basin), 2);
    pick(k_cover);
    EXPECT_EQ(plotted_zone(), 2);
}

TEST_F(PlotScreenTest, AZoneThatTheBasinLostBecomesAllZones) {
    pick(k_cover);
    pick_zone(2);
    basin_.basin.ZoneCount = 1;
    EXPECT_EQ(screen_.shown_zone(basin_.basin), 2);  // "All Zones" of one zone
    pick(k_cover);
    EXPECT_EQ(plotted_zone(), 2);
}

TEST_F(PlotScreenTest, RedrawTakesTypedMaximaUntilTheNextPick) {
    pick(k_cover);
    EXPECT_FALSE(screen_.manual_scale());
    const ScreenAnswer answer = screen_.redraw({"10/5/2001", "2.5"});
    EXPECT_TRUE(answer.draw);
    EXPECT_TRUE(answer.fill_boxes);
    EXPECT_TRUE(screen_.manual_scale());
    expect_frame(k_october_2001, k_october_2001 + 4.0F, 0.5F, 2.5F);
    EXPECT_EQ(screen_.boxes(), (BoxTexts{"10/05/2001", "2.5"}));
    screen_.redraw({"10/05/2001", "3"});
    expect_frame(k_october_2001, k_october_2001 + 4.0F, 0.5F, 3.0F);
    screen_.after_resize();
    expect_frame(k_october_2001, k_october_2001 + 4.0F, 0.5F, 3.0F);
    pick_zone(1);
    expect_frame(k_october_2001, k_october_2001 + 4.0F, 0.5625F, 3.0F);
    pick(k_cover);
    EXPECT_FALSE(screen_.manual_scale());
    EXPECT_EQ(screen_.plot()->frame.y_max, 1.0F);
}

TEST_F(PlotScreenTest, RedrawRefusesABoxAndThePlotStays) {
    pick(k_cover);
    const ScreenAnswer answer = screen_.redraw({"10/09/2001", "high"});
    EXPECT_FALSE(answer.draw);
    ASSERT_TRUE(answer.message);
    EXPECT_EQ(answer.message->title, "Plotting error");
    EXPECT_EQ(answer.message->text, "The maximum Y 'high' is not a number. Type a number, such as 12.5.");
    EXPECT_EQ(answer.wrong_box, BoxRefusal::Box::Y);
    EXPECT_FALSE(screen_.manual_scale());
    expect_whole_cover();
}

TEST_F(PlotScreenTest, AZoomGoesBeforeTypedMaxima) {
    pick(k_cover);
    screen_.zoom(k_four_days);
    EXPECT_TRUE(screen_.redraw({"10/09/2001", "2"}).after_zoom);
    expect_frame(37166.0F, 37170.0F, 0.625F, 0.875F);
    EXPECT_EQ(screen_.boxes().y, "2");
    zoom_out();
    expect_frame(k_october_2001, k_october_2001 + 8.0F, 0.5F, 2.0F);
}

TEST_F(PlotScreenTest, OneZoomOutLeavesAllZooms) {
    pick(k_cover);
    const ScreenAnswer zoomed = screen_.zoom(k_four_days);
    EXPECT_TRUE(zoomed.draw);
    EXPECT_FALSE(zoomed.fill_boxes);
    screen_.zoom({.x1 = 37167.0, .x2 = 37169.0, .y1 = 0.625, .y2 = 0.875});
    expect_frame(37167.0F, 37169.0F, 0.625F, 0.875F);
    screen_.wheel({37168.0, 0.75}, 1.0);
    EXPECT_TRUE(zoom_out().fill_boxes);
    expect_whole_cover();
}

TEST_F(PlotScreenTest, ZoomOutMakesThePlotAnewFromTheFile) {
    pick_zone_after(k_cover, 2);
    screen_.zoom(k_four_days);
    write_rising_cover();
    screen_.next_grid();
    expect_frame(37166.0F, 37170.0F, 0.625F, 0.875F);
    EXPECT_TRUE(zoom_out().fill_boxes);
    EXPECT_EQ(plotted_zone(), 2);
    expect_frame(k_october_2001, k_october_2001 + 8.0F, 0.0625F, 0.5F);
}

TEST_F(PlotScreenTest, ZoomOutShowsThePickAgainIfTheBasinHasAnotherPlotNow) {
    pick(k_cover);
    screen_.zoom(k_four_days);
    write_rising_cover();
    const auto expect_the_pick = [&] {
        EXPECT_TRUE(zoom_out().draw);
        expect_whole_cover();
        screen_.zoom(k_four_days);
    };
    basin_.take_step(2, 8);
    expect_the_pick();
    basin_.run.ClimateStep = 0;
    basin_.basin.Current_Sim_Name = "wy2003";
    expect_the_pick();
    basin_.basin.Current_Sim_Name = "wy2002";
    EXPECT_TRUE(screen_.zoom_out(nullptr, basin_.sources()).draw);
    expect_whole_cover();
    basin_.file.open().execute("DELETE FROM PhysicalData");
    screen_.zoom(k_four_days);
    expect_the_pick();
}

TEST_F(PlotScreenTest, AnEmptyZoomSaysSoAndThePlotStays) {
    pick(k_cover);
    // On October 2 and 3 the cover is at most 15/16.
    const ScreenAnswer answer = screen_.zoom({.x1 = 37166.0, .x2 = 37167.0, .y1 = 0.95, .y2 = 0.99});
    EXPECT_FALSE(answer.draw);
    ASSERT_TRUE(answer.message);
    EXPECT_EQ(answer.message->text, "No points in the zoom area");
    EXPECT_TRUE(answer.message->information);
    expect_whole_cover();
}

TEST_F(PlotScreenTest, ADragZoomsAndDisarms) {
    pick(k_cover);
    ASSERT_TRUE(screen_.zoom_in());
    screen_.press({37166.3, 0.625});
    EXPECT_TRUE(screen_.move({37169.0, 0.8}));
    EXPECT_TRUE(screen_.release({37169.6, 0.875}).draw);
    expect_frame(37166.0F, 37170.0F, 0.625F, 0.875F);
    EXPECT_FALSE(screen_.drag().armed());
}

TEST_F(PlotScreenTest, ADragWithoutAreaOrGivenUpChangesNothing) {
    pick(k_cover);
    screen_.zoom_in();
    screen_.press({37166.0, 0.625});
    expect_nothing_to_do(screen_.release({37166.2, 0.875}));
    screen_.zoom_in();
    screen_.press({37166.0, -2.0});
    expect_nothing_to_do(screen_.release({37169.0, -1.0}));
    screen_.zoom_in();
    screen_.press({37166.0, 0.625});
    EXPECT_TRUE(screen_.interrupt());
    expect_nothing_to_do(screen_.release({37170.0, 0.875}));
    screen_.zoom_in();
    EXPECT_TRUE(screen_.escape());
    EXPECT_FALSE(screen_.escape());
    expect_whole_cover();
}

TEST_F(PlotScreenTest, APickAndZoomOutDisarm) {
    pick(k_cover);
    screen_.zoom_in();
    pick(PlotNumber::Precipitation);
    EXPECT_FALSE(screen_.drag().armed());
    screen_.zoom_in();
    zoom_out();
    EXPECT_FALSE(screen_.drag().armed());
}

TEST_F(PlotScreenTest, AResizeKeepsTheZoomOfMostPlots) {
    pick(k_cover);
    screen_.zoom(k_four_days);
    const ScreenAnswer answer = screen_.after_resize();
    EXPECT_TRUE(answer.draw);
    EXPECT_FALSE(answer.fill_boxes);
    expect_frame(37166.0F, 37170.0F, 0.625F, 0.875F);
}

TEST_F(PlotScreenTest, AResizeEndsTheZoomOfAPlotThatIsRebuilt) {
    for (int number = 1; number <= k_last_plot; ++number)
        EXPECT_EQ(is_rebuilt(static_cast<PlotNumber>(number)), number == 16 || number == 19 || number == 23);
    basin_.take_step(6, 2);
    basin_.run.RunStart = basin_.day(1);
    pick(PlotNumber::CoverComparison);
    ASSERT_NE(screen_.plot(), nullptr);
    const PlotFrame whole = screen_.plot()->frame;
    screen_.zoom({.x1 = 37166.0, .x2 = 37170.0, .y1 = 0.0, .y2 = 1.0});
    ASSERT_TRUE(screen_.plot()->zoomed);
    EXPECT_TRUE(screen_.next_grid().fill_boxes);
    expect_frame(whole.x_min, whole.x_max, whole.y_min, whole.y_max);
    EXPECT_FALSE(screen_.plot()->zoomed);
}

TEST_F(PlotScreenTest, ThePictureAndItsStepStayWhenTheBasinChanges) {
    basin_.take_step(1, 8);
    pick(k_cover);
    screen_.zoom(k_four_days);
    basin_.take_step(5, 2);
    basin_.basin.simulations.clear();
    basin_.basin.current_row.reset();
    zoom_out();
    expect_whole_cover();
    EXPECT_EQ(screen_.step(), 1);
    EXPECT_EQ(screen_.plot()->head.step, 1);
    EXPECT_TRUE(screen_.after_resize().draw);
}

TEST_F(PlotScreenTest, GridModesGoRound) {
    pick(k_cover);
    EXPECT_EQ(screen_.grid(), GridMode::Vertical);
    for (const GridMode mode : {GridMode::Horizontal, GridMode::Both, GridMode::None, GridMode::Vertical}) {
        EXPECT_TRUE(screen_.next_grid().draw);
        EXPECT_EQ(screen_.grid(), mode);
    }
}

TEST_F(PlotScreenTest, DataPointsAndPlacesOutliveAPick) {
    EXPECT_FALSE(screen_.data_points());
    EXPECT_FALSE(screen_.legend_place() || screen_.summary_place());
    pick(k_cover);
    EXPECT_TRUE(screen_.toggle_data_points().draw);
    screen_.move_legend({20.0, 30.0});
    screen_.move_summary({40.0, 50.0});
    pick(PlotNumber::Precipitation);
    EXPECT_TRUE(screen_.data_points());
    EXPECT_EQ(screen_.legend_place()->y, 30.0);
    EXPECT_EQ(screen_.summary_place()->x, 40.0);
    screen_.toggle_data_points();
    EXPECT_FALSE(screen_.data_points());
}

TEST_F(PlotScreenTest, TheWheelZoomsAndPansWithinThePlot) {
    pick(k_cover);
    expect_nothing_to_do(screen_.wheel({37169.0, 0.75}, -1.0));
    expect_nothing_to_do(screen_.pan(1.0));
    EXPECT_TRUE(screen_.wheel({37165.0, 0.5}, 1.0).draw);
    // 8 days and 1/2 shrink to 6.4 and 0.4 from the corner.
    EXPECT_NEAR(screen_.plot()->frame.x_max, 37171.4, 0.01);
    EXPECT_FLOAT_EQ(screen_.plot()->frame.y_max, 0.9F);
    EXPECT_TRUE(screen_.plot()->zoomed);
    EXPECT_TRUE(screen_.pan(1.0).draw);
    EXPECT_NEAR(screen_.plot()->frame.x_min, 37165.64, 0.01);
    EXPECT_TRUE(screen_.wheel({37169.0, 0.75}, -5.0).draw);
    expect_whole_cover();
}

TEST_F(PlotScreenTest, TheWheelRestsDuringADrag) {
    pick(k_cover);
    screen_.zoom_in();
    screen_.press({37166.0, 0.625});
    expect_nothing_to_do(screen_.wheel({37169.0, 0.75}, 1.0));
    expect_whole_cover();
}

TEST_F(PlotScreenTest, ZoomsAndZoomOutGiveTheSamePlot) {
    pick(k_cover);
    const Plot before = *screen_.plot();
    try_often(200, [&] {
        for (int i = whole_between(1, 5); i > 0; --i) {
            const WorldPoint at{between(37160.0, 37180.0), between(0.3, 1.2)};
            if (by_chance(0.4))
                screen_.zoom(
                    {.x1 = at.x, .x2 = between(37160.0, 37180.0), .y1 = at.y, .y2 = between(0.3, 1.2)});
            else if (by_chance(0.5))
                screen_.wheel(at, between(-3.0, 3.0));
            else
                screen_.pan(between(-3.0, 3.0));
        }
        zoom_out();
        expect_whole_cover();
        ASSERT_EQ(screen_.plot()->curves.size(), before.curves.size());
        for (std::size_t i = 0; i < before.curves.size(); ++i)
            EXPECT_EQ(screen_.plot()->curves[i].points, before.curves[i].points);
        EXPECT_EQ(screen_.boxes(), box_texts(before));
    });
}

}  // namespace
}  // namespace nivora
