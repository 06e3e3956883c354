#include "reports/page_head.h"

#include "base/calendar.h"
#include "base/text.h"

#include <string>

namespace nivora {
namespace {

constexpr std::string_view k_version_label = "NVR, Version ";
constexpr std::size_t k_version_column = 37;
constexpr std::size_t k_page_column = 65;
constexpr std::size_t k_page_number_column = 78;

}  // namespace

void write_version_columns(ReportLines& lines, std::size_t page) {
    lines.tab(k_version_column - character_count(k_version_label)).text(k_version_label);
    lines.text(k_report_version);
    lines.tab(k_page_column).text("Page");
    lines.tab(k_page_number_column).text(std::to_string(page));
}

void write_page_head(ReportLines& lines, int& page, double now) {
    lines.date(whole_day(now)).text(" ").text(time_text(now));
    write_version_columns(lines, static_cast<std::size_t>(page));
    lines.end_line();
    lines.line("\f");
    ++page;
}

}  // namespace nivora
