// Printing: on a printer, into a PDF file or into a text file.
#pragma once

#include "base/dialogs.h"
#include "reports/page_setup.h"
#include "session/file_names.h"

#include <QPagedPaintDevice>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

class QWidget;

namespace nivora {

class PagedDevice;
class PaintedDevice;
struct PrintedJob;
struct PlotPrint;
struct PrintedSheet;
struct ReportPrint;
struct Session;
struct TextPrint;

enum class PrintTarget { Printer, Pdf, Text };

/// What the print dialog selects when it opens.
struct PrintOffer {
    const PageSetup& page;  ///< its printer is selected if the system still has it
    PrintTarget target = PrintTarget::Printer;
    bool text = true;  ///< whether what is printed can be written as text
};

/// What the user chose in the print dialog.
struct PrintChoice {
    PrintTarget target = PrintTarget::Pdf;
    // For a printer only:
    std::string printer = {};                        ///< its name
    PageSetup page = {};                             ///< as the dialog left it
    std::unique_ptr<QPagedPaintDevice> device = {};  ///< null if the system has no such printer any more
    std::function<bool()> has_failed = {};           ///< whether the printer reported an error
    std::function<void()> abort = {};                ///< cancels the job while it is being painted
};

/// The printers of the system and the dialog in which the user chooses one. Tests supply recording devices.
class Printers {
public:
    Printers() = default;
    Printers(const Printers&) = delete;
    Printers& operator=(const Printers&) = delete;
    virtual ~Printers() = default;

    /// Asks where to print; nothing if the user cancels.
    virtual std::optional<PrintChoice> choose(QWidget* window, const PrintOffer& offer) = 0;
};

/// What print_sheets needs besides the sheets.
struct SheetsPrint {
    std::string name_suffix = {};  ///< of the proposed file name: "_Results" gives "alder_Results.txt"
    std::optional<Message> question = {};  ///< asked before the print; only Yes continues
};

/// Prints what windows show. Every print, also one into a file, needs a page with room for reports, or for a
/// picture, and asks its question first. Questions and errors are shown by the session's dialogs; the chosen
/// printer is kept in its settings if it exists. After an error the window stays open, and a file is complete
/// or unchanged.
class Printing {
public:
    Printing(Session& session, Printers& printers) : session_(session), printers_(printers) {}

    /// Prints the text of a report file.
    ///
    /// @param window behind the dialogs; its object name decides which menu a message about margins names
    /// @return whether all of it was printed
    bool print_report(QWidget* window, const ReportPrint& report);

    /// Prints grids; each begins on a new page.
    bool print_sheets(QWidget* window, std::span<const PrintedSheet> sheets, const SheetsPrint& how = {});

    /// Prints a text whose lines break at the margins, such as a topic of the help.
    bool print_text(QWidget* window, const TextPrint& text);

    /// Prints a plot on one page in the size that it has in its window, on a printer or into a PDF file. One
    /// that is larger than the room between the margins is compressed if the user agrees.
    bool print_picture(QWidget* window, const PlotPrint& plot);

private:
    struct Work;

    [[nodiscard]] bool print(QWidget* window, const Work& work);
    [[nodiscard]] std::optional<PrintChoice> choose(QWidget* window, bool text);
    [[nodiscard]] bool take_printer(const PrintChoice& choice);
    [[nodiscard]] std::optional<std::filesystem::path> file_to_print(FileKind kind,
                                                                     const std::string& suffix);
    /// The files of the open basin, to which a link may lead that was made after a name was chosen.
    [[nodiscard]] std::vector<std::filesystem::path> open_files() const;
    [[nodiscard]] bool print_plot_on_printer(PrintChoice& choice, const PlotPrint& plot);
    [[nodiscard]] bool print_plot_to_file(const PlotPrint& plot);
    [[nodiscard]] bool print_on_printer(QWidget* window, PrintChoice& choice, const Work& work);
    [[nodiscard]] bool paint(QWidget* window, PaintedDevice& device, const PrintChoice& choice,
                             const PrintedJob& job);
    [[nodiscard]] bool print_to_file(QWidget* window, PrintTarget target, const Work& work);
    [[nodiscard]] bool write_text(const std::filesystem::path& file, const Work& work);
    [[nodiscard]] bool write_pages(const std::filesystem::path& file, const Work& work);
    [[nodiscard]] bool may_print(const std::optional<Message>& refusal,
                                 const std::optional<Message>& question);
    [[nodiscard]] bool tell_failure(const PrintChoice& choice, bool started, bool painted);

    Session& session_;
    Printers& printers_;
    PrintTarget last_ = PrintTarget::Printer;
};

}  // namespace nivora
