// Paints pages on a printer or into a PDF file. All of it needs a QGuiApplication, for its fonts.
#pragma once

#include "reports/printed_page.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

class QPagedPaintDevice;

namespace nivora {

/// A paged device of Qt, as the layout of pages sees it. Margins are kept here and not set on the device, so
/// that positions count from the paper's edges; those below what the device can print are raised to it.
class PaintedDevice : public PagedDevice {
public:
    /// @param device lives as long as this; not yet painted on
    explicit PaintedDevice(QPagedPaintDevice& device);
    ~PaintedDevice() override;

    bool set_font_name(const std::string& family) override;
    bool set_font_size(double points) override;
    bool set_bold(bool bold) override;
    bool set_orientation(std::int32_t orientation) override;
    bool set_margins(const std::array<float, 4>& inches) override;
    bool set_page_size(const std::string& paper) override;
    [[nodiscard]] PageMetrics page() const override;
    [[nodiscard]] double line_height(const PrintFont& font) const override;
    [[nodiscard]] double text_width(const PrintFont& font, bool bold, std::string_view text) const override;

    [[nodiscard]] QPagedPaintDevice& device() const { return device_; }
    /// The device's units in a twip, across and down.
    [[nodiscard]] double across() const;
    [[nodiscard]] double down() const;
    /// A font of a print with its metrics on this device.
    struct Face;
    [[nodiscard]] const Face& face(const PrintFont& font, bool bold) const;

private:
    QPagedPaintDevice& device_;
    std::array<float, 4> margins_{};
    mutable std::vector<std::unique_ptr<Face>> faces_;  ///< those asked for so far
};

/// Paints a job's pages, laid out for this device.
///
/// @param go_on asked before each page, its number from 1; false ends the job early. May be empty.
/// @return whether all pages were painted; false also where the device refused to begin or to turn a page
[[nodiscard]] bool paint_pages(PaintedDevice& device, const PrintedJob& job,
                               const std::function<bool(int page)>& go_on = {});

/// Lays out a job for a device that was set up, or says why it cannot.
using LayOut = std::function<std::variant<PrintedJob, Message>(const PagedDevice& device)>;

/// Writes a PDF file whole or not at all: it appears, or replaces an older file, once it is complete.
///
/// @return what is told where it could not be written, or what the set-up or the layout refused
[[nodiscard]] std::optional<Message> write_pdf(const std::filesystem::path& file, const PageSetup& setup,
                                               const LayOut& lay_out);

}  // namespace nivora
