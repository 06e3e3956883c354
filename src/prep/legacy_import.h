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

/// Brings a legacy file into a basin: its name and reference elevation where the basin has no name yet, its
/// zones where there are none, its daily variables, and a new parameter table under the name that the user
/// gives. Zones that differ from those of the file are asked about.
///
/// Works inside a transaction of the caller, who undoes everything where nothing comes back. The definition
/// that comes back is not in the simulation index yet: everything basinwide, average temperatures, no initial
/// runoff, the file's rain threshold.
///
/// @return the new simulation; nothing where the file does not fit the basin, which has been shown, or the
///         user gave no name or cancelled
/// @throws StoreError
[[nodiscard]] std::optional<SimulationRecord> import_legacy(BasinDatabase& database, const LegacyFile& file,
                                                            const std::string& offered_name,
                                                            Dialogs& dialogs);

}  // namespace nivora
