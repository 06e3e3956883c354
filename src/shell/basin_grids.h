// The two grids of the main window as views of the basin's rows.
#pragma once

#include "session/session.h"
#include "widgets/grid_model.h"

#include <string>
#include <vector>

class QWidget;

namespace nivora {

class GridView;

/// Stores what was typed into a cell of the zone grid. @return false if it can't be held
[[nodiscard]] bool put_zone_cell(Zone& zone, int column, const std::string& text);

/// The elevation zones: one row per zone, the eleven columns of the zone grid.
/// Numbers show as they were typed.
class ZoneModel : public GridModel {
    Q_OBJECT

public:
    ZoneModel(Session& session, QObject* parent) : GridModel(parent), session_(session) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] CellFormat format(int row, int column) const override;
    [[nodiscard]] QString text(int row, int column) const override;
    [[nodiscard]] QString header(int column) const override;
    [[nodiscard]] QString unit(int column) const override;
    [[nodiscard]] QString place(int row, int column) const override;
    /// No unit for QuickHelp: its lines for these columns already name it.
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Shows the zones of another basin.
    void show_other_basin();
    /// Shows the zones again after a change, which may include their number.
    void refresh();
    void begin_change() override { session_.history.begin(session_); }
    /// Names the units in the headers: the chosen ones, even before they are fixed.
    void show_units(Units units);
    /// Paints the elevation of a zone in the colour of refused input; 0 for none.
    void mark_zone(int zone);

protected:
    void end_change() override { session_.history.end(session_); }
    [[nodiscard]] bool put(int row, int column, const QString& text) override;

private:
    [[nodiscard]] int zones() const { return static_cast<int>(session_.basin.zones.size()); }

    Session& session_;
    int rows_ = 0;  ///< the number of shown rows; the basin may already have another number
    Units units_ = Units::Metric;
};

/// The simulations: one row per simulation, 17 columns, in the blue of stored values.
class SimulationModel : public GridModel {
    Q_OBJECT

public:
    SimulationModel(Session& session, QObject* parent) : GridModel(parent), session_(session) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] CellFormat format(int row, int column) const override;
    [[nodiscard]] QString text(int row, int column) const override;
    [[nodiscard]] QString header(int column) const override;
    [[nodiscard]] bool locked(int row, int column) const override;
    [[nodiscard]] QString cleared_text(int row, int column) const override;
    [[nodiscard]] QColor text_colour(int row, int column) const override;
    [[nodiscard]] QString unit(int column) const override;
    [[nodiscard]] QString place(int row, int column) const override;

    /// Shows the simulations of another basin.
    void show_other_basin();
    /// Shows the simulations again after a change; adds and removes rows.
    void refresh();
    void begin_change() override { session_.history.begin(session_); }

protected:
    void end_change() override { session_.history.end(session_); }
    [[nodiscard]] bool put(int row, int column, const QString& text) override;
    [[nodiscard]] QString entry_refusal(int row, int column, const QString& text) const override;
    [[nodiscard]] QString locked_reason(int row, int column) const override;

private:
    [[nodiscard]] std::vector<std::string> names() const;

    Session& session_;
    std::vector<std::string> rows_;  ///< the names of the shown rows; the basin may already have others
};

/// A grid of the main window, tall enough to show rows on the smallest screen.
[[nodiscard]] GridView* make_basin_grid(const char* name, GridModel* model, Dialogs& user, QWidget* parent);

}  // namespace nivora
