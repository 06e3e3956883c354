// What data preparation keeps while the program runs.
#pragma once

#include "store/rows.h"

namespace nivora {

/// What opened the window of a simulation's definition.
enum class SimOptionsMode { Add = 0, Edit = 1, Import = 2 };

/// A simulation definition on its way into the grid, with the first values of its parameter table.
struct SimulationRecord {
    Simulation definition;
    ParameterRow first_values;
};

struct PrepState {
    SimOptionsMode SimOptions_Mode = SimOptionsMode::Add;
    SimulationRecord working_record;
};

}  // namespace nivora
