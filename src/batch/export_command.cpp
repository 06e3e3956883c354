#include "base/durable_file.h"
#include "base/output_file.h"
#include "batch/commands.h"
#include "batch/output_guard.h"
#include "engine/named_run.h"
#include "prep/netcdf_export.h"
#include "prep/table_export.h"
#include "store/basin_opening.h"

namespace nivora {
namespace {

/// What a NetCDF file says of the origin of its values; nothing after a report.
std::optional<NetcdfOrigin> origin_of(BasinDatabase& database, const ExportCommand& command,
                                      const std::string& table, BatchDialogs& dialogs) {
    NetcdfOrigin origin;
    BasinState basin;
    if (!command.simulation.empty()) {
        if (!select_by_name(database, command.basin, command.simulation, basin, dialogs)) return std::nullopt;
        origin.simulation = basin.Current_Sim_Name;
    } else {
        read_basin(database, basin);
        // A table of parameters has the name of its simulation.
        if (find_simulation(basin, table)) origin.simulation = table;
    }
    if (command.run_told) {
        const char* caption = command.run.forecast ? forecast_caption(command.run.index)
                                                   : simulation_caption(command.run.index);
        origin.run = std::string{caption}.substr(1);  // without the mark of its letter
    }
    return origin;
}

}  // namespace

int export_command(const ExportCommand& command, BatchDialogs& dialogs) {
    try {
        refuse_basin_as_output(command.file, command.basin);
        const OpenBasin basin = open_to_read(command.basin, command.wait, Check::All);
        const std::string table = basin.database().existing_table(command.table);
        if (command.netcdf) {
            const auto origin = origin_of(basin.database(), command, table, dialogs);
            if (!origin) return k_failed;
            const std::string bytes = netcdf_bytes(netcdf_table(basin.database(), table, *origin));
            OutputFile file{command.file, {command.basin}};
            file.write(bytes);
            file.finish();
            return k_done;
        }
        OutputFile file{command.file, {command.basin}};
        write_csv(basin.database(), table, std::nullopt, [&](std::string_view piece) { file.write(piece); });
        file.finish();
        return k_done;
    } catch (const StoreError& error) {
        dialogs.report_problem("Export failed", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("Export failed", error.what());
    }
    return k_failed;
}

int template_command(const std::filesystem::path& file, BatchDialogs& dialogs) {
    try {
        BasinDatabase::create_template(file);
        return k_done;
    } catch (const StoreError& error) {
        dialogs.report_problem("The template was not written", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("The template was not written", error.what());
    }
    return k_failed;
}

}  // namespace nivora
