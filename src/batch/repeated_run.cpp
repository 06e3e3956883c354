#include "batch/repeated_run.h"

#include "batch/batch_dialogs.h"
#include "batch/climate_steps.h"
#include "store/basin_opening.h"

#include <sstream>

namespace nivora {
namespace {

/// Runs in the copy. @return whether all of it was done
bool run_in_copy(BasinDatabase& database, RunContext context, const std::filesystem::path& climate_report) {
    RunState& run = context.run;
    if (run.ClimateStep == 0) return start_run(database, context, run.RunKind % 2).completed;
    ClimateState climate;
    const ClimateContext steps{.run = context, .climate = climate, .report_file = climate_report};
    return run_climate_steps(database, steps, run.ScenarioName, run.ClimateStep);
}

}  // namespace

RepeatedRun repeat_run(BasinDatabase& database, const BasinState& basin, const RunState& asked) {
    const PrivateFolder folder;
    const std::filesystem::path file = folder.path() / "basin.mdb";
    copy_open_basin(database, file);
    std::ostringstream discarded;
    BatchDialogs dialogs{discarded, false};
    dialogs.accept_proposals();
    BasinState copied_basin = basin;
    copied_basin.Work_File = copied_basin.Basin_File = file;
    RepeatedRun repeated{.run = asked, .reason = {}};
    BasinDatabase copy{file, Access::ReadWrite};
    copy.write_without_flushing();
    if (run_in_copy(copy, {copied_basin, *repeated.run, dialogs}, folder.path() / "climate.out"))
        return repeated;
    if (!dialogs.messages().empty()) repeated.reason = dialogs.messages().back().text;
    repeated.run.reset();
    return repeated;
}

}  // namespace nivora
