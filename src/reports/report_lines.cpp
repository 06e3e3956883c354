#include "reports/report_lines.h"

#include "base/number_text.h"
#include "base/text.h"

namespace nivora {

ReportLines& ReportLines::text(std::string_view item) {
    written_ += item;
    column_ += character_count(item);
    return *this;
}

ReportLines& ReportLines::user_text(std::string_view item) { return text(one_line(item)); }

ReportLines& ReportLines::number(double value) {
    const std::string digits = seven_digit_text(value);
    if (digits.empty() || digits.front() != '-') text(" ");
    return text(digits).text(" ");
}

ReportLines& ReportLines::date(DayCount day) { return text(short_date_text(day)); }

ReportLines& ReportLines::tab(std::size_t column) {
    if (column_ > column) end_line();
    if (column_ < column) text(std::string(column - column_, ' '));
    return *this;
}

void ReportLines::end_line() {
    written_ += "\r\n";
    column_ = 1;
}

}  // namespace nivora
