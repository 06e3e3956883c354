#include "reports/text_pages.h"

#include "base/text.h"
#include "reports/wrapped_text.h"

#include <algorithm>

namespace nivora {
namespace {

/// The lines of title and rule at the head of a page, and those of its foot.
constexpr int k_head_lines = 2;
constexpr int k_foot_lines = 2;

}  // namespace

PrintedJob lay_out_text(const PagedDevice& device, const TextPrint& print) {
    const PageMetrics page = device.page();
    const double height = device.line_height(print.font);
    const int fitting = static_cast<int>(page.usable_height() / height) - k_head_lines - k_foot_lines;
    const auto lines_a_page = static_cast<std::size_t>(std::max(1, fitting));
    const auto lines =
        wrapped(LineMeasure{device, print.font}, right_trimmed(print.text), page.usable_width(), false);
    const std::size_t pages = std::max<std::size_t>(1, (lines.size() + lines_a_page - 1) / lines_a_page);
    const auto usable = static_cast<double>(page.usable_width());
    const double rule = page.top + 1.5 * height;

    PrintedJob job{.name = print.name, .font = print.font};
    for (std::size_t number = 0; number < pages; ++number) {
        PrintedPage printed;
        printed.texts.push_back(
            {.x = static_cast<double>(page.left),
             .y = static_cast<double>(page.top),
             .text = print.title,
             .bold = true,
             .width = std::min(usable, device.text_width(print.font, true, print.title))});
        printed.rules.push_back(
            {static_cast<double>(page.left), rule, static_cast<double>(page.left) + usable, rule});
        double y = page.top + k_head_lines * height;
        const std::size_t end = std::min(lines.size(), (number + 1) * lines_a_page);
        for (std::size_t at = number * lines_a_page; at < end; ++at, y += height) {
            if (lines[at].empty()) continue;
            printed.texts.push_back({.x = static_cast<double>(page.left),
                                     .y = y,
                                     .text = lines[at],
                                     .width = device.text_width(print.font, false, lines[at])});
        }
        const std::string foot = "Page " + std::to_string(number + 1) + " of " + std::to_string(pages);
        const double width = device.text_width(print.font, false, foot);
        printed.texts.push_back({.x = page.left + (usable - width) / 2.0,
                                 .y = page.paper_height - page.bottom - height,
                                 .text = foot,
                                 .width = width});
        job.pages.push_back(std::move(printed));
    }
    return job;
}

}  // namespace nivora
