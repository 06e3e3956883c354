// Printing by mouse and keys: buttons, menu entries, the print dialog and the progress of a print.

#include "reports/report_pages.h"
#include "shell/frmNVRHelp.h"
#include "tests/screen/screen_fixture.h"
#include "widgets/desktop_printers.h"
#include "widgets/grid_view.h"
#include "widgets/print_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMenu>
#include <QPageSetupDialog>
#include <QProgressDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QThread>
#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class PrintingOnScreenTest : public MainWindowOnScreenTest {
protected:
    static QPushButton* print_button(QWidget& window) {
        for (auto* button : window.findChildren<QPushButton*>()) {
            if (button->text() == QStringLiteral("&Print")) return button;
        }
        return nullptr;
    }
    static std::string content(const std::filesystem::path& file) {
        std::ifstream input{file, std::ios::binary};
        std::ostringstream text;
        text << input.rdbuf();
        return text.str();
    }
    static void keep(const QWidget& window, const char* name) {
        const char* folder = std::getenv("NIVORA_PICTURES");
        if (folder != nullptr)
            picture(window).save(QString::fromUtf8(folder) + QLatin1Char('/') + QString::fromUtf8(name));
    }
};

TEST_F(PrintingOnScreenTest, TheButtonAndTheEntryOfTheDailyEditorPrintAndTheWindowStays) {
    open_sample();
    click_cell(*find<GridView>("DBGrid1"), 1, 0);
    in_modal("frmData", [&](QWidget& window) {
        auto* grid = window.findChild<GridView*>(QStringLiteral("Spread"));
        click_cell(*grid, 0, 1);
        press({"shift+Down", "shift+Down", "shift+Right"});
        click(*print_button(window));
        ASSERT_EQ(printers_.jobs().size(), 1U);
        EXPECT_TRUE(window.isActiveWindow());
        press({"alt+e", "t"});
        EXPECT_EQ(printers_.jobs().size(), 2U);
        EXPECT_TRUE(window.isVisible());
    });
    choose("mnuDataOpt(5)");
    ASSERT_EQ(modal_windows_seen_, 1);
    const std::string page = printers_.jobs()[0].page(0);
    EXPECT_EQ(printers_.jobs()[0].pages.size(), 1U);
    EXPECT_THAT(page, HasSubstr("Basin name:   Ellervane at Corben Bridge\n"));
    EXPECT_THAT(page, HasSubstr("Zone 1 of "));
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(PrintingOnScreenTest, TheStatisticsOfARunArePrintedByTheirLetter) {
    open_sample();
    click_cell(*find<GridView>("DBGrid1"), 1, 0);
    choose("mnuRunSimVar(1)");
    QWidget* results = await_window("Results");
    ASSERT_NE(results, nullptr);
    await_active(*results);
    press({"alt+p"});
    ASSERT_EQ(printers_.jobs().size(), 1U);
    EXPECT_THAT(printers_.jobs()[0].page(0), HasSubstr("Coefficient of Determination"));
    EXPECT_TRUE(results->isVisible());
    EXPECT_TRUE(results->isActiveWindow());
    results->close();
}

TEST_F(PrintingOnScreenTest, ALongPrintShowsItsProgressAndIsCancelledByItsButton) {
    std::string text;
    for (int line = 0; line < 20'000; ++line) text += "line " + std::to_string(line) + "\r\n";
    printers_.before_page = [] { QThread::msleep(50); };
    in_dialog<QProgressDialog>([](QProgressDialog& progress) {
        EXPECT_EQ(progress.labelText(), QStringLiteral("Printing - Click Cancel to quit"));
        EXPECT_EQ(progress.windowTitle(), QStringLiteral("Print"));
        EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the pointer is not busy over it";
        const auto* label = progress.findChild<QLabel*>();
        ASSERT_NE(label, nullptr);
        EXPECT_GT(drawn_points(picture(*label)), 100);
        keep(progress, "print-progress.png");
        auto* button = progress.findChild<QPushButton*>();
        ASSERT_NE(button, nullptr);
        EXPECT_EQ(button->text(), QStringLiteral("Cancel"));
        click(*button);
        EXPECT_TRUE(progress.wasCanceled());
    });
    EXPECT_FALSE(printing_.print_report(window_.get(), {.text = text}));
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_EQ(printers_.aborted_jobs(), 1);
    EXPECT_LT(printers_.jobs()[0].pages.size(), 150U) << "there are more than 200 pages in all";
    EXPECT_TRUE(dialogs_.messages().empty());
    EXPECT_TRUE(await([&] { return window_->isActiveWindow(); }));
}

TEST_F(PrintingOnScreenTest, EscapeCancelsAPrintAsItsButtonDoes) {
    std::string text;
    for (int line = 0; line < 20'000; ++line) text += "line " + std::to_string(line) + "\r\n";
    printers_.before_page = [] { QThread::msleep(50); };
    in_dialog<QProgressDialog>([](QProgressDialog& progress) {
        press({"Escape"});
        EXPECT_TRUE(progress.wasCanceled());
    });
    EXPECT_FALSE(printing_.print_report(window_.get(), {.text = text}));
    EXPECT_EQ(printers_.aborted_jobs(), 1);
}

/// Page Setup on a computer that lost the printer of the last print.
class PageSetupOnScreenTest : public PrintingOnScreenTest {
protected:
    static constexpr const char* k_gone = "Nivora-Test-Printer-That-Is-Missing";

    /// Opens Page Setup of the main window and acts in its dialog.
    void page_setup(std::function<void(QPageSetupDialog&)> act) {
        session_.settings.page.printer = k_gone;
        in_dialog<QPageSetupDialog>(std::move(act));
        choose("mnuFileItem(7)");
        ASSERT_EQ(modal_windows_seen_, 1);
        EXPECT_EQ(session_.settings.page.printer, k_gone) << "it may come back";
    }
};

TEST_F(PageSetupOnScreenTest, OkKeepsAMarginOfZeroAsOneInch) {
    session_.settings.page.margins = {0.5F, 0.0F, 0.75F, 0.0F};
    page_setup([](QPageSetupDialog& dialog) {
        click(*dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok));
    });
    EXPECT_EQ(session_.settings.page.margins, (std::array<float, 4>{0.5F, 1.0F, 0.75F, 1.0F}));
    EXPECT_EQ(session_.settings.page.orientation, 1);
}

TEST_F(PageSetupOnScreenTest, OkKeepsTheThousandthsOfMarginsInEitherUnit) {
    for (const char* unit : {"mm", "in"}) {
        SCOPED_TRACE(unit);
        modal_windows_seen_ = 0;
        session_.settings.page.unit = unit;
        session_.settings.page.margins = {0.375F, 0.125F, 0.625F, 1.0F};
        page_setup([](QPageSetupDialog& dialog) {
            click(*dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok));
        });
        EXPECT_EQ(session_.settings.page.margins, (std::array<float, 4>{0.375F, 0.125F, 0.625F, 1.0F}));
        EXPECT_EQ(session_.settings.page.unit, unit);
    }
}

TEST_F(PageSetupOnScreenTest, CancelKeepsTheOldValues) {
    session_.settings.page.margins = {0.5F, 0.0F, 0.75F, 0.0F};
    page_setup([](QPageSetupDialog& dialog) {
        dialog.findChild<QRadioButton*>(QStringLiteral("landscape"))->click();
        press({"Escape"});
    });
    EXPECT_EQ(session_.settings.page.margins, (std::array<float, 4>{0.5F, 0.0F, 0.75F, 0.0F}));
    EXPECT_EQ(session_.settings.page.orientation, 0);
}

TEST_F(PageSetupOnScreenTest, OkKeepsTheOrientation) {
    page_setup([](QPageSetupDialog& dialog) {
        dialog.findChild<QRadioButton*>(QStringLiteral("landscape"))->click();
        click(*dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok));
    });
    EXPECT_EQ(session_.settings.page.orientation, 2);
}

/// The dialog that the program itself shows, on a computer with the printers of a test.
class PrintDialogOnScreenTest : public PrintingOnScreenTest {
protected:
    void SetUp() override {
        PrintingOnScreenTest::SetUp();
        if (IsSkipped()) return;
        session_.file_names.begin_in(user_.path());
        help_ = std::make_unique<frmNVRHelp>(WindowContext{session_, quick_help_, program_.path(), real_});
        help_->show_topic(8);
        help_->show();
        await_active(*help_);
    }
    void TearDown() override {
        help_.reset();
        PrintingOnScreenTest::TearDown();
    }

    DesktopPrinters desktop_;
    Printing real_{session_, desktop_};
    std::unique_ptr<frmNVRHelp> help_;
};

TEST_F(PrintDialogOnScreenTest, EscapePrintsNothing) {
    in_modal("PrintDialog", [](QWidget& dialog) {
        keep(dialog, "print-dialog.png");
        press({"Escape"});
        EXPECT_FALSE(dialog.isVisible());
    });
    press({"alt+f", "p"});
    ASSERT_TRUE(await([&] { return modal_windows_seen_ == 1; }));
    EXPECT_TRUE(dialogs_.files().empty());
    EXPECT_TRUE(await([&] { return help_->isActiveWindow(); }));
}

TEST_F(PrintDialogOnScreenTest, APdfIsChosenAndWrittenByKeysAlone) {
    dialogs_.then_file(user_ / "topic.pdf");
    in_modal("PrintDialog", [](QWidget& dialog) {
        auto* list = dialog.findChild<QComboBox*>(QStringLiteral("cboPrintTo"));
        EXPECT_EQ(QApplication::focusWidget(), list);
        press({"p", "Return"});
        EXPECT_EQ(list->currentText(), QStringLiteral("PDF file"));
        EXPECT_FALSE(dialog.isVisible());
    });
    press({"alt+f", "p"});
    ASSERT_TRUE(await([&] { return std::filesystem::exists(user_ / "topic.pdf"); }));
    EXPECT_THAT(content(user_ / "topic.pdf"), StartsWith("%PDF-"));
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(PrintDialogOnScreenTest, TheKindOfFileThatWasUsedLastComesFirst) {
    dialogs_.then_file(user_ / "one.txt").then_file(user_ / "two.txt");
    for (const char* name : {"one.txt", "two.txt"}) {
        in_modal("PrintDialog", [&](QWidget& dialog) {
            auto* list = dialog.findChild<QComboBox*>(QStringLiteral("cboPrintTo"));
            if (std::string{name} == "one.txt") press({"t"});
            EXPECT_EQ(list->currentText(), QStringLiteral("Text file")) << name;
            press({"Return"});
        });
        press({"alt+f", "p"});
        ASSERT_TRUE(await([&] { return std::filesystem::exists(user_ / name); }));
        await_active(*help_);
    }
    EXPECT_EQ(content(user_ / "one.txt"), content(user_ / "two.txt"));
}

TEST_F(PrintDialogOnScreenTest, LongNamesOfPrintersAndRemarksAreReadWhole) {
    PageSetup page;
    page.printer = "Plotter in the cellar of the house at the other end of the valley";
    PrintDialog dialog({QStringLiteral("Laser"), QStringLiteral("Ink")}, {.page = page}, help_.get());
    dialog.show();
    await_active(dialog);
    auto* note = dialog.findChild<QLabel*>(QStringLiteral("lblPrinters"));
    EXPECT_GE(note->height(), note->heightForWidth(note->width()));
    EXPECT_GT(drawn_points(picture(*note)), 100);
    keep(dialog, "print-dialog-printers.png");
    press({"Escape"});
    EXPECT_TRUE(await([&] { return !dialog.isVisible(); }));
}

}  // namespace
}  // namespace nivora
