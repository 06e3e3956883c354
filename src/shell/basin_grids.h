// The two grids of the main window as views of the basin's rows.
#pragma once

#include "session/session.h"

#include <QAbstractTableModel>

namespace nivora {

/// The elevation zones: one row a zone, the eleven columns of the zone grid. Numbers show as they were typed.
class ZoneModel : public QAbstractTableModel {
    Q_OBJECT

public:
    ZoneModel(Session& session, QObject* parent) : QAbstractTableModel(parent), session_(session) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Shows the session's rows anew.
    void reload();
    /// Sets cells to zero, as the Delete key does.
    void clear_cells(const QModelIndexList& cells);
    /// Paints the elevation of a zone in the colour of refused input; 0 for none.
    void mark_zone(int zone);

signals:
    void edited();

private:
    Session& session_;
    int marked_zone_ = 0;
};

/// The simulations: one row a simulation, 17 columns, blue as the grid shows stored values.
class SimulationModel : public QAbstractTableModel {
    Q_OBJECT

public:
    SimulationModel(Session& session, QObject* parent) : QAbstractTableModel(parent), session_(session) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void reload();

private:
    Session& session_;
};

}  // namespace nivora
