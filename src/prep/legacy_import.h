// The import of a legacy file into a basin.
#pragma once

#include "base/dialogs.h"
#include "prep/legacy_file.h"
#include "prep/prep_state.h"
#include "store/database.h"

#include <optional>
#include <string>

namespace nivora {

/// The name that the import offers for a file's simulation: the file's name without ".nvr" or ".NVR".
[[nodiscard]] std::string offered_simulation_name(const std::string& file_name);

/// Imports a legacy file into a basin: its name and reference elevation if the basin has no name yet, its
/// zones if there are none, its daily variables, and a new parameter table under the name that the user
/// gives. Asks if the zones differ from those of the file.
///
/// Works inside a transaction of the caller, who rolls back if nothing is returned. The returned definition
/// is not in the simulation index yet: everything basinwide, average temperatures, no initial runoff, the
/// file's rain threshold.
///
/// @return the new simulation; nothing if the file does not fit the basin, which was shown, or the user gave
///         no name or cancelled
/// @throws StoreError
[[nodiscard]] std::optional<SimulationRecord> import_legacy(BasinDatabase& database, const LegacyFile& file,
                                                            const std::string& offered_name,
                                                            Dialogs& dialogs);

}  // namespace nivora
