// Printing: on a printer, into a PDF file or into a text file.
#pragma once

#include "base/dialogs.h"
#include "reports/page_setup.h"

#include <QPagedPaintDevice>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

class QTextDocument;
class QWidget;

namespace nivora {

struct PrintedSheet;
struct Session;

enum class PrintTarget { Printer, Pdf, Text };

/// What a print dialog offers first.
struct PrintOffer {
    const PageSetup& page;  ///< its printer is offered where there is one of that name
    PrintTarget target = PrintTarget::Printer;
};

/// What the user chose in the print dialog.
struct PrintChoice {
    PrintTarget target = PrintTarget::Pdf;
    // The others are of a printer alone.
    std::string printer;                        ///< its name
    std::unique_ptr<QPagedPaintDevice> device;  ///< the printer, set up for the page; null if there is none
    std::function<bool()> has_failed;           ///< whether the printer gave up during the print
};

/// The printers of the system and the dialog that chooses among them. Tests supply recording devices.
class Printers {
public:
    Printers() = default;
    Printers(const Printers&) = delete;
    Printers& operator=(const Printers&) = delete;
    virtual ~Printers() = default;

    /// Asks where a print goes to; nothing after a cancel.
    virtual std::optional<PrintChoice> choose(QWidget* window, const PrintOffer& offer) = 0;
};

/// The printers of this computer, with the print dialog of the program.
class DesktopPrinters : public Printers {
public:
    std::optional<PrintChoice> choose(QWidget* window, const PrintOffer& offer) override;
};

/// A report file on its way to paper.
struct ReportPrint {
    std::string text;         ///< the report file, with its marks
    bool page_breaks = true;  ///< false leaves out the heads of tables on the pages that continue one
    /// The file that the text was read from, which a print to a file does not replace; may be empty.
    std::filesystem::path file = {};
};

/// Prints what windows show. Questions and faults are told through the session's dialogs; the chosen printer
/// is kept in its settings. A print that fails changes nothing but its target, and a file is whole or as it
/// was.
class Printing {
public:
    Printing(Session& session, Printers& printers) : session_(session), printers_(printers) {}

    /// Prints the text of a report file.
    ///
    /// @param window in front of which the dialogs show; its object name decides where a message sends the
    /// user
    /// @return whether it was printed
    bool print_report(QWidget* window, const ReportPrint& report);

    /// Prints a grid with its head, column heads and foot.
    ///
    /// @param name_suffix of the proposed file name, behind the basin's: "_variables" gives
    /// "alder_variables.txt"
    bool print_sheet(QWidget* window, const PrintedSheet& sheet, const std::string& name_suffix = {});

    /// Prints a text in its own font, such as a page of the help.
    ///
    /// @param title stands above each page
    bool print_document(QWidget* window, const QTextDocument& document, const std::string& title);

private:
    Session& session_;
    Printers& printers_;
    PrintTarget last_ = PrintTarget::Printer;
};

}  // namespace nivora
