// A printed page: the place of each text, in twips, and the checks before pages are laid out.
#pragma once

#include "base/dialogs.h"
#include "reports/page_setup.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace nivora {

/// 1440 to an inch: the unit of all page arithmetic.
inline constexpr int k_twips_an_inch = 1440;

/// The font of a print. A device that lacks the family takes the nearest one.
struct PrintFont {
    std::string family = {};
    double points = 0.0;
    bool fixed_pitch = false;

    bool operator==(const PrintFont&) const = default;
};

/// The font of reports, always bold. If a device refuses the first name, it is set to the second.
inline constexpr const char* k_report_font = "Courier New";
inline constexpr const char* k_report_font_fallback = "Courier";
inline constexpr double k_report_points = 7.25;
[[nodiscard]] inline PrintFont report_font(double points = k_report_points) {
    return {.family = k_report_font, .points = points, .fixed_pitch = true};
}

/// The font of printed grids.
inline constexpr const char* k_sheet_font = "MS Sans Serif";
inline constexpr double k_sheet_points = 8.25;

/// The paper of a device and its margins, in twips.
struct PageMetrics {
    int paper_width = 0;
    int paper_height = 0;
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    /// The room between the margins; 0 or less if they take up the whole page.
    [[nodiscard]] int usable_width() const { return paper_width - left - right; }
    [[nodiscard]] int usable_height() const { return paper_height - top - bottom; }

    bool operator==(const PageMetrics&) const = default;
};

/// A text on one line.
struct PrintedText {
    double x = 0.0;  ///< of its left end, from the paper's left edge
    double y = 0.0;  ///< of the top of its line, from the paper's upper edge
    std::string text = {};
    bool bold = false;
    bool underline = false;
    /// The width of the text. If a font draws it wider, it is compressed, so that it never overlaps the next
    /// text or a margin.
    double width = 0.0;

    bool operator==(const PrintedText&) const = default;
};

/// A thin straight line.
struct PrintedRule {
    double x1 = 0.0, y1 = 0.0, x2 = 0.0, y2 = 0.0;

    bool operator==(const PrintedRule&) const = default;
};

struct PrintedPage {
    std::vector<PrintedText> texts = {};
    std::vector<PrintedRule> rules = {};
};

/// The content of one print.
struct PrintedJob {
    std::string name = {};  ///< as a print queue, or the title of a PDF, shows it
    PrintFont font = {};    ///< of all texts
    std::vector<PrintedPage> pages = {};
};

/// What the layout of pages needs to know of a printer or of a file of pages. Each set_ function returns
/// whether the device accepted the setting.
class PagedDevice {
public:
    PagedDevice() = default;
    PagedDevice(const PagedDevice&) = delete;
    PagedDevice& operator=(const PagedDevice&) = delete;
    virtual ~PagedDevice() = default;

    /// Sets a fixed-pitch font, or the nearest available one.
    virtual bool set_font_name(const std::string& family) = 0;
    virtual bool set_font_size(double points) = 0;
    virtual bool set_bold(bool bold) = 0;
    virtual bool set_orientation(std::int32_t orientation) = 0;
    /// @param inches left, top, right, bottom; 0 for one that was not set,
    /// which is 1 inch, as in the page dialog
    virtual bool set_margins(const std::array<float, 4>& inches) = 0;
    /// Sets the paper, in the form of PageSetup::paper; the device's own paper if that is empty.
    virtual bool set_page_size(const std::string& paper) = 0;

    /// The page with the present settings.
    [[nodiscard]] virtual PageMetrics page() const = 0;
    /// The distance from line to line, twips.
    [[nodiscard]] virtual double line_height(const PrintFont& font) const = 0;
    /// The width of a text on one line, twips.
    [[nodiscard]] virtual double text_width(const PrintFont& font, bool bold,
                                            std::string_view text) const = 0;
};

/// Lays out a job for a device that was set up, or returns the message that says why it cannot.
using LayOut = std::function<std::variant<PrintedJob, Message>(const PagedDevice& device)>;

/// Sets a device up for reports: font, size, bold, orientation, margins, paper, in this order.
/// @return the message about the first setting that the device refuses; nothing if it accepts all
[[nodiscard]] std::optional<Message> Printer_Setup(PagedDevice& device, const PageSetup& setup);

/// The refusal of a page that is too narrow or too low for reports; nothing if they fit.
///
/// @param window the name of the window that prints: the message tells where to change the margins, and
///               "frmFileDisp" has a page set-up of its own
[[nodiscard]] std::optional<Message> margin_refusal(const PagedDevice& device, const std::string& window);

/// The message about a printer that takes no page at all.
[[nodiscard]] Message printer_not_ready(int number);
/// The message about an error during a print.
[[nodiscard]] Message print_error(const std::string& text, int number);

}  // namespace nivora
