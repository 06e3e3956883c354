#include "widgets/print_dialog.h"

#include "widgets/desktop_printers.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QPrinter>
#include <QPushButton>
#include <QSignalSpy>

namespace nivora {
namespace {

const QStringList k_two{QStringLiteral("Laser"), QStringLiteral("Ink")};

QComboBox& list_of(PrintDialog& dialog) {
    return *dialog.findChild<QComboBox*>(QStringLiteral("cboPrintTo"));
}
std::string note_of(PrintDialog& dialog) {
    return from_qt(dialog.findChild<QLabel*>(QStringLiteral("lblPrinters"))->text());
}

TEST(PrintDialog, OffersPrintersThenFilesAndTheFirstPrinterAtFirst) {
    PageSetup page;
    PrintDialog dialog(k_two, {.page = page});
    QStringList entries;
    for (int at = 0; at < list_of(dialog).count(); ++at) entries << list_of(dialog).itemText(at);
    entries.removeAll(QString{});
    EXPECT_EQ(entries, QStringList({QStringLiteral("Laser"), QStringLiteral("Ink"),
                                    QStringLiteral("PDF file"), QStringLiteral("Text file")}));
    EXPECT_EQ(dialog.target(), PrintTarget::Printer);
    EXPECT_EQ(dialog.printer(), QStringLiteral("Laser"));
    EXPECT_EQ(note_of(dialog), "");
}

TEST(PrintDialog, OffersThePrinterThatWasUsedLast) {
    PageSetup page;
    page.printer = "Ink";
    PrintDialog dialog(k_two, {.page = page});
    EXPECT_EQ(dialog.printer(), QStringLiteral("Ink"));
}

TEST(PrintDialog, OffersTheKindOfFileThatWasUsedLast) {
    PageSetup page;
    page.printer = "Ink";
    PrintDialog dialog(k_two, {.page = page, .target = PrintTarget::Text});
    EXPECT_EQ(dialog.target(), PrintTarget::Text);
    EXPECT_EQ(dialog.printer(), QString{});
}

TEST(PrintDialog, OffersNoTextForAPictureAndAPdfAfterAText) {
    PageSetup page;
    PrintDialog dialog(k_two, {.page = page, .target = PrintTarget::Text, .text = false});
    EXPECT_EQ(list_of(dialog).findText(QStringLiteral("Text file")), -1);
    EXPECT_EQ(dialog.target(), PrintTarget::Pdf);
    PrintDialog without_printer({}, {.page = page, .text = false});
    EXPECT_EQ(list_of(without_printer).count(), 1);
    EXPECT_EQ(without_printer.target(), PrintTarget::Pdf);
}

TEST(PrintDialog, NamesAPrinterThatIsGoneAndOffersAnother) {
    PageSetup page;
    page.printer = "Plotter";
    PrintDialog dialog(k_two, {.page = page});
    EXPECT_EQ(dialog.printer(), QStringLiteral("Laser"));
    EXPECT_EQ(note_of(dialog), "The printer \"Plotter\" that was used before is not there any more.");
}

TEST(PrintDialog, WithoutAPrinterOffersFilesAndSaysSo) {
    PageSetup page;
    PrintDialog dialog({}, {.page = page});
    EXPECT_EQ(dialog.target(), PrintTarget::Pdf);
    EXPECT_EQ(list_of(dialog).count(), 2);
    EXPECT_EQ(note_of(dialog), "The system has no printer. A PDF file can be printed elsewhere.");
}

TEST(PrintDialog, OptionsAreThoseOfAPrinterAlone) {
    PageSetup page;
    PrintDialog dialog(k_two, {.page = page});
    auto* options = dialog.findChild<QPushButton*>(QStringLiteral("cmdOptions"));
    EXPECT_TRUE(options->isEnabled());
    const QSignalSpy wanted(&dialog, &PrintDialog::options_wanted);
    options->click();
    EXPECT_EQ(wanted.size(), 1);
    list_of(dialog).setCurrentText(QStringLiteral("PDF file"));
    EXPECT_FALSE(options->isEnabled());
}

TEST(PrintDialog, IsLeftByPrintOrCancel) {
    PageSetup page;
    PrintDialog dialog(k_two, {.page = page});
    dialog.findChild<QPushButton*>(QStringLiteral("cmdPrint"))->click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    dialog.reject();
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

TEST(KeptPrinter, IsFoundByItsWholeNameOrByThe32CharactersOfTheField) {
    const QString name = QStringLiteral("Überlange Druckerwarteschlange im zweiten Stock");
    const QStringList names{QStringLiteral("Laser"), name};
    EXPECT_EQ(kept_printer(names, from_qt(name)), 1);
    EXPECT_EQ(kept_printer(names, from_qt(name.left(32))), 1);
    EXPECT_EQ(kept_printer(names, from_qt(name.left(31))), -1);
    EXPECT_EQ(kept_printer(names, ""), -1);
    EXPECT_EQ(kept_printer(names, "laser"), -1);
}

TEST(KeptPrinter, AnExactNameGoesBeforeOneWithTheSameBeginning) {
    const QString same(32, QLatin1Char('p'));
    const QStringList names{same + QStringLiteral(" one"), same + QStringLiteral(" two"), same};
    EXPECT_EQ(kept_printer(names, from_qt(same + QStringLiteral(" two"))), 1);
    EXPECT_EQ(kept_printer(names, from_qt(same)), 2);
}

// A name that no system has.
const QString k_missing_printer = QStringLiteral("Nivora-Test-Printer-That-Is-Missing");

TEST(PrinterChoice, OfAMissingPrinterNamesItAndHasNoDevice) {
    PageSetup page;
    page.paper = "A5";
    const PrintChoice choice = printer_choice(make_printer(k_missing_printer, page), k_missing_printer, page);
    EXPECT_EQ(choice.target, PrintTarget::Printer);
    EXPECT_EQ(choice.printer, from_qt(k_missing_printer));
    EXPECT_EQ(choice.page.paper, "A5");
    EXPECT_EQ(choice.device, nullptr);
    EXPECT_FALSE(choice.abort);
}

// Without a printer, Qt's own takes its place and writes a PDF file.
TEST(PrinterChoice, ThatWritesAFileHasNoDevice) {
    auto printer = std::make_unique<QPrinter>();
    printer->setOutputFormat(QPrinter::PdfFormat);
    const QString name = printer->printerName();
    EXPECT_EQ(printer_choice(std::move(printer), name, {}).device, nullptr);
}

TEST(MakePrinter, TakesThePageAndTheNameOfTheJob) {
    PageSetup page;
    page.paper = "A5";
    page.orientation = 2;
    const auto printer = make_printer({}, page);
    EXPECT_EQ(printer->docName(), QStringLiteral("Hollin Flow Model"));
    EXPECT_EQ(printer->pageLayout().orientation(), QPageLayout::Landscape);
}

}  // namespace
}  // namespace nivora
