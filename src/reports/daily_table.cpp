#include "reports/daily_table.h"

#include "base/single.h"
#include "reports/format_value.h"
#include "store/monthly_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

constexpr std::size_t k_months_a_block = 6;
constexpr std::size_t k_most_narrow_months = 4;
constexpr std::size_t k_cell = 20;       ///< the columns of a month
constexpr std::size_t k_cell_text = 18;  ///< the columns of its values
constexpr std::size_t k_day_columns = 4;
constexpr int k_most_days = 31;
constexpr const char* k_star_text = "  ** ";

/// The days of a month in the period.
struct MonthSpan {
    int month = 1;
    DayCount month_start = 0;
    DayCount first = 0;
    DayCount last = 0;
};

std::vector<MonthSpan> months_of(DayCount start, DayCount end) {
    std::vector<MonthSpan> months;
    for (DayCount day = start; day <= end;) {
        const CivilDate date = civil_date(day);
        const CivilDate next =
            date.month == 12 ? CivilDate{date.year + 1, 1, 1} : CivilDate{date.year, date.month + 1, 1};
        const DayCount next_start = day_count(next).value();
        months.push_back({.month = date.month,
                          .month_start = day - date.day + 1,
                          .first = day,
                          .last = std::min(end, next_start - 1)});
        day = next_start;
    }
    return months;
}

class TableWriter {
public:
    TableWriter(ReportLines& lines, int& pages, const DailyTable& table, double now)
        : lines_(lines),
          pages_(pages),
          table_(table),
          now_(now),
          months_(months_of(table.period.start, table.period.end)) {}

    void write(const DailySeries& series) {
        for (std::size_t first = 0; first < months_.size(); first += k_months_a_block) {
            const std::size_t count = std::min(k_months_a_block, months_.size() - first);
            const std::span block{months_.data() + first, count};
            write_heads(series, block, first > 0);
            for (int day = 1; day <= k_most_days; ++day) write_day(series, block, day);
            write_total("Total ", series, block, false);
            write_total("T.    ", series, block, true);
            if (!table_.note.empty()) lines_.line(table_.note);
            if (table_.zone_sum && first + count == months_.size()) write_zone_sum(series);
            end_report_block(lines_);
            end_report_page(lines_, pages_, now_);
        }
    }

private:
    void write_heads(const DailySeries& series, std::span<const MonthSpan> block, bool continued) {
        ReportHead head = table_.head;
        head.zone_letter = series.zone_letter;
        const std::size_t width =
            block.size() > k_most_narrow_months ? k_cell * block.size() + 5 : k_narrow_head;
        write_report_head(lines_, head, table_.title + (continued ? " (continued)" : ""), width);
        lines_.text(std::string(k_day_columns, ' '));
        for (const MonthSpan& month : block)
            lines_.text(fmt::format("{:8}{}{:9}", "", month_name(month.month), ""));
        lines_.end_line();
        lines_.text(std::string(k_day_columns, ' '));
        for (std::size_t month = 0; month < block.size(); ++month) lines_.text("  " + table_.column_head);
        lines_.end_line();
        lines_.end_line();
    }

    void write_day(const DailySeries& series, std::span<const MonthSpan> block, int day) {
        lines_.text(fmt::format("{:>{}}", day, k_day_columns));
        for (const MonthSpan& month : block) {
            const DayCount date = month.month_start + day - 1;
            if (date < month.first || date > month.last) {
                lines_.text(std::string(k_cell, ' '));
                continue;
            }
            const auto at = static_cast<std::size_t>(date - table_.period.start);
            lines_.text("  " + cell([&](std::size_t column) { return series.columns[column][at]; }));
        }
        lines_.end_line();
    }

    /// The label takes the place of the two blanks before the values of the first month.
    void write_total(const char* label, const DailySeries& series, std::span<const MonthSpan> block,
                     bool from_start) {
        bool first = true;
        for (const MonthSpan& month : block) {
            const DayCount start = from_start ? table_.period.start : month.first;
            lines_.text(first ? label : "  ");
            lines_.text(cell([&](std::size_t column) { return sum(series, column, start, month.last); }));
            first = false;
        }
        lines_.end_line();
    }

    void write_zone_sum(const DailySeries& series) {
        auto total = as_double(k_missing);
        for (std::size_t column = 0; column < series.columns.size(); ++column) {
            const double part = sum(series, column, table_.period.start, table_.period.end);
            if (!std::isnan(part)) total = std::isnan(total) ? part : total + part;
        }
        lines_.line("Total zone runoff input for above period = " + Format_Value(total, 8));
    }

    template <typename Value>
    [[nodiscard]] std::string cell(Value&& value_of) const {
        std::string text(k_cell_text, ' ');
        for (std::size_t column = 0; column < table_.slots.size(); ++column) {
            const CellSlot& slot = table_.slots[column];
            const double value = value_of(column);
            std::string shown;
            if (slot.stars) {
                shown = std::isnan(value) ? std::string(slot.width, ' ') : k_star_text;
            } else {
                shown = slot.whole ? right_aligned_whole(value, slot.width) : Format_Value(value, slot.width);
            }
            text.replace(slot.offset, slot.width, shown);
        }
        return text;
    }

    [[nodiscard]] double sum(const DailySeries& series, std::size_t column, DayCount first,
                             DayCount last) const {
        double total = 0.0;
        bool any = false;
        for (DayCount day = first; day <= last; ++day) {
            const double value = series.columns[column][static_cast<std::size_t>(day - table_.period.start)];
            if (std::isnan(value)) continue;
            total += value;
            any = true;
        }
        return any ? total : as_double(k_missing);
    }

    ReportLines& lines_;
    int& pages_;
    const DailyTable& table_;
    double now_;
    std::vector<MonthSpan> months_;
};

}  // namespace

void write_daily_table(ReportLines& lines, int& pages, const DailyTable& table, double now) {
    TableWriter writer{lines, pages, table, now};
    for (const DailySeries& series : table.series) writer.write(series);
}

}  // namespace nivora
