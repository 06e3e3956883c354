#include "prep/legacy_file.h"

#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "prep/legacy_header.h"

#include <fmt/format.h>

#include <cmath>

namespace nivora {
namespace {

constexpr std::string_view k_byte_order_mark = "\xEF\xBB\xBF";
constexpr std::array<const char*, k_legacy_sections> k_section_names{
    "runoff",  "Tmax",      "Tmin", "Tavg", "Precip", "SCA", "Tcrit",
    "LagTime", "LapseRate", "An",   "Cs",   "Cr",     "RCA"};

/// Reads one daily section into its slots.
class SectionReader {
public:
    SectionReader(LegacyFile& file, int section)
        : slots_(file.values.at(static_cast<std::size_t>(section))),
          section_(section),
          most_zones_(section == 0 ? 1 : k_most_legacy_zones) {
        slots_.resize(std::max<std::size_t>(1, section == 0 ? 1 : file.zones.size()));
        for (auto& zone : slots_) zone.fill(0.0F);
    }

    void read(LegacyText& text) {
        for (bool last = false; !last;) {
            line_ = text.line();
            if (text.at_end()) refuse("the file ends before the '/' that ends the section");
            std::string_view content = right_trimmed(text.next_line());
            last = !content.empty() && content.back() == '/';
            if (last) content.remove_suffix(1);
            read_values(content);
        }
    }

private:
    [[noreturn]] void refuse(const std::string& what) const {
        throw LegacyFileError(line_,
                              fmt::format("daily section {} ({})", section_ + 1,
                                          k_section_names.at(static_cast<std::size_t>(section_))),
                              what);
    }

    /// A comma at the end of a line, and a line without a value, add no value.
    void read_values(std::string_view content) {
        while (!trimmed(content).empty()) {
            const std::size_t comma = content.find(',');
            read_value(trimmed(content.substr(0, comma)));
            if (comma == std::string_view::npos) return;
            content.remove_prefix(comma + 1);
        }
    }

    void read_value(std::string_view text) {
        const std::size_t star = text.find('*');
        if (star == std::string_view::npos) return place(number(text), 1);
        const auto repeat = exact_number(text.substr(0, star));
        if (!repeat || *repeat != std::floor(*repeat) || *repeat < 1.0) {
            refuse(fmt::format("the repeat count of '{}' is not a whole number of at least 1",
                               shown_text(text)));
        }
        place(number(trimmed(text.substr(star + 1))), *repeat);
    }

    [[nodiscard]] float number(std::string_view text) const {
        const auto value = exact_number(text);
        if (!value) refuse(fmt::format("'{}' is not a number", shown_text(text)));
        const auto rounded = static_cast<float>(*value);
        if (!std::isfinite(rounded)) refuse(fmt::format("'{}' is too large", shown_text(text)));
        const bool is_switch = section_ == static_cast<int>(LegacySection::RCA);
        if (is_switch && !to_integer16(as_double(rounded)))
            refuse(fmt::format("'{}' is too large", shown_text(text)));
        return rounded;
    }

    void place(float value, double repeat) {
        const double room = static_cast<double>(most_zones_) * k_legacy_days - static_cast<double>(count_);
        if (repeat > room) {
            refuse(fmt::format("more than {} values, 366 for each of {} zone(s)", most_zones_ * k_legacy_days,
                               most_zones_));
        }
        for (auto left = static_cast<std::size_t>(repeat); left > 0; --left) {
            const std::size_t zone = count_ / k_legacy_days;
            const std::size_t day = count_ % k_legacy_days + 1;
            if (zone < slots_.size()) slots_[zone][day] = value;
            ++count_;
        }
    }

    std::vector<std::array<float, k_legacy_days + 1>>& slots_;
    int section_;
    int most_zones_;
    int line_ = 0;
    std::size_t count_ = 0;
};

}  // namespace

float LegacyFile::value(LegacySection section, std::size_t zone, DayCount date) const {
    const auto& series = values.at(static_cast<std::size_t>(section));
    const std::size_t index = section == LegacySection::Runoff ? 0 : zone;
    return series.at(index).at(static_cast<std::size_t>(day_of_year(date)));
}

LegacyFile read_legacy_file(std::string_view text) {
    if (text.substr(0, k_byte_order_mark.size()) == k_byte_order_mark)
        text.remove_prefix(k_byte_order_mark.size());
    LegacyFile file;
    LegacyText lines{text};
    read_legacy_header(lines, file);
    for (int section = 0; section < k_legacy_sections; ++section) SectionReader{file, section}.read(lines);
    return file;
}

}  // namespace nivora
