#include "base/durable_file.h"
#include "base/output_file.h"
#include "batch/commands.h"
#include "batch/output_guard.h"
#include "prep/table_export.h"
#include "store/basin_opening.h"

namespace nivora {

int export_command(const ExportCommand& command, BatchDialogs& dialogs) {
    try {
        refuse_basin_as_output(command.csv, command.basin);
        const OpenBasin basin = open_to_read(command.basin, command.wait, Check::All);
        const std::string table = basin.database().existing_table(command.table);
        OutputFile file{command.csv, {command.basin}};
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
