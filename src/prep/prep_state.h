// The state of data preparation while the program runs.
#pragma once

#include "base/dialogs.h"
#include "prep/daily_edits.h"
#include "store/basin_store.h"
#include "store/daily_table.h"
#include "store/rows.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// What opened the window of a simulation's definition.
enum class SimOptionsMode { Add = 0, Edit = 1, Import = 2 };

/// Which daily table is in use. One variable is both the view of the daily editor and the
/// mode of Build_Daily_Records.
enum class DataView {
    PhysicalData = 0,  ///< the basin's daily variables
    Parameters = 1,    ///< a simulation's parameter table
    Results = 2,       ///< results of the last run; as a mode, the daily rows of a climate run
    Scenario = 3       ///< results under a climate scenario
};

/// A simulation definition on its way into the grid, with the first values of its parameter table.
struct SimulationRecord {
    Simulation definition;
    ParameterRow first_values;
};

/// What the daily editor shows; prepared by the code that opens it.
struct DailyQuery {
    std::string table;                ///< the table, by its stored name
    std::vector<std::string> fields;  ///< `Date` first
    std::optional<Period> period;     ///< the days to show; all if not set
};

struct PrepState {
    SimOptionsMode SimOptions_Mode = SimOptionsMode::Add;
    SimulationRecord working_record;

    DataView Data_View = DataView::PhysicalData;
    DayCount Daily_Start = 0;    ///< first day of the rows to add
    DayCount Daily_End = 0;      ///< last day of the rows to add
    DailyQuery query;            ///< what the daily editor shows
    std::string window_title;    ///< of the daily editor
    std::string status;          ///< in the status bar of the daily editor; only for a scenario's values
    std::string caption_prefix;  ///< of the daily editor's caption
    bool Edit_Locked = false;    ///< the daily editor is read only
    /// Widths of the daily editor's columns by view, measured once.
    std::map<int, std::vector<int>> column_widths;
    /// What the open daily editor, or the open monthly averages, have changed and not stored.
    DailyEdits daily_edits;
    /// Notes the value that is being typed there; set while such a window is open.
    std::function<void()> note_typed;
    RecordExtent record;  ///< extent of the daily variables when the basin was opened or rows were added
};

/// The objects that the rules of data preparation work on.
struct PrepContext {
    BasinState& basin;
    PrepState& prep;
    Dialogs& dialogs;
};

}  // namespace nivora
