// The plot window: its lists, its boxes, what its buttons do.
#include "tests/windows/plots/plot_window_fixture.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QTimer>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int k_entry_of_all_zones = 3;
constexpr const char* k_plot_error = "Plotting error";

TEST_F(PlotWindowTest, OpensWithTheHydrographOfTheRun) {
    open();
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(screen_.picked(), PlotNumber::Runoff);
    EXPECT_EQ(from_qt(plots()->currentText()), "Runoff (Measured vs Computed)");
    EXPECT_FALSE(zones()->isEnabled());
    EXPECT_EQ(box("bartext1"), "10/09/2001");
    EXPECT_EQ(box("bartext2"), "80");
    EXPECT_TRUE(in<>("Frame3")->isVisible());
    EXPECT_EQ(label("panel1"), "/basins/alder.mdb");
    EXPECT_EQ(label("PositionX"), " ");
}

TEST_F(PlotWindowTest, WithoutResultsNothingIsPickedAtTheOpening) {
    session_.basin.Output_Valid = false;
    open();
    EXPECT_FALSE(screen_.picked());
    EXPECT_EQ(plots()->currentIndex(), -1);
    EXPECT_FALSE(zones()->isEnabled());
    for (const char* tool : {"SaveAs", "Print", "Copy", "ZoomIn", "ZoomOut"})
        EXPECT_FALSE(button(tool)->isEnabled()) << tool;
    EXPECT_FALSE(in<QLineEdit>("bartext1")->isEnabled());
    EXPECT_FALSE(in<QLineEdit>("bartext2")->isEnabled());
    EXPECT_FALSE(in<>("Frame2")->isVisible());
}

TEST_F(PlotWindowTest, ThePlotListShowsAllPlotsAndOffersThoseThatCanBeMade) {
    open();
    EXPECT_EQ(plots()->count(), 23);
    EXPECT_THAT(enabled(*plots()), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16));
    session_.basin.Input_Changed = true;
    window_->renew();
    EXPECT_THAT(enabled(*plots()), ElementsAre(2, 3, 5, 6, 7, 8, 9, 10, 11, 12));
    EXPECT_EQ(screen_.picked(), PlotNumber::Runoff);
    EXPECT_NE(screen_.plot(), nullptr);
    session_.basin.Input_Changed = false;
    session_.run.NoSnow = true;
    window_->renew();
    EXPECT_THAT(enabled(*plots()), ElementsAre(1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 16));
}

TEST_F(PlotWindowTest, TheZoneListFollowsThePlot) {
    open();
    pick(k_snow_cover);
    EXPECT_TRUE(zones()->isEnabled());
    EXPECT_EQ(zones()->count(), k_entry_of_all_zones);
    EXPECT_EQ(from_qt(zones()->itemText(1)), "Zone B");
    EXPECT_EQ(from_qt(zones()->currentText()), "All Zones");
    auto* view = qobject_cast<QListView*>(zones()->view());
    EXPECT_FALSE(view->isRowHidden(k_entry_of_all_zones - 1));
    pick_zone(2);
    EXPECT_EQ(screen_.plot()->zone, 2);
    EXPECT_EQ(from_qt(zones()->currentText()), "Zone B");
    pick(PlotNumber::RunoffComponents);
    EXPECT_TRUE(view->isRowHidden(k_entry_of_all_zones - 1));
    EXPECT_FALSE(is_enabled(*zones(), k_entry_of_all_zones));
}

TEST_F(PlotWindowTest, AMaximumIsTypedAndRedrawTakesIt) {
    open();
    pick(k_snow_cover);
    EXPECT_FALSE(button("Redraw")->isVisible());
    type_over("bartext2", "2");
    EXPECT_TRUE(button("Redraw")->isVisible());
    button("Redraw")->click();
    EXPECT_EQ(screen_.plot()->frame.y_max, 2.0F);
    EXPECT_FALSE(button("Redraw")->isVisible());
    type_over("bartext1", "10/5/2001");
    QTest::keyClick(in<QLineEdit>("bartext1"), Qt::Key_Return);
    EXPECT_EQ(screen_.plot()->frame.x_max, small_.x(5));
    EXPECT_EQ(screen_.plot()->frame.y_max, 2.0F);
    EXPECT_EQ(box("bartext1"), "10/05/2001");
    EXPECT_TRUE(window_->isVisible()) << "Enter closes nothing";
    pick(k_snow_cover);
    EXPECT_EQ(box("bartext2"), "1");
}

TEST_F(PlotWindowTest, ABoxThatCannotBeReadIsNamedAndThePlotStays) {
    open();
    pick(k_snow_cover);
    type_over("bartext2", "high");
    button("Redraw")->click();
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(dialogs_.messages()[0].message.title, k_plot_error);
    EXPECT_EQ(in<QLineEdit>("bartext2")->selectedText(), QStringLiteral("high"));
    EXPECT_TRUE(button("Redraw")->isVisible());
    EXPECT_EQ(screen_.plot()->frame.y_max, 1.0F);
}

TEST_F(PlotWindowTest, AMaximumTypedInAZoomWaitsForZoomOutAndTheUserIsTold) {
    open();
    pick(k_snow_cover);
    button("ZoomIn")->click();
    drag(place(2, 0.625), place(6, 0.9));
    ASSERT_TRUE(screen_.plot()->zoomed);
    type_over("bartext2", "2");
    button("Redraw")->click();
    EXPECT_TRUE(screen_.plot()->zoomed);
    EXPECT_EQ(from_qt(window_->statusBar()->currentMessage()), "The new maximum shows after Zoom Out.");
    button("ZoomOut")->click();
    EXPECT_EQ(screen_.plot()->frame.y_max, 2.0F);
}

TEST_F(PlotWindowTest, ADragZoomsAndZoomOutReadsTheBasinAgain) {
    open();
    pick(k_snow_cover);
    button("ZoomIn")->click();
    EXPECT_TRUE(screen_.drag().armed());
    drag(place(2, 0.625), place(6, 0.9));
    EXPECT_EQ(screen_.plot()->frame.x_min, small_.x(2));
    EXPECT_EQ(screen_.plot()->frame.x_max, small_.x(6));
    EXPECT_FALSE(screen_.drag().armed());
    small_.file.open().execute("UPDATE PhysicalData SET SCA = 0.75");
    EXPECT_TRUE(screen_.plot()->zoomed);
    button("ZoomOut")->click();
    EXPECT_FALSE(screen_.plot()->zoomed);
    EXPECT_EQ(screen_.plot()->curves[0].points[0].y, 0.75F);
}

TEST_F(PlotWindowTest, AnEmptyZoomIsToldWithAnInformation) {
    open();
    pick(k_snow_cover);
    button("ZoomIn")->click();
    drag(place(2, 0.97), place(3, 0.99));
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    const Message& told = dialogs_.messages()[0].message;
    EXPECT_EQ(told.text, "No points in the zoom area");
    EXPECT_EQ(told.icon, Icon::Information);
    EXPECT_EQ(told.title, k_program_title);
    EXPECT_FALSE(screen_.plot()->zoomed);
}

TEST_F(PlotWindowTest, GridLinesAndDataPointsOutliveTheWindow) {
    open();
    button("GridLn")->click();
    EXPECT_EQ(screen_.grid(), GridMode::Horizontal);
    EXPECT_EQ(from_qt(button("Showdata")->toolTip()), "Show data points");
    button("Showdata")->click();
    EXPECT_EQ(from_qt(button("Showdata")->toolTip()), "Hide data points");
    window_->close();
    EXPECT_FALSE(screen_.picked()) << "the plot is forgotten";
    frmNVRPlot other({session_, quick_help_, folder_.path(), printing_}, colours_, screen_);
    other.open();
    EXPECT_EQ(screen_.grid(), GridMode::Horizontal);
    EXPECT_TRUE(screen_.data_points());
    EXPECT_EQ(from_qt(other.findChild<QToolButton*>(QStringLiteral("Showdata"))->toolTip()),
              "Hide data points");
}

TEST_F(PlotWindowTest, AFailedBuildShowsItsTextAndTurnsTheOutputOff) {
    open();
    pick(PlotNumber::LagTime);  // the parameters have no rows
    EXPECT_EQ(screen_.plot(), nullptr);
    EXPECT_TRUE(dialogs_.messages().empty());
    for (const char* tool : {"SaveAs", "Print", "Copy", "ZoomIn"})
        EXPECT_FALSE(button(tool)->isEnabled()) << tool;
    EXPECT_EQ(box("bartext1"), "");
    EXPECT_FALSE(in<>("Frame2")->isVisible());
    pick(k_snow_cover);
    EXPECT_TRUE(button("SaveAs")->isEnabled());
    EXPECT_TRUE(in<>("Frame2")->isVisible());
}

TEST_F(PlotWindowTest, ABasinThatCannotBeReadIsToldAndThePlotStays) {
    open();
    session_.basin.Work_File = folder_ / "missing.mdb";
    pick(k_snow_cover);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(dialogs_.messages()[0].message.title, k_plot_error);
    EXPECT_EQ(screen_.picked(), PlotNumber::Runoff);
    EXPECT_NE(screen_.plot(), nullptr);
    EXPECT_EQ(plots()->currentIndex(), 0) << "the list shows the plot that stands";
    button("ZoomOut")->click();
    EXPECT_NE(screen_.plot(), nullptr);
    EXPECT_EQ(dialogs_.messages().size(), 1U);
}

TEST_F(PlotWindowTest, Steps4And5AnswerEachPickWithAMessage) {
    open();
    session_.run.ClimateStep = 4;
    window_->renew();
    EXPECT_FALSE(is_enabled(*plots(), 1));
    pick(k_snow_cover);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(dialogs_.messages()[0].message.text,
              "Plots are not available during this climate change step!");
    EXPECT_EQ(dialogs_.messages()[0].message.title, k_plot_error);
    EXPECT_EQ(dialogs_.messages()[0].message.icon, Icon::None);
    EXPECT_EQ(screen_.picked(), PlotNumber::Runoff);
    EXPECT_EQ(plots()->currentIndex(), 0);
}

TEST_F(PlotWindowTest, Steps4And5AnswerAPickOfAZoneTooAndThePlotOfTheEarlierStepStays) {
    open();
    pick(k_snow_cover);
    pick_zone(2);
    for (const int step : {4, 5}) {
        const std::size_t told = dialogs_.messages().size();
        session_.run.ClimateStep = step;
        window_->renew();
        EXPECT_EQ(dialogs_.messages().size(), told) << "a step alone says nothing";
        pick_zone(1);
        ASSERT_EQ(dialogs_.messages().size(), told + 1) << step;
        EXPECT_EQ(dialogs_.messages().back().message.text,
                  "Plots are not available during this climate change step!");
        EXPECT_EQ(dialogs_.messages().back().message.title, k_plot_error);
        EXPECT_EQ(screen_.picked(), k_snow_cover);
        EXPECT_EQ(screen_.plot()->zone, 2);
        EXPECT_EQ(screen_.step(), 0);
        EXPECT_EQ(from_qt(zones()->currentText()), "Zone B") << "the list shows the zone that stands";
        EXPECT_TRUE(button("SaveAs")->isEnabled());
    }
    // What acts on the picture needs no results.
    button("ZoomOut")->click();
    EXPECT_EQ(screen_.plot()->zone, 2);
    EXPECT_EQ(dialogs_.messages().size(), 2U);
}

TEST_F(PlotWindowTest, AnotherSimulationChangesTheListsAndThePictureStays) {
    open();
    session_.basin.Current_Sim_Name = "wy2003";
    window_->renew();
    EXPECT_FALSE(is_enabled(*plots(), 1));
    ASSERT_NE(screen_.plot(), nullptr);
    EXPECT_THAT(screen_.plot()->head.subtitle, HasSubstr("wy2002"));
}

TEST_F(PlotWindowTest, TheMouseShowsItsPlaceInTheStatusBar) {
    open();
    pick(k_snow_cover);
    QTest::mouseMove(&canvas(), place(3, 0.75));
    EXPECT_EQ(label("PositionX"), " X: Oct 3, 2001");
    EXPECT_THAT(label("PositionY"), HasSubstr(" Y: .7"));
}

TEST_F(PlotWindowTest, EscapeDisarmsTheZoomAndNeverCloses) {
    open();
    pick(k_snow_cover);
    button("ZoomIn")->click();
    QTest::keyClick(window_.get(), Qt::Key_Escape);
    EXPECT_FALSE(screen_.drag().armed());
    QTest::keyClick(window_.get(), Qt::Key_Escape);
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(PlotWindowTest, F5TakesWhatWasTyped) {
    open();
    pick(k_snow_cover);
    type_over("bartext2", "3");
    QTest::keyClick(window_.get(), Qt::Key_F5);
    EXPECT_EQ(screen_.plot()->frame.y_max, 3.0F);
    QTest::keyClick(window_.get(), Qt::Key_F5);
    EXPECT_EQ(screen_.plot()->frame.y_max, 3.0F);
}

TEST_F(PlotWindowTest, LineAttributesChangeTheTableAfterDoneAlone) {
    open();
    const auto edit = [&](const char* close) {
        QTimer::singleShot(20, window_.get(), [close] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(dialog->objectName(), QStringLiteral("frmLineAtt"));
            dialog->findChild<QSpinBox*>(QStringLiteral("UpDown2"))->setValue(4);
            dialog->findChild<QPushButton*>(QString::fromUtf8(close))->click();
        });
        button("LineAtt")->click();
    };
    edit("Command1(1)");
    EXPECT_EQ(session_.settings.lines[0].width, 1);
    edit("Command1(0)");
    EXPECT_EQ(session_.settings.lines[0].width, 4);
}

TEST_F(PlotWindowTest, AfterACancelTheLineAttributesOpenOnLine1) {
    open();
    emit canvas().line_chosen(2, QPoint(0, 0));
    in<QMenu>("mnuEd")->hide();
    std::vector<int> lines;
    for (int time = 0; time < 2; ++time) {
        QTimer::singleShot(20, window_.get(), [&lines] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            lines.push_back(dialog->findChild<QSpinBox*>(QStringLiteral("UpDown1"))->value());
            dialog->findChild<QPushButton*>(QStringLiteral("Command1(1)"))->click();
        });
        button("LineAtt")->click();
    }
    EXPECT_THAT(lines, ElementsAre(2, 1));
}

TEST_F(PlotWindowTest, TheWheelOverAClosedListPicksNothing) {
    open();
    const QPoint middle = plots()->rect().center();
    QWheelEvent down(middle, plots()->mapToGlobal(middle), {}, QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    plots()->setFocus();
    QApplication::sendEvent(plots(), &down);
    EXPECT_EQ(plots()->currentIndex(), 0);
    EXPECT_EQ(screen_.picked(), PlotNumber::Runoff);
}

TEST_F(PlotWindowTest, ABasinThatGetsAnotherNameShowsIt) {
    open();
    session_.basin.Basin_File = "/basins/birch.mdb";
    window_->renew();
    EXPECT_EQ(label("panel1"), "/basins/birch.mdb");
}

TEST_F(PlotWindowTest, TheSpareMenusHaveTheirEntriesAndAreNeverShown) {
    const auto entries = [&](const char* menu) {
        std::vector<std::string> texts;
        for (const QAction* action : in<QMenu>(menu)->actions()) texts.push_back(from_qt(action->text()));
        return texts;
    };
    EXPECT_THAT(entries("mnuSelItm"),
                ElementsAre("Black", "Blue", "Cyan", "Green", "Magneta", "Red", "White", "Yellow"));
    EXPECT_THAT(entries("mnuStyItm"),
                ElementsAre("Solid", "Transparent", "Horizontal", "Vertical", "Upward diagional",
                            "Downward Diagonal", "Crosshatch", "Diagonal Cross"));
    EXPECT_THAT(entries("mnuEd"), ElementsAre("&LineAttributes"));
    for (QAction* action : in<QMenu>("mnuSelItm")->actions()) action->trigger();
    for (QAction* action : in<QMenu>("mnuStyItm")->actions()) action->trigger();
    EXPECT_FALSE(in<QMenu>("mnuSelItm")->isVisible());
}

TEST_F(PlotWindowTest, ToolTipsAndHelpLinesAreThoseOfTheControls) {
    open();
    const auto tip = [&](const char* name) { return from_qt(in<>(name)->toolTip()); };
    EXPECT_EQ(tip("SaveAs"), "Save As");
    EXPECT_EQ(tip("Print"), "Print");
    EXPECT_EQ(tip("Copy"), "Copy to Clipboard");
    EXPECT_EQ(tip("ZoomIn"), "Zoom In");
    EXPECT_EQ(tip("ZoomOut"), "Zoom Out");
    EXPECT_EQ(tip("LineAtt"), "Line Attributes");
    EXPECT_EQ(tip("GridLn"), "Grid Lines");
    EXPECT_EQ(tip("PlotList"), "Select a plot from those currently available.");
    EXPECT_EQ(tip("ZoneList"), "Zones to Plot");
    EXPECT_EQ(tip("bartext1"), "Maximum X for this plot.  Change if rescaling is desired.");
    EXPECT_EQ(tip("bartext2"), "Maximum Y for this plot.  Change if rescaling is desired.");
    EXPECT_EQ(tip("Redraw"), "Redraw");
    EXPECT_EQ(tip("Help"), "Help for Graphics WIndow");
    EXPECT_EQ(tip("btnHelp"), "Show 'QuickHelp'");
    EXPECT_EQ(from_qt(in<QPushButton>("cmdPlot")->text()), "&Done");
    const auto explained = [&](const char* name) {
        window_->explain_widget(in<>(name));
        return from_qt(window_->help_text());
    };
    EXPECT_THAT(explained("Plotframe"), testing::StartsWith("The plot. "));
    EXPECT_THAT(explained("SaveAs"), testing::StartsWith("Save As: "));
    EXPECT_THAT(explained("Showdata"), testing::StartsWith("Show data points: "));
    EXPECT_THAT(explained("PlotList"), testing::StartsWith("Select a plot "));
    EXPECT_THAT(explained("ZoneList"), testing::StartsWith("Zones to Plot: "));
    EXPECT_THAT(explained("bartext1"), testing::StartsWith("Maximum X "));
    EXPECT_THAT(explained("bartext2"), testing::StartsWith("Maximum Y "));
    EXPECT_THAT(explained("Redraw"), testing::StartsWith("Redraw: "));
    EXPECT_THAT(explained("Help"), testing::StartsWith("Help: "));
    EXPECT_THAT(explained("Frame2"), testing::StartsWith("Legend: "));
    EXPECT_THAT(explained("Frame3"), testing::StartsWith("Run summary: "));
    EXPECT_THAT(explained("panel1"), testing::StartsWith("Status bar: "));
    EXPECT_THAT(explained("PositionX"), testing::StartsWith("X: "));
    EXPECT_THAT(explained("PositionY"), testing::StartsWith("Y: "));
    EXPECT_THAT(explained("cmdPlot"), testing::StartsWith("Done: "));
}

TEST_F(PlotWindowTest, TheBasinsFileIsFreeBetweenTheBuilds) {
    open();
    pick(k_snow_cover);
    EXPECT_NO_THROW(small_.file.open().execute("DROP TABLE SimResults"));
}

}  // namespace
}  // namespace nivora
