// Every value that lives as long as the program, in one place.
#pragma once

#include "base/dialogs.h"
#include "climate/climate_state.h"
#include "engine/run_state.h"
#include "prep/prep_state.h"
#include "session/definition_history.h"
#include "session/desktop.h"
#include "session/file_names.h"
#include "session/run_list.h"
#include "session/settings.h"
#include "session/shell_state.h"
#include "store/basin_store.h"

namespace nivora {

/// One program, one user, one basin. Owned by main and passed by reference.
struct Session {
    Session(Dialogs& user, Desktop& above) : dialogs(user), desktop(above), file_names(user) {}

    BasinState basin;
    RunState run;
    PrepState prep;
    ClimateState climate;
    Settings settings;
    ShellState shell;
    Dialogs& dialogs;
    Desktop& desktop;
    FileNames file_names;
    RunList runs;
    DefinitionHistory history;
};

}  // namespace nivora
