#include "session/basin_import.h"

#include "base/durable_file.h"
#include "prep/daily_records.h"
#include "prep/legacy_import.h"
#include "session/basin_rows.h"
#include "store/transactions.h"

#include <fmt/format.h>

namespace nivora {
namespace {

constexpr std::uintmax_t k_largest_file = 64U << 20U;
constexpr const char* k_title = "Import failed";

/// Imports in one transaction; first stores the basin and its zones as the grids show them.
std::optional<SimulationRecord> import_into(Session& session, const LegacyFile& file,
                                            const std::string& offered) {
    BasinDatabase database{session.basin.Work_File, Access::ReadWrite};
    HeldTransaction transaction{database};
    store_definition(database, session.basin);
    auto record = import_legacy(database, file, offered, session.dialogs);
    if (!record) return std::nullopt;
    transaction.commit();
    read_definition(database, session.basin);
    session.prep.record = Scan_Physical_Data(database);
    return record;
}

}  // namespace

bool import_basin(Session& session) {
    session.desktop.commit_edits();
    const auto path = session.file_names.GetFileName(FileKind::Import, session.basin.Basin_File);
    if (!path) return false;
    try {
        const LegacyFile file = read_legacy_file(read_whole_file(*path, k_largest_file));
        auto record = import_into(session, file, offered_simulation_name(path_text(path->filename())));
        if (!record) return false;
        session.prep.working_record = std::move(*record);
        session.prep.SimOptions_Mode = SimOptionsMode::Import;
        return true;
    } catch (const LegacyFileError& error) {
        session.dialogs.stop(
            fmt::format("The file '{}' can't be read as a legacy data file. {}. The basin is unchanged.",
                        path_text(*path), error.what()),
            k_title);
    } catch (const FileError& error) {
        session.dialogs.stop(error.what(), k_title);
    } catch (const StoreError& error) {
        session.dialogs.stop(std::string{error.what()} + " The basin is unchanged.", k_title);
    }
    return false;
}

}  // namespace nivora
