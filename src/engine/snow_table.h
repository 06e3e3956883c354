// The snow stage of a full table: each zone's days in passes over its columns.
// Equations and rules: docs/model.md, section 3.
#pragma once

#include "engine/step_columns.h"

#include <span>

namespace nivora {

/// What a full table's snow needs beside its columns.
struct SnowTableShape {
    std::size_t days = 0;  ///< of each zone
    std::size_t winter_days =
        0;  ///< at the start of each zone's days; 0 where the run starts in the melt season
    bool keeps_store = false;   ///< whether nothing empties the store of new snow
    bool draws_curves = false;  ///< whether the modified depletion curves are written
};

/// Whether every value of the table is in the range in which the passes give the bits of the rows: no row can
/// fail, no value is negative and no zero has a sign.
[[nodiscard]] bool is_plain_snow(const StepColumns& columns);

/// Works the days of all zones. @param stores a value for each zone; set to the zones' stores after the last
/// day
void work_snow_of_zones(const StepColumns& columns, const SnowTableShape& shape, std::span<float> stores);

}  // namespace nivora
