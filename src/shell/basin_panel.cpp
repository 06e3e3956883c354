#include "shell/basin_panel.h"

#include "base/number_text.h"
#include "shell/basin_grids.h"
#include "store/basin_marks.h"
#include "widgets/controls.h"
#include "widgets/entry_box.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"
#include "widgets/undo_keys.h"

#include <QApplication>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QTimer>
#include <algorithm>
#include <utility>

namespace nivora {
namespace {

constexpr int k_area_column = 1;
constexpr int k_elevation_column = 2;

bool is_enter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

BasinPanel::BasinPanel(const WindowContext& context, Interruptions& interruptions, QWidget* parent)
    : QGroupBox(QStringLiteral("Basin Definition "), parent),
      session_(context.session),
      quick_help_(context.quick_help),
      interruptions_(interruptions),
      zones_(new ZoneModel(context.session, this)),
      units_(new QComboBox(this)),
      units_label_(make_label(QStringLiteral("lblUnits"), {}, 9, this)),
      zones_label_(make_label(QStringLiteral("lblZones"), {}, 4, this)),
      area_label_(make_label(QStringLiteral("lblBasinArea"), {}, 46, this)),
      zone_grid_(make_basin_grid("vaSpread1", zones_, context.session.dialogs, this)) {
    setObjectName(QStringLiteral("Frame1(0)"));
    NivoraWindow::set_help(this, 1);
    auto* grid = new QGridLayout(this);
    make_units(grid);
    make_boxes(grid);
    make_zones(grid);
    const std::array<QWidget*, 8> order{boxes_[0], units_,    boxes_[1], boxes_[2],
                                        boxes_[3], boxes_[5], boxes_[4], zone_grid_};
    for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order.at(i - 1), order.at(i));
    connect_controls();
}

void BasinPanel::make_units(QGridLayout* grid) {
    units_->setObjectName(QStringLiteral("Combo1"));
    units_->addItems({QStringLiteral("Metric"), QStringLiteral("English")});
    units_->setPlaceholderText(QStringLiteral(" "));
    units_->setCurrentIndex(-1);
    units_->installEventFilter(this);
    NivoraWindow::set_help(units_, 9);
    QLabel* caption =
        make_label(QStringLiteral("Label1(8)"), QStringLiteral("Units of Measurement:"), 9, this);
    caption->setBuddy(units_);
    grid->addWidget(caption, 1, 0, Qt::AlignRight);
    grid->addWidget(units_, 1, 1);
    grid->addWidget(units_label_, 1, 1);
}

void BasinPanel::make_boxes(QGridLayout* grid) {
    struct Place {
        int label;
        BasinBox box;
        const char* caption;
        int help;
        int row;
        int column;
    };
    constexpr std::array<Place, 6> k_places{
        {{0, BasinBox::Name, "Name:", 3, 0, 0},
         {2, BasinBox::Zones, "Number of Zones:", 4, 1, 2},
         {5, BasinBox::ReferenceElevation, "Reference Elevation (m):", 5, 2, 0},
         {3, BasinBox::Latitude, "Latitude (dec):", 6, 2, 2},
         {1, BasinBox::Description, "Description:", 7, 3, 0},
         {4, BasinBox::Longitude, "Longitude (dec):", 8, 2, 4}}};
    for (const Place& place : k_places) {
        const auto number = static_cast<std::size_t>(place.box);
        auto* box = new QLineEdit(this);
        box->setObjectName(QStringLiteral("Text(%1)").arg(number));
        box->installEventFilter(this);
        NivoraWindow::set_help(box, place.help);
        QLabel* label = make_label(QStringLiteral("Label1(%1)").arg(place.label),
                                   QString::fromUtf8(place.caption), place.help, this);
        label->setBuddy(box);
        grid->addWidget(label, place.row, place.column, Qt::AlignRight);
        const bool wide = place.box == BasinBox::Name || place.box == BasinBox::Description;
        grid->addWidget(box, place.row, place.column + 1, 1, wide ? 5 : 1);
        boxes_.at(number) = box;
        if (place.box == BasinBox::Zones) zones_caption_ = label;
        if (place.box == BasinBox::ReferenceElevation) elevation_caption_ = label;
    }
    grid->addWidget(zones_label_, 1, 3);
    area_caption_ = make_label(QStringLiteral("Label1(7)"), QStringLiteral("Basin Area (km²):"), 46, this);
    grid->addWidget(area_caption_, 1, 4, Qt::AlignRight);
    grid->addWidget(area_label_, 1, 5);
}

void BasinPanel::make_zones(QGridLayout* grid) {
    NivoraWindow::set_help(zone_grid_, 47);
    zone_grid_->setProperty(k_help_columns, 9);
    zone_grid_->setAccessibleName(QStringLiteral("Elevation zones"));
    grid->addWidget(zone_grid_, 4, 0, 1, 6);
    grid->setRowStretch(4, 1);
}

void BasinPanel::connect_controls() {
    for (std::size_t number = 0; number < boxes_.size(); ++number) {
        connect(boxes_.at(number), &QLineEdit::textChanged, this,
                [this, number] { box_changed(static_cast<BasinBox>(number)); });
    }
    // Labels name the chosen units even before they are fixed, and change back if the choice is refused.
    connect(units_, &QComboBox::currentIndexChanged, this, [this] {
        if (!interruptions_.filling) emit units_chosen();
    });
    connect(zones_, &GridModel::edited, this, [this](int, int first_column, int, int last_column) {
        mark_edited();
        if (first_column <= k_area_column && k_area_column <= last_column) take_areas();
        zone_grid_->widen_columns(first_column, last_column);
    });
    connect(zone_grid_, &GridView::left_cell, this, [this](int, int column) {
        if (column == k_area_column && !interruptions_.filling) take_areas();
    });
}

void BasinPanel::fill() {
    const QScopedValueRollback filling(interruptions_.filling, true);
    typed_box_.reset();
    for (std::size_t number = 0; number < boxes_.size(); ++number)
        boxes_.at(number)->setText(to_qt(basin_box_text(session_.basin, static_cast<BasinBox>(number))));
    units_->setCurrentIndex(static_cast<int>(session_.basin.basin_units));
    if (std::exchange(another_basin_, false)) {
        zones_->show_other_basin();
    } else {
        zones_->refresh();
    }
    zone_grid_->fit_columns();
}

void BasinPanel::show_labels() {
    const ShellState& shell = session_.shell;
    const int chosen = units_->currentIndex();
    const Units units =
        shown_units(session_.basin, chosen < 0 ? std::nullopt : std::optional{static_cast<Units>(chosen)});
    zones_->show_units(units);
    elevation_caption_->setText(to_qt(reference_elevation_label(units)));
    area_caption_->setText(to_qt(basin_area_label(units)));
    units_label_->setText(units == Units::English ? QStringLiteral("English") : QStringLiteral("Metric"));
    units_->setVisible(shell.units_list_shown);
    units_label_->setVisible(!shell.units_list_shown);
    zones_caption_->setVisible(shell.zones_label_shown);
    box(BasinBox::Zones)->setVisible(shell.zones_box_shown);
    zones_label_->setVisible(shell.zones_fixed_shown);
    zones_label_->setText(to_qt(session_.basin.zones_text));
    area_label_->setText(to_qt(session_.basin.basin_area_text));
}

void BasinPanel::commit_edits() {
    zone_grid_->commit_editor();
    for (std::size_t number = 0; number < boxes_.size(); ++number)
        basin_box_text(session_.basin, static_cast<BasinBox>(number)) = from_qt(boxes_.at(number)->text());
}

void BasinPanel::show_values() {
    const QScopedValueRollback filling(interruptions_.filling, true);
    for (std::size_t number = 0; number < boxes_.size(); ++number) {
        const QString text = to_qt(basin_box_text(session_.basin, static_cast<BasinBox>(number)));
        if (boxes_.at(number)->text() != text) boxes_.at(number)->setText(text);
    }
    zones_->refresh();
}

QLineEdit* BasinPanel::box_with_focus() const {
    const auto found =
        std::find_if(boxes_.begin(), boxes_.end(), [](QLineEdit* box) { return box->hasFocus(); });
    return found == boxes_.end() ? nullptr : *found;
}

bool BasinPanel::undo_typing() {
    QLineEdit* typed = box_with_focus();
    if (typed == nullptr || !typed->isUndoAvailable()) return false;
    const auto number = std::find(boxes_.begin(), boxes_.end(), typed) - boxes_.begin();
    const bool zones = number == static_cast<int>(BasinBox::Zones);
    if (!zones && !session_.history.is_typing_in(static_cast<int>(number))) return false;
    typed->undo();
    return true;
}

bool BasinPanel::redo_typing() {
    QLineEdit* typed = box_with_focus();
    if (typed == nullptr || !typed->isRedoAvailable()) return false;
    typed->redo();
    return true;
}

bool BasinPanel::refuses_typed_box() {
    if (!typed_box_) return false;
    const BasinBox typed = *typed_box_;
    if (!left_box_problem(typed, from_qt(box(typed)->text()), session_.basin.basin_units)) return false;
    box_left(typed);
    return true;
}

void BasinPanel::go_to(BasinBox wanted) { box(wanted)->setFocus(); }

void BasinPanel::go_to_cell(int row, int column) {
    zone_grid_->setFocus();
    zone_grid_->go_to(zones_->index(row, column));
}

void BasinPanel::begin_naming() {
    name_box().setFocus();
    name_box().selectAll();
}

void BasinPanel::show_problem(const RunMenuProblem& problem) {
    if (problem.place == RunMenuProblem::Place::ReferenceElevation) {
        refuse_entry(*box(BasinBox::ReferenceElevation), problem.message, session_.dialogs);
        return go_to(BasinBox::ReferenceElevation);
    }
    if (problem.place == RunMenuProblem::Place::None) {
        session_.dialogs.message(problem.message);
        return;
    }
    zone_grid_->scrollTo(zones_->index(problem.zone - 1, k_elevation_column));
    zones_->mark_zone(problem.zone);
    session_.dialogs.message(problem.message);
    zones_->mark_zone(0);
    go_to_cell(problem.zone - 1, k_elevation_column);
}

void BasinPanel::open_for_entry(bool open) {
    for (QLineEdit* box : boxes_) box->setEnabled(open);
    zone_grid_->setEnabled(open);
}

void BasinPanel::mark_edited() {
    mark_output_invalid(session_.basin);
    mark_input_changed(session_.basin);
    emit edited();
}

void BasinPanel::box_changed(BasinBox changed_one) {
    if (interruptions_.filling) return;
    QLineEdit* edit = box(changed_one);
    const ChangedBox changed = changed_box(changed_one, from_qt(edit->text()));
    if (changed.message) session_.dialogs.message(*changed.message);
    if (changed.beep) QApplication::beep();
    if (to_qt(changed.text) != edit->text()) {
        edit->setText(to_qt(changed.text));
        return;
    }
    // The number of zones is fixed once: what was typed before is not taken back afterwards.
    const bool is_step = changed_one != BasinBox::Zones;
    if (is_step) session_.history.begin(session_);
    basin_box_text(session_.basin, changed_one) = changed.text;
    typed_box_ = changed_one;
    mark_edited();
    if (is_step) session_.history.end(session_, typing_in_box(static_cast<int>(changed_one)));
}

void BasinPanel::box_left(BasinBox left) {
    const Interruptions& now = interruptions_;
    if (now.filling || now.telling || now.leaving || quick_help_.is_on()) return;
    typed_box_.reset();
    const QString text = box(left)->text();
    const auto problem = left_box_problem(left, from_qt(text), session_.basin.basin_units);
    if (problem) refuse_box(left, *problem);
    session_.history.separate();
    if (problem) return;
    if (is_checked_number(left) && !text.trimmed().isEmpty()) {
        // Intended: a number counts as entered when its box is left, whether or not it was changed.
        mark_input_changed(session_.basin);
        emit edited();
    }
    const bool zones_open = left == BasinBox::Zones && !session_.shell.zones_fixed_shown;
    if (zones_open && !text.trimmed().isEmpty()) zones_left();
}

/// Shows what is wrong with a box, and returns the focus to it.
void BasinPanel::refuse_box(BasinBox refused, const Message& problem) {
    QLineEdit* edit = box(refused);
    interruptions_.telling = true;
    refuse_entry(*edit, problem, session_.dialogs);
    interruptions_.telling = false;
    const bool name = refused == BasinBox::Name;
    edit->setText(name ? QString::fromUtf8(k_unnamed_basin) : QString{});
    if (!name) QTimer::singleShot(0, edit, [edit] { edit->setFocus(); });
}

void BasinPanel::zones_left() {
    QLineEdit* zones = box(BasinBox::Zones);
    interruptions_.telling = true;
    if (session_.basin.basin_units == Units::NotFixed) {
        zones->clear();
        session_.dialogs.message(units_before_zones());
        units_->setFocus();
        interruptions_.telling = false;
        return;
    }
    const bool confirmed = session_.dialogs.message(zones_question()) == Answer::Yes;
    interruptions_.telling = false;
    if (!confirmed) {
        zones->clear();
        QTimer::singleShot(0, zones, [zones] { zones->setFocus(); });
        return;
    }
    try {
        fix_zones(session_, to_integer16(leading_number(from_qt(zones->text()))).value_or(1));
    } catch (const StoreError& error) {
        session_.dialogs.stop(error.what());
        return;
    }
    emit zones_fixed();
}

void BasinPanel::units_left() {
    const bool interrupted = interruptions_.telling || interruptions_.leaving;
    if (interrupted || units_->currentIndex() < 0 || !units_->isVisible()) return;
    interruptions_.telling = true;
    const bool confirmed = session_.dialogs.message(units_question()) == Answer::Yes;
    interruptions_.telling = false;
    if (!confirmed) {
        units_->setCurrentIndex(-1);
        return;
    }
    try {
        fix_units(session_, static_cast<Units>(units_->currentIndex()));
    } catch (const StoreError& error) {
        session_.dialogs.stop(error.what());
    }
    emit units_fixed();
    QLineEdit* zones = box(BasinBox::Zones);
    QTimer::singleShot(0, zones, [zones] { zones->setFocus(); });
}

void BasinPanel::move_on_from(BasinBox from) {
    const AfterEnter next = after_enter(from, units_->isVisible(), box(BasinBox::Zones)->isVisible());
    switch (next.place) {
        case AfterEnter::Place::Box: return go_to(next.box);
        case AfterEnter::Place::UnitsList: return units_->setFocus();
        case AfterEnter::Place::ZoneGrid: return zone_grid_->setFocus();
    }
}

void BasinPanel::take_areas() {
    take_zone_areas(session_);
    area_label_->setText(to_qt(session_.basin.basin_area_text));
    emit areas_taken();
}

/// @return whether the key was handled or refused
bool BasinPanel::box_key(BasinBox typed_in, const QKeyEvent& event) {
    if (is_enter(event)) {
        move_on_from(typed_in);
        return true;
    }
    const QString typed = event.text();
    if (typed.isEmpty() || !typed.front().isPrint()) return false;
    const QLineEdit* edit = box(typed_in);
    const QString kept = edit->hasSelectedText() ? edit->text().remove(edit->selectedText()) : edit->text();
    const auto verdict = key_verdict(typed_in, typed.toUcs4().front(), from_qt(kept));
    if (verdict == KeyVerdict::DroppedWithBeep) QApplication::beep();
    return verdict != KeyVerdict::Passes;
}

/// @return whether the key was handled
bool BasinPanel::units_key(const QKeyEvent& event) {
    if (!is_enter(event)) return false;
    if (units_->currentIndex() >= 0) {
        units_left();
        return true;
    }
    interruptions_.telling = true;
    session_.dialogs.message(units_missing());
    interruptions_.telling = false;
    units_->setFocus();
    return true;
}

bool BasinPanel::eventFilter(QObject* watched, QEvent* event) {
    const bool key = event->type() == QEvent::KeyPress;
    const auto found = std::find(boxes_.begin(), boxes_.end(), watched);
    if (found != boxes_.end()) {
        const auto watched_box = static_cast<BasinBox>(found - boxes_.begin());
        if (leaves_box(*event, quick_help_)) box_left(watched_box);
        // The keys of undo are the window's: a box knows only what was typed since its text was set.
        if (event->type() == QEvent::ShortcutOverride && UndoKeys::is_key(*static_cast<QKeyEvent*>(event))) {
            event->ignore();
            return true;
        }
        if (enters_box(*event)) QTimer::singleShot(0, *found, &QLineEdit::selectAll);
        if (key) return box_key(watched_box, *static_cast<QKeyEvent*>(event));
    }
    if (watched == units_) {
        if (leaves_box(*event, quick_help_) && QApplication::activePopupWidget() == nullptr) units_left();
        if (key && units_key(*static_cast<QKeyEvent*>(event))) return true;
    }
    return QGroupBox::eventFilter(watched, event);
}

}  // namespace nivora
