#include "reports/printed_page.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

constexpr std::size_t k_checked_hyphens = 80;
constexpr int k_least_lines = 40;
constexpr double k_rounding = 1e-6;  ///< of sums of fractions of a twip
constexpr const char* k_margin_title = "Nivora margin definition error";

std::string where_margins_change(const std::string& window) {
    return window == "frmFileDisp"
               ? "Click Print/Page Setup to change your margin definition."
               : "Click File/Page Setup on the main window menu to change your margin definition.";
}

Message refusal(std::string text) { return Message{.text = std::move(text), .icon = Icon::Stop}; }

}  // namespace

std::optional<Message> Printer_Setup(PagedDevice& device, const PageSetup& setup) {
    if (!device.set_font_name(k_report_font) && !device.set_font_name(k_report_font_fallback)) {
        return refusal("Unable to set the printer font (Courier New)");
    }
    if (!device.set_font_size(k_report_points)) {
        return refusal("Unable to set the printer fontsize (7.25)");
    }
    if (!device.set_bold(true)) return refusal("Unable to set the printer font to 'Bold'");
    if (!device.set_orientation(setup.orientation)) {
        return refusal("Unable to set the printer page orientation ");
    }
    if (!device.set_margins(setup.margins)) return refusal("Unable to set the printer margin");
    if (!device.set_page_size(setup.paper)) {
        return refusal("Unable to initialize the printer pagesize/position.");
    }
    return std::nullopt;
}

std::optional<Message> margin_refusal(const PagedDevice& device, const std::string& window) {
    const PageMetrics page = device.page();
    const PrintFont font = report_font();
    const double hyphens = device.text_width(font, true, std::string(k_checked_hyphens, '-'));
    if (hyphens + page.left + page.right > page.paper_width + k_rounding) {
        return Message{.text = "Nivora reports are too wide for the current horizontal margin definition.\n" +
                               where_margins_change(window),
                       .title = k_margin_title,
                       .icon = Icon::Stop};
    }
    const double fitting = std::floor(page.usable_height() / device.line_height(font) + k_rounding);
    const int lines = static_cast<int>(std::max(0.0, fitting));
    if (lines >= k_least_lines) return std::nullopt;
    return Message{.text = fmt::format("The Nivora recommended minimum page height is 40 lines.  The current "
                                       "vertical margin definition results in a {} line page.\n{}",
                                       lines, where_margins_change(window)),
                   .title = k_margin_title};
}

Message printer_not_ready(int number) {
    return Message{.text = fmt::format(" Printer not ready, error={} - request ignored ", number),
                   .title = "Print"};
}

Message print_error(const std::string& text, int number) {
    return Message{.text = fmt::format("{}, Error Code #{}.  Error raised during print request (PrintOut) ",
                                       text, number),
                   .title = "Printout subroutine error trap"};
}

}  // namespace nivora
