// The text of a report, written item by item with tab stops.
#pragma once

#include "base/calendar.h"

#include <string>
#include <string_view>

namespace nivora {

/// The sign of a difference in the report of a climate evaluation. No font has this control character, so
/// that screen and paper show the Greek letter.
inline constexpr char k_difference = 0x1E;
inline constexpr const char* k_shown_difference = "Δ";

/// Appends items, with nothing between them, to lines that end with CR LF. Columns count characters, from 1.
class ReportLines {
public:
    ReportLines& text(std::string_view item);
    /// A name or another text of the user, which may hold anything: control characters are blanks, so that it
    /// can neither end a line nor read as the end of a page or a block.
    ReportLines& user_text(std::string_view item);
    /// A number: at most seven significant digits, a leading blank unless it is negative, a trailing blank.
    ReportLines& number(double value);
    /// A day as m/d/yyyy.
    ReportLines& date(DayCount day);
    /// Lets the next item start at a column; on the next line if this one is already past it.
    ReportLines& tab(std::size_t column);
    void end_line();

    /// A line that is one text.
    void line(std::string_view item) { text(item).end_line(); }

    /// The text so far.
    [[nodiscard]] const std::string& written() const { return written_; }

private:
    std::string written_;
    std::size_t column_ = 1;  ///< where the next item starts
};

}  // namespace nivora
