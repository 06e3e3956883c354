// The plot window beside a basin that changes, in other sizes, and under QuickHelp.

#include "tests/screen/shown_plots_fixture.h"

#include <QPushButton>
#include <QStandardItemModel>
#include <fstream>
#include <sstream>

namespace nivora {
namespace {

class PlotsBesideBasinTest : public ShownPlotsTest {
protected:
    [[nodiscard]] bool offers(int plot) const {
        return qobject_cast<QStandardItemModel*>(list()->model())->item(plot - 1)->isEnabled();
    }
    /// What the window shows, wherever other windows stand.
    [[nodiscard]] QImage shown() const { return canvas_->grab().toImage(); }
    static void bring_up(QWidget& window) {
        window.raise();
        window.activateWindow();
        await_active(window);
    }
    /// Ticks a step of an evaluation.
    void tick(QWidget* climate, int step) {
        bring_up(*climate);
        if (step == 5) {
            for (int zone = 1; zone <= session_.basin.ZoneCount; ++zone) dialogs_.then_text("0");
        }
        auto* box = in<QCheckBox>(climate, ("Check1(" + std::to_string(step - 1) + ")").c_str());
        click(*box, {8, box->height() / 2});
        ASSERT_TRUE(await([&] { return box->isChecked() && !box->isEnabled(); })) << step;
    }
};

TEST_F(PlotsBesideBasinTest, TheListFollowsAnEvaluationAndThePictureStays) {
    add_scenario();
    plots_->move(0, 0);
    point_away();
    ASSERT_TRUE(shows(built(PlotNumber::Runoff)));
    const QImage before = shown();
    QWidget* climate = open_climate();
    ASSERT_NE(climate, nullptr);
    for (int step = 1; step <= 5; ++step) {
        SCOPED_TRACE(step);
        tick(climate, step);
        EXPECT_TRUE(plots_->isVisible());
        EXPECT_EQ(shown(), before);
        EXPECT_EQ(from_qt(list()->itemText(0)),
                  step == 2 ? "Runoff (Measured vs CompClim)" : "Runoff (Measured vs Computed)");
        EXPECT_EQ(offers(number_of(PlotNumber::Runoff)), step < 4);
        if (step < 4) continue;
        const std::size_t told = dialogs_.messages().size();
        bring_up(*plots_);
        list()->setFocus();
        press({"Down"});
        ASSERT_EQ(dialogs_.messages().size(), told + 1);
        EXPECT_EQ(last_message().text, "Plots are not available during this climate change step!");
        EXPECT_EQ(list()->currentIndex(), 0) << "the list names the plot that stands";
        EXPECT_EQ(shown(), before);
    }
    keep(*plots_, "shown-plots-step-5.png");
    tick(climate, 6);
    EXPECT_TRUE(offers(number_of(PlotNumber::RunoffComparison)));
    bring_up(*plots_);
    list()->setFocus();
    press({"End"});
    EXPECT_EQ(list()->currentIndex(), k_last_plot - 1);
    EXPECT_NE(shown(), before);
    keep(*plots_, "shown-plots-step-6.png");
    bring_up(*climate);
    close_by_key(Answer::Yes);
    EXPECT_TRUE(await([&] { return !plots_->isVisible(); }));
}

TEST_F(PlotsBesideBasinTest, ADeletedSimulationLeavesThePictureAndTurnsItsPlotsOff) {
    const Plot plot = built(PlotNumber::Runoff);
    point_away();
    ASSERT_TRUE(shows(plot));
    bring_up(*window_);
    dialogs_.then(Answer::Yes);
    choose("mnuEditItmDelete(0)");
    bring_up(*plots_);
    point_away();
    EXPECT_TRUE(shows(plot));
    EXPECT_FALSE(offers(number_of(PlotNumber::Runoff)));
    EXPECT_TRUE(tool("Copy")->isEnabled());
}

TEST_F(PlotsBesideBasinTest, ANewBasinClosesThePlots) {
    bring_up(*window_);
    session_.basin.Basin_Changed = false;
    choose("mnuFileItem(0)");
    EXPECT_TRUE(await([&] { return !plots_->isVisible(); }));
}

TEST_F(PlotsBesideBasinTest, ThePictureFollowsTheSizeOfTheWindow) {
    const Plot plot = built(PlotNumber::Runoff);
    plots_->move(10, 30);
    point_away();
    for (const QSize size : {QSize(100, 100), QSize(1240, 940), QSize(900, 600)}) {
        plots_->resize(size);
        settle();
        point_away();
        EXPECT_TRUE(shows(plot)) << size.width();
        EXPECT_EQ(canvas_->picture_size().width, canvas_->width());
        keep(*plots_, ("shown-plots-" + std::to_string(size.width()) + ".png").c_str());
    }
}

/// While QuickHelp is on.
class PlotsUnderQuickHelpTest : public ShownPlotsTest {
protected:
    void SetUp() override {
        ShownPlotsTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        click(*tool("btnHelp"));
        ASSERT_TRUE(quick_help_.is_on());
    }
    /// A text of the window in the file beside the program, from 0.
    [[nodiscard]] std::string line(int number) const {
        std::ifstream file{program_ / "quickhelp.txt"};
        std::string text;
        while (std::getline(file, text) && !text.starts_with("<frmNVRPlot>")) {
        }
        for (int i = 0; i <= number; ++i) std::getline(file, text);
        while (!text.empty() && text.back() == '\r') text.pop_back();
        return text;
    }
    [[nodiscard]] std::string strip() const {
        return from_qt(qobject_cast<NivoraWindow*>(plots_)->help_text());
    }
};

TEST_F(PlotsUnderQuickHelpTest, ClicksExplainAndNothingActs) {
    const Plot plot = built(PlotNumber::Runoff);
    const int grip = 3;
    auto* legend = in<QWidget>(canvas_, "Frame2");
    const QPoint corner = legend->pos();
    const std::size_t asked = dialogs_.files().size();
    struct Explained {
        const char* name;
        int help;
    };
    for (const auto& [name, help] :
         {Explained{"SaveAs", 2}, Explained{"Print", 3}, Explained{"Copy", 4}, Explained{"ZoomIn", 5},
          Explained{"ZoomOut", 6}, Explained{"LineAtt", 7}, Explained{"GridLn", 8}, Explained{"Showdata", 9},
          Explained{"Help", 20}, Explained{"PlotList", 11}, Explained{"bartext2", 17},
          Explained{"Label4(1)", 30}}) {
        click(*in<QWidget>(plots_, name));
        EXPECT_EQ(strip(), line(help)) << name;
        EXPECT_EQ(open_window("frmLineAtt"), nullptr);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << name;
    }
    click(*canvas_, {canvas_->width() / 3, canvas_->height() / 2});
    EXPECT_EQ(strip(), line(1));
    begin_drag(legend->pos() + QPoint(grip, grip), legend->pos() + QPoint(-150, 60));
    release_button();
    EXPECT_EQ(strip(), line(29));
    keep(*plots_, "shown-plots-quick-help.png");
    click(*tool("btnHelp"));
    ASSERT_FALSE(quick_help_.is_on());
    EXPECT_EQ(legend->pos(), corner);
    point_away();
    EXPECT_TRUE(shows(plot)) << "grid, points and lines are as before";
    EXPECT_EQ(list()->currentIndex(), 0);
    EXPECT_EQ(dialogs_.files().size(), asked);
}

TEST_F(PlotsUnderQuickHelpTest, DoneClosesOnlyWithoutItAndEscapeNever) {
    press({"alt+d"});
    EXPECT_TRUE(plots_->isVisible());
    EXPECT_EQ(strip(), line(37));
    press({"Escape"});
    EXPECT_TRUE(plots_->isVisible());
    click(*tool("btnHelp"));
    ASSERT_FALSE(quick_help_.is_on());
    press({"Escape"});
    EXPECT_TRUE(plots_->isVisible());
    press({"alt+d"});
    EXPECT_TRUE(await([&] { return !plots_->isVisible(); }));
    EXPECT_TRUE(await([&] { return window_->isActiveWindow(); }));
}

}  // namespace
}  // namespace nivora
