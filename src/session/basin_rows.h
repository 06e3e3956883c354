// Writes the content of the main window to the basin file and reads it.
#pragma once

#include "store/basin_store.h"

namespace nivora {

/// A box or cell of the main window.
struct DefinitionField {
    enum class Part { Box, Zones, Simulations };

    Part part = Part::Box;
    std::size_t row = 0;  ///< of a grid
    int column = 0;       ///< of a grid, from 1; the number of a box
};

/// A box or cell of the main window with a number that no field of a basin file can hold. It may come from a
/// file that another program wrote.
struct UnstorableField : DefinitionField {
    std::string complaint = {};  ///< a sentence that names the field by its caption
};

/// The first such field, boxes before zones before simulations; nothing if all can be stored.
[[nodiscard]] std::optional<UnstorableField> unstorable_field(const BasinState& basin);

/// Writes the boxes of the basin definition. The fixed units do not change: a simulation may have others.
void store_boxes(BasinDatabase& database, const BasinState& basin);

/// Writes the zone grid, a row for each of the basin's zones;
/// a cell without a text has the numeric value zero.
void store_zones(BasinDatabase& database, const BasinState& basin);

/// Writes the simulation grid. Intended: its X and Y cells are not written.
void store_simulations(BasinDatabase& database, const BasinState& basin);

/// Writes boxes and zones if the basin has zones.
void store_definition(BasinDatabase& database, const BasinState& basin);

/// Reads boxes and zones, not the simulation grid.
void read_definition(BasinDatabase& database, BasinState& basin);

}  // namespace nivora
