#include "shell/help_search.h"

#include "widgets/nivora_window.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

namespace nivora {
namespace {

constexpr int k_box_help = 12;

bool is_enter(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter; }

}  // namespace

HelpSearch::HelpSearch(QWidget* parent)
    : QWidget(parent), box_(new QLineEdit(this)), outcome_(new QLabel(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 4, 0, 0);
    auto* caption = new QLabel(QStringLiteral("Find:"), this);
    caption->setBuddy(box_);
    box_->setObjectName(QStringLiteral("txtFind"));
    box_->setAccessibleName(QStringLiteral("Find"));
    box_->setToolTip(QStringLiteral("Enter: next place, Shift+Enter: the one before, Esc: close"));
    box_->setClearButtonEnabled(true);
    box_->installEventFilter(this);
    NivoraWindow::set_help(this, k_box_help);
    outcome_->setObjectName(QStringLiteral("lblFind"));
    row->addWidget(caption);
    row->addWidget(box_, 2);
    row->addWidget(outcome_, 1);
    connect(box_, &QLineEdit::textEdited, this, [this] { show_outcome({}); });
    hide();
}

void HelpSearch::open() {
    show();
    box_->setFocus(Qt::ShortcutFocusReason);
    box_->selectAll();
}

QString HelpSearch::wanted() const { return box_->text(); }

void HelpSearch::show_outcome(const QString& text) { outcome_->setText(text); }

/// Escape closes the window unless the box takes it before.
bool HelpSearch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool escape = key->key() == Qt::Key_Escape;
    if (!escape && !is_enter(key->key())) return QWidget::eventFilter(watched, event);
    event->accept();
    if (event->type() == QEvent::ShortcutOverride) return true;
    if (escape) {
        hide();
        emit closed();
    } else {
        emit asked((key->modifiers() & Qt::ShiftModifier) != 0);
    }
    return true;
}

}  // namespace nivora
