// A print dialog that answers from a script, and a printer that keeps the texts of its pages.
#pragma once

#include "paint/page_layout.h"
#include "widgets/printing.h"

#include <QBuffer>
#include <QPaintEngine>
#include <QPainter>
#include <QPdfWriter>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace nivora {

/// A text as it was painted: where its baseline begins, and its width,
/// in points from the corner of the paper.
struct RecordedText {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    std::string text;
    bool bold = false;
    bool underline = false;
    std::string font = {};  ///< its family
    double points = 0.0;
};

/// What was printed, page by page.
struct RecordedJob {
    std::string printer;
    double paper_width = 0.0;  ///< points
    double paper_height = 0.0;
    std::vector<std::vector<RecordedText>> pages;

    /// The texts of a page, each on a line of its own, in the order of their painting.
    [[nodiscard]] std::string page(std::size_t index) const {
        std::string texts;
        for (const RecordedText& text : pages.at(index)) texts += text.text + "\n";
        return texts;
    }
};

/// Records texts; lines and areas are ignored.
class RecordingEngine : public QPaintEngine {
public:
    explicit RecordingEngine(RecordedJob& job) : QPaintEngine(QPaintEngine::AllFeatures), job_(job) {}

    bool begin(QPaintDevice* device) override {
        scale_ = 72.0 / device->logicalDpiY();
        job_.paper_width = device->width() * scale_;
        job_.paper_height = device->height() * scale_;
        job_.pages.emplace_back();
        return true;
    }
    bool end() override { return true; }
    void updateState(const QPaintEngineState& changed) override {
        if ((changed.state() & DirtyTransform) != 0) transform_ = changed.transform();
    }
    void drawTextItem(const QPointF& place, const QTextItem& item) override {
        const QPointF at = transform_.map(place) * scale_;
        job_.pages.back().push_back({.x = at.x(),
                                     .y = at.y(),
                                     .width = item.width() * transform_.m11() * scale_,
                                     .text = item.text().toUtf8().toStdString(),
                                     .bold = item.font().bold(),
                                     .underline = item.font().underline(),
                                     .font = item.font().family().toStdString(),
                                     .points = item.font().pointSizeF()});
    }
    void drawPixmap(const QRectF& /*to*/, const QPixmap& /*picture*/, const QRectF& /*from*/) override {}
    void drawPath(const QPainterPath& /*path*/) override {}
    using QPaintEngine::drawPolygon;
    void drawPolygon(const QPointF* /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}
    [[nodiscard]] Type type() const override { return User; }

private:
    RecordedJob& job_;
    QTransform transform_;
    double scale_ = 1.0;
};

/// The settings that a recording printer refuses.
struct RefusedSettings {
    bool orientation = false;
    bool paper = false;
    bool resolution = false;  ///< it has no dots per inch, so that no font has a size
};

/// A printer that records instead of printing. It can run out of paper after a page.
class RecordingPrinter : public QPdfWriter {
public:
    RecordingPrinter(RecordedJob& job, std::size_t sheets, const RefusedSettings& refused,
                     std::function<void()> before_page, QIODevice* nowhere)
        : QPdfWriter(nowhere),
          job_(job),
          engine_(job),
          sheets_(sheets),
          refused_(refused),
          before_page_(std::move(before_page)) {}

    bool newPage() override {
        if (before_page_) before_page_();
        if (job_.pages.size() >= sheets_) return false;
        job_.pages.emplace_back();
        return true;
    }
    bool setPageOrientation(QPageLayout::Orientation orientation) override {
        return !refused_.orientation && QPdfWriter::setPageOrientation(orientation);
    }
    bool setPageSize(const QPageSize& size) override {
        return !refused_.paper && QPdfWriter::setPageSize(size);
    }

protected:
    [[nodiscard]] QPaintEngine* paintEngine() const override { return sheets_ == 0 ? nullptr : &engine_; }
    [[nodiscard]] int metric(PaintDeviceMetric which) const override {
        const bool resolution = which == PdmDpiX || which == PdmDpiY;
        return resolution && refused_.resolution ? 0 : QPdfWriter::metric(which);
    }

private:
    RecordedJob& job_;
    mutable RecordingEngine engine_;
    std::size_t sheets_;
    RefusedSettings refused_;
    std::function<void()> before_page_;
};

/// Answers the print dialog in the order of its script; if that is empty, a print goes to the printer.
class RecordedPrinters : public Printers {
public:
    std::optional<PrintChoice> choose(QWidget* window, const PrintOffer& offer) override {
        window_ = window;
        offered_printers_.push_back(offer.page.printer);
        text_offered_ = offer.text;
        std::optional<PrintTarget> target = PrintTarget::Printer;
        if (!script_.empty()) {
            target = script_.front();
            script_.pop_front();
        }
        if (!target) return std::nullopt;
        PrintChoice choice;
        choice.target = *target;
        if (*target != PrintTarget::Printer) return choice;
        choice.printer = name;
        choice.page = offer.page;
        if (vanished) return choice;
        jobs_.push_back({.printer = name, .pages = {}});
        auto printer =
            std::make_unique<RecordingPrinter>(jobs_.back(), sheets, refused, before_page, &nowhere_);
        printer->setResolution(1200);
        printer->setPageLayout(page_of(offer.page));
        choice.device = std::move(printer);
        choice.has_failed = [this] { return jams; };
        choice.abort = [this] { ++aborted_jobs_; };
        return choice;
    }

    /// Adds the answer for a next print: a target, or nothing to cancel it.
    RecordedPrinters& then(std::optional<PrintTarget> target) {
        script_.push_back(target);
        return *this;
    }

    /// What was printed, first job first.
    [[nodiscard]] const std::deque<RecordedJob>& jobs() const { return jobs_; }
    /// The printer that each shown dialog offered.
    [[nodiscard]] const std::vector<std::string>& offered_printers() const { return offered_printers_; }
    /// Whether the dialog that was last shown offered a text file.
    [[nodiscard]] bool text_offered() const { return text_offered_; }
    /// The window in front of which the dialog was last shown.
    [[nodiscard]] const QWidget* window() const { return window_; }
    [[nodiscard]] int aborted_jobs() const { return aborted_jobs_; }

    std::string name = "Laser";
    std::size_t sheets = 1000;  ///< pages that it prints
    bool vanished = false;      ///< it is removed after it was chosen
    bool jams = false;          ///< it reports an error after the print
    RefusedSettings refused;
    std::function<void()> before_page;  ///< called before each page except the first

private:
    std::deque<std::optional<PrintTarget>> script_;
    std::deque<RecordedJob> jobs_;
    std::vector<std::string> offered_printers_;
    const QWidget* window_ = nullptr;
    bool text_offered_ = false;
    int aborted_jobs_ = 0;
    QBuffer nowhere_;
};

}  // namespace nivora
