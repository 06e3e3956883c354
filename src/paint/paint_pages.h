// Paints pages on a printer or into a PDF file. Everything here needs a QGuiApplication, for its fonts.
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

/// A paged device of Qt as the layout of pages needs it. It keeps the margins itself and sets none on the
/// device, so that positions count from the edges of the paper; a margin that the device cannot print is
/// raised to the smallest one that it can.
class PaintedDevice : public PagedDevice {
public:
    /// @param device must outlive this object; nothing is painted on it yet
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
    /// Units of the device per twip, across and down.
    [[nodiscard]] double across() const;
    [[nodiscard]] double down() const;
    /// A font with its metrics on this device.
    struct Face;
    [[nodiscard]] const Face& face(const PrintFont& font, bool bold) const;

private:
    QPagedPaintDevice& device_;
    std::array<float, 4> margins_{};
    mutable std::vector<std::unique_ptr<Face>> faces_;  ///< a cache
};

/// Paints the pages of a job that was laid out for this device.
///
/// @param go_on called before each page with its number, from 1; false ends the job. May be empty.
/// @return whether all pages were painted; false also if the device refuses to begin or to start a page
[[nodiscard]] bool paint_pages(PaintedDevice& device, const PrintedJob& job,
                               const std::function<bool(int page)>& go_on = {});

/// Acts on a device that was set up; a message says why it can't.
using PdfWork = std::function<std::optional<Message>(PaintedDevice& device)>;

/// Acts on the page that a PDF file would have; nothing is written.
///
/// @return what the set-up or the work refused
[[nodiscard]] std::optional<Message> with_pdf_page(const PageSetup& setup, const PdfWork& work);

/// Writes a complete PDF file: it appears, or replaces an older file, once it is complete.
///
/// @param title as PDF readers show it
/// @param paint paints its pages
/// @param never files that must not be replaced, whatever name or link leads to them
/// @return the error, or what the set-up or `paint` refused; nothing if the file was written
[[nodiscard]] std::optional<Message> write_pdf(const std::filesystem::path& file, const PageSetup& setup,
                                               const std::string& title, const PdfWork& paint,
                                               const std::vector<std::filesystem::path>& never = {});

/// What a page set-up refuses for a print into a file, be it PDF or text: a setting of the page, or margins
/// that leave no room for reports. Nothing if such a file can be printed.
///
/// @param window the name of the window that prints, as in margin_refusal
[[nodiscard]] std::optional<Message> file_page_refusal(const PageSetup& setup, const std::string& window);

/// Writes the pages of a job as a complete PDF file.
///
/// @param never as above
/// @return the error, or what the set-up or the layout refused; nothing if the file was written
[[nodiscard]] std::optional<Message> write_pdf(const std::filesystem::path& file, const PageSetup& setup,
                                               const LayOut& lay_out,
                                               const std::vector<std::filesystem::path>& never = {});

}  // namespace nivora
