// The upper part of the main window: the definition of the basin and its zones.
#pragma once

#include "engine/run_driver.h"
#include "session/definition_rules.h"
#include "shell/interruptions.h"
#include "widgets/nivora_window.h"

#include <QGroupBox>
#include <array>
#include <optional>

class QComboBox;
class QGridLayout;
class QKeyEvent;
class QLabel;
class QLineEdit;

namespace nivora {

class GridView;
class ZoneModel;

/// Boxes, units and zone grid. Typed text is stored in the basin's state at once,
/// and is checked when its box is left.
class BasinPanel : public QGroupBox {
    Q_OBJECT

public:
    BasinPanel(const WindowContext& context, Interruptions& interruptions, QWidget* parent);

    /// Shows boxes, units and zones of the basin.
    void fill();
    /// Another basin will be shown: selection, active cell and scroll position of the zone grid are not kept.
    void leave_basin() { another_basin_ = true; }
    /// Shows the units by name, and the stage of the definition.
    void show_labels();
    /// Stores the cell and the boxes that are being edited in the basin's state.
    void commit_edits();
    /// Shows boxes and zones again after an edit was undone; the columns keep their widths.
    void show_values();
    /// Takes back the last characters that were typed into the box with the focus, or types them again.
    /// @return false if there are none, or if something else was edited since
    bool undo_typing();
    bool redo_typing();
    /// Checks the box that is being typed in as if it were left: a menu does not leave a box, but a run and a
    /// save use its text. @return whether it was refused
    [[nodiscard]] bool refuses_typed_box();

    /// Puts the cursor into a box, or into a cell of the zone grid.
    void go_to(BasinBox box);
    void go_to_cell(int row, int column);
    /// Selects the name of a new basin, so that typing replaces it.
    void begin_naming();
    /// Shows what prevents a run, and moves the cursor to it.
    void show_problem(const RunMenuProblem& problem);
    /// Enables boxes and grid, or disables them for QuickHelp.
    void open_for_entry(bool open);

    [[nodiscard]] QLineEdit& name_box() const { return *box(BasinBox::Name); }
    [[nodiscard]] GridView& zone_grid() const { return *zone_grid_; }

signals:
    /// A text or a number was changed, or counts as changed.
    void edited();
    /// Other units were chosen in the list; they are not fixed yet.
    void units_chosen();
    void units_fixed();
    void zones_fixed();
    void areas_taken();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QLineEdit* box(BasinBox which) const { return boxes_.at(static_cast<std::size_t>(which)); }
    void make_units(QGridLayout* grid);
    void make_boxes(QGridLayout* grid);
    void make_zones(QGridLayout* grid);
    void connect_controls();
    void mark_edited();
    void box_changed(BasinBox box);
    void box_left(BasinBox box);
    void refuse_box(BasinBox box, const Message& problem);
    bool box_key(BasinBox box, const QKeyEvent& event);
    bool units_key(const QKeyEvent& event);
    void move_on_from(BasinBox box);
    void units_left();
    void zones_left();
    void take_areas();
    [[nodiscard]] QLineEdit* box_with_focus() const;

    Session& session_;
    const QuickHelp& quick_help_;
    Interruptions& interruptions_;
    ZoneModel* zones_;
    QComboBox* units_;
    QLabel* units_label_;
    QLabel* zones_label_;
    QLabel* area_label_;
    GridView* zone_grid_;
    std::array<QLineEdit*, 6> boxes_{};
    QLabel* zones_caption_ = nullptr;
    QLabel* elevation_caption_ = nullptr;
    QLabel* area_caption_ = nullptr;
    bool another_basin_ = true;          ///< the basin is another one than the zone grid shows
    std::optional<BasinBox> typed_box_;  ///< the box whose text has changed since it was entered
};

}  // namespace nivora
