#include "reports/report_view.h"
#include "tests/windows/reports/report_window_fixture.h"

#include <QClipboard>
#include <QFontMetricsF>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTextBlock>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class FileDisplayTest : public ReportWindowTest {
protected:
    static constexpr const char* k_text = "first line\r\n\x01\r\n  second  line\r\n\f\r\nlast line\r\n";

    frmFileDisp& open(const std::string& text = k_text, const std::string& title = "Temperature Values") {
        display_ = std::make_unique<frmFileDisp>(context());
        display_->show_report_file({.path = report_path(), .text = text, .made = 1}, title);
        display_->show();
        return *display_;
    }
    [[nodiscard]] QPlainTextEdit* box() const {
        return in<QPlainTextEdit>(*display_, QStringLiteral("RichTextBox1"));
    }
    [[nodiscard]] std::string text() const { return from_qt(box()->toPlainText()); }
    [[nodiscard]] std::string title() const { return label(*display_, "lblWindow"); }
    [[nodiscard]] QAction* entry(const QString& name) const { return in<QAction>(*display_, name); }
    [[nodiscard]] QAction* report(int index) const {
        return entry(QStringLiteral("mnuRptItm(%1)").arg(index));
    }
    [[nodiscard]] std::vector<int> enabled_reports() const {
        std::vector<int> numbers;
        for (int index = 0; index < k_reports; ++index) {
            if (report(index)->isEnabled()) numbers.push_back(index);
        }
        return numbers;
    }
    static std::string clipboard() { return from_qt(QApplication::clipboard()->text()); }

    std::unique_ptr<frmFileDisp> display_;
};

TEST_F(FileDisplayTest, ItsTitleReadsFileDisplayAtFirst) {
    const frmFileDisp display{context()};
    EXPECT_EQ(label(display, "lblWindow"), "File Display ");
    EXPECT_EQ(display.windowTitle(), QStringLiteral("File Display"));
}

TEST_F(FileDisplayTest, ItShowsFileTitleAndTextWithMarksAsEmptyLines) {
    open();
    EXPECT_EQ(label(*display_, "panel1"), report_path().string());
    EXPECT_EQ(title(), "Temperature Values");
    EXPECT_EQ(text(), "first line\n\n  second  line\n\nlast line\n");
}

TEST_F(FileDisplayTest, TheTextIsOfOneWidthReadOnlyAndNotWrapped) {
    open();
    const QFontMetricsF metrics(box()->font());
    EXPECT_EQ(metrics.horizontalAdvance(QLatin1Char('i')), metrics.horizontalAdvance(QLatin1Char('M')));
    EXPECT_TRUE(box()->isReadOnly());
    EXPECT_EQ(box()->lineWrapMode(), QPlainTextEdit::NoWrap);
    QTest::keyClicks(box(), QStringLiteral("typed"));
    EXPECT_EQ(text(), from_qt(to_qt(shown_report_text(k_text))));
}

TEST_F(FileDisplayTest, MenusBearTheirCaptions) {
    open();
    std::vector<std::string> bar;
    for (const QAction* action : display_->menuBar()->actions()) {
        if (action->isVisible()) bar.push_back(from_qt(action->text()));
    }
    EXPECT_THAT(bar, ElementsAre("Print", "&Edit", "&Reports", "&Help"));
    EXPECT_EQ(entry(QStringLiteral("mnuPrintItm(0)"))->text(), QStringLiteral("&Print with Page Breaks"));
    EXPECT_EQ(entry(QStringLiteral("mnuPrintItm(1)"))->text(), QStringLiteral("Print without Page &Breaks"));
    EXPECT_TRUE(entry(QStringLiteral("mnuPrintItm(2)"))->isSeparator());
    EXPECT_EQ(entry(QStringLiteral("mnuPrintItm(3)"))->text(), QStringLiteral("Page &Setup"));
    EXPECT_EQ(entry(QStringLiteral("mnuEditItm"))->text(), QStringLiteral("&Copy to ClipBoard"));
    EXPECT_EQ(entry(QStringLiteral("mnuRptItm(10)"))->text(), QStringLiteral("&Print All"));
    for (const Report each : k_all_reports)
        EXPECT_EQ(from_qt(report(static_cast<int>(each))->text()), report_title(each, 0));
    EXPECT_EQ(in<QPushButton>(*display_, QStringLiteral("cmdCancel"))->text(), QStringLiteral("Close"));
}

TEST_F(FileDisplayTest, TheViewMenuIsThereAndNeverShown) {
    open();
    const auto* view = in<QMenu>(*display_, QStringLiteral("mnuView"));
    EXPECT_FALSE(view->menuAction()->isVisible());
    EXPECT_TRUE(view->isEmpty());
}

TEST_F(FileDisplayTest, WhatCannotBeTickedCannotBeChosenHere) {
    open();
    EXPECT_THAT(enabled_reports(), ElementsAre(0, 1, 2, 3, 4));
    run();
    open();
    EXPECT_THAT(enabled_reports(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    session_.run.ClimateStep = 6;
    open();
    EXPECT_THAT(enabled_reports(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_EQ(report(6)->text(), QStringLiteral("Simulated Runoff - Present vs. Changed Climate"));
    session_.run.ClimateStep = 0;
}

TEST_F(FileDisplayTest, AnEntryReplacesTheFileTheTitleAndTheText) {
    open();
    report(2)->trigger();
    EXPECT_EQ(title(), "Degree Day Factors, Runoff Coefficients");
    EXPECT_THAT(text(), HasSubstr("Degree Day Factors, Runoff Coefficients"));
    EXPECT_EQ(text(), shown_report_text(report_file()));
    report(0)->trigger();
    EXPECT_EQ(title(), "Current data description");
    EXPECT_FALSE(reports("Degree Day Factors"));
    EXPECT_EQ(text(), shown_report_text(report_file()));
    EXPECT_EQ(label(*display_, "panel1"), report_path().string());
}

TEST_F(FileDisplayTest, PrintAllMakesEveryEnabledReport) {
    run();
    open();
    report(10)->trigger();
    EXPECT_EQ(title(), "Multiple NVR Reports");
    for (int index = 0; index < 7; ++index)
        EXPECT_TRUE(reports(report_title(static_cast<Report>(index), 0).c_str())) << index;
    EXPECT_THAT(report_file(), HasSubstr("Input Summary Report"));
    EXPECT_EQ(text(), shown_report_text(report_file()));
}

TEST_F(FileDisplayTest, PrintAllEndsWithTheFirstRefusedReportAndShowsThoseBeforeIt) {
    open();
    report(10)->trigger();
    EXPECT_EQ(last_message().title, "Missing data!");
    EXPECT_TRUE(reports("Lapse Rate, Critical Temperature"));
    EXPECT_FALSE(reports("Zone Degree Days"));
    EXPECT_EQ(text(), shown_report_text(report_file()));
    EXPECT_EQ(title(), "Multiple NVR Reports");
}

TEST_F(FileDisplayTest, ARefusedReportShowsTheEmptyFile) {
    open();
    report(4)->trigger();
    EXPECT_EQ(last_message().title, "Missing data!");
    EXPECT_EQ(title(), "Zone Degree Days, Observed Precipitation, Snow Covered Area (S)");
    EXPECT_EQ(text(), "");
    EXPECT_EQ(report_file(), "");
}

TEST_F(FileDisplayTest, AFileThatCannotBeWrittenIsToldAndTheTextStays) {
    open();
    report(0)->trigger();
    const std::string before = text();
    std::filesystem::permissions(report_path(), std::filesystem::perms::owner_read);
    report(1)->trigger();
    std::filesystem::permissions(report_path(), std::filesystem::perms::owner_all);
    EXPECT_THAT(last_message().text, HasSubstr("NVRrpts.out"));
    EXPECT_EQ(text(), before);
    EXPECT_EQ(title(), "Current data description");
}

TEST_F(FileDisplayTest, CopyTakesTheWholeTextWithoutASelection) {
    open();
    QApplication::clipboard()->setText(QStringLiteral("before"));
    entry(QStringLiteral("mnuEditItm"))->trigger();
    EXPECT_EQ(clipboard(), "first line\n\n  second  line\n\nlast line\n");
}

TEST_F(FileDisplayTest, CopyTakesTheSelectionAndCancelsIt) {
    open();
    QTextCursor cursor(box()->document()->findBlockByNumber(0));
    cursor.setPosition(6);
    cursor.setPosition(box()->document()->findBlockByNumber(2).position() + 8, QTextCursor::KeepAnchor);
    box()->setTextCursor(cursor);
    entry(QStringLiteral("mnuEditItm"))->trigger();
    EXPECT_EQ(clipboard(), "line\n\n  second");
    EXPECT_FALSE(box()->textCursor().hasSelection());
}

TEST_F(FileDisplayTest, TheTextTakesTheRoomOfALargerWindowAndTheButtonKeepsItsDistance) {
    open();
    display_->resize(700, 500);
    settle();
    auto* close_button = in<QPushButton>(*display_, QStringLiteral("cmdCancel"));
    const auto below = [&] { return display_->height() - close_button->mapTo(display_.get(), QPoint{}).y(); };
    const auto beside = [&] { return display_->width() - box()->width(); };
    const QSize text_before = box()->size();
    const int below_before = below();
    const int beside_before = beside();
    display_->resize(900, 650);
    settle();
    EXPECT_EQ(box()->size(), text_before + QSize(200, 150));
    EXPECT_EQ(below(), below_before);
    EXPECT_EQ(beside(), beside_before);
    EXPECT_EQ(beside(), 2 * box()->mapTo(display_.get(), QPoint{}).x());
}

TEST_F(FileDisplayTest, CloseKeepsThePositionAndHidesIt) {
    open();
    display_->move(40, 60);
    in<QPushButton>(*display_, QStringLiteral("cmdCancel"))->click();
    EXPECT_FALSE(display_->isVisible());
    EXPECT_EQ(session_.settings.places[11].top, 60);
    EXPECT_EQ(session_.settings.places[11].left, 40);
}

TEST_F(FileDisplayTest, EnterClosesIt) {
    open();
    QTest::keyClick(box(), Qt::Key_Return);
    EXPECT_FALSE(display_->isVisible());
}

TEST_F(FileDisplayTest, HelpShowsItsTopic) {
    open();
    entry(QStringLiteral("mnuHelp"))->trigger();
    QWidget* help = nullptr;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->isVisible() && top->windowTitle() == QStringLiteral("Help for File Display")) help = top;
    }
    ASSERT_NE(help, nullptr);
    help->close();
}

TEST_F(FileDisplayTest, FiftyThousandLinesShowToTheLast) {
    std::string long_text;
    for (int line = 1; line <= 50'000; ++line) long_text += "line " + std::to_string(line) + "\r\n";
    open(long_text);
    EXPECT_EQ(box()->document()->findBlockByNumber(49'999).text(), QStringLiteral("line 50000"));
    QTest::keyClick(box(), Qt::Key_End, Qt::ControlModifier);
    settle();
    EXPECT_GE(box()->cursorForPosition(QPoint(2, box()->viewport()->height() - 4)).blockNumber(), 49'998);
}

TEST_F(FileDisplayTest, EachElementHasItsHelpLine) {
    open();
    const QuickHelpTexts texts = Load_QuickHelp(program_.path(), "frmFileDisp");
    const auto line_of = [](const QObject* element) { return element->property(k_help_line).toInt(); };
    EXPECT_EQ(line_of(box()), 1);
    EXPECT_EQ(line_of(in<QLabel>(*display_, QStringLiteral("lblWindow"))), 2);
    EXPECT_EQ(line_of(in<QLabel>(*display_, QStringLiteral("panel1"))), 3);
    EXPECT_EQ(line_of(in<QPushButton>(*display_, QStringLiteral("cmdCancel"))), 4);
    EXPECT_EQ(line_of(entry(QStringLiteral("mnuPrintItm(0)"))), 5);
    EXPECT_EQ(line_of(entry(QStringLiteral("mnuPrintItm(1)"))), 6);
    EXPECT_EQ(line_of(entry(QStringLiteral("mnuPrintItm(3)"))), 8);
    EXPECT_EQ(line_of(entry(QStringLiteral("mnuEditItm"))), 9);
    for (int index = 0; index < k_reports; ++index) EXPECT_EQ(line_of(report(index)), 10 + index);
    EXPECT_EQ(line_of(report(10)), 20);
    EXPECT_EQ(line_of(entry(QStringLiteral("mnuHelp"))), 21);
    EXPECT_THAT(texts.line(1), HasSubstr("The text of the reports"));
    EXPECT_THAT(texts.line(9), HasSubstr("Copy to ClipBoard"));
    EXPECT_THAT(texts.line(18), HasSubstr("Deficit / Gain"));
    EXPECT_THAT(texts.line(20), HasSubstr("Print All"));
    EXPECT_THAT(texts.line(21), HasSubstr("Help"));
}

TEST_F(FileDisplayTest, QuickHelpKeepsItsEntriesFromActing) {
    open();
    quick_help_.set_on(true);
    auto* bar = display_->menuBar();
    QTest::mouseClick(bar, Qt::LeftButton, {},
                      bar->actionGeometry(entry(QStringLiteral("mnuHelp"))).center());
    EXPECT_FALSE(is_open("frmNVRHelp"));
    EXPECT_THAT(from_qt(display_->help_text()), HasSubstr("Help: opens the help page of this window."));
}

}  // namespace
}  // namespace nivora
