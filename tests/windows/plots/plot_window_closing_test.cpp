// The plot window from opening to opening, and over a basin that changes under it.
#include "tests/windows/plots/plot_window_fixture.h"

#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>

namespace nivora {
namespace {

using testing::HasSubstr;

class PlotWindowClosingTest : public PlotWindowTest {
protected:
    /// Makes the results those of an evaluation, with the columns that the changed melt needs.
    void prepare_changed_melt() {
        small_.take_step(6, 2);
        small_.write_results([](SimResults& t, std::size_t row, int, int day) {
            t.SCA[row] = 1.0F - 0.125F * static_cast<float>(day - 1);
            t.SCAclim[row] = 1.0F;
            t.MDCexcl[row] = static_cast<float>(day);
            t.MDCexclWA[row] = static_cast<float>(day);
            t.MDCexclWAnew[row] = static_cast<float>(day + 1);
        });
        session_.run = small_.run;
    }
    /// How many days of zone A have a value of a column.
    std::string stored_days(const char* column) {
        return small_.file.column(std::string{"SELECT COUNT("} + column + ") FROM SimResults WHERE Zone = 1")
            .at(0);
    }
};

TEST_F(PlotWindowClosingTest, DoneClosesAndKeepsThePlace) {
    open();
    window_->move(70, 60);
    in<QPushButton>("cmdPlot")->click();
    EXPECT_FALSE(window_->isVisible());
    EXPECT_TRUE(session_.settings.places.at(static_cast<std::size_t>(WindowNumber::frmNVRPlot)).top);
    EXPECT_EQ(screen_.plot(), nullptr);
}

TEST_F(PlotWindowClosingTest, TheNextOpeningShowsNothingOfThePlotBefore) {
    open();
    pick(k_snow_cover);
    QTest::mouseMove(&canvas(), place(5, 0.7));
    ASSERT_NE(label("PositionX"), " ");
    type_over("bartext2", "7");
    window_->close();
    session_.basin.Output_Valid = false;
    open();
    ASSERT_FALSE(screen_.picked());
    EXPECT_EQ(box("bartext1"), "");
    EXPECT_EQ(box("bartext2"), "");
    EXPECT_FALSE(button("Redraw")->isVisible());
    EXPECT_EQ(label("PositionX"), " ");
    EXPECT_EQ(label("PositionY"), " ");
    EXPECT_EQ(plots()->currentIndex(), -1);
    EXPECT_FALSE(in<>("Frame2")->isVisible());
}

TEST_F(PlotWindowClosingTest, OpenedAgainItKeepsWhatIsTyped) {
    open();
    pick(k_snow_cover);
    type_over("bartext2", "7");
    open();
    EXPECT_EQ(screen_.picked(), k_snow_cover);
    EXPECT_EQ(box("bartext2"), "7");
    EXPECT_TRUE(button("Redraw")->isVisible());
}

TEST_F(PlotWindowClosingTest, OpenedAgainAfterARunItShowsTheHydrograph) {
    session_.basin.Output_Valid = false;
    open();
    ASSERT_FALSE(screen_.picked());
    session_.basin.Output_Valid = true;
    open();
    EXPECT_EQ(screen_.picked(), PlotNumber::Runoff);
}

TEST_F(PlotWindowClosingTest, WithoutASimulationThePictureStaysAndNothingCanBeChosen) {
    open();
    pick(k_snow_cover);
    session_.basin.simulations.clear();
    session_.basin.current_row.reset();
    session_.basin.Current_Sim_Name = "--";
    window_->renew();
    EXPECT_THAT(enabled(*plots()), testing::IsEmpty());
    pick_zone(1);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_THAT(dialogs_.messages()[0].message.text, HasSubstr("none is selected"));
    EXPECT_EQ(screen_.picked(), k_snow_cover);
    button("ZoomOut")->click();
    EXPECT_NE(screen_.plot(), nullptr);
}

TEST_F(PlotWindowClosingTest, StaleResultsRefuseAZoneAndThePictureStays) {
    open();
    pick(PlotNumber::DegreeDays);
    session_.basin.Input_Changed = true;
    pick_zone(1);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_THAT(dialogs_.messages()[0].message.text, HasSubstr("up-to-date results"));
    EXPECT_EQ(from_qt(zones()->currentText()), "All Zones") << "the list shows the zones that stand";
    EXPECT_FALSE(is_enabled(*plots(), number_of(PlotNumber::DegreeDays)));
}

TEST_F(PlotWindowClosingTest, TheChangedMeltIsStoredWithItsPlot) {
    prepare_changed_melt();
    open();
    EXPECT_EQ(stored_days("AZMexcl"), "0");
    pick(PlotNumber::ChangedAccumulatedMelt);
    ASSERT_NE(screen_.plot(), nullptr);
    EXPECT_TRUE(dialogs_.messages().empty());
    EXPECT_EQ(stored_days("AZMexcl"), "6") << "the days of the summer";
    EXPECT_EQ(stored_days("AZMwork"), "6");
}

TEST_F(PlotWindowClosingTest, AMeltThatCannotBeStoredIsNotedAndThePlotStands) {
    prepare_changed_melt();
    open();
    // A second row with a value is refused.
    small_.file.change("CREATE UNIQUE INDEX once ON SimResults(AZMwork IS NULL) WHERE AZMwork IS NOT NULL");
    pick(PlotNumber::ChangedAccumulatedMelt);
    ASSERT_NE(screen_.plot(), nullptr);
    EXPECT_EQ(stored_days("AZMwork"), "0");
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_THAT(dialogs_.messages()[0].message.text,
                HasSubstr("AZMexcl, AZMexclWA and AZMwork of this plot are not stored"));
    EXPECT_TRUE(button("SaveAs")->isEnabled());
}

TEST_F(PlotWindowClosingTest, ANameInTheLegendOpensItsLine) {
    open();
    emit canvas().line_chosen(2, canvas().mapToGlobal(QPoint(40, 40)));
    auto* menu = in<QMenu>("mnuEd");
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(menu->pos(), canvas().mapToGlobal(QPoint(40, 40)));
    int shown = 0;
    QTimer::singleShot(20, window_.get(), [&] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        shown = dialog->findChild<QSpinBox*>(QStringLiteral("UpDown1"))->value();
        dialog->findChild<QPushButton*>(QStringLiteral("Command1(1)"))->click();
    });
    menu->hide();
    menu->actions().constFirst()->trigger();
    EXPECT_EQ(shown, 2);
}

}  // namespace
}  // namespace nivora
