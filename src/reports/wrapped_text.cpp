#include "reports/wrapped_text.h"

#include "base/text.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace nivora {
namespace {

constexpr std::size_t k_measured_bytes = 4096;  ///< of a line; no page is wide enough for a longer one
constexpr std::size_t k_first_guess = 16;       ///< characters

/// The lines of a text, without their ends.
std::vector<std::string_view> lines_of(std::string_view text) {
    std::vector<std::string_view> lines;
    for (;;) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back(line);
        if (end == std::string_view::npos) return lines;
        text.remove_prefix(end + 1);
    }
}

/// The most characters of a line that fit a width, at least one.
std::string_view fitting_part(const LineMeasure& measure, std::string_view line, double width, bool bold) {
    const auto fits = [&](std::size_t characters) {
        return measure.width(first_characters(line, characters), bold) <= width;
    };
    std::size_t too_many = k_first_guess;
    while (first_characters(line, too_many).size() < line.size() && fits(too_many)) too_many *= 2;
    std::size_t fitting = 1;
    while (fitting + 1 < too_many) {
        const std::size_t middle = (fitting + too_many) / 2;
        (fits(middle) ? fitting : too_many) = middle;
    }
    return first_characters(line, fitting);
}

void wrap_line(std::vector<std::string>& lines, const LineMeasure& measure, std::string_view line,
               double width, bool bold) {
    while (measure.widest_line(line, bold) > width) {
        std::string_view part = fitting_part(measure, line, width, bold);
        const bool within_word = part.size() < line.size() && line[part.size()] != ' ';
        const std::size_t blank = part.rfind(' ');
        if (within_word && blank != std::string_view::npos && !trimmed(part.substr(0, blank)).empty()) {
            part = part.substr(0, blank);
        }
        lines.emplace_back(right_trimmed(part));
        line.remove_prefix(part.size());
        line.remove_prefix(std::min(line.size(), line.find_first_not_of(' ')));
        if (line.empty()) return;
        if (first_characters(line, 1).size() == line.size()) break;
    }
    lines.emplace_back(right_trimmed(line));
}

}  // namespace

LineMeasure::LineMeasure(const PagedDevice& device, PrintFont font)
    : device_(device), font_(std::move(font)) {}

double LineMeasure::width(std::string_view text, bool bold) const {
    return text.empty() ? 0.0 : device_.text_width(font_, bold, text);
}

double LineMeasure::widest_line(std::string_view text, bool bold) const {
    double widest = 0.0;
    for (const std::string_view line : lines_of(text)) {
        if (line.size() > k_measured_bytes) return std::numeric_limits<double>::max();
        widest = std::max(widest, width(line, bold));
    }
    return widest;
}

std::vector<std::string> wrapped(const LineMeasure& measure, std::string_view text, double width, bool bold) {
    std::vector<std::string> lines;
    for (const std::string_view line : lines_of(text)) wrap_line(lines, measure, line, width, bold);
    return lines;
}

}  // namespace nivora
