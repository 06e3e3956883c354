#include "paint/paint_pages.h"

#include "base/durable_file.h"
#include "base/text.h"
#include "paint/page_layout.h"
#include "paint/print_fonts.h"
#include "paint/qt_text.h"

#include <QBuffer>
#include <QByteArray>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>
#include <cmath>
#include <string_view>

namespace nivora {

struct PaintedDevice::Face {
    PrintFont wanted;
    bool bold = false;
    QFont font;
    QFontMetricsF metrics;
    double column = 0.0;  ///< the width of a character of a fixed-pitch font, units of the device
};

namespace {

constexpr double k_twips_a_point = 20.0;
constexpr double k_rule_twips = 10.0;
constexpr int k_pdf_dots_an_inch = 1200;
constexpr double k_same_width = 0.5;  ///< units of the device

bool is_ascii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

int margin_in_twips(float inches, double least_points) {
    const double wanted = inches == 0.0F ? k_default_margin : static_cast<double>(inches);
    return static_cast<int>(std::lround(std::max(wanted * k_twips_an_inch, least_points * k_twips_a_point)));
}

void give_page(QPdfWriter& writer, const PageSetup& setup) {
    writer.setResolution(k_pdf_dots_an_inch);
    writer.setPageLayout(page_of(setup));
}

/// Paints the texts and rules of pages.
class PagePainter {
public:
    PagePainter(PaintedDevice& device, const PrintFont& font) : device_(device), font_(font) {}

    bool begin() { return painter_.begin(&device_.device()); }
    bool end() { return painter_.end(); }

    void paint(const PrintedPage& page) {
        for (const PrintedText& text : page.texts) {
            if (font_.fixed_pitch) {
                paint_columns(text);
            } else {
                paint_text(text);
            }
        }
        QPen pen(Qt::black);
        pen.setWidthF(k_rule_twips * device_.down());
        painter_.setPen(pen);
        for (const PrintedRule& rule : page.rules) {
            painter_.drawLine(QPointF(rule.x1 * device_.across(), rule.y1 * device_.down()),
                              QPointF(rule.x2 * device_.across(), rule.y2 * device_.down()));
        }
    }

private:
    /// Paints a line of a fixed-pitch text. If the font lacks a letter, Qt takes it from another font, in
    /// which it may be wider. Each word is then painted at its own column, so that the words after it stay in
    /// theirs.
    void paint_columns(const PrintedText& text) {
        const PaintedDevice::Face& face = select(text);
        const double x = text.x * device_.across();
        const auto width = [&](std::string_view part) {
            return static_cast<double>(character_count(part)) * face.column;
        };
        const QString whole = qt_text(text.text);
        const bool keeps_columns = is_ascii(text.text) || std::abs(face.metrics.horizontalAdvance(whole) -
                                                                   width(text.text)) <= k_same_width;
        if (keeps_columns) {
            painter_.drawText(QPointF(x, baseline(text, face)), whole);
            return;
        }
        const std::string_view line = text.text;
        for (std::size_t at = line.find_first_not_of(' '); at < line.size();) {
            const std::string_view word = line.substr(at, line.find(' ', at) - at);
            draw(face, qt_text(word), QPointF(x + width(line.substr(0, at)), baseline(text, face)),
                 width(word));
            at = line.find_first_not_of(' ', at + word.size());
        }
    }

    void paint_text(const PrintedText& text) {
        const PaintedDevice::Face& face = select(text);
        draw(face, qt_text(text.text), QPointF(text.x * device_.across(), baseline(text, face)),
             text.width * device_.across());
    }

    /// Draws a text, condensed if it is wider than its room.
    void draw(const PaintedDevice::Face& face, const QString& text, const QPointF& at, double room) {
        const double width = face.metrics.horizontalAdvance(text);
        if (width <= room + k_same_width || room <= 0.0) {
            painter_.drawText(at, text);
            return;
        }
        painter_.save();
        painter_.translate(at);
        painter_.scale(room / width, 1.0);
        painter_.drawText(QPointF(0.0, 0.0), text);
        painter_.restore();
    }

    const PaintedDevice::Face& select(const PrintedText& text) {
        if (selected_ == nullptr || selected_->bold != text.bold || underline_ != text.underline) {
            selected_ = &device_.face(font_, text.bold);
            underline_ = text.underline;
            QFont font = selected_->font;
            font.setUnderline(underline_);
            painter_.setFont(font);
        }
        return *selected_;
    }

    [[nodiscard]] double baseline(const PrintedText& text, const PaintedDevice::Face& face) const {
        return text.y * device_.down() + face.metrics.ascent();
    }

    PaintedDevice& device_;
    const PrintFont& font_;
    QPainter painter_;
    const PaintedDevice::Face* selected_ = nullptr;  ///< the current font of the painter
    bool underline_ = false;
};

}  // namespace

PaintedDevice::PaintedDevice(QPagedPaintDevice& device) : device_(device) {
    QPageLayout layout = device_.pageLayout();
    layout.setMode(QPageLayout::FullPageMode);
    device_.setPageLayout(layout);
}

PaintedDevice::~PaintedDevice() = default;

bool PaintedDevice::set_font_name(const std::string& family) {
    return !fixed_pitch_family(QString::fromStdString(family)).isEmpty();
}

bool PaintedDevice::set_font_size(double points) {
    // A device that has lost its resolution gives an infinite height or none.
    const double height = line_height({.family = k_report_font, .points = points, .fixed_pitch = true});
    return std::isfinite(height) && height > 0.0;
}

bool PaintedDevice::set_bold(bool bold) { return print_font(report_font(), bold).bold() == bold; }

bool PaintedDevice::set_orientation(std::int32_t orientation) {
    return device_.setPageOrientation(orientation == k_landscape ? QPageLayout::Landscape
                                                                 : QPageLayout::Portrait);
}

bool PaintedDevice::set_margins(const std::array<float, 4>& inches) {
    const auto possible = [](float inch) { return std::isfinite(inch) && inch >= 0.0F; };
    if (!std::all_of(inches.begin(), inches.end(), possible)) return false;
    margins_ = inches;
    return true;
}

bool PaintedDevice::set_page_size(const std::string& paper) {
    if (paper.empty()) return true;
    PageSetup setup;
    setup.paper = paper;
    return device_.setPageSize(page_of(setup).pageSize());
}

PageMetrics PaintedDevice::page() const {
    const QPageLayout layout = device_.pageLayout();
    const QRectF paper = layout.fullRect(QPageLayout::Point);
    QPageLayout in_points = layout;
    in_points.setUnits(QPageLayout::Point);
    const QMarginsF least = in_points.minimumMargins();
    return {.paper_width = static_cast<int>(std::lround(paper.width() * k_twips_a_point)),
            .paper_height = static_cast<int>(std::lround(paper.height() * k_twips_a_point)),
            .left = margin_in_twips(margins_[0], least.left()),
            .top = margin_in_twips(margins_[1], least.top()),
            .right = margin_in_twips(margins_[2], least.right()),
            .bottom = margin_in_twips(margins_[3], least.bottom())};
}

double PaintedDevice::across() const {
    return static_cast<double>(device_.logicalDpiX()) / static_cast<double>(k_twips_an_inch);
}

double PaintedDevice::down() const {
    return static_cast<double>(device_.logicalDpiY()) / static_cast<double>(k_twips_an_inch);
}

const PaintedDevice::Face& PaintedDevice::face(const PrintFont& font, bool bold) const {
    for (const auto& known : faces_) {
        if (known->bold == bold && known->wanted == font) return *known;
    }
    const QFont face = print_font(font, bold);
    const QFontMetricsF metrics(face, &device_);
    const double column = metrics.horizontalAdvance(QString(80, QLatin1Char('-'))) / 80.0;
    faces_.push_back(std::make_unique<Face>(Face{font, bold, face, metrics, column}));
    return *faces_.back();
}

double PaintedDevice::line_height(const PrintFont& font) const {
    return face(font, true).metrics.height() / down();
}

double PaintedDevice::text_width(const PrintFont& font, bool bold, std::string_view text) const {
    return face(font, bold).metrics.horizontalAdvance(qt_text(text)) / across();
}

bool paint_pages(PaintedDevice& device, const PrintedJob& job, const std::function<bool(int page)>& go_on) {
    if (job.pages.empty()) return true;
    PagePainter painter{device, job.font};
    if (!painter.begin()) return false;
    int number = 0;
    bool whole = true;
    for (const PrintedPage& page : job.pages) {
        ++number;
        whole = (!go_on || go_on(number)) && (number == 1 || device.device().newPage());
        if (!whole) break;
        painter.paint(page);
    }
    return painter.end() && whole;
}

std::optional<Message> with_pdf_page(const PageSetup& setup, const PdfWork& work) {
    QBuffer nowhere;
    nowhere.open(QIODevice::WriteOnly);
    QPdfWriter writer(&nowhere);
    give_page(writer, setup);
    PaintedDevice device{writer};
    if (auto refusal = Printer_Setup(device, setup)) return refusal;
    return work(device);
}

std::optional<Message> file_page_refusal(const PageSetup& setup, const std::string& window) {
    return with_pdf_page(setup, [&](PaintedDevice& device) { return margin_refusal(device, window); });
}

std::optional<Message> write_pdf(const std::filesystem::path& file, const PageSetup& setup,
                                 const std::string& title, const PdfWork& paint,
                                 const std::vector<std::filesystem::path>& never) {
    QByteArray content;
    QBuffer buffer(&content);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        give_page(writer, setup);
        writer.setTitle(qt_text(title));
        writer.setCreator(QString::fromLatin1(k_program_title));
        PaintedDevice device{writer};
        if (auto refusal = Printer_Setup(device, setup)) return refusal;
        if (auto refusal = paint(device)) return refusal;
    }
    try {
        write_whole_file(file, {content.constData(), static_cast<std::size_t>(content.size())}, never);
    } catch (const FileError& error) {
        return Message{.text = error.what(), .icon = Icon::Stop};
    }
    return std::nullopt;
}

std::optional<Message> write_pdf(const std::filesystem::path& file, const PageSetup& setup,
                                 const LayOut& lay_out, const std::vector<std::filesystem::path>& never) {
    PrintedJob job;
    const auto laid_out = with_pdf_page(setup, [&](PaintedDevice& device) -> std::optional<Message> {
        auto made = lay_out(device);
        if (auto* refusal = std::get_if<Message>(&made)) return std::move(*refusal);
        job = std::get<PrintedJob>(std::move(made));
        if (!job.pages.empty()) return std::nullopt;
        return Message{.text = "There is nothing to print.", .icon = Icon::Stop};
    });
    if (laid_out) return laid_out;
    const auto paint = [&](PaintedDevice& device) -> std::optional<Message> {
        if (paint_pages(device, job)) return std::nullopt;
        return Message{.text = "The pages of '" + path_text(file) +
                               "' cannot be drawn. The file was not written; try again with fewer reports.",
                       .icon = Icon::Stop};
    };
    return write_pdf(file, setup, job.name, paint, never);
}

}  // namespace nivora
