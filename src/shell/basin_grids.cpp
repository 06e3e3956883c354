#include "shell/basin_grids.h"

#include "base/number_text.h"
#include "session/main_window_rules.h"
#include "widgets/nivora_window.h"
#include "widgets/qt_text.h"

#include <QColor>

namespace nivora {
namespace {

constexpr int k_zone_columns = 11;
constexpr int k_simulation_columns = 17;

/// The number behind a cell of the zone grid, columns 2 to 11 from 1.
std::optional<double>* number_of(Zone& zone, int column) {
    if (column == 2) return &zone.area;
    if (column == 3) return &zone.elevation;
    if (column < 4 || column > k_zone_columns) return nullptr;
    Aspect& aspect = zone.aspects.at(static_cast<std::size_t>((column - 4) / 2));
    return column % 2 == 0 ? &aspect.share : &aspect.elevation;
}

}  // namespace

int ZoneModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(session_.basin.zones.size());
}

int ZoneModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : k_zone_columns; }

QVariant ZoneModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= session_.basin.zones.size()) return {};
    Zone& zone = session_.basin.zones.at(row);
    const int column = index.column() + 1;
    if (role == Qt::DisplayRole || role == Qt::EditRole) {
        if (column == 1) return to_qt(zone.id);
        const auto* number = number_of(zone, column);
        return number != nullptr && *number ? to_qt(double_text(**number)) : QString{};
    }
    if (role == Qt::TextAlignmentRole && column > 1) return {Qt::AlignRight | Qt::AlignVCenter};
    if (role == Qt::BackgroundRole && column == 3 && marked_zone_ == index.row() + 1) {
        return QColor::fromRgb(NivoraWindow::k_refused_colour);
    }
    return {};
}

QVariant ZoneModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) return section + 1;
    return to_qt(zone_header(section + 1, session_.basin.Units_Code)).trimmed();
}

Qt::ItemFlags ZoneModel::flags(const QModelIndex& index) const {
    return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

bool ZoneModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const auto row = static_cast<std::size_t>(index.row());
    if (role != Qt::EditRole || !index.isValid() || row >= session_.basin.zones.size()) return false;
    Zone& zone = session_.basin.zones.at(row);
    const std::string text = from_qt(value.toString());
    if (index.column() == 0) {
        zone.id = text;
    } else if (auto* number = number_of(zone, index.column() + 1)) {
        // An emptied cell holds zero and no blank.
        *number = leading_number(text);
    }
    emit dataChanged(index, index);
    emit edited();
    return true;
}

void ZoneModel::reload() {
    beginResetModel();
    endResetModel();
}

void ZoneModel::clear_cells(const QModelIndexList& cells) {
    for (const QModelIndex& cell : cells)
        setData(cell, cell.column() == 0 ? QString{} : QStringLiteral("0"), Qt::EditRole);
}

void ZoneModel::mark_zone(int zone) {
    marked_zone_ = zone;
    if (rowCount() > 0) emit dataChanged(index(0, 2), index(rowCount() - 1, 2));
}

int SimulationModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(session_.basin.simulations.size());
}

int SimulationModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : k_simulation_columns;
}

QVariant SimulationModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= session_.basin.simulations.size()) return {};
    if (role == Qt::DisplayRole) return to_qt(session_.basin.simulations.at(row).text(index.column() + 1));
    if (role == Qt::ForegroundRole) return QColor(0, 0, 255);
    return {};
}

QVariant SimulationModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) return section + 1;
    return to_qt(simulation_header(section + 1, session_.basin.Units_Code)).trimmed();
}

void SimulationModel::reload() {
    beginResetModel();
    endResetModel();
}

}  // namespace nivora
