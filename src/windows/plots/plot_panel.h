// A panel over a plot: the legend or the run summary.
#pragma once

#include <QImage>
#include <QRectF>
#include <QWidget>
#include <vector>

class QLabel;

namespace nivora {

/// A text in the picture of a panel. An element stands over it, by which QuickHelp and screen readers find
/// it.
struct PanelText {
    QString name;  ///< of the element
    QString text;
    QRectF box = {};  ///< in points of the panel
    int help = 0;     ///< help line
    int line = 0;     ///< row of the line table, from 1, if a click chooses it; otherwise 0
};

/// Shows a picture that is painted for it. It can be dragged with the left button; its frame stays inside its
/// parent.
class PlotPanel : public QWidget {
    Q_OBJECT

public:
    /// Points around the frame, for the half of its outline that lies outside of it.
    static constexpr int k_rim = 1;

    PlotPanel(const QString& name, const QString& accessible_name, QWidget* parent);

    /// @param picture of the frame with the rim
    void show_picture(const QImage& picture, const std::vector<PanelText>& texts);
    /// The tool tip of the texts that choose a line.
    void set_line_tip(const QString& tip) { line_tip_ = tip; }
    /// In points of the parent.
    [[nodiscard]] QRect frame() const { return geometry().adjusted(k_rim, k_rim, -k_rim, -k_rim); }
    [[nodiscard]] bool is_dragged() const { return dragged_; }
    /// Puts a panel back that is being dragged; a click that has begun chooses nothing. @return whether the
    /// panel was dragged
    bool give_up_drag();

signals:
    /// The mouse has come over the panel.
    void entered();
    /// The panel stands at its new place.
    void dropped();
    void line_chosen(int line, QPoint at);

protected:
    bool event(QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] int line_at(QPointF place) const;
    void place_text(QLabel& label, const PanelText& text);
    void show_pointers();
    void drag_to(QPoint global);

    QImage picture_;
    QString line_tip_;
    std::vector<PanelText> texts_;
    std::vector<QLabel*> labels_;  ///< at least as many as texts; the others are hidden
    bool pressed_ = false;
    bool dragged_ = false;
    int pressed_line_ = 0;
    QPoint grip_;   ///< where the button went down on the screen
    QPoint began_;  ///< the panel's place then
};

}  // namespace nivora
