#include "base/iso_date.h"

#include "base/text.h"

namespace nivora {

std::optional<DayCount> read_iso_date(std::string_view text) {
    const auto date = read_date(text);
    if (!date || iso_date_text(*date) != trimmed(text)) return std::nullopt;
    return date;
}

}  // namespace nivora
