#include "reports/grid_pages.h"

#include "base/number_text.h"
#include "base/text.h"
#include "reports/wrapped_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace nivora {
namespace {

constexpr double k_column_gap = 160.0;  ///< twips
constexpr double k_rule_gap = 30.0;
constexpr double k_rounding = 1e-6;
constexpr std::size_t k_rows_a_page = 50;
constexpr int k_pages_unasked = 2;
constexpr std::array k_alignments{PrintAlign::Left, PrintAlign::Centre, PrintAlign::Right};

/// The left end of a text within its room.
double aligned(PrintAlign align, double x, double room, double width) {
    switch (align) {
        case PrintAlign::Left: return x;
        case PrintAlign::Centre: return x + (room - width) / 2.0;
        case PrintAlign::Right: return x + room - width;
    }
    return x;
}

/// Lines of mark-up of which each fits a width.
class MarkUpFitter {
public:
    MarkUpFitter(const LineMeasure& measure, double width) : measure_(measure), width_(width) {}

    [[nodiscard]] std::vector<MarkedLine> fitted(std::string_view mark_up, std::size_t page) const {
        std::vector<MarkedLine> lines;
        for (const MarkedLine& line : read_mark_up(mark_up, page)) add(lines, line);
        return lines;
    }
    [[nodiscard]] double width(const MarkedLine& line, PrintAlign align) const {
        double sum = 0.0;
        for (const MarkedRun& run : line) {
            if (run.align == align) sum += measure_.width(run.text, run.bold);
        }
        return sum;
    }

private:
    void add(std::vector<MarkedLine>& lines, const MarkedLine& line) const {
        if (fits(line)) {
            lines.push_back(line);
            return;
        }
        for (const PrintAlign align : k_alignments) add_part(lines, line, align);
    }

    /// Puts the parts of a line that would overlap on lines of their own.
    void add_part(std::vector<MarkedLine>& lines, const MarkedLine& line, PrintAlign align) const {
        MarkedLine part;
        for (const MarkedRun& run : line) {
            if (run.align == align) part.push_back(run);
        }
        if (part.empty()) return;
        if (width(part, align) <= width_) {
            lines.push_back(std::move(part));
            return;
        }
        for (const MarkedRun& run : part) {
            for (std::string& text : wrapped(measure_, run.text, width_, run.bold)) {
                lines.push_back({{std::move(text), run.align, run.bold, run.underline}});
            }
        }
    }

    [[nodiscard]] bool fits(const MarkedLine& line) const {
        const double left = width(line, PrintAlign::Left);
        const double centre = width(line, PrintAlign::Centre);
        const double right = width(line, PrintAlign::Right);
        if (centre <= 0.0) return left + right <= width_;
        return centre / 2.0 + std::max(left, right) <= width_ / 2.0;
    }

    const LineMeasure& measure_;
    double width_;
};

/// The columns of a sheet: how wide each is, and which of them share a page.
class SheetColumns {
public:
    SheetColumns(const LineMeasure& measure, const PrintedSheet& sheet, double room)
        : sheet_(sheet), widths_(sheet.columns.size(), 0.0), key_columns_(sheet.key_columns) {
        for (const bool broken_heads : {false, true}) {
            for (std::size_t column = 0; column < widths_.size(); ++column)
                widths_[column] = measured_width(measure, column, broken_heads);
            if (total_width() <= room) break;
        }
        limit_widths(room);
        divide(room);
    }

    [[nodiscard]] double width(std::size_t column) const { return widths_[column]; }
    [[nodiscard]] const std::vector<std::vector<std::size_t>>& groups() const { return groups_; }

private:
    /// @param broken_heads whether a head may be broken at each of its blanks, to save room
    [[nodiscard]] double measured_width(const LineMeasure& measure, std::size_t column,
                                        bool broken_heads) const {
        std::string head = sheet_.columns[column].head;
        if (broken_heads) std::replace(head.begin(), head.end(), ' ', '\n');
        double width = measure.widest_line(head, true);
        for (const auto& row : sheet_.rows) {
            if (column < row.size()) width = std::max(width, measure.widest_line(row[column], false));
        }
        return width;
    }
    [[nodiscard]] double total_width() const {
        double total = widths_.empty() ? 0.0 : -k_column_gap;
        for (const double width : widths_) total += width + k_column_gap;
        return total;
    }

    /// Repeated columns may take at most half of the page, and a column no more than the rest of it.
    void limit_widths(double room) {
        key_columns_ = std::min(key_columns_, widths_.size());
        double keys = 0.0;
        for (std::size_t key = 0; key < key_columns_; ++key) keys += widths_[key] + k_column_gap;
        if (keys > room / 2.0) {
            key_columns_ = 0;
            keys = 0.0;
        }
        for (std::size_t column = 0; column < widths_.size(); ++column) {
            widths_[column] = std::min(widths_[column], column < key_columns_ ? room : room - keys);
        }
    }

    void divide(double room) {
        double used = room + 1.0;  // the first column begins a group
        for (std::size_t column = 0; column < widths_.size(); ++column) {
            const double next = used + k_column_gap + widths_[column];
            if (next <= room + k_rounding) {
                groups_.back().push_back(column);
                used = next;
                continue;
            }
            begin_group();
            used = 0.0;
            for (const std::size_t key : groups_.back()) used += widths_[key] + k_column_gap;
            groups_.back().push_back(column);
            used += widths_[column];
        }
    }

    void begin_group() {
        const bool first = groups_.empty();
        groups_.emplace_back();
        for (std::size_t key = 0; key < key_columns_ && !first; ++key) groups_.back().push_back(key);
    }

    const PrintedSheet& sheet_;
    std::vector<double> widths_;
    std::size_t key_columns_;
    std::vector<std::vector<std::size_t>> groups_;
};

class SheetLayout {
public:
    SheetLayout(const PagedDevice& device, const PrintedSheet& sheet, PrintedJob& job)
        : page_(device.page()),
          measure_(device, job.font),
          line_height_(device.line_height(job.font)),
          sheet_(sheet),
          job_(job),
          marks_(measure_, page_.usable_width()),
          columns_(measure_, sheet, page_.usable_width()) {
        const std::size_t around =
            marks_.fitted(sheet.header, 1).size() + marks_.fitted(sheet.footer, 1).size();
        framed_ = static_cast<double>(around + 3) * line_height_ < page_.usable_height() * 0.75;
    }

    void lay_out() {
        begin_page();
        flow(sheet_.heading);
        if (!sheet_.heading.empty()) next_line();
        bool first = true;
        for (const auto& group : columns_.groups()) {
            group_ = &group;
            if (first && room_for(head_rows() + 1)) {
                put_heads();
            } else {
                begin_page();
            }
            first = false;
            for (const auto& row : sheet_.rows) put_row(row);
        }
        group_ = nullptr;
        if (!sheet_.legend.empty()) {
            next_line();
            flow(sheet_.legend);
        }
    }

private:
    [[nodiscard]] double bottom() const { return page_.paper_height - page_.bottom - foot_; }
    [[nodiscard]] bool room_for(std::size_t rows) const {
        return y_ + static_cast<double>(rows) * line_height_ <= bottom() + k_rounding;
    }
    void next_line() { y_ += line_height_; }

    void begin_page() {
        job_.pages.emplace_back();
        const std::size_t number = job_.pages.size();
        y_ = page_.top;
        foot_ = 0.0;
        fresh_ = true;
        if (framed_) {
            const auto head = marks_.fitted(sheet_.header, number);
            const auto foot = marks_.fitted(sheet_.footer, number);
            double y = page_.paper_height - page_.bottom - static_cast<double>(foot.size()) * line_height_;
            if (!foot.empty()) foot_ = page_.paper_height - page_.bottom - y + line_height_ / 2.0;
            for (const MarkedLine& line : head) {
                put_marked(line, y_);
                next_line();
            }
            for (const MarkedLine& line : foot) {
                put_marked(line, y);
                y += line_height_;
            }
        }
        if (group_ != nullptr) put_heads();
    }

    /// Puts lines of mark-up between header and footer, on as many pages as they need.
    void flow(std::string_view mark_up) {
        for (const MarkedLine& line : marks_.fitted(mark_up, job_.pages.size())) {
            if (!room_for(1)) {
                if (line.empty()) continue;
                begin_page();
            }
            put_marked(line, y_);
            next_line();
        }
    }

    void put_marked(const MarkedLine& line, double y) {
        const double room = page_.usable_width();
        for (const PrintAlign align : k_alignments) {
            double x = aligned(align, page_.left, room, marks_.width(line, align));
            for (const MarkedRun& run : line) {
                if (run.align != align) continue;
                const double width = measure_.width(run.text, run.bold);
                put({.x = x,
                     .y = y,
                     .text = run.text,
                     .bold = run.bold,
                     .underline = run.underline,
                     .width = width});
                x += width;
            }
        }
    }

    void put(PrintedText text) {
        if (!trimmed(text.text).empty()) job_.pages.back().texts.push_back(std::move(text));
    }

    [[nodiscard]] std::size_t head_rows() const {
        std::size_t rows = 1;
        for (const std::size_t column : *group_) {
            rows = std::max(rows, head_lines(column).size());
        }
        return rows;
    }
    [[nodiscard]] std::vector<std::string> head_lines(std::size_t column) const {
        return wrapped(measure_, sheet_.columns[column].head, columns_.width(column), true);
    }

    /// The heads are aligned at the rule that divides them from the rows.
    void put_heads() {
        const std::size_t rows = head_rows();
        double x = page_.left;
        for (const std::size_t column : *group_) {
            const auto lines = head_lines(column);
            double y = y_ + static_cast<double>(rows - lines.size()) * line_height_;
            for (const std::string& line : lines) {
                put_cell(column, line, x, y, true);
                y += line_height_;
            }
            x += columns_.width(column) + k_column_gap;
        }
        y_ += static_cast<double>(rows) * line_height_;
        job_.pages.back().rules.push_back(
            {.x1 = static_cast<double>(page_.left), .y1 = y_, .x2 = x - k_column_gap, .y2 = y_});
        y_ += k_rule_gap;
        fresh_ = true;
    }

    void put_cell(std::size_t column, const std::string& text, double x, double y, bool bold) {
        const double room = columns_.width(column);
        const double width = std::min(room, measure_.width(text, bold));
        put({.x = aligned(sheet_.columns[column].align, x, room, width),
             .y = y,
             .text = text,
             .bold = bold,
             .width = width});
    }

    /// A row stays on one page if a page can hold it.
    void put_row(const std::vector<std::string>& row) {
        std::vector<std::vector<std::string>> cells;
        std::size_t height = 1;
        for (const std::size_t column : *group_) {
            cells.push_back(column < row.size()
                                ? wrapped(measure_, row[column], columns_.width(column), false)
                                : std::vector<std::string>{});
            height = std::max(height, cells.back().size());
        }
        if (!fresh_ && !room_for(height)) begin_page();
        for (std::size_t line = 0; line < height; ++line) {
            if (!fresh_ && !room_for(1)) begin_page();
            double x = page_.left;
            for (std::size_t at = 0; at < cells.size(); ++at) {
                const std::size_t column = (*group_)[at];
                if (line < cells[at].size()) put_cell(column, cells[at][line], x, y_, false);
                x += columns_.width(column) + k_column_gap;
            }
            next_line();
            fresh_ = false;
        }
    }

    PageMetrics page_;
    LineMeasure measure_;
    double line_height_;
    const PrintedSheet& sheet_;
    PrintedJob& job_;
    MarkUpFitter marks_;
    SheetColumns columns_;
    bool framed_ = true;                               ///< head and foot leave room for rows
    const std::vector<std::size_t>* group_ = nullptr;  ///< the columns that stand on this page
    double y_ = 0.0;
    double foot_ = 0.0;  ///< the height of the foot
    bool fresh_ = true;  ///< no row stands on the page yet
};

}  // namespace

PrintedJob lay_out_sheets(const PagedDevice& device, std::span<const PrintedSheet> sheets,
                          const std::string& name) {
    PrintedJob job{.name = name, .font = {.family = k_sheet_font, .points = k_sheet_points}};
    for (const PrintedSheet& sheet : sheets) SheetLayout{device, sheet, job}.lay_out();
    return job;
}

std::optional<Message> large_print_question(std::size_t rows, std::optional<std::size_t> selected) {
    // Intended: a selected block counts its full pages alone, a whole sheet also a part of one.
    const double counted = static_cast<double>(selected.value_or(rows)) / static_cast<double>(k_rows_a_page);
    const double pages = selected ? std::floor(counted) : counted;
    if (pages <= k_pages_unasked) return std::nullopt;
    return Message{
        .text = "Your print job may produce " + seven_digit_text(pages) + " or more pages.  Continue?",
        .title = "Warning!  Potential large print job.",
        .icon = Icon::Question,
        .buttons = Buttons::YesNo};
}

}  // namespace nivora
