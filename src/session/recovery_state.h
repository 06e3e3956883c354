// The recovery state: what a basin with unsaved changes has beside its working file. With the working file it
// brings the basin back after a crash.
#pragma once

#include "base/file_content.h"
#include "engine/run_state.h"
#include "session/session.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The number of the form of the file; another one can't be read.
inline constexpr int k_recovery_form = 1;

/// A file that is no complete recovery state; the text is a clause about it.
class RecoveryError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The boxes and grids of the main window, the marks, and what a run keeps in memory.
struct RecoveryState {
    double time = 0.0;  ///< local date and time at which it was taken

    std::optional<std::string> basin_file;  ///< nothing for a basin that has no file yet
    /// What the user's file held when it was opened or saved.
    std::optional<FileContent> known_content;
    /// The change counter of the working file. Another one means that the working file was changed later.
    std::optional<std::uint32_t> change_counter;

    bool Basin_Changed = false;
    bool Input_Changed = false;
    bool Output_Valid = false;  ///< not during a climate evaluation, whose values are not kept
    bool results_outdated = false;
    std::optional<double> results_time;

    std::string basin_name;
    std::string basin_description;
    std::string zones_text;
    std::string reference_elevation_text;
    std::string latitude_text;
    std::string longitude_text;
    int ZoneCount = 1;
    std::vector<Zone> zones;
    std::vector<Simulation> simulations;
    std::optional<std::uint64_t> current_row;

    RunState run;

    /// In the daily editor, or the table of the monthly averages; empty if neither was open.
    std::string edited_table;
    std::string daily_edits;  ///< its changes, as lines
};

/// The state of a basin and its last run, without the changes in the daily editor.
[[nodiscard]] RecoveryState recovery_state(const BasinState& basin, const RunState& run,
                                           const std::optional<FileContent>& known_content);

/// The lines of a state, without its time and the changes in the daily editor: two states are equal if these
/// are.
[[nodiscard]] std::string recovery_lines(const RecoveryState& state);

/// The content of a recovery file, with form, size and checksum.
///
/// @param lines from recovery_lines
/// @param edits the changes in the daily editor, as lines
[[nodiscard]] std::string recovery_text(double time, std::string_view lines, std::string_view table,
                                        std::string_view edits);

/// @throws RecoveryError if the text is of another form or not complete
[[nodiscard]] RecoveryState read_recovery_text(std::string_view text);

/// Reads a recovery file; nothing if there is none. @throws RecoveryError, also if it can't be read
[[nodiscard]] std::optional<RecoveryState> read_recovery_file(const std::filesystem::path& file);

}  // namespace nivora
