#include "session/data_commands.h"

namespace nivora {
namespace {

template <typename Choose>
DataOutcome on_work_file(Session& session, Choose choose) {
    try {
        BasinDatabase database{session.basin.Work_File, Access::ReadWrite};
        return choose(PrepContext{session.basin, session.prep, session.dialogs}, database);
    } catch (const StoreError&) {
        // The command ends without a message.
        return DataOutcome::Stopped;
    }
}

}  // namespace

DataOutcome choose_data_entry(Session& session, DataEntry entry) {
    return on_work_file(session, [entry](const PrepContext& prep, BasinDatabase& database) {
        return mnuDataOpt_Click(prep, database, entry);
    });
}

DataOutcome choose_daily_variables(Session& session, int index) {
    return on_work_file(session, [index](const PrepContext& prep, BasinDatabase& database) {
        return mnuDataOptVar_Click(prep, database, index);
    });
}

DataOutcome view_record(Session& session) {
    return on_work_file(session, [](const PrepContext& prep, BasinDatabase& database) {
        return view_record(prep, database);
    });
}

}  // namespace nivora
