// The plot window's keys, and what follows a copy, a print and a save.
#include "tests/windows/plots/plot_window_fixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>

namespace nivora {
namespace {

class PlotWindowKeysTest : public PlotWindowTest {
protected:
    PlotWindowKeysTest() { session_.settings.page.orientation = 2; }  // in which the plot fits on the page

    void press(const QKeyCombination& keys) { press(keys, *window_); }
    static void press(const QKeyCombination& keys, QWidget& at) {
        QTest::keyClick(&at, keys.key(), keys.keyboardModifiers());
    }
    /// Makes the results those of an evaluation, and picks a plot of two covers, which a redraw makes anew.
    void open_with_covers() {
        small_.write_results([](SimResults& t, std::size_t row, int, int day) {
            t.SCA[row] = 1.0F - 0.0625F * static_cast<float>(day);
            t.SCAclimWAMA[row] = 0.5F - 0.0625F * static_cast<float>(day);
        });
        small_.take_step(6, 2);
        small_.run.RunStart = small_.day(1);
        session_.run = small_.run;
        open();
        pick(PlotNumber::CoverComparison);
    }
    /// Results of which the runoff has its components.
    void write_components() {
        small_.write_results([](SimResults& t, std::size_t row, int, int day) {
            t.ActualQ[row] = 10.0F * static_cast<float>(day);
            t.DailyQ[row] = 5.0 * day;
            t.M1S[row] = 0.5F;
            t.ZonalMelt[row] = 0.5F;
            t.SCA[row] = 0.5F;
            t.Cpr[row] = 0.25F;
            t.NewMelt[row] = 0.25F;
            t.Precip[row] = 2.0F;
            t.AZMexclWA[row] = 0.0F;
        });
    }
    /// Shows a part of the plot.
    void zoom() {
        screen_.wheel({static_cast<double>(small_.day(4)), 0.5}, 1.0);
        ASSERT_TRUE(screen_.plot()->zoomed);
    }
    bool is_zoomed_after(const char* tool) {
        zoom();
        button(tool)->click();
        return screen_.plot()->zoomed;
    }
    /// Each command on the plot, by its key.
    void press_all() {
        for (const QKeyCombination& keys : {Qt::CTRL | Qt::Key_C, Qt::CTRL | Qt::Key_P, Qt::CTRL | Qt::Key_S,
                                            Qt::NoModifier | Qt::Key_F5, Qt::NoModifier | Qt::Key_Escape})
            press(keys);
    }
    void expect_no_output() {
        EXPECT_EQ(clipboard().text(), QStringLiteral("mine"));
        EXPECT_TRUE(printers_.offered_printers().empty());
        EXPECT_TRUE(dialogs_.files().empty());
        EXPECT_TRUE(window_->isVisible());
    }
    static QClipboard& clipboard() { return *QGuiApplication::clipboard(); }
};

TEST_F(PlotWindowKeysTest, CopyTakesThePictureAndInABoxItsText) {
    open();
    pick(k_snow_cover);
    press(Qt::CTRL | Qt::Key_C);
    EXPECT_TRUE(clipboard().mimeData()->hasImage());
    auto* maximum = in<QLineEdit>("bartext1");
    maximum->setFocus();
    maximum->selectAll();
    press(Qt::CTRL | Qt::Key_C, *maximum);
    EXPECT_FALSE(clipboard().mimeData()->hasImage());
    EXPECT_EQ(from_qt(clipboard().text()), "10/09/2001");
}

TEST_F(PlotWindowKeysTest, SaveAndPrintHaveKeys) {
    open();
    dialogs_.then_file(std::nullopt);
    press(Qt::CTRL | Qt::Key_S);
    EXPECT_EQ(dialogs_.files().size(), 1U);
    printers_.then(std::nullopt);
    press(Qt::CTRL | Qt::Key_P);
    EXPECT_EQ(printers_.window(), window_.get());
}

TEST_F(PlotWindowKeysTest, WithoutAPlotTheKeysDoNothing) {
    session_.basin.Output_Valid = false;
    clipboard().setText(QStringLiteral("mine"));
    open();
    ASSERT_EQ(screen_.plot(), nullptr);
    press_all();
    expect_no_output();
}

TEST_F(PlotWindowKeysTest, AfterAFailedBuildTheKeysDoNothingAndItsTextStays) {
    clipboard().setText(QStringLiteral("mine"));
    open();
    pick(PlotNumber::LagTime);  // the parameters have no rows
    ASSERT_NE(screen_.fallback(), nullptr);
    press_all();
    expect_no_output();
    EXPECT_TRUE(dialogs_.messages().empty());
    EXPECT_NE(screen_.fallback(), nullptr);
    for (const char* tool : {"SaveAs", "Print", "Copy"}) EXPECT_FALSE(button(tool)->isEnabled()) << tool;
}

TEST_F(PlotWindowKeysTest, ACopyThatAnotherProgramDisplacesIsToldAndThePlotStays) {
    open();
    pick(k_snow_cover);
    QObject other;
    QObject::connect(&clipboard(), &QClipboard::dataChanged, &other, [] {
        if (!clipboard().image().isNull()) clipboard().setText(QStringLiteral("theirs"));
    });
    press(Qt::CTRL | Qt::Key_C);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_THAT(dialogs_.messages()[0].message.text,
                testing::StartsWith("The plot is not copied: another program uses the clipboard."));
    EXPECT_NE(screen_.plot(), nullptr);
}

TEST_F(PlotWindowKeysTest, QuickHelpExplainsTheKeysAndNothingActs) {
    open();
    pick(k_snow_cover);
    quick_help_.set_on(true);
    press(Qt::CTRL | Qt::Key_S);
    EXPECT_TRUE(dialogs_.files().empty());
    EXPECT_THAT(from_qt(window_->help_text()), testing::StartsWith("Save As: "));
    QTest::mouseClick(button("GridLn"), Qt::LeftButton);
    EXPECT_EQ(screen_.grid(), GridMode::Vertical);
    EXPECT_THAT(from_qt(window_->help_text()), testing::StartsWith("Grid Lines: "));
    EXPECT_EQ(from_qt(in<>("btnHelp")->toolTip()), "Hide 'QuickHelp'");
    in<QPushButton>("cmdPlot")->click();
    EXPECT_TRUE(window_->isVisible());
    quick_help_.set_on(false);
    EXPECT_EQ(from_qt(in<>("btnHelp")->toolTip()), "Show 'QuickHelp'");
}

TEST_F(PlotWindowKeysTest, TheHelpButtonAndItsKeyOpenTheTopicOfTheWindow) {
    std::vector<int> topics;
    desktop_.show_help_topic = [&](int topic) { topics.push_back(topic); };
    open();
    button("Help")->click();
    press(Qt::NoModifier | Qt::Key_F1);
    EXPECT_THAT(topics, testing::ElementsAre(18, 18));
}

TEST_F(PlotWindowKeysTest, TheToolbarIsReachedByTab) {
    open();
    pick(k_snow_cover);
    EXPECT_EQ(window_->focusWidget(), in<>("PlotList")) << "the arrows choose a plot at once";
    std::vector<std::string> reached;
    const QWidget* const begin = in<>("PlotList");
    for (const QWidget* at = begin->nextInFocusChain(); at != begin; at = at->nextInFocusChain()) {
        const bool takes = (at->focusPolicy() & Qt::TabFocus) != 0;
        if (takes && at->isVisible() && at->isEnabled()) reached.push_back(from_qt(at->objectName()));
    }
    EXPECT_THAT(reached,
                testing::IsSupersetOf({"SaveAs", "Print", "Copy", "ZoomIn", "ZoomOut", "LineAtt", "GridLn",
                                       "Showdata", "ZoneList", "bartext1", "bartext2", "Help", "cmdPlot"}));
    button("GridLn")->setFocus();
    press(Qt::NoModifier | Qt::Key_Space, *button("GridLn"));
    EXPECT_EQ(screen_.grid(), GridMode::Horizontal);
}

TEST_F(PlotWindowKeysTest, AZoomOutlivesCopyPrintAndSave) {
    open();
    pick(k_snow_cover);
    EXPECT_TRUE(is_zoomed_after("Copy"));
    EXPECT_TRUE(is_zoomed_after("Print"));
    ASSERT_EQ(printers_.jobs().size(), 1U);
    dialogs_.then_file(folder_ / "cover", 0);
    EXPECT_TRUE(is_zoomed_after("SaveAs"));
    EXPECT_TRUE(std::filesystem::exists(folder_ / "cover.bmp"));
}

TEST_F(PlotWindowKeysTest, APlotThatIsMadeAnewShowsAllOfItAfterwards) {
    open_with_covers();
    EXPECT_FALSE(is_zoomed_after("Copy"));
    EXPECT_FALSE(is_zoomed_after("Print"));
    dialogs_.then_file(folder_ / "covers", 0);
    EXPECT_FALSE(is_zoomed_after("SaveAs"));
}

TEST_F(PlotWindowKeysTest, ASavedTextOfAPlotThatIsMadeAnewKeepsItsZoom) {
    open_with_covers();
    dialogs_.then_file(folder_ / "covers", 1);
    EXPECT_TRUE(is_zoomed_after("SaveAs"));
    EXPECT_TRUE(std::filesystem::exists(folder_ / "covers.txt"));
}

TEST_F(PlotWindowKeysTest, LineAttributesOfferTheLinesOfThePlotAndFillsWhereItIsFilled) {
    write_components();
    open();
    struct Offer {
        int lines = 0;
        bool fills = false;
    };
    const auto offered = [&](PlotNumber plot) {
        pick(plot);
        Offer offer;
        QTimer::singleShot(20, window_.get(), [&offer] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            offer.lines = dialog->findChild<QSpinBox*>(QStringLiteral("UpDown1"))->maximum();
            offer.fills = dialog->findChild<QComboBox*>(QStringLiteral("Combo2"))->isVisible();
            dialog->findChild<QPushButton*>(QStringLiteral("Command1(1)"))->click();
        });
        button("LineAtt")->click();
        return offer;
    };
    const Offer cover = offered(k_snow_cover);
    EXPECT_EQ(cover.lines, 2) << "a line for each zone";
    EXPECT_FALSE(cover.fills);
    const Offer components = offered(PlotNumber::RunoffComponents);
    EXPECT_EQ(components.lines, 4) << "three components and their total";
    EXPECT_TRUE(components.fills);
}

TEST_F(PlotWindowKeysTest, ASavedPictureOfTheComponentsKeepsItsZoomAndACopyEndsIt) {
    write_components();
    open();
    pick(PlotNumber::RunoffComponents);
    ASSERT_NE(screen_.plot(), nullptr);
    const auto zoomed_after = [&](const char* tool) {
        const PlotFrame frame = screen_.plot()->frame;
        screen_.wheel({static_cast<double>(small_.day(4)), as_double(frame.y_max) / 2.0}, 1.0);
        EXPECT_TRUE(screen_.plot()->zoomed);
        button(tool)->click();
        return screen_.plot()->zoomed;
    };
    dialogs_.then_file(folder_ / "components", 0);
    EXPECT_TRUE(zoomed_after("SaveAs"));
    EXPECT_TRUE(std::filesystem::exists(folder_ / "components.bmp"));
    EXPECT_FALSE(zoomed_after("Copy"));
}

TEST_F(PlotWindowKeysTest, ACancelledPrintOrSaveChangesNothing) {
    open_with_covers();
    printers_.then(std::nullopt);
    EXPECT_TRUE(is_zoomed_after("Print"));
    dialogs_.then_file(std::nullopt);
    EXPECT_TRUE(is_zoomed_after("SaveAs"));
}

}  // namespace
}  // namespace nivora
