#include "widgets/printing.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "base/text.h"
#include "paint/paint_pages.h"
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

/// Shows how far a long print has come, with a button that ends it.
class PrintProgress {
public:
    PrintProgress(QWidget* window, std::size_t pages)
        : dialog_(QStringLiteral("Printing - Click Cancel to quit"), QStringLiteral("Cancel"), 0,
                  static_cast<int>(pages), window) {
        dialog_.setWindowTitle(QStringLiteral("Print"));
        dialog_.setWindowModality(Qt::WindowModal);
        constexpr int k_shown_after_ms = 1000;
        dialog_.setMinimumDuration(k_shown_after_ms);
    }

    /// @param page that is painted next, from 1. @return whether the user lets it go on
    [[nodiscard]] bool reaches(int page) {
        dialog_.setValue(page - 1);
        return !dialog_.wasCanceled();
    }

private:
    QProgressDialog dialog_;
};

std::string with_crlf(std::string_view text) {
    std::string lines;
    lines.reserve(text.size() + text.size() / 16);
    for (const char character : text) {
        if (character == '\n') lines += '\r';
        lines += character;
    }
    return lines;
}

}  // namespace

/// A print in the forms that its targets take.
struct Printing::Work {
    std::function<PrintedJob(const PagedDevice&)> lay_out;
    std::function<std::string()> text;
    std::string name_suffix = {};
    std::optional<Message> question = {};
};

bool Printing::print_report(QWidget* window, const ReportPrint& report) {
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

bool Printing::print(QWidget* window, const Work& work) {
    auto choice = printers_.choose(window, {.page = session_.settings.page, .target = last_});
    if (!choice) return false;
    last_ = choice->target;
    if (choice->target == PrintTarget::Printer) return print_on_printer(window, *choice, work);
    return print_to_file(window, choice->target, work);
}

/// Lays the pages out where the margins leave room for them. A message without a text tells that the user
/// declined the print.
std::variant<PrintedJob, Message> Printing::laid_out(QWidget* window, const PagedDevice& device,
                                                     const Work& work) {
    const std::string name = window != nullptr ? from_qt(window->objectName()) : std::string{};
    if (const auto refusal = margin_refusal(device, name)) return *refusal;
    if (!agrees(work)) return Message{};
    return work.lay_out(device);
}

bool Printing::agrees(const Work& work) {
    return !work.question || session_.dialogs.message(*work.question) == Answer::Yes;
}

bool Printing::print_on_printer(QWidget* window, PrintChoice& choice, const Work& work) {
    Dialogs& user = session_.dialogs;
    if (!choice.printer.empty()) session_.settings.page.printer = choice.printer;
    if (choice.device == nullptr) {
        user.stop("The printer \"" + choice.printer +
                      "\" is not available.  Choose another printer, or print into a file.",
                  "Print");
        return false;
    }
    const BusyPointer busy;
    PaintedDevice device(*choice.device);
    if (const auto refusal = Printer_Setup(device, choice.page)) {
        user.message(*refusal);
        return false;
    }
    const auto laid = laid_out(window, device, work);
    if (const auto* refusal = std::get_if<Message>(&laid)) {
        if (!refusal->text.empty()) user.message(*refusal);
        return false;
    }
    const auto& job = std::get<PrintedJob>(laid);
    PrintProgress progress(window, job.pages.size());
    bool cancelled = false;
    const bool painted = paint_pages(device, job, [&](int page) {
        cancelled = !progress.reaches(page);
        if (cancelled && choice.abort) choice.abort();
        return !cancelled;
    });
    if (cancelled) return false;
    if (painted && !(choice.has_failed && choice.has_failed())) return true;
    user.message(print_error("The printer \"" + choice.printer + "\" did not print all pages", EIO));
    return false;
}

bool Printing::print_to_file(QWidget* window, PrintTarget target, const Work& work) {
    const FileKind kind = target == PrintTarget::Pdf ? FileKind::SavePdf : FileKind::SaveText;
    const auto file =
        session_.file_names.GetFileName(kind, session_.basin.Basin_File, false, work.name_suffix);
    if (!file || is_in_use(*file)) return false;
    const std::string ending = folded_name(path_text(file->extension()));
    const bool pages = ending == ".pdf" || (target == PrintTarget::Pdf && ending != ".txt");
    return pages ? write_pages(window, *file, work) : write_text(*file, work);
}

/// Refuses the file of the open basin, which a print would replace.
bool Printing::is_in_use(const std::filesystem::path& file) {
    for (const std::filesystem::path& used : {session_.basin.Basin_File, session_.basin.Work_File}) {
        if (used.empty() || !same_file(file, used)) continue;
        session_.dialogs.stop("The file '" + path_text(file) +
                                  "' is the basin that is open.  Choose another name for the print.",
                              "Invalid file name");
        return true;
    }
    return false;
}

bool Printing::write_text(const std::filesystem::path& file, const Work& work) {
    const BusyPointer busy;
    try {
        write_whole_file(file, work.text());
        return true;
    } catch (const FileError& error) {
        session_.dialogs.stop(error.what(), "Print");
        return false;
    }
}

bool Printing::write_pages(QWidget* window, const std::filesystem::path& file, const Work& work) {
    const BusyPointer busy;
    const auto refusal = write_pdf(file, session_.settings.page,
                                   [&](const PagedDevice& device) { return laid_out(window, device, work); });
    if (!refusal) return true;
    if (!refusal->text.empty()) session_.dialogs.message(*refusal);
    return false;
}

}  // namespace nivora
