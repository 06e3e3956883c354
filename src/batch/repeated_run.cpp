#include "batch/repeated_run.h"

#include "climate/climate_run.h"
#include "engine/batch_dialogs.h"
#include "store/basin_opening.h"

#include <sstream>

namespace nivora {
namespace {

/// Runs the steps up to the asked one in a copy of the basin, since each reads the table of the step before.
/// @return whether all were done
/// @throws StoreError, FileError if the copy cannot be made
bool repeat_steps(BasinDatabase& database, RunContext context) {
    const PrivateFolder folder;
    const std::filesystem::path file = folder.path() / "basin.mdb";
    copy_open_basin(database, file);
    context.basin.Work_File = context.basin.Basin_File = file;
    BasinDatabase copy{file, Access::ReadWrite};
    copy.write_without_flushing();
    ClimateState climate;
    const ClimateContext steps{
        .run = context, .climate = climate, .report_file = folder.path() / "climate.out"};
    return run_climate_steps(copy, steps, context.run.ScenarioName, context.run.ClimateStep);
}

}  // namespace

RepeatedRun repeat_run(BasinDatabase& database, const BasinState& basin, const RunState& asked) {
    std::ostringstream discarded;
    BatchDialogs dialogs{discarded, false};
    dialogs.accept_proposals();
    BasinState copied_basin = basin;
    RepeatedRun repeated{.run = asked, .reason = {}};
    const RunContext context{copied_basin, *repeated.run, dialogs};
    const bool plain = asked.ClimateStep == 0;
    if (plain ? run_without_storing(database, context, asked.RunKind % 2) : repeat_steps(database, context))
        return repeated;
    if (!dialogs.messages().empty()) repeated.reason = dialogs.messages().back().text;
    repeated.run.reset();
    return repeated;
}

}  // namespace nivora
