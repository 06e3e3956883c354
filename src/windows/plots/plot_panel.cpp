#include "windows/plots/plot_panel.h"

#include "widgets/accessible_elements.h"
#include "widgets/nivora_window.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

namespace nivora {
namespace {

/// An element over a text of a picture: the picture shows the text, a screen reader reads it here.
class PictureText : public QLabel {
public:
    explicit PictureText(QWidget* parent) : QLabel(parent) {
        setTextFormat(Qt::PlainText);
        setMouseTracking(true);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {}
};

}  // namespace

PlotPanel::PlotPanel(const QString& name, const QString& accessible_name, QWidget* parent) : QWidget(parent) {
    setObjectName(name);
    setAccessibleName(accessible_name);
    set_accessible_role(*this, QAccessible::Grouping);
    setMouseTracking(true);  // to notice a lost release
    setCursor(Qt::OpenHandCursor);
    hide();
}

void PlotPanel::show_picture(const QImage& picture, const std::vector<PanelText>& texts) {
    picture_ = picture;
    texts_ = texts;
    while (labels_.size() < texts_.size()) labels_.push_back(new PictureText(this));
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        if (i < texts_.size()) place_text(*labels_[i], texts_[i]);
        labels_[i]->setVisible(i < texts_.size());
    }
    show_pointers();
    update();
}

void PlotPanel::place_text(QLabel& label, const PanelText& text) {
    label.setObjectName(text.name);
    label.setText(text.text);
    label.setToolTip(text.line > 0 ? line_tip_ : QString{});
    label.setGeometry(text.box.toAlignedRect());
    NivoraWindow::set_help(&label, text.help);
}

/// A hand that opens over what can be dragged, and points at what can be clicked.
void PlotPanel::show_pointers() {
    setCursor(dragged_ ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
    for (std::size_t i = 0; i < texts_.size(); ++i) {
        if (texts_[i].line > 0 && !dragged_) {
            labels_[i]->setCursor(Qt::PointingHandCursor);
        } else {
            labels_[i]->unsetCursor();
        }
    }
}

bool PlotPanel::give_up_drag() {
    pressed_ = false;
    if (!std::exchange(dragged_, false)) return false;
    move(began_);
    show_pointers();
    return true;
}

/// The line whose name is at a place; 0 if none is.
int PlotPanel::line_at(QPointF place) const {
    const auto text =
        std::ranges::find_if(texts_, [&](const PanelText& known) { return known.box.contains(place); });
    return text == texts_.end() ? 0 : text->line;
}

bool PlotPanel::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Hide) give_up_drag();
    return QWidget::event(event);
}

void PlotPanel::enterEvent(QEnterEvent* event) {
    QWidget::enterEvent(event);
    emit entered();
}

void PlotPanel::paintEvent(QPaintEvent* /*event*/) { QPainter(this).drawImage(QPoint(0, 0), picture_); }

void PlotPanel::mousePressEvent(QMouseEvent* event) {
    if (event->buttons() != Qt::LeftButton) {
        give_up_drag();
        return;
    }
    pressed_ = true;
    pressed_line_ = line_at(event->position());
    grip_ = event->globalPosition().toPoint();
    began_ = pos();
}

/// A click during which the hand shakes a little is no drag.
void PlotPanel::mouseMoveEvent(QMouseEvent* event) {
    if (!pressed_) return;
    if (!event->buttons().testFlag(Qt::LeftButton)) {  // its release went elsewhere
        give_up_drag();
        return;
    }
    const QPoint place = event->globalPosition().toPoint();
    if (!dragged_ && (place - grip_).manhattanLength() >= QApplication::startDragDistance()) {
        dragged_ = true;
        show_pointers();
    }
    if (dragged_) drag_to(place);
}

void PlotPanel::drag_to(QPoint global) {
    const QPoint wanted = began_ + global - grip_;
    const QSize room = parentWidget()->size() - frame().size();
    move(std::clamp(wanted.x(), -k_rim, std::max(0, room.width()) - k_rim),
         std::clamp(wanted.y(), -k_rim, std::max(0, room.height()) - k_rim));
}

void PlotPanel::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !std::exchange(pressed_, false)) return;
    if (std::exchange(dragged_, false)) {
        show_pointers();
        emit dropped();
        return;
    }
    const int line = line_at(event->position());
    if (line > 0 && line == pressed_line_) emit line_chosen(line, event->globalPosition().toPoint());
}

}  // namespace nivora
