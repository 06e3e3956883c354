#include "reports/report_pages.h"

#include "base/text.h"
#include "reports/page_head.h"
#include "reports/report_lines.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace nivora {
namespace {

constexpr std::size_t k_head_lines = 11;
constexpr std::size_t k_page_rule = 82;
constexpr double k_measured_part = 0.6;  ///< of a page: a table that ends below this is measured
constexpr double k_kept_free = 1.5;      ///< times the height of that table, at the end of the page
constexpr double k_least_points = 4.5;   ///< 125 columns fit if 80 hyphens fit at 7.25 points
constexpr double k_smaller = 0.01;       ///< points
constexpr double k_rounding = 1e-6;      ///< error of sums of fractions of a line
constexpr std::size_t k_marks_a_rule = 3;
constexpr std::size_t k_file_rule = 92;

enum class LineKind { Text, Mark, Feed };

struct SourceLine {
    LineKind kind = LineKind::Text;
    std::string text;
    bool begins = true;  ///< false for the rest of a line that was broken
};

/// A line with only characters that fonts have.
std::string printable(std::string_view line) {
    std::string shown;
    for (std::size_t at = line.find(k_difference); at != std::string_view::npos;
         at = line.find(k_difference)) {
        shown += one_line(line.substr(0, at)) + k_shown_difference;
        line.remove_prefix(at + 1);
    }
    shown += one_line(line);
    shown.resize(right_trimmed(shown).size());
    return shown;
}

/// Calls `use` with each line of a text without its end.
template <typename Use>
void for_each_line(std::string_view text, Use&& use) {
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        use(line);
    }
}

LineKind kind_of(std::string_view line) {
    if (line == "\f") return LineKind::Feed;
    return line == "\x01" ? LineKind::Mark : LineKind::Text;
}

std::vector<SourceLine> source_lines(std::string_view text) {
    std::vector<SourceLine> lines;
    for_each_line(text, [&](std::string_view line) {
        const LineKind kind = kind_of(line);
        lines.push_back({kind, kind == LineKind::Text ? printable(line) : std::string{}});
    });
    return lines;
}

std::size_t widest_line(const std::vector<SourceLine>& lines) {
    std::size_t widest = k_page_rule;
    for (const SourceLine& line : lines) widest = std::max(widest, character_count(line.text));
    return widest;
}

/// The font of a report and the columns of a page in it.
struct ReportFont {
    PrintFont font;
    double column_width = 0.0;
    std::size_t columns = 0;  ///< that fit the page
};

/// The largest font in which a line fits the page.
ReportFont fitting_font(const PagedDevice& device, std::size_t columns) {
    const double room = device.page().usable_width();
    const std::string line(columns, '-');
    PrintFont font = report_font();
    double width = device.text_width(font, true, line);
    if (width > room) {
        font.points =
            std::max(k_least_points, std::floor(font.points * room / width / k_smaller) * k_smaller);
        width = device.text_width(font, true, line);
    }
    while (width > room && font.points > k_least_points) {
        font.points = std::max(k_least_points, font.points - k_smaller);
        width = device.text_width(font, true, line);
    }
    const double column_width = width / static_cast<double>(columns);
    const double fitting = std::max(1.0, std::floor(room / column_width));
    return {.font = std::move(font),
            .column_width = column_width,
            .columns = width <= room ? columns : static_cast<std::size_t>(fitting)};
}

/// Breaks lines that are too long even in the smallest font: at a blank, or anywhere if there is none.
void break_long_lines(std::vector<SourceLine>& lines, std::size_t columns) {
    std::vector<SourceLine> broken;
    broken.reserve(lines.size());
    for (SourceLine& line : lines) {
        bool begins = true;
        while (character_count(line.text) > columns) {
            std::string_view part = first_characters(line.text, columns);
            const std::size_t blank = part.rfind(' ');
            const bool at_blank = blank != std::string_view::npos && !trimmed(part.substr(0, blank)).empty();
            if (at_blank) part = part.substr(0, blank + 1);
            broken.push_back({line.kind, std::string{right_trimmed(part)}, begins});
            line.text.erase(0, part.size());
            begins = false;
        }
        broken.push_back({line.kind, std::move(line.text), begins});
    }
    lines = std::move(broken);
}

/// Lines that belong together: a table with its mark and the lines that end its report page, or the lines
/// between two form feeds without a mark.
struct Unit {
    std::size_t first = 0;
    std::size_t end = 0;   ///< one past its last line
    std::size_t mark = 0;  ///< of the table; `end` if there is none
    std::size_t head = 0;  ///< lines above the table that a further table on the report page does not have

    [[nodiscard]] bool is_table() const { return mark < end; }
    [[nodiscard]] std::size_t table_rows() const { return mark - first - head; }
};

/// The index after the lines that end a report page, if they are next: empty lines, one line of text, a form
/// feed. Otherwise `at`.
std::size_t page_end_from(const std::vector<SourceLine>& lines, std::size_t at) {
    bool version_line = false;
    for (std::size_t next = at; next < lines.size() && lines[next].kind != LineKind::Mark; ++next) {
        if (lines[next].kind == LineKind::Feed) return next + 1;
        if (lines[next].text.empty()) continue;
        if (version_line) return at;
        version_line = true;
    }
    return at;
}

/// The number of lines above the first of several tables of a report page, up to the last empty line above
/// it. 0 for all other tables: a daily table ends its report page, and the next one repeats its head.
std::size_t head_above(const std::vector<SourceLine>& lines, const Unit& unit) {
    const bool begins_report_page = unit.first == 0 || lines[unit.first - 1].kind == LineKind::Feed;
    const bool ends_report_page = unit.end > unit.mark + 1;
    if (!begins_report_page || ends_report_page) return 0;
    std::size_t at = unit.mark;
    while (at > unit.first && lines[at - 1].text.empty()) --at;
    while (at > unit.first && !lines[at - 1].text.empty()) --at;
    return at - unit.first;
}

std::vector<Unit> units_of(const std::vector<SourceLine>& lines) {
    std::vector<Unit> units;
    for (std::size_t at = 0; at < lines.size();) {
        Unit unit{.first = at, .end = at};
        while (unit.end < lines.size() && lines[unit.end].kind == LineKind::Text) ++unit.end;
        const bool marked = unit.end < lines.size() && lines[unit.end].kind == LineKind::Mark;
        unit.mark = unit.end;
        if (unit.end < lines.size()) ++unit.end;
        if (marked) {
            unit.end = page_end_from(lines, unit.end);
            unit.head = head_above(lines, unit);
        } else {
            unit.mark = unit.end;
        }
        units.push_back(unit);
        at = unit.end;
    }
    return units;
}

class ReportLayout {
public:
    ReportLayout(const PagedDevice& device, const ReportPrint& print, std::vector<SourceLine> lines,
                 ReportFont font)
        : print_(print),
          page_(device.page()),
          line_height_(device.line_height(font.font)),
          column_width_(font.column_width),
          lines_(std::move(lines)),
          height_(std::max(1.0, page_.usable_height() / line_height_)),
          limit_(height_) {
        job_.name = print.name;
        job_.font = std::move(font.font);
    }

    PrintedJob lay_out() {
        for (const Unit& unit : units_of(lines_)) place(unit);
        return std::move(job_);
    }

private:
    void place(const Unit& unit) {
        const std::size_t end = end_of_text(unit);
        if (end > unit.first && begins_page(unit, end)) Print_Page_Header(false);
        for (std::size_t at = unit.first; at < unit.end; ++at) {
            if (lines_[at].kind == LineKind::Mark) {
                end_table(unit);
                continue;
            }
            put_line(lines_[at].text, unit.is_table() && at > unit.first && at < unit.mark);
            keep_head(lines_[at]);
        }
    }

    /// The index after the last line of a unit that is not empty.
    [[nodiscard]] std::size_t end_of_text(const Unit& unit) const {
        std::size_t end = unit.end;
        while (end > unit.first && lines_[end - 1].text.empty()) --end;
        return end;
    }

    [[nodiscard]] bool begins_page(const Unit& unit, std::size_t end) const {
        // Without page breaks a page ends only where it is full.
        if (job_.pages.empty() || print_.No_Table_Head) return false;
        return row_ > limit_ || belongs_on_next_page(unit, end);
    }

    /// Leaves out an empty line that does not fit: it begins no page.
    void put_line(std::string_view text, bool within_table) {
        if (job_.pages.empty() && !text.empty()) job_.pages.emplace_back();
        if (row_ + 1.0 > height_ + k_rounding) {
            if (text.empty()) return;
            Print_Page_Header(within_table);
        }
        put(text);
    }

    /// Expects the next table to be as high as one that ends low on the page, so that it is not split.
    void end_table(const Unit& unit) {
        if (row_ <= k_measured_part * height_) return;
        limit_ = height_ - k_kept_free * static_cast<double>(unit.table_rows());
    }

    /// Whether a unit would be split here and fits on a page of its own.
    [[nodiscard]] bool belongs_on_next_page(const Unit& unit, std::size_t end) const {
        const auto rows = static_cast<double>(end - unit.first - (unit.mark < end ? 1 : 0));
        return row_ > head_rows_ && row_ + rows > height_ + k_rounding &&
               static_cast<double>(next_head_rows(false)) + rows <= height_ + k_rounding;
    }

    void put(std::string_view text) {
        if (!text.empty()) {
            const double width = static_cast<double>(character_count(text)) * column_width_;
            job_.pages.back().texts.push_back({.x = static_cast<double>(page_.left),
                                               .y = page_.top + row_ * line_height_,
                                               .text = std::string{text},
                                               .bold = true,
                                               .width = width});
        }
        row_ += 1.0;
    }

    void keep_head(const SourceLine& line) {
        if (line.kind == LineKind::Feed) {
            head_.clear();
            head_read_ = 0;
        } else if (head_read_ < k_head_lines || (head_read_ == k_head_lines && !line.begins)) {
            head_.push_back(line.text);
            if (line.begins) ++head_read_;
        }
    }

    /// The number of lines at the head of a further page.
    [[nodiscard]] std::size_t next_head_rows(bool continued) const {
        return 4 + (print_.No_Table_Head ? 0 : head_.size()) + (continued ? 1 : 0);
    }

    void Print_Page_Header(bool continued) {
        job_.pages.emplace_back();
        row_ = 0.0;
        limit_ = height_;
        const bool room = static_cast<double>(next_head_rows(continued)) + 1.0 <= height_;
        if (room) {
            ReportLines version;
            write_version_columns(version, job_.pages.size());
            put(version.written());
            put({});
            put({});
            put(std::string(k_page_rule, '='));
            if (!print_.No_Table_Head) {
                for (const std::string& line : head_) put(line);
            }
            if (continued) put("(continued)");
        }
        head_rows_ = row_;
    }

    const ReportPrint& print_;
    PageMetrics page_;
    double line_height_;
    double column_width_;
    std::vector<SourceLine> lines_;
    double height_;           ///< of the page, in lines
    double limit_;            ///< lines of the page, after which the next table begins another one
    double row_ = 0.0;        ///< of the next line
    double head_rows_ = 0.0;  ///< of the page's head
    std::vector<std::string> head_;
    std::size_t head_read_ = 0;
    PrintedJob job_;
};

}  // namespace

PrintedJob lay_out_report(const PagedDevice& device, const ReportPrint& print) {
    std::vector<SourceLine> lines = source_lines(to_utf8(print.text));
    ReportFont font = fitting_font(device, widest_line(lines));
    break_long_lines(lines, font.columns);
    return ReportLayout{device, print, std::move(lines), std::move(font)}.lay_out();
}

std::string report_text_file(std::string_view text) {
    std::string file;
    std::size_t marks = 0;
    for_each_line(text, [&](std::string_view line) {
        const LineKind kind = kind_of(line);
        if (kind == LineKind::Text) file += line;
        file += "\r\n";
        if (kind == LineKind::Mark && ++marks % k_marks_a_rule == 0) {
            file += std::string(k_file_rule, '=') + "\r\n\r\n\r\n";
        }
    });
    return file;
}

}  // namespace nivora
