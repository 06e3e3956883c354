#include "shell/basin_grids.h"

#include "base/number_text.h"
#include "base/row_difference.h"
#include "base/text.h"
#include "prep/daily_units.h"
#include "prep/simulation_grid.h"
#include "session/main_window_rules.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"

#include <QRect>

namespace nivora {
namespace {

constexpr int k_zone_columns = 11;
constexpr int k_simulation_columns = 17;
constexpr int k_elevation_column = 2;
constexpr int k_threshold_column = 13;
constexpr int k_fewest_grid_lines = 7;

/// The number in a cell of the zone grid, columns 2 to 11, counted from 1; null for any other column.
std::optional<double>* number_of(Zone& zone, int column) {
    if (column == 2) return &zone.area;
    if (column == 3) return &zone.elevation;
    if (column < 4 || column > k_zone_columns) return nullptr;
    Aspect& aspect = zone.aspects.at(static_cast<std::size_t>((column - 4) / 2));
    return column % 2 == 0 ? &aspect.share : &aspect.elevation;
}

}  // namespace

int ZoneModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int ZoneModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : k_zone_columns; }

CellFormat ZoneModel::format(int /*row*/, int column) const {
    return {.kind = column == 0 ? CellFormat::Kind::Text : CellFormat::Kind::Number};
}

QString ZoneModel::text(int row, int column) const {
    if (row >= zones()) return {};
    Zone& zone = session_.basin.zones.at(static_cast<std::size_t>(row));
    if (column == 0) return to_qt(zone.id);
    const auto* number = number_of(zone, column + 1);
    return number != nullptr && *number ? to_qt(double_text(**number)) : QString{};
}

QString ZoneModel::header(int column) const { return to_qt(zone_header(column + 1, units_)); }

QString ZoneModel::unit(int column) const {
    // The headers of the other numbers name their units.
    const bool share = column >= 3 && column % 2 == 1;
    return share ? QStringLiteral("percent of the zone's area; 1 in an imported basin, whose file gives none")
                 : QString{};
}

QVariant ZoneModel::headerData(int section, Qt::Orientation orientation, int role) const {
    return role == k_unit_role ? QVariant{} : GridModel::headerData(section, orientation, role);
}

QString ZoneModel::place(int row, int column) const {
    return QStringLiteral("%1, zone %2").arg(header(column).trimmed()).arg(row + 1);
}

bool ZoneModel::put(int row, int column, const QString& text) {
    return put_zone_cell(session_.basin.zones.at(static_cast<std::size_t>(row)), column, from_qt(text));
}

bool put_zone_cell(Zone& zone, int column, const std::string& taken) {
    if (column == 0) {
        zone.id = taken;
        return true;
    }
    // An emptied cell holds zero, not a blank.
    const auto number = trimmed(taken).empty() ? std::optional{0.0} : exact_number(taken);
    if (!number) return false;
    *number_of(zone, column + 1) = number;
    return true;
}

void ZoneModel::show_other_basin() {
    beginResetModel();
    rows_ = zones();
    endResetModel();
}

void ZoneModel::refresh() {
    change_rows(rows_, zones());
    show_values();
}

void ZoneModel::show_units(Units units) {
    units_ = units;
    emit headerDataChanged(Qt::Horizontal, 0, k_zone_columns - 1);
}

void ZoneModel::mark_zone(int zone) { mark(zone > 0 ? QRect(k_elevation_column, zone - 1, 1, 1) : QRect{}); }

int SimulationModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int SimulationModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : k_simulation_columns;
}

CellFormat SimulationModel::format(int /*row*/, int column) const {
    QStringList items;
    for (const std::string& item : simulation_list(column + 1)) items << to_qt(item);
    if (!items.isEmpty()) return {.kind = CellFormat::Kind::List, .items = items};
    switch (column + 1) {
        case 1:
        case 17: return {};
        case 2: return {.kind = CellFormat::Kind::Integer};
        case 3:
        case 4: return {.kind = CellFormat::Kind::Date};
        default: return {.kind = CellFormat::Kind::Number};
    }
}

QString SimulationModel::text(int row, int column) const {
    if (static_cast<std::size_t>(row) >= session_.basin.simulations.size()) return {};
    return to_qt(session_.basin.simulations.at(static_cast<std::size_t>(row)).text(column + 1));
}

QString SimulationModel::header(int column) const {
    return to_qt(simulation_header(column + 1, session_.basin.Units_Code));
}

/// The name is that of the parameter table.
bool SimulationModel::locked(int /*row*/, int column) const { return column == 0; }

QString SimulationModel::cleared_text(int /*row*/, int /*column*/) const { return {}; }

QColor SimulationModel::text_colour(int /*row*/, int /*column*/) const { return {0, 0, 255}; }

QString SimulationModel::unit(int column) const {
    return column == k_threshold_column ? to_qt(daily_unit("Precip", session_.basin.Units_Code)) : QString{};
}

QString SimulationModel::place(int row, int column) const {
    return QStringLiteral("%1 of '%2'").arg(header(column).trimmed(), text(row, 0));
}

QString SimulationModel::entry_refusal(int /*row*/, int column, const QString& text) const {
    return to_qt(simulation_cell_refusal(column + 1, from_qt(text)));
}

QString SimulationModel::locked_reason(int row, int column) const { return entry_refusal(row, column, {}); }

bool SimulationModel::put(int row, int column, const QString& text) {
    return edit_simulation_cell({session_.basin, session_.prep, session_.dialogs},
                                static_cast<std::size_t>(row), column + 1, from_qt(text));
}

std::vector<std::string> SimulationModel::names() const {
    std::vector<std::string> names;
    for (const Simulation& simulation : session_.basin.simulations) names.push_back(simulation.name);
    return names;
}

void SimulationModel::show_other_basin() {
    beginResetModel();
    rows_ = names();
    endResetModel();
}

void SimulationModel::refresh() {
    const std::vector<std::string> wanted = names();
    const RowDifference rows = row_difference(rows_, wanted);
    const int first = static_cast<int>(rows.first);
    if (rows.removed > 0) {
        beginRemoveRows({}, first, first + static_cast<int>(rows.removed) - 1);
        const auto gone = rows_.begin() + first;
        rows_.erase(gone, gone + static_cast<std::ptrdiff_t>(rows.removed));
        endRemoveRows();
    }
    if (rows.inserted > 0) {
        beginInsertRows({}, first, first + static_cast<int>(rows.inserted) - 1);
        rows_ = wanted;
        endInsertRows();
    }
    show_values();
}

GridView* make_basin_grid(const char* name, GridModel* model, Dialogs& user, QWidget* parent) {
    auto* grid = new GridView(model, user, parent);
    grid->setObjectName(QString::fromUtf8(name));
    grid->setMinimumHeight(k_fewest_grid_lines * (grid->fontMetrics().lineSpacing() + 6));
    return grid;
}

}  // namespace nivora
