#include "batch/report_output.h"

#include "base/durable_file.h"

#include <algorithm>

namespace nivora {

std::optional<ReportForm> report_form(const std::filesystem::path& file) {
    std::string ending = path_text(file.extension());
    std::transform(ending.begin(), ending.end(), ending.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    if (ending == ".txt" || ending == ".out") return ReportForm::Text;
    return std::nullopt;
}

void write_report_file(const std::filesystem::path& file, const std::string& text,
                       const std::vector<std::filesystem::path>& never) {
    write_whole_file(file, text, never);
}

}  // namespace nivora
