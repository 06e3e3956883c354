#include "widgets/printing.h"

#include "base/durable_file.h"
#include "base/text.h"
#include "paint/paint_pages.h"
#include "paint/plot_print.h"
#include "reports/grid_pages.h"
#include "reports/print_texts.h"
#include "reports/report_pages.h"
#include "reports/sheet_text.h"
#include "reports/text_pages.h"
#include "session/session.h"
#include "widgets/busy_pointer.h"
#include "widgets/qt_text.h"

#include <QProgressDialog>
#include <QWidget>
#include <cerrno>

namespace nivora {
namespace {

constexpr const char* k_print_title = "Print";

/// A progress dialog that waits for a click, so that the busy pointer is away while it is shown.
class CancelDialog : public QProgressDialog {
public:
    using QProgressDialog::QProgressDialog;

protected:
    void showEvent(QShowEvent* event) override {
        if (!pause_) pause_.emplace();
        QProgressDialog::showEvent(event);
    }
    void hideEvent(QHideEvent* event) override {
        QProgressDialog::hideEvent(event);
        pause_.reset();
    }

private:
    std::optional<BusyPause> pause_;
};

/// Shows the progress of a long print, with a button that cancels it.
class PrintProgress {
public:
    PrintProgress(QWidget* window, std::size_t pages)
        : dialog_(QStringLiteral("Printing - Click Cancel to quit"), QStringLiteral("Cancel"), 0,
                  static_cast<int>(pages), window) {
        dialog_.setWindowTitle(QString::fromUtf8(k_print_title));
        dialog_.setWindowModality(Qt::WindowModal);
        constexpr int k_shown_after_ms = 1000;
        dialog_.setMinimumDuration(k_shown_after_ms);
    }

    /// @param page to be painted next, from 1. @return false once the user has clicked Cancel
    [[nodiscard]] bool goes_on_to(int page) {
        dialog_.setValue(page - 1);
        return !dialog_.wasCanceled();
    }

private:
    CancelDialog dialog_;
};

/// The content of a text file: each line, also the last one, ends with CR LF.
std::string with_crlf(std::string_view text) {
    std::string lines;
    lines.reserve(text.size() + text.size() / 16);
    for (const char character : text) {
        if (character == '\n') lines += '\r';
        lines += character;
    }
    if (!text.empty() && text.back() != '\n') lines += "\r\n";
    return lines;
}

std::string name_of(const QWidget* window) {
    return window != nullptr ? from_qt(window->objectName()) : std::string{};
}

}  // namespace

/// One print, in the form that each kind of target takes.
struct Printing::Work {
    std::function<PrintedJob(const PagedDevice&)> lay_out;  ///< for a printer and a PDF file
    std::function<std::string()> text;                      ///< for a text file
    std::string name_suffix = {};
    std::optional<Message> question = {};
};

bool Printing::print_report(QWidget* window, const ReportPrint& report) {
    if (report.text.empty()) {
        session_.dialogs.stop("There is nothing to print.  Make a report first, then print it.",
                              k_print_title);
        return false;
    }
    ReportPrint named = report;
    if (named.name.empty()) named.name = k_print_job_name;
    return print(window, {.lay_out = [&](const PagedDevice& device) { return lay_out_report(device, named); },
                          .text = [&] { return report_text_file(report.text); }});
}

bool Printing::print_sheets(QWidget* window, std::span<const PrintedSheet> sheets, const SheetsPrint& how) {
    return print(window, {.lay_out =
                              [&](const PagedDevice& device) {
                                  return lay_out_sheets(device, sheets, k_print_job_name);
                              },
                          .text = [&] { return sheet_text_file(sheets); },
                          .name_suffix = how.name_suffix,
                          .question = how.question});
}

bool Printing::print_text(QWidget* window, const TextPrint& text) {
    return print(window, {.lay_out = [&](const PagedDevice& device) { return lay_out_text(device, text); },
                          .text = [&] { return with_crlf(text.text); }});
}

std::optional<PrintChoice> Printing::choose(QWidget* window, bool text) {
    auto choice = printers_.choose(window, {.page = session_.settings.page, .target = last_, .text = text});
    if (choice) last_ = choice->target;
    return choice;
}

bool Printing::print(QWidget* window, const Work& work) {
    auto choice = choose(window, true);
    if (!choice) return false;
    if (choice->target == PrintTarget::Printer) return print_on_printer(window, *choice, work);
    return print_to_file(window, choice->target, work);
}

/// Shows what the page set-up refuses, or asks the question of a large print.
bool Printing::may_print(const std::optional<Message>& refusal, const std::optional<Message>& question) {
    if (refusal) {
        session_.dialogs.message(*refusal);
        return false;
    }
    return !question || session_.dialogs.message(*question) == go_on_answer(question->buttons);
}

/// Keeps a chosen printer, unless it is not there any more, which the user is told.
bool Printing::take_printer(const PrintChoice& choice) {
    if (choice.device == nullptr) {
        session_.dialogs.stop("The printer \"" + choice.printer +
                                  "\" is not available.  Choose another printer, or print into a file.",
                              k_print_title);
        return false;
    }
    if (!choice.printer.empty()) session_.settings.page.printer = choice.printer;
    return true;
}

bool Printing::print_on_printer(QWidget* window, PrintChoice& choice, const Work& work) {
    if (!take_printer(choice)) return false;
    const BusyPointer busy;
    PaintedDevice device(*choice.device);
    auto refusal = Printer_Setup(device, choice.page);
    if (!refusal) refusal = margin_refusal(device, name_of(window));
    return may_print(refusal, work.question) && paint(window, device, choice, work.lay_out(device));
}

/// Paints a job on a printer. A job that the user cancels ends without a message.
bool Printing::paint(QWidget* window, PaintedDevice& device, const PrintChoice& choice,
                     const PrintedJob& job) {
    PrintProgress progress(window, job.pages.size());
    bool started = false;
    bool cancelled = false;
    const bool painted = paint_pages(device, job, [&](int page) {
        started = true;
        cancelled = !progress.goes_on_to(page);
        if (cancelled && choice.abort) choice.abort();
        return !cancelled;
    });
    if (cancelled) return false;
    return tell_failure(choice, started, painted);
}

/// Shows the error of a printer. @return whether there is none
bool Printing::tell_failure(const PrintChoice& choice, bool started, bool painted) {
    if (painted && !(choice.has_failed && choice.has_failed())) return true;
    session_.dialogs.message(
        started ? print_error("The printer \"" + choice.printer + "\" did not print all pages", EIO)
                : printer_not_ready(EIO));
    return false;
}

/// Checks the page and asks before it asks for a name: nobody names a file that is not written.
bool Printing::print_to_file(QWidget* window, PrintTarget target, const Work& work) {
    if (!may_print(file_page_refusal(session_.settings.page, name_of(window)), work.question)) return false;
    const FileKind kind = target == PrintTarget::Pdf ? FileKind::SavePdf : FileKind::SaveText;
    const auto file = file_to_print(kind, work.name_suffix);
    if (!file) return false;
    const std::string ending = folded_name(path_text(file->extension()));
    const bool pages = ending == ".pdf" || (target == PrintTarget::Pdf && ending != ".txt");
    return pages ? write_pages(*file, work) : write_text(*file, work);
}

/// Asks for a file that is not the open basin, which a print would replace.
std::optional<std::filesystem::path> Printing::file_to_print(FileKind kind, const std::string& suffix) {
    auto file = session_.file_names.GetFileName(kind, session_.basin.Basin_File, suffix);
    if (!file) return std::nullopt;
    const auto refusal = open_basin_refusal(session_.basin, *file, "print");
    if (!refusal) return file;
    session_.dialogs.message(*refusal);
    return std::nullopt;
}

std::vector<std::filesystem::path> Printing::open_files() const {
    return {session_.basin.Basin_File, session_.basin.Work_File};
}

bool Printing::write_text(const std::filesystem::path& file, const Work& work) {
    const BusyPointer busy;
    try {
        write_whole_file(file, work.text(), open_files());
        return true;
    } catch (const FileError& error) {
        session_.dialogs.stop(error.what(), k_print_title);
        return false;
    }
}

bool Printing::write_pages(const std::filesystem::path& file, const Work& work) {
    const BusyPointer busy;
    const auto refusal = write_pdf(
        file, session_.settings.page, [&](const PagedDevice& device) { return work.lay_out(device); },
        open_files());
    if (refusal) session_.dialogs.stop(refusal->text, k_print_title);
    return !refusal;
}

bool Printing::print_picture(QWidget* window, const PlotPrint& plot) {
    auto choice = choose(window, false);
    if (!choice) return false;
    if (choice->target == PrintTarget::Printer) return print_plot_on_printer(*choice, plot);
    return print_plot_to_file(plot);
}

bool Printing::print_plot_on_printer(PrintChoice& choice, const PlotPrint& plot) {
    if (!take_printer(choice)) return false;
    const BusyPointer busy;
    PaintedDevice device(*choice.device);
    auto refusal = Printer_Setup(device, choice.page);
    if (!refusal) refusal = plot_page_refusal(device.page());
    if (!may_print(refusal, plot_overflow_question(device.page(), plot.size))) return false;
    const bool painted = paint_plot(device, plot);
    return tell_failure(choice, painted, painted);
}

bool Printing::print_plot_to_file(const PlotPrint& plot) {
    std::optional<Message> question;
    const auto refused = with_pdf_page(session_.settings.page, [&](PaintedDevice& device) {
        question = plot_overflow_question(device.page(), plot.size);
        return plot_page_refusal(device.page());
    });
    if (!may_print(refused, question)) return false;
    const auto file = file_to_print(FileKind::SavePdf, "_Plot");
    if (!file) return false;
    const BusyPointer busy;
    const auto refusal = write_plot_pdf(*file, session_.settings.page, plot, open_files());
    if (refusal) session_.dialogs.stop(refusal->text, k_print_title);
    return !refusal;
}

}  // namespace nivora
