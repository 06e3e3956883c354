#include "tests/windows/reports/report_window_fixture.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QPlainTextEdit>
#include <QRadioButton>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int k_spare_boxes = 3;

class OutputDefinitionTest : public ReportWindowTest {
protected:
    frmPrint& open() {
        window_of_reports_ = std::make_unique<frmPrint>(context());
        window_of_reports_->show();
        return *window_of_reports_;
    }
    [[nodiscard]] QCheckBox* box(int report) const {
        return in<QCheckBox>(*window_of_reports_, QStringLiteral("Check1(%1)").arg(report));
    }
    [[nodiscard]] QRadioButton* option(int index) const {
        return in<QRadioButton>(*window_of_reports_, QStringLiteral("Option1(%1)").arg(index));
    }
    [[nodiscard]] QPushButton* command(int index) const { return button(*window_of_reports_, index); }
    void tick(std::initializer_list<int> reports) {
        for (const int report : reports) box(report)->click();
    }

    /// The numbers of the boxes that have a property.
    template <typename Has>
    [[nodiscard]] std::vector<int> boxes(Has has) const {
        std::vector<int> numbers;
        for (int report = 0; report < k_reports; ++report) {
            if (has(*box(report))) numbers.push_back(report);
        }
        return numbers;
    }
    [[nodiscard]] std::vector<int> enabled_boxes() const {
        return boxes([](const QCheckBox& box) { return box.isEnabled(); });
    }
    [[nodiscard]] std::vector<int> ticked_boxes() const {
        return boxes([](const QCheckBox& box) { return box.isChecked(); });
    }
    void expect_producing(bool possible) const {
        EXPECT_EQ(command(1)->isEnabled(), possible);
        EXPECT_EQ(option(0)->isEnabled(), possible);
        EXPECT_EQ(option(1)->isEnabled(), possible);
    }
    /// Presses View. @return title and text of the display
    std::pair<std::string, std::string> view() {
        std::pair<std::string, std::string> shown;
        option(1)->click();
        look_at_modal("frmFileDisp", [&](QWidget* display) {
            shown.first = label(*display, "lblWindow");
            shown.second =
                from_qt(in<QPlainTextEdit>(*display, QStringLiteral("RichTextBox1"))->toPlainText());
            EXPECT_TRUE(display->isModal());
        });
        command(1)->click();
        return shown;
    }

    /// Presses View when a report is refused. The test fails if the display opens.
    void view_refused() {
        option(1)->click();
        command(1)->click();
    }

    std::unique_ptr<frmPrint> window_of_reports_;
};

TEST_F(OutputDefinitionTest, TheReportsEntryOpensItModal) {
    look_at_modal("frmPrint", [](QWidget* window) {
        EXPECT_TRUE(window->isModal());
        EXPECT_EQ(window->windowTitle(), QStringLiteral("Output Definition"));
    });
    choose("mnuReports");
    EXPECT_TRUE(seen_);
    EXPECT_FALSE(is_open("frmPrint"));
}

TEST_F(OutputDefinitionTest, QuickHelpKeepsTheReportsEntryFromOpeningIt) {
    quick_help_.set_on(true);
    QTest::keyClick(window_->menuBar(), Qt::Key_R, Qt::AltModifier);
    QTest::mouseClick(window_->menuBar(), Qt::LeftButton, {},
                      window_->menuBar()->actionGeometry(find<QAction>("mnuReports")).center());
    settle();
    EXPECT_FALSE(is_open("frmPrint"));
}

TEST_F(OutputDefinitionTest, NothingIsTickedAndNothingCanBeProducedAtFirst) {
    open();
    EXPECT_THAT(ticked_boxes(), IsEmpty());
    expect_producing(false);
    EXPECT_TRUE(option(0)->isChecked());
    EXPECT_EQ(command(1)->text(), QStringLiteral("&Print"));
}

TEST_F(OutputDefinitionTest, BoxesButtonsAndFramesBearTheirTexts) {
    const frmPrint& window = open();
    for (const Report report : k_all_reports)
        EXPECT_EQ(from_qt(box(static_cast<int>(report))->text()), report_title(report, 0));
    for (int spare = k_reports; spare < k_reports + k_spare_boxes; ++spare) {
        EXPECT_EQ(box(spare)->text(), QStringLiteral("unused"));
        EXPECT_TRUE(box(spare)->isHidden());
    }
    std::vector<std::string> captions;
    for (int index = 0; index < 4; ++index) captions.push_back(from_qt(command(index)->text()));
    EXPECT_THAT(captions, ElementsAre("&Close", "&Print", "&All", "&Help"));
    EXPECT_EQ(in<QGroupBox>(window, QStringLiteral("Frame1"))->title(),
              QStringLiteral("Available Reports: "));
    EXPECT_EQ(in<QGroupBox>(window, QStringLiteral("Frame2"))->title(), QStringLiteral("Print To:  "));
    EXPECT_EQ(option(0)->text(), QStringLiteral("Printer/File"));
    EXPECT_EQ(option(1)->text(), QStringLiteral("Report Viewer"));
    EXPECT_EQ(label(window, "Label3"),
              "Select 1/more reports from this list.  Choose a print destination, then click 'Print' to "
              "produce the report(s).");
}

TEST_F(OutputDefinitionTest, WithoutARunOnlyTheFirstFiveCanBeTicked) {
    open();
    EXPECT_THAT(enabled_boxes(), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_TRUE(box(0)->toolTip().isEmpty());
    EXPECT_THAT(from_qt(box(7)->toolTip()), HasSubstr("Needs a finished run"));
    EXPECT_THAT(from_qt(box(8)->toolTip()), HasSubstr("all six steps"));
}

TEST_F(OutputDefinitionTest, AfterARunItsReportsCanBeTickedUntilAnInputChanges) {
    run();
    open();
    EXPECT_THAT(enabled_boxes(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_TRUE(box(7)->toolTip().isEmpty());
    type(0, "Another name");
    EXPECT_TRUE(session_.run.results_enabled) << "the results are still there";
    open();
    EXPECT_THAT(enabled_boxes(), ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(OutputDefinitionTest, AnotherSimulationThanTheLastRunHasNoReportsOfComputedValues) {
    run();
    select_simulation_named(k_second);
    open();
    EXPECT_THAT(enabled_boxes(), ElementsAre(0, 1, 2, 3, 4));
    select_simulation_named(k_first);
    open();
    EXPECT_THAT(enabled_boxes(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
}

TEST_F(OutputDefinitionTest, TheLastStepOfAnEvaluationAddsAReportAndRenamesAnother) {
    run();
    session_.run.ClimateStep = 6;
    open();
    EXPECT_THAT(enabled_boxes(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_EQ(box(6)->text(), QStringLiteral("Simulated Runoff - Present vs. Changed Climate"));
    session_.run.ClimateStep = 0;
}

TEST_F(OutputDefinitionTest, ATickedBoxLetsThemBeProducedAndNoneDoesNot) {
    open();
    tick({2});
    expect_producing(true);
    tick({3});
    tick({2});
    expect_producing(true);
    tick({3});
    expect_producing(false);
}

TEST_F(OutputDefinitionTest, TheDestinationNamesTheButton) {
    open();
    tick({0});
    option(1)->click();
    EXPECT_EQ(command(1)->text(), QStringLiteral("&View"));
    option(0)->click();
    EXPECT_EQ(command(1)->text(), QStringLiteral("&Print"));
}

TEST_F(OutputDefinitionTest, AllTicksTheEnabledBoxesAndResetClearsThem) {
    open();
    command(2)->click();
    EXPECT_THAT(ticked_boxes(), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_EQ(command(2)->text(), QStringLiteral("&Reset"));
    expect_producing(true);
    command(2)->click();
    EXPECT_THAT(ticked_boxes(), IsEmpty());
    EXPECT_EQ(command(2)->text(), QStringLiteral("&All"));
    expect_producing(false);
}

TEST_F(OutputDefinitionTest, NothingOfASelectionSurvivesItsWindow) {
    open();
    tick({0, 1});
    option(1)->click();
    command(0)->click();
    EXPECT_FALSE(window_of_reports_->isVisible());
    open();
    EXPECT_THAT(ticked_boxes(), IsEmpty());
    EXPECT_TRUE(option(0)->isChecked());
    EXPECT_EQ(command(1)->text(), QStringLiteral("&Print"));
}

TEST_F(OutputDefinitionTest, OneReportShowsItsCaptionAsTitle) {
    open();
    tick({1});
    const auto [title, text] = view();
    EXPECT_EQ(title, "Temperature Values");
    EXPECT_THAT(text, HasSubstr("Temperature Values"));
    EXPECT_THAT(text, HasSubstr(k_first));
    EXPECT_TRUE(reports("Temperature Values"));
    EXPECT_TRUE(window_of_reports_->isVisible());
    EXPECT_THAT(ticked_boxes(), ElementsAre(1));
}

TEST_F(OutputDefinitionTest, TwoReportsShowACommonTitleAndStandInTheOrderOfTheList) {
    run();
    open();
    tick({5, 0});
    const auto [title, text] = view();
    EXPECT_EQ(title, "Multiple NVR Reports");
    const auto first = text.find("Current data description");
    const auto second = text.find("Melt Depth");
    ASSERT_NE(first, std::string::npos);
    ASSERT_NE(second, std::string::npos);
    EXPECT_LT(first, second);
}

TEST_F(OutputDefinitionTest, ARefusedReportIsToldAndOpensNoWindow) {
    open();
    tick({0, 4});
    view_refused();
    EXPECT_EQ(last_message().title, "Missing data!");
    EXPECT_TRUE(reports("Current data description")) << "the reports before it are in the file";
    EXPECT_FALSE(reports("Zone Degree Days"));
    EXPECT_TRUE(window_of_reports_->isVisible());
}

TEST_F(OutputDefinitionTest, AFileThatCannotBeWrittenIsToldAndOpensNoWindow) {
    program_.write("NVRrpts.out", "before\r\n");
    std::filesystem::permissions(report_path(), std::filesystem::perms::owner_read);
    open();
    tick({0});
    view_refused();
    std::filesystem::permissions(report_path(), std::filesystem::perms::owner_all);
    EXPECT_THAT(last_message().text, HasSubstr("NVRrpts.out"));
    EXPECT_EQ(report_file(), "before\r\n");
}

TEST_F(OutputDefinitionTest, HelpShowsItsTopicAndCloseClosesIt) {
    frmPrint& window = open();
    command(3)->click();
    QWidget* help = nullptr;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->isVisible() && top->windowTitle() == QStringLiteral("Help for Output Definition"))
            help = top;
    }
    ASSERT_NE(help, nullptr);
    help->close();
    command(0)->click();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(OutputDefinitionTest, EnterProducesWhatIsTicked) {
    open();
    option(1)->setChecked(true);
    QTest::keyClick(box(0), Qt::Key_Return);
    EXPECT_FALSE(is_open("frmFileDisp")) << "nothing is ticked";
    QTest::keyClick(box(0), Qt::Key_Space);
    look_at_modal("frmFileDisp", [](QWidget*) {});
    QTest::keyClick(box(0), Qt::Key_Return);
    EXPECT_TRUE(seen_);
}

TEST_F(OutputDefinitionTest, EachElementHasItsHelpLine) {
    frmPrint& window = open();
    const QuickHelpTexts texts = Load_QuickHelp(program_.path(), "frmPrint");
    quick_help_.set_on(true);
    const auto expect_line = [&](QWidget* element, int line) {
        window.explain_widget(nullptr);
        window.explain_widget(element);
        EXPECT_EQ(from_qt(window.help_text()), texts.line(line)) << line;
    };
    for (int report = 0; report < k_reports + k_spare_boxes; ++report) expect_line(box(report), 1 + report);
    expect_line(option(0), 13);
    expect_line(option(1), 14);
    expect_line(in<QGroupBox>(window, QStringLiteral("Frame2")), 15);
    for (int index = 0; index < 4; ++index) expect_line(command(index), 16 + index);
    expect_line(in<QGroupBox>(window, QStringLiteral("Frame1")), 20);
    expect_line(in<QLabel>(window, QStringLiteral("Label3")), 21);
    expect_line(in<QLabel>(window, QStringLiteral("panel1")), 24);
    EXPECT_THAT(texts.line(1 + 8), HasSubstr("Deficit / Gain"));
    EXPECT_THAT(texts.line(24), HasSubstr("NVRrpts.out"));
}

TEST_F(OutputDefinitionTest, ItOpensWhereItWasLeft) {
    frmPrint& window = open();
    window.move(50, 70);
    settle();
    window.close();
    EXPECT_EQ(session_.settings.places[13].top, 70);
    EXPECT_EQ(session_.settings.places[13].left, 50);
    EXPECT_EQ(open().pos(), QPoint(50, 70));
}

}  // namespace
}  // namespace nivora
