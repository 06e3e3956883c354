#include "windows/prep/SimOptions.h"

#include "prep/daily_units.h"
#include "session/main_window_rules.h"
#include "store/run_period.h"
#include "widgets/controls.h"
#include "widgets/qt_text.h"
#include "widgets/window_keys.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

namespace nivora {
namespace {

constexpr int k_help_topic = 2;
constexpr int k_first_value_box = 6;
constexpr int k_threshold_box = 5;
constexpr qsizetype k_kept_of_frame_caption = 17;

/// The fields of the first values in the parameter table.
constexpr std::array<const char*, k_first_values> k_value_fields{"AN",  "Tcrit",   "LapseRate", "CS",    "Cr",
                                                                 "RCA", "LagTime", "Xcoeff",    "Ycoeff"};
constexpr std::array<const char*, 6> k_by_zone_captions{
    "Temperature",         "Precipitation",        "Temperature Lapse Rates",
    "Runoff Coefficients", "Critical Temperature", "Recession coefficients"};

}  // namespace

SimOptions::SimOptions(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "SimOptions", WindowNumber::SimOptions, parent) {
    setWindowTitle(QStringLiteral("Edit Simulation Control Information"));
    auto* content = new QWidget(this);
    auto* grid = new QGridLayout(content);
    grid->addWidget(make_head(), 0, 0, 1, 2);
    grid->addWidget(make_choices(), 1, 0);
    grid->addWidget(make_by_zone(), 2, 0);
    grid->addWidget(make_starts(), 3, 0);
    grid->addWidget(make_first_values(), 1, 1, 3, 1);
    grid->addWidget(make_comments(), 4, 0, 1, 2);
    const ButtonRow row = make_button_row({"&Accept", "&Cancel ", "&Help"}, 31, content);
    buttons_ = row.buttons;
    grid->setRowStretch(4, 1);
    set_content(content, row.frame);
    explain_status_bar(36);
    set_default_button(buttons_[0]);
    close_on_escape();
    connect(buttons_[0], &QPushButton::clicked, this, &SimOptions::accept);
    connect(buttons_[1], &QPushButton::clicked, this, &QWidget::close);
    connect(buttons_[2], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    add_key(*this, Qt::Key_F1, *buttons_[2]);
    connect(units_, &QButtonGroup::idToggled, this, [this](int units, bool on) {
        if (on) show_units(static_cast<Units>(units));
    });
    resize(760, 640);
}

QLineEdit* SimOptions::make_box(int index, int help, QWidget* parent) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(QStringLiteral("mtxt(%1)").arg(index));
    box->installEventFilter(this);
    set_help(box, help);
    boxes_.at(static_cast<std::size_t>(index)) = box;
    return box;
}

QWidget* SimOptions::make_head() {
    auto* frame = new QWidget(this);
    auto* grid = new QGridLayout(frame);
    name_ = make_label(QStringLiteral("lblSimName"), {}, 1, frame);
    QFont bold = name_->font();
    bold.setBold(true);
    name_->setFont(bold);
    grid->addWidget(name_, 0, 0, 1, 6);
    struct Place {
        const char* label;
        const char* caption;
        int box;
        int help;
    };
    constexpr std::array<Place, 3> k_places{{{"frmOptLbl4", "Run Number", 1, 2},
                                             {"frmOptLbl5", "Start Date:", 2, 3},
                                             {"frmOptlbl6", "End Date:", 3, 4}}};
    int column = 0;
    for (const Place& place : k_places) {
        QLineEdit* box = make_box(place.box, place.help, frame);
        if (place.box > 1) box->setInputMask(QStringLiteral("99/99/9999;_"));
        auto* label =
            make_label(QString::fromUtf8(place.label), QString::fromUtf8(place.caption), place.help, frame);
        label->setBuddy(box);
        // The name of the simulation stands beside the first box and has it as its buddy, too.
        box->setAccessibleName(QString::fromUtf8(place.caption));
        grid->addWidget(label, 1, column, Qt::AlignRight);
        grid->addWidget(box, 1, column + 1);
        column += 2;
    }
    name_->setBuddy(boxes_[1]);
    return frame;
}

QButtonGroup* SimOptions::make_options(const char* name, const std::array<const char*, 2>& captions, int help,
                                       QWidget* frame) {
    auto* group = new QButtonGroup(frame);
    for (int i = 0; i < 2; ++i) {
        auto* option = new QRadioButton(QString::fromUtf8(captions.at(static_cast<std::size_t>(i))), frame);
        option->setObjectName(QStringLiteral("%1(%2)").arg(QString::fromUtf8(name)).arg(i));
        option->installEventFilter(this);
        set_help(option, help + i);
        group->addButton(option, i);
        frame->layout()->addWidget(option);
    }
    return group;
}

QWidget* SimOptions::make_choices() {
    auto* frame = new QWidget(this);
    auto* layout = new QHBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* units = new QGroupBox(QStringLiteral("Units"), frame);
    set_help(units, 5);
    new QVBoxLayout(units);
    units_ = make_options("optUnits", {"Metric", "English"}, 6, units);
    auto* temperature = new QGroupBox(QStringLiteral("Temperature  Values"), frame);
    set_help(temperature, 8);
    new QVBoxLayout(temperature);
    temperature_ = make_options("optTempType", {"Daily Average", "Max/Min Values"}, 9, temperature);
    layout->addWidget(units);
    layout->addWidget(temperature);
    return frame;
}

QWidget* SimOptions::make_by_zone() {
    auto* frame = new QGroupBox(QStringLiteral("Input by Zone (x=yes)"), this);
    set_help(frame, 11);
    auto* grid = new QGridLayout(frame);
    for (int i = 0; i < 6; ++i) {
        const auto index = static_cast<std::size_t>(i);
        auto* box = new QCheckBox(QString::fromUtf8(k_by_zone_captions.at(index)), frame);
        box->setObjectName(QStringLiteral("ByZone(%1)").arg(i));
        box->installEventFilter(this);
        set_help(box, 12 + i);
        grid->addWidget(box, i % 3, i / 3);
        by_zone_.at(index) = box;
    }
    return frame;
}

QWidget* SimOptions::make_starts() {
    auto* frame = new QWidget(this);
    auto* layout = new QHBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    runoff_frame_ = new QGroupBox(QStringLiteral("Initial Runoff (f³/s)"), frame);
    runoff_frame_->setObjectName(QStringLiteral("Frame1(4)"));
    set_help(runoff_frame_, 18);
    auto* runoff = make_box(4, 18, runoff_frame_);
    (new QVBoxLayout(runoff_frame_))->addWidget(runoff);
    threshold_frame_ = new QGroupBox(QStringLiteral("Rainfall Threshold (in)"), frame);
    threshold_frame_->setObjectName(QStringLiteral("Frame1(5)"));
    set_help(threshold_frame_, 19);
    auto* threshold = make_box(k_threshold_box, 19, threshold_frame_);
    (new QVBoxLayout(threshold_frame_))->addWidget(threshold);
    layout->addWidget(runoff_frame_);
    layout->addWidget(threshold_frame_);
    return frame;
}

QWidget* SimOptions::make_first_values() {
    auto* frame = new QGroupBox(QStringLiteral("Initial Parameter Table Values:"), this);
    set_help(frame, 21);
    auto* grid = new QGridLayout(frame);
    for (int i = 0; i < static_cast<int>(k_first_values); ++i) {
        const auto index = static_cast<std::size_t>(i);
        QLineEdit* box = make_box(k_first_value_box + i, 22 + i, frame);
        auto* label =
            make_label(QStringLiteral("Label4(%1)").arg(i),
                       QString::fromUtf8(first_value_caption(static_cast<FirstValue>(i))), 22 + i, frame);
        label->setBuddy(box);
        grid->addWidget(label, i, 0);
        grid->addWidget(box, i, 1);
        value_labels_.at(index) = label;
    }
    value_note_ = make_label(QStringLiteral("lblValuesNote"), {}, 21, frame);
    value_note_->setWordWrap(true);
    grid->addWidget(value_note_, static_cast<int>(k_first_values), 0, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(static_cast<int>(k_first_values) + 1, 1);
    return frame;
}

QWidget* SimOptions::make_comments() {
    auto* frame = new QGroupBox(QStringLiteral("Comments"), this);
    set_help(frame, 20);
    comments_ = new QPlainTextEdit(frame);
    comments_->setObjectName(QStringLiteral("mtxt(15)"));
    comments_->setAccessibleName(QStringLiteral("Comments"));
    comments_->setPlaceholderText(QStringLiteral("Place comments about data here"));
    comments_->setTabChangesFocus(true);
    comments_->installEventFilter(this);
    comments_->setMinimumHeight(comments_->fontMetrics().lineSpacing() * 3);
    // They fill the remaining room, and the window scrolls only if there is less than their minimum.
    comments_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    set_help(comments_, 20);
    (new QVBoxLayout(frame))->addWidget(comments_);
    return frame;
}

bool SimOptions::open() {
    try {
        BasinDatabase database{session().basin.Work_File, Access::ReadOnly};
        form_ = open_sim_options({session().basin, session().prep, session().dialogs}, database);
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
        return false;
    }
    show_form();
    boxes_[1]->setFocus();
    return true;
}

void SimOptions::show_form() {
    name_->setText(to_qt(doubled_ampersands(form_.name)));
    boxes_[1]->setText(to_qt(form_.run_number));
    boxes_[2]->setText(to_qt(form_.start));
    boxes_[3]->setText(to_qt(form_.end));
    boxes_[4]->setText(to_qt(form_.initial_runoff));
    const SimOptionsMode mode = session().prep.SimOptions_Mode;
    const bool values_count = first_values_count(mode, form_);
    value_note_->setText(to_qt(first_values_note(mode, form_)));
    value_note_->setVisible(!values_count);
    for (std::size_t i = 0; i < k_first_values; ++i) {
        boxes_.at(k_first_value_box + i)->setEnabled(values_count);
        boxes_.at(k_first_value_box + i)->setText(to_qt(form_.first_values.at(i)));
        QString caption = QString::fromUtf8(first_value_caption(static_cast<FirstValue>(i)));
        if (form_.values_of_first_day) caption += QStringLiteral(" (Zone 1, Day 1)");
        value_labels_.at(i)->setText(caption);
    }
    for (std::size_t i = 0; i < by_zone_.size(); ++i) by_zone_.at(i)->setChecked(form_.by_zone.at(i));
    if (auto* units = units_->button(static_cast<int>(form_.units))) units->setChecked(true);
    if (auto* kind = temperature_->button(form_.temperature_values)) kind->setChecked(true);
    if (!form_.threshold.empty()) boxes_[k_threshold_box]->setText(to_qt(form_.threshold));
    comments_->setPlainText(to_qt(form_.comments));
}

void SimOptions::show_units(Units units) {
    const UnitTexts texts = unit_texts(units);
    // Intended: the caption loses its last letter.
    threshold_frame_->setTitle(threshold_frame_->title().left(k_kept_of_frame_caption) +
                               QStringLiteral("(%1)").arg(to_qt(texts.area_word)));
    runoff_frame_->setTitle(QStringLiteral("Initial Runoff (") + to_qt(texts.flow_letter) +
                            QStringLiteral("³/s)"));
    if (session().prep.SimOptions_Mode == SimOptionsMode::Add)
        boxes_[k_threshold_box]->setText(to_qt(texts.default_threshold));
    show_value_units(units);
}

/// Shows the unit of each of the nine values in its tool tip, its help and,
/// while it has the focus, the status bar.
void SimOptions::show_value_units(Units units) {
    for (std::size_t value = 0; value < k_first_values; ++value) {
        const QString field = QString::fromUtf8(k_value_fields.at(value));
        const QString unit = to_qt(daily_unit(k_value_fields.at(value), units));
        for (QWidget* part :
             std::initializer_list<QWidget*>{boxes_.at(k_first_value_box + value), value_labels_.at(value)}) {
            part->setToolTip(field + QStringLiteral(": ") + unit);
            part->setProperty(k_help_unit, unit);
        }
    }
}

void SimOptions::read_form() {
    form_.run_number = from_qt(boxes_[1]->text());
    form_.start = from_qt(boxes_[2]->text());
    form_.end = from_qt(boxes_[3]->text());
    form_.initial_runoff = from_qt(boxes_[4]->text());
    form_.threshold = from_qt(boxes_[k_threshold_box]->text());
    form_.comments = from_qt(comments_->toPlainText());
    form_.units = static_cast<Units>(std::max(0, units_->checkedId()));
    form_.temperature_values = std::max(0, temperature_->checkedId());
    for (std::size_t i = 0; i < by_zone_.size(); ++i) form_.by_zone.at(i) = by_zone_.at(i)->isChecked();
    for (std::size_t i = 0; i < k_first_values; ++i)
        form_.first_values.at(i) = from_qt(boxes_.at(k_first_value_box + i)->text());
}

/// Enter and Down move to the next box, Up to the previous one: from the threshold to the temperature
/// options, from the last box to the comments, and from these to the first button.
bool SimOptions::move_on(const QObject* from, int step) {
    if (from == comments_) {
        if (step > 0) {
            buttons_[0]->setFocus();
        } else {
            boxes_.back()->setFocus();
        }
        return true;
    }
    const auto found = std::find(boxes_.begin() + 1, boxes_.end(), from);
    if (found == boxes_.end()) return false;
    const auto next = found - boxes_.begin() + step;
    if (*found == boxes_[k_threshold_box] && step > 0) {
        temperature_->button(std::max(0, temperature_->checkedId()))->setFocus();
    } else if (next >= static_cast<std::ptrdiff_t>(boxes_.size())) {
        comments_->setFocus();
    } else if (next >= 1) {
        boxes_.at(static_cast<std::size_t>(next))->setFocus();
    }
    return true;
}

/// Enter moves on from options as well: from the units to the temperature, and from there and from the
/// options by zone to the nine parameters.
bool SimOptions::move_on_from_option(const QObject* from) {
    const auto is_one_of = [from](const QButtonGroup& group) {
        const auto options = group.buttons();
        return std::find(options.begin(), options.end(), from) != options.end();
    };
    if (is_one_of(*units_)) {
        temperature_->button(std::max(0, temperature_->checkedId()))->setFocus();
        return true;
    }
    const bool by_zone = std::find(by_zone_.begin(), by_zone_.end(), from) != by_zone_.end();
    if (!by_zone && !is_one_of(*temperature_)) return false;
    boxes_[k_first_value_box]->setFocus();
    return true;
}

bool SimOptions::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        if (enter && move_on_from_option(watched)) return true;
        const bool line_end = watched == comments_ && (key->modifiers() & Qt::ShiftModifier) != 0;
        // In the comments the arrow keys move the cursor.
        const bool arrow = watched != comments_ && (key->key() == Qt::Key_Down || key->key() == Qt::Key_Up);
        if (((enter && !line_end) || arrow) && move_on(watched, key->key() == Qt::Key_Up ? -1 : 1))
            return true;
    }
    // While QuickHelp is on, a box that is reached by Tab explains itself as well.
    if (event->type() == QEvent::FocusIn) {
        auto* entered = static_cast<QWidget*>(watched);
        explain_widget(entered);
        show_status(entered->toolTip());
    }
    if (auto* box = qobject_cast<QLineEdit*>(watched); box != nullptr && enters_box(event))
        QTimer::singleShot(0, box, &QLineEdit::selectAll);
    return NivoraWindow::eventFilter(watched, event);
}

void SimOptions::accept() {
    read_form();
    try {
        BasinDatabase database{session().basin.Work_File, Access::ReadWrite};
        accepted_ = accept_sim_options({session().basin, session().prep, session().dialogs}, database, form_);
    } catch (const StoreError& error) {
        refuse_definition(session().dialogs, error.what());
        return;
    }
    if (accepted_) return static_cast<void>(close());
    focus_faulty_box();
}

/// After a refused definition, sets the focus to the first faulty box.
void SimOptions::focus_faulty_box() {
    constexpr std::size_t k_start_box = 2;
    constexpr std::size_t k_end_box = 3;
    const auto start = read_date(form_.start);
    const auto end = read_date(form_.end);
    if (!start) return boxes_[k_start_box]->setFocus();
    if (!end || !is_run_period(*start, *end)) return boxes_[k_end_box]->setFocus();
    if (!first_values_count(session().prep.SimOptions_Mode, form_)) return;
    if (const auto value = faulty_first_value(form_))
        boxes_.at(k_first_value_box + static_cast<std::size_t>(*value))->setFocus();
}

}  // namespace nivora
