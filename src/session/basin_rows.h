// What the main window holds of the basin, into the rows of its file and back.
#pragma once

#include "store/basin_store.h"

namespace nivora {

/// A box or cell of the main window with a number that no field of a basin file can hold. A file that another
/// program wrote may bring one in.
struct UnstorableField {
    enum class Part { Box, Zones, Simulations };

    Part part = Part::Box;
    std::size_t row = 0;    ///< of a grid
    int column = 0;         ///< of a grid, from 1; the number of a box
    std::string complaint;  ///< a sentence that names it by its caption
};

/// The first such field, boxes before zones before simulations; nothing where all can be stored.
[[nodiscard]] std::optional<UnstorableField> unstorable_field(const BasinState& basin);

/// Writes the boxes of the basin definition. The units stay those that were fixed: a simulation may name
/// others.
void store_boxes(BasinDatabase& database, const BasinState& basin);

/// Writes the zone grid, a row for each of the basin's zones; a cell without a text has the numeric value
/// zero.
void store_zones(BasinDatabase& database, const BasinState& basin);

/// Writes the simulation grid. Intended: its X and Y cells are not written.
void store_simulations(BasinDatabase& database, const BasinState& basin);

/// Writes boxes and zones, where the basin has zones already.
void store_definition(BasinDatabase& database, const BasinState& basin);

/// Reads boxes and zones, and leaves the simulation grid alone.
void read_definition(BasinDatabase& database, BasinState& basin);

}  // namespace nivora
