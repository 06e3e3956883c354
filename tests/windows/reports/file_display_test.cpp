#include "reports/report_view.h"
#include "tests/windows/reports/report_window_fixture.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QMenuBar>
#include <QPageSetupDialog>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>

namespace nivora {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

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

TEST_F(FileDisplayTest, TheTextIsInCourierNewOrTheFixedPitchFontOfTheSystem) {
    open();
    const QFont font = box()->font();
    const QFontMetricsF metrics(font);
    EXPECT_EQ(metrics.horizontalAdvance(QLatin1Char('i')), metrics.horizontalAdvance(QLatin1Char('M')));
    EXPECT_THAT(from_qt(font.family()),
                AnyOf("Courier New", from_qt(QFontDatabase::systemFont(QFontDatabase::FixedFont).family())));
    EXPECT_EQ(font.styleHint(), QFont::TypeWriter);
    EXPECT_EQ(font.pointSizeF(), QApplication::font().pointSizeF());
    EXPECT_EQ(box()->tabStopDistance(), 8 * metrics.horizontalAdvance(QLatin1Char(' ')));
}

TEST_F(FileDisplayTest, EachTextIsShownFromItsBeginning) {
    std::string lines;
    for (int line = 1; line <= 500; ++line) lines += std::to_string(line) + "\r\n";
    open(lines);
    const auto expect_beginning = [this](const char* first) {
        EXPECT_EQ(box()->textCursor().position(), 0);
        EXPECT_FALSE(box()->textCursor().hasSelection());
        EXPECT_EQ(box()->verticalScrollBar()->value(), 0);
        EXPECT_EQ(from_qt(box()->document()->firstBlock().text()), first);
        EXPECT_FALSE(box()->document()->isUndoAvailable());
    };
    expect_beginning("1");
    EXPECT_EQ(box()->blockCount(), 501);
    EXPECT_GT(box()->verticalScrollBar()->maximum(), 400);
    box()->selectAll();
    box()->verticalScrollBar()->setValue(300);
    display_->show_report_file({.path = report_path(), .text = "other\r\n" + lines, .made = 1}, "Title");
    expect_beginning("other");
    EXPECT_EQ(box()->blockCount(), 502);
}

TEST_F(FileDisplayTest, TheScrollBarsFollowTheSizeOfTheWindow) {
    open(std::string(200, '5') + "\r\n" + std::string(60, '\n'));
    const QFontMetricsF metrics(box()->font());
    const int wide = static_cast<int>(metrics.horizontalAdvance(QLatin1Char('5')) * 220);
    display_->resize(wide / 2, 300);
    settle();
    EXPECT_GT(box()->horizontalScrollBar()->maximum(), wide / 4);
    EXPECT_GT(box()->verticalScrollBar()->maximum(), 30);
    display_->resize(wide + 100, static_cast<int>(metrics.lineSpacing() * 100));
    settle();
    EXPECT_EQ(box()->horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(box()->verticalScrollBar()->maximum(), 0);
}

TEST_F(FileDisplayTest, TheTextIsReadOnlyAndNotWrapped) {
    open();
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

TEST_F(FileDisplayTest, PrintAllShowsTheCommonTitleAlsoIfItsFirstReportFails) {
    BasinDatabase{session_.basin.Work_File, Access::ReadWrite}.execute("DROP TABLE PhysicalData");
    open();
    report(10)->trigger();
    EXPECT_FALSE(dialogs_.messages().empty());
    EXPECT_FALSE(reports("Temperature Values"));
    EXPECT_EQ(title(), "Multiple NVR Reports");
    EXPECT_EQ(text(), shown_report_text(report_file()));
}

TEST_F(FileDisplayTest, ARefusedReportShowsTheEmptyFile) {
    open();
    report(4)->trigger();
    EXPECT_EQ(last_message().title, "Missing data!");
    EXPECT_EQ(title(), "Zone Degree Days, Observed Precipitation, Snow Covered Area (S)");
    EXPECT_EQ(text(), "");
    EXPECT_EQ(report_file(), "");
    entry(QStringLiteral("mnuPrintItm(0)"))->trigger();
    EXPECT_EQ(last_message().text, "There is nothing to print.  Make a report first, then print it.");
    EXPECT_TRUE(printers_.offered_printers().empty());
}

TEST_F(FileDisplayTest, PageSetupOpensThePageDialogForItsWindow) {
    open();
    session_.settings.page.margins = {0.5F, 0.5F, 0.5F, 0.5F};
    modal_.then("", [this](QWidget& dialog) {
        seen_ = qobject_cast<QPageSetupDialog*>(&dialog) != nullptr;
        EXPECT_EQ(dialog.parentWidget(), display_.get());
        dialog.close();
    });
    entry(QStringLiteral("mnuPrintItm(3)"))->trigger();
    EXPECT_TRUE(seen_);
    EXPECT_EQ(session_.settings.page.margins[0], 0.5F) << "cancelled";
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

TEST_F(FileDisplayTest, ItOpensWhereItWasLeftAndAsLarge) {
    open();
    display_->resize(600, 500);
    display_->move(40, 60);
    settle();
    display_->close();
    open();
    EXPECT_EQ(display_->pos(), QPoint(40, 60));
    EXPECT_EQ(display_->size(), QSize(600, 500));
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

/// QuickHelp in the window: a click explains what it hits.
class FileDisplayHelpTest : public FileDisplayTest {
protected:
    FileDisplayHelpTest() {
        open();
        quick_help_.set_on(true);
    }

    /// Clicks a title of the menu bar, which opens its menu. @return the menu; null for a plain entry
    QMenu* click_bar(const char* caption) {
        auto* bar = display_->menuBar();
        for (QAction* action : bar->actions()) {
            if (from_qt(action->text()) != caption) continue;
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(action).center());
            return action->menu();
        }
        ADD_FAILURE() << caption;
        return nullptr;
    }
    void click_entry(QMenu* menu, const QString& name) {
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(entry(name)).center());
    }
    void expect_line(int line, const std::string& beginning) {
        EXPECT_EQ(from_qt(display_->help_text()), texts_.line(line)) << line;
        EXPECT_THAT(texts_.line(line), StartsWith(beginning));
    }

    const QuickHelpTexts texts_ = Load_QuickHelp(program_.path(), "frmFileDisp");
};

TEST_F(FileDisplayHelpTest, TheWindowExplainsItselfFirst) { expect_line(0, "File Display: "); }

TEST_F(FileDisplayHelpTest, TheElementsOfTheWindowExplainThemselves) {
    const auto click = [](QWidget* element) { QTest::mouseClick(element, Qt::LeftButton); };
    click(box()->viewport());
    expect_line(1, "The text of the reports.");
    click(in<QLabel>(*display_, QStringLiteral("lblWindow")));
    expect_line(2, "The title of the report");
    click(in<QLabel>(*display_, QStringLiteral("panel1")));
    expect_line(3, "The file that is shown: NVRrpts.out");
    click(in<QPushButton>(*display_, QStringLiteral("cmdCancel")));
    expect_line(4, "Close: ");
    EXPECT_TRUE(display_->isVisible());
}

TEST_F(FileDisplayHelpTest, ThePrintMenuAndItsEntriesExplainThemselvesAndPrintNothing) {
    QMenu* menu = click_bar("Print");
    expect_line(7, "Print menu: ");
    click_entry(menu, QStringLiteral("mnuPrintItm(0)"));
    expect_line(5, "Print with Page Breaks: ");
    click_entry(menu, QStringLiteral("mnuPrintItm(1)"));
    expect_line(6, "Print without Page Breaks: ");
    click_entry(menu, QStringLiteral("mnuPrintItm(3)"));
    expect_line(8, "Page Setup: ");
    EXPECT_TRUE(printers_.offered_printers().empty());
    menu->close();
}

TEST_F(FileDisplayHelpTest, TheEntryOfTheEditMenuExplainsItselfAndCopiesNothing) {
    QApplication::clipboard()->setText(QStringLiteral("before"));
    QMenu* menu = click_bar("&Edit");
    click_entry(menu, QStringLiteral("mnuEditItm"));
    expect_line(9, "Copy to ClipBoard: ");
    EXPECT_EQ(clipboard(), "before");
    menu->close();
}

TEST_F(FileDisplayHelpTest, TheReportsMenuAndItsEntriesExplainThemselvesAndMakeNoReport) {
    QMenu* menu = click_bar("&Reports");
    expect_line(19, "The list of reports.");
    for (int index = 0; index < k_reports; ++index) {
        click_entry(menu, QStringLiteral("mnuRptItm(%1)").arg(index));
        // "Melt Depth (M·S), ..." is explained as "Melt Depth, ...".
        expect_line(10 + index, report_title(static_cast<Report>(index), 0).substr(0, 8));
    }
    click_entry(menu, QStringLiteral("mnuRptItm(10)"));
    expect_line(20, "Print All: ");
    EXPECT_EQ(title(), "Temperature Values");
    EXPECT_FALSE(std::filesystem::exists(report_path()));
    menu->close();
}

TEST_F(FileDisplayHelpTest, HelpOnTheBarExplainsItselfAndOpensNothing) {
    click_bar("&Help");
    expect_line(21, "Help: opens the help page of this window.");
    EXPECT_FALSE(is_open("frmNVRHelp"));
}

TEST_F(FileDisplayHelpTest, WhileItIsOffMenusLeaveTheStripAlone) {
    quick_help_.set_on(false);
    const QString before = display_->help_text();
    QMenu* menu = click_bar("&Reports");
    EXPECT_EQ(display_->help_text(), before);
    menu->close();
}

}  // namespace
}  // namespace nivora
