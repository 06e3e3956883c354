#include "windows/engine/frmTimeLagDist.h"

#include "base/number_text.h"
#include "base/text.h"
#include "engine/lag_distribution.h"
#include "widgets/qt_text.h"
#include "widgets/window_keys.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace nivora {
namespace {

constexpr int k_help_topic = 12;

QString box_name(int index) { return QStringLiteral("Text1(%1)").arg(index); }

}  // namespace

frmTimeLagDist::frmTimeLagDist(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmTimeLagDist", WindowNumber::frmTimeLagDist, parent),
      total_(new QLabel(this)) {
    setWindowTitle(QStringLiteral("Custom Time Lag Distribution"));
    total_->setObjectName(QStringLiteral("lblDistTotal"));
    set_help(total_, 8);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(make_boxes());
    layout->addStretch(1);
    layout->addWidget(make_buttons());
    set_content(content);
    open_boxes();
}

QWidget* frmTimeLagDist::make_boxes() {
    constexpr std::array<const char*, 7> k_labels{"# of days contributing to a daily melt total (1-6):",
                                                  "Current",
                                                  "Day-1",
                                                  "Day-2",
                                                  "Day-3",
                                                  "Day-4",
                                                  "Day-5"};
    auto* frame = new QWidget(this);
    auto* grid = new QGridLayout(frame);
    for (int i = 0; i < 7; ++i) {
        const auto index = static_cast<std::size_t>(i);
        auto* box = new QLineEdit(frame);
        box->setObjectName(box_name(i));
        box->setMaximumWidth(90);
        box->installEventFilter(this);
        set_help(box, 1 + i);
        auto* label = new QLabel(QString::fromUtf8(k_labels.at(index)), frame);
        label->setBuddy(box);
        set_help(label, 1 + i);
        grid->addWidget(label, i, 0);
        grid->addWidget(box, i, 1);
        boxes_.at(index) = box;
    }
    auto* label = new QLabel(QStringLiteral("Distribution Total (must equal 1.0)"), frame);
    set_help(label, 8);
    grid->addWidget(label, 7, 0);
    grid->addWidget(total_, 7, 1);
    return frame;
}

QWidget* frmTimeLagDist::make_buttons() {
    auto* frame = new QWidget(this);
    auto* layout = new QHBoxLayout(frame);
    layout->addStretch(1);
    constexpr std::array<const char*, 3> k_captions{"&Accept", "&Cancel", "&Help"};
    for (int i = 0; i < 3; ++i) {
        const auto index = static_cast<std::size_t>(i);
        auto* button = new QPushButton(QString::fromUtf8(k_captions.at(index)), frame);
        button->setObjectName(QStringLiteral("Command1(%1)").arg(i));
        button->setAutoDefault(false);
        set_help(button, 9 + i);
        layout->addWidget(button);
        buttons_.at(index) = button;
    }
    set_default_button(buttons_[0]);
    close_on_escape();
    leave_unchecked(buttons_[1]);
    connect(buttons_[0], &QPushButton::clicked, this, &frmTimeLagDist::accept);
    connect(buttons_[1], &QPushButton::clicked, this, &QWidget::close);
    connect(buttons_[2], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    add_key(*this, Qt::Key_F1, *buttons_[2]);
    return frame;
}

void frmTimeLagDist::open_boxes() {
    const auto& distribution = session().run.LagDistribution;
    float sum = 0.0F;
    for (std::size_t i = 0; i < boxes_.size(); ++i) {
        const bool set = distribution.at(i) > 0.0F;
        boxes_.at(i)->setText(set ? to_qt(single_text(distribution.at(i))) : QString{});
        if (i > 0) {
            boxes_.at(i)->setEnabled(set);
            sum += distribution.at(i);
        }
    }
    // Without a distribution all of a day's melt belongs to the day itself.
    if (!(distribution[0] > 0.0F)) boxes_[1]->setText(QStringLiteral("1.0"));
    total_->setText(to_qt(single_text(sum)));
}

int frmTimeLagDist::count() const { return static_cast<int>(leading_number(from_qt(boxes_[0]->text()))); }

std::vector<std::string> frmTimeLagDist::shares() const {
    std::vector<std::string> texts;
    for (int i = 1; i <= std::clamp(count(), 0, k_most_lag_days); ++i) {
        texts.push_back(from_qt(boxes_.at(static_cast<std::size_t>(i))->text()));
    }
    return texts;
}

bool frmTimeLagDist::eventFilter(QObject* watched, QEvent* event) {
    const auto found = std::find(boxes_.begin(), boxes_.end(), watched);
    if (found == boxes_.end()) return NivoraWindow::eventFilter(watched, event);
    const int box = static_cast<int>(found - boxes_.begin());
    if (leaves_box(event) && !telling_) {
        if (box == 0) leave_count();
        if (box > 0) show_total();
    }
    // Typing replaces the content of a box, such as the initial share in the first one.
    if (enters_box(event)) QTimer::singleShot(0, *found, &QLineEdit::selectAll);
    if (event->type() != QEvent::KeyPress) return NivoraWindow::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
        move_on(box);
        return true;
    }
    const QString typed = key->text();
    if (typed.isEmpty() || !typed.front().isPrint()) return false;
    const QString allowed = box == 0 ? QStringLiteral("123456") : QStringLiteral("0123456789.");
    if (allowed.contains(typed.front())) return false;
    QApplication::beep();
    return true;
}

/// Enter moves to the next box that can be filled, and from the last one to Accept.
void frmTimeLagDist::move_on(int box) {
    if (box == 0 && !leave_count()) return;
    const auto next = static_cast<std::size_t>(box + 1);
    if (next < boxes_.size() && boxes_.at(next)->isEnabled()) {
        boxes_.at(next)->setFocus();
    } else {
        buttons_[0]->setFocus();
    }
}

/// @return whether the number of days may stay
bool frmTimeLagDist::leave_count() {
    const std::string text = from_qt(boxes_[0]->text());
    if (const auto problem = lag_day_count_problem(leading_number(text))) {
        telling_ = true;
        session().dialogs.message(*problem);
        boxes_[0]->clear();
        boxes_[0]->setFocus();
        telling_ = false;
        return false;
    }
    enable_shares(count());
    return true;
}

void frmTimeLagDist::enable_shares(int number) {
    for (int i = 1; i <= k_most_lag_days; ++i) {
        QLineEdit* box = boxes_.at(static_cast<std::size_t>(i));
        box->setEnabled(i <= number);
        if (i > number) box->clear();
    }
    show_total();
}

void frmTimeLagDist::show_total() { total_->setText(to_qt(lag_total_text(shares()))); }

void frmTimeLagDist::accept() {
    // The accelerator key does not move the focus away from the box that is being filled, so it is checked
    // here; Cancel does not check it.
    if (!leave_count()) return;
    if (const auto problem = lag_total_problem(from_qt(total_->text()))) {
        session().dialogs.message(*problem);
        return;
    }
    session().run.LagDistribution = lag_distribution(count(), shares());
    close();
}

}  // namespace nivora
