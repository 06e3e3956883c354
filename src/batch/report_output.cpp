#include "batch/report_output.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "plots/paint_methods.h"
#include "reports/print_texts.h"
#include "reports/report_pages.h"

#include <algorithm>
#include <variant>

namespace nivora {
namespace {

std::variant<PrintedJob, Message> pages_of(const PagedDevice& device, const std::string& text) {
    if (auto refusal = margin_refusal(device, "nivora-batch")) return *refusal;
    return lay_out_report(device, {.text = text, .name = k_print_job_name});
}

void write_pages(const std::filesystem::path& file, const std::string& text,
                 const std::vector<std::filesystem::path>& never) {
    static_cast<void>(output_target(file, never));
    std::optional<Message> problem;
    paint_methods().write_pdf(
        file, PageSetup{}, [&](const PagedDevice& device) { return pages_of(device, text); }, problem);
    if (problem) throw FileError(problem->text);
}

}  // namespace

std::optional<ReportForm> report_form(const std::filesystem::path& file) {
    std::string ending = path_text(file.extension());
    std::transform(ending.begin(), ending.end(), ending.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    if (ending == ".txt" || ending == ".out") return ReportForm::Text;
    if (ending == ".pdf") return ReportForm::Pdf;
    return std::nullopt;
}

void write_report_file(const std::filesystem::path& file, const std::string& text,
                       const std::vector<std::filesystem::path>& never) {
    if (report_form(file) == ReportForm::Pdf) return write_pages(file, text, never);
    write_whole_file(file, text, never);
}

}  // namespace nivora
