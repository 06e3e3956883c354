// The form in which a file writes its days.
#pragma once

#include "base/calendar.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nivora {

/// The year, month and day of a date in their order, with the texts between them, such as `YYYY-MM-DD`,
/// `MM/DD/YYYY`, `D.M.YYYY` or `YYYYMMDD`. `YYYY` is four digits, `MM` and `DD` two, `M` and `D` one or two.
class DatePattern {
public:
    /// ISO: `YYYY-MM-DD`.
    DatePattern();

    /// @return nothing if the text does not hold each of the three parts once, or holds other letters or
    ///         digits, or a part without a fixed number of digits right before another part
    [[nodiscard]] static std::optional<DatePattern> read(std::string_view text);

    [[nodiscard]] const std::string& text() const { return text_; }

    /// The day that a text names.
    /// @param reason why there is none, as a clause without a full stop
    [[nodiscard]] std::optional<DayCount> day(std::string_view text, std::string& reason) const;

private:
    /// A part of a date, or a character that stands between two parts.
    struct Piece {
        char kind = 0;  ///< 'Y', 'M', 'D', or 0 for a character
        char character = 0;
        std::size_t least = 0;
        std::size_t most = 0;
    };

    DatePattern(std::string text, std::vector<Piece> pieces)
        : text_(std::move(text)), pieces_(std::move(pieces)) {}

    [[nodiscard]] std::optional<CivilDate> parts(std::string_view text) const;

    std::string text_;
    std::vector<Piece> pieces_;
};

}  // namespace nivora
