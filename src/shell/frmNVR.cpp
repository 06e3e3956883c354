#include "shell/frmNVR.h"

#include "base/number_text.h"
#include "session/simulation_list.h"
#include "shell/basin_grids.h"
#include "store/basin_marks.h"
#include "widgets/controls.h"
#include "widgets/edit_target.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

namespace nivora {
namespace {

constexpr int k_fewest_grid_lines = 7;
/// Behind the rows and columns of the simulation grid.
constexpr QRgb k_empty_grid_colour = 0xFFC0C0C0;

std::string& box_text(BasinState& basin, std::size_t box) {
    switch (static_cast<BasinBox>(box)) {
        case BasinBox::Zones: return basin.zones_text;
        case BasinBox::ReferenceElevation: return basin.reference_elevation_text;
        case BasinBox::Latitude: return basin.latitude_text;
        case BasinBox::Description: return basin.basin_description;
        case BasinBox::Longitude: return basin.longitude_text;
        case BasinBox::Name: break;
    }
    return basin.basin_name;
}

}  // namespace

frmNVR::frmNVR(const WindowContext& context)
    : NivoraWindow(context, "frmNVR", WindowNumber::frmNVR),
      life_(context.session, context.program_folder),
      windows_(context),
      menu_(new MainMenu(menuBar(), context.session, this)),
      zones_(new ZoneModel(context.session, this)),
      simulations_(new SimulationModel(context.session, this)),
      units_(new QComboBox(this)),
      units_label_(make_label(QStringLiteral("lblUnits"), {}, 9, this)),
      zones_label_(make_label(QStringLiteral("lblZones"), {}, 4, this)),
      area_label_(make_label(QStringLiteral("lblBasinArea"), {}, 46, this)),
      simulation_label_(make_label(QStringLiteral("lblSimVisible"), {}, 21, this)),
      procedure_(make_label(QStringLiteral("panel2"), {}, 43, this)),
      edit_target_(new EditTarget(this)),
      zone_grid_(make_grid("vaSpread1", zones_)),
      simulation_grid_(make_grid("DBGrid1", simulations_)) {
    setWindowTitle(QStringLiteral("NIVORA - Hollin Flow Model for Windows"));
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(make_definition(), 3);
    layout->addWidget(make_simulations(), 2);
    const std::array<QWidget*, 5> order{zone_grid_, simulation_grid_, buttons_[0], buttons_[1], buttons_[2]};
    for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order.at(i - 1), order.at(i));
    set_content(content);
    statusBar()->addPermanentWidget(procedure_);
    explain_status_bar(42);
    connect_boxes();
    connect(menu_, &MainMenu::chosen, this, &frmNVR::do_command);
    connect(menu_, &MainMenu::recent_chosen, this, [this](std::size_t entry) {
        confirmed_zones_.clear();
        life_.open_recent(entry);
    });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now == nullptr || now == menuBar()) return;
        menu_->name_row_items(simulation_grid_->isAncestorOf(now) || now == simulation_grid_);
    });
    menu_->name_row_items(false);
    connect_grids();
    resize(1000, 720);
    if (context.quick_help.is_on()) quick_help_changed(true);
}

frmNVR::~frmNVR() {
    if (answered_ != nullptr) *answered_ = Desktop{};
    // The focus that moves while the window goes is of no interest any more.
    disconnect(qApp, nullptr, this, nullptr);
}

void frmNVR::answer(Desktop& desktop) {
    desktop.commit_edits = [this] { commit_edits(); };
    desktop.refuses_typed_box = [this] { return refuses_typed_box(); };
    desktop.go_to_field = [this](const UnstorableField& field) { go_to_field(field); };
    desktop.refresh_main_window = [this] { refresh_main_window(); };
    desktop.show_help_topic = [this](int topic) { windows_.show_help_topic(topic); };
    desktop.open_daily_editor = [this] { open_daily_editor(); };
    desktop.close_results = [this] { windows_.close_results(); };
    answered_ = &desktop;
}

GridView* frmNVR::make_grid(const char* name, GridModel* model) {
    auto* grid = new GridView(model, session().dialogs, this);
    grid->setObjectName(QString::fromUtf8(name));
    // Rows are seen on the smallest screen as well.
    grid->setMinimumHeight(k_fewest_grid_lines * (grid->fontMetrics().lineSpacing() + 6));
    return grid;
}

void frmNVR::make_boxes(QGridLayout* grid) {
    struct Place {
        int label;
        int box;
        const char* caption;
        int help;
        int row;
        int column;
    };
    constexpr std::array<Place, 6> k_places{{{0, 0, "Name:", 3, 0, 0},
                                             {2, 1, "Number of Zones:", 4, 1, 2},
                                             {5, 2, "Reference Elevation (m):", 5, 2, 0},
                                             {3, 3, "Latitude (dec):", 6, 2, 2},
                                             {1, 4, "Description:", 7, 3, 0},
                                             {4, 5, "Longitude (dec):", 8, 2, 4}}};
    for (const Place& place : k_places) {
        auto* box = new QLineEdit(this);
        box->setObjectName(QStringLiteral("Text(%1)").arg(place.box));
        box->installEventFilter(this);
        set_help(box, place.help);
        QLabel* label = make_label(QStringLiteral("Label1(%1)").arg(place.label),
                                   QString::fromUtf8(place.caption), place.help, this);
        label->setBuddy(box);
        grid->addWidget(label, place.row, place.column, Qt::AlignRight);
        const bool wide = place.box == 0 || place.box == 4;
        grid->addWidget(box, place.row, place.column + 1, 1, wide ? 5 : 1);
        boxes_.at(static_cast<std::size_t>(place.box)) = box;
        labels_.at(static_cast<std::size_t>(place.label)) = label;
    }
    grid->addWidget(zones_label_, 1, 3);
    labels_[7] = make_label(QStringLiteral("Label1(7)"), QStringLiteral("Basin Area (km²):"), 46, this);
    grid->addWidget(labels_[7], 1, 4, Qt::AlignRight);
    grid->addWidget(area_label_, 1, 5);
}

void frmNVR::make_units(QGridLayout* grid) {
    units_->setObjectName(QStringLiteral("Combo1"));
    units_->addItems({QStringLiteral("Metric"), QStringLiteral("English")});
    units_->setPlaceholderText(QStringLiteral(" "));
    units_->setCurrentIndex(-1);
    units_->installEventFilter(this);
    set_help(units_, 9);
    labels_[8] = make_label(QStringLiteral("Label1(8)"), QStringLiteral("Units of Measurement:"), 9, this);
    labels_[8]->setBuddy(units_);
    grid->addWidget(labels_[8], 1, 0, Qt::AlignRight);
    grid->addWidget(units_, 1, 1);
    grid->addWidget(units_label_, 1, 1);
}

QGroupBox* frmNVR::make_definition() {
    auto* frame = new QGroupBox(QStringLiteral("Basin Definition "), this);
    frame->setObjectName(QStringLiteral("Frame1(0)"));
    set_help(frame, 1);
    auto* grid = new QGridLayout(frame);
    make_units(grid);
    make_boxes(grid);
    set_help(zone_grid_, 47);
    zone_grid_->setProperty(k_help_columns, 9);
    zone_grid_->setAccessibleName(QStringLiteral("Elevation zones"));
    grid->addWidget(zone_grid_, 4, 0, 1, 6);
    grid->setRowStretch(4, 1);
    const std::array<QWidget*, 8> order{boxes_[0], units_,    boxes_[1], boxes_[2],
                                        boxes_[3], boxes_[5], boxes_[4], zone_grid_};
    for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order.at(i - 1), order.at(i));
    return frame;
}

QGroupBox* frmNVR::make_simulations() {
    auto* frame = new QGroupBox(QStringLiteral("Basin Simulations "), this);
    frame->setObjectName(QStringLiteral("Frame1(1)"));
    set_help(frame, 2);
    auto* grid = new QGridLayout(frame);
    labels_[6] =
        make_label(QStringLiteral("Label1(6)"), QStringLiteral("Current Simulation Name:"), 21, this);
    grid->addWidget(labels_[6], 0, 0);
    // A doubled "&" shows as one in a label that belongs to something.
    simulation_label_->setBuddy(simulation_grid_);
    grid->addWidget(simulation_label_, 0, 1, 1, 3);
    set_help(simulation_grid_, 48);
    simulation_grid_->setProperty(k_help_columns, 21);
    simulation_grid_->setAccessibleName(QStringLiteral("Simulations"));
    simulation_grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    simulation_grid_->set_clears_cells(false);
    // A row below is another simulation, and the one at hand is to stay.
    simulation_grid_->set_enter_goes_down(false);
    simulation_grid_->set_empty_area_colour(QColor::fromRgb(k_empty_grid_colour));
    grid->addWidget(simulation_grid_, 1, 0, 1, 5);
    constexpr std::array<const char*, 3> k_captions{"&Add Simulation", "&Delete Simulation",
                                                    "&Edit Simulation"};
    for (int i = 0; i < 3; ++i) {
        const auto index = static_cast<std::size_t>(i);
        buttons_.at(index) = new QPushButton(QString::fromUtf8(k_captions.at(index)), frame);
        buttons_.at(index)->setObjectName(QStringLiteral("Command1(%1)").arg(i));
        set_help(buttons_.at(index), 39 + i);
        grid->addWidget(buttons_.at(index), 2, i);
    }
    connect(buttons_[0], &QPushButton::clicked, this, &frmNVR::add_simulation);
    connect(buttons_[1], &QPushButton::clicked, this, &frmNVR::delete_simulation);
    connect(buttons_[2], &QPushButton::clicked, this,
            [this] { choose_data(DataEntry::SimulationDefinition); });
    grid->setColumnStretch(4, 1);
    grid->setRowStretch(1, 1);
    return frame;
}

void frmNVR::connect_boxes() {
    for (std::size_t box = 0; box < boxes_.size(); ++box) {
        connect(boxes_.at(box), &QLineEdit::textChanged, this, [this, box] { box_changed(box); });
    }
    // Labels name the units that are chosen, also before they are fixed, and go back with a refused choice.
    connect(units_, &QComboBox::currentIndexChanged, this, [this] {
        if (!filling_) fill_labels();
    });
}

void frmNVR::start() {
    life_.start();
    set_first_focus(boxes_[0]);
    refresh_main_window();
    show();
}

void frmNVR::commit_edits() {
    for (GridView* grid : {zone_grid_, simulation_grid_}) grid->commit_editor();
    for (std::size_t box = 0; box < boxes_.size(); ++box) {
        box_text(session().basin, box) = from_qt(boxes_.at(box)->text());
    }
}

void frmNVR::refresh_main_window() {
    filling_ = true;
    fill_boxes();
    zones_->reload();
    show_simulations();
    for (GridView* grid : {zone_grid_, simulation_grid_}) grid->fit_columns();
    fill_labels();
    filling_ = false;
    menu_->refresh();
    show_basin_file();
    windows_.refresh_results();
}

/// Shows the rows of the simulation grid anew with the current one selected.
void frmNVR::show_simulations() {
    const bool filling = std::exchange(filling_, true);
    simulations_->reload();
    const auto row = session().basin.current_row;
    if (row) simulation_grid_->selectRow(static_cast<int>(*row));
    filling_ = filling;
}

void frmNVR::fill_boxes() {
    BasinState& basin = session().basin;
    typed_box_.reset();
    for (std::size_t box = 0; box < boxes_.size(); ++box)
        boxes_.at(box)->setText(to_qt(box_text(basin, box)));
    units_->setCurrentIndex(static_cast<int>(basin.basin_units));
}

void frmNVR::fill_labels() {
    const BasinState& basin = session().basin;
    const ShellState& shell = session().shell;
    const Units units = basin.basin_units != Units::NotFixed
                            ? basin.basin_units
                            : static_cast<Units>(std::max(0, units_->currentIndex()));
    zones_->show_units(units);
    labels_[5]->setText(to_qt(reference_elevation_label(units)));
    labels_[7]->setText(to_qt(basin_area_label(units)));
    units_label_->setText(units == Units::English ? QStringLiteral("English") : QStringLiteral("Metric"));
    units_->setVisible(shell.units_list_shown);
    units_label_->setVisible(!shell.units_list_shown);
    labels_[2]->setVisible(shell.zones_label_shown);
    boxes_[1]->setVisible(shell.zones_box_shown);
    zones_label_->setVisible(shell.zones_fixed_shown);
    zones_label_->setText(to_qt(basin.zones_text));
    area_label_->setText(to_qt(basin.basin_area_text));
    simulation_label_->setText(to_qt(doubled_ampersands(basin.Current_Sim_Name)));
    const bool open = !shell.climate_window;
    buttons_[0]->setEnabled(open);
    buttons_[1]->setEnabled(shell.delete_simulation && open);
    buttons_[2]->setEnabled(shell.edit_simulation && open);
    for (QToolBar* toolbar : findChildren<QToolBar*>()) toolbar->setEnabled(open);
    procedure_->setText(menu_->melting_procedure());
}

void frmNVR::mark_edited() {
    mark_output_invalid(session().basin);
    mark_input_changed(session().basin);
    windows_.refresh_results();
}

void frmNVR::box_changed(std::size_t box) {
    if (filling_) return;
    const ChangedBox changed = changed_box(static_cast<BasinBox>(box), from_qt(boxes_.at(box)->text()));
    if (changed.message) session().dialogs.message(*changed.message);
    if (changed.beep) QApplication::beep();
    if (to_qt(changed.text) != boxes_.at(box)->text()) {
        boxes_.at(box)->setText(to_qt(changed.text));
        return;
    }
    box_text(session().basin, box) = changed.text;
    typed_box_ = box;
    mark_edited();
}

void frmNVR::box_left(std::size_t box) {
    if (filling_ || telling_ || leaving_ || context().quick_help.is_on()) return;
    typed_box_.reset();
    const QString text = boxes_.at(box)->text();
    const auto problem =
        left_box_problem(static_cast<BasinBox>(box), from_qt(text), session().basin.basin_units);
    if (problem) {
        telling_ = true;
        refuse(boxes_.at(box), *problem);
        telling_ = false;
        const bool name = box == static_cast<std::size_t>(BasinBox::Name);
        boxes_.at(box)->setText(name ? QString::fromUtf8(k_unnamed_basin) : QString{});
        if (!name) QTimer::singleShot(0, boxes_.at(box), [edit = boxes_.at(box)] { edit->setFocus(); });
        return;
    }
    if (is_checked_number(static_cast<BasinBox>(box)) && !text.trimmed().isEmpty()) {
        // Intended: a number counts as entered when its box is left, whether or not it was changed.
        mark_input_changed(session().basin);
        windows_.refresh_results();
    }
    const bool zones_open =
        box == static_cast<std::size_t>(BasinBox::Zones) && !session().shell.zones_fixed_shown;
    if (zones_open && !text.trimmed().isEmpty()) zones_left();
}

void frmNVR::zones_left() {
    telling_ = true;
    if (session().basin.basin_units == Units::NotFixed) {
        boxes_[1]->clear();
        session().dialogs.message(units_before_zones());
        units_->setFocus();
        telling_ = false;
        return;
    }
    const bool confirmed = session().dialogs.message(zones_question()) == Answer::Yes;
    telling_ = false;
    if (!confirmed) {
        boxes_[1]->clear();
        QTimer::singleShot(0, boxes_[1], [this] { boxes_[1]->setFocus(); });
        return;
    }
    try {
        fix_zones(session(), to_integer16(leading_number(from_qt(boxes_[1]->text()))).value_or(1));
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
        return;
    }
    refresh_main_window();
    windows_.ask_for_period();
}

void frmNVR::units_left() {
    if (telling_ || leaving_ || units_->currentIndex() < 0 || !units_->isVisible()) return;
    telling_ = true;
    const bool confirmed = session().dialogs.message(units_question()) == Answer::Yes;
    telling_ = false;
    if (!confirmed) {
        units_->setCurrentIndex(-1);
        return;
    }
    try {
        fix_units(session(), static_cast<Units>(units_->currentIndex()));
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
    }
    refresh_main_window();
    QTimer::singleShot(0, boxes_[1], [this] { boxes_[1]->setFocus(); });
}

void frmNVR::move_on_from(std::size_t box) {
    switch (static_cast<BasinBox>(box)) {
        case BasinBox::Name:
            if (units_->isVisible()) return units_->setFocus();
            return boxes_[1]->isVisible() ? boxes_[1]->setFocus() : boxes_[2]->setFocus();
        case BasinBox::Zones: return boxes_[2]->setFocus();
        case BasinBox::ReferenceElevation: return boxes_[3]->setFocus();
        case BasinBox::Latitude: return boxes_[5]->setFocus();
        case BasinBox::Longitude: return boxes_[4]->setFocus();
        case BasinBox::Description: return zone_grid_->setFocus();
    }
}

bool frmNVR::eventFilter(QObject* watched, QEvent* event) {
    const auto found = std::find(boxes_.begin(), boxes_.end(), watched);
    if (found != boxes_.end()) {
        const auto box = static_cast<std::size_t>(found - boxes_.begin());
        if (leaves_box(event)) box_left(box);
        if (enters_box(event)) QTimer::singleShot(0, *found, &QLineEdit::selectAll);
        if (event->type() == QEvent::KeyPress) {
            const auto* key = static_cast<QKeyEvent*>(event);
            if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
                move_on_from(box);
                return true;
            }
            const QString typed = key->text();
            if (typed.isEmpty() || !typed.front().isPrint()) return false;
            const auto kept = (*found)->text().remove((*found)->selectedText());
            const auto verdict = key_verdict(static_cast<BasinBox>(box), typed.toUcs4().front(),
                                             from_qt((*found)->hasSelectedText() ? kept : (*found)->text()));
            if (verdict == KeyVerdict::DroppedWithBeep) QApplication::beep();
            return verdict != KeyVerdict::Passes;
        }
    }
    if (watched == units_) {
        if (leaves_box(event) && QApplication::activePopupWidget() == nullptr) units_left();
        if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                if (units_->currentIndex() < 0) {
                    telling_ = true;
                    session().dialogs.message(units_missing());
                    telling_ = false;
                    units_->setFocus();
                } else {
                    units_left();
                }
                return true;
            }
        }
    }
    return NivoraWindow::eventFilter(watched, event);
}

void frmNVR::row_selected() {
    const QModelIndex current = simulation_grid_->currentIndex();
    if (filling_ || !current.isValid()) return;
    if (session().shell.climate_window) return show_simulations();  // the evaluation keeps its simulation
    choose_simulation_row(session(), static_cast<std::size_t>(current.row()));
    fill_labels();
    menu_->refresh();
}

void frmNVR::quick_help_changed(bool on) {
    for (QLineEdit* box : boxes_) box->setEnabled(!on);
    for (QTableView* grid : {zone_grid_, simulation_grid_}) grid->setEnabled(!on);
    if (!on) boxes_[0]->setFocus();
}

}  // namespace nivora
