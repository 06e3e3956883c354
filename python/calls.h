// The groups of calls that the module nivora._core has.
#pragma once

#include <pybind11/pybind11.h>

namespace nivora {

/// Basin files: what they hold, new ones, tables into them.
void add_basin_calls(pybind11::module_& module);
/// Runs and climate evaluations that are stored.
void add_run_calls(pybind11::module_& module);
/// Studies, which leave the basin as it is.
void add_study_calls(pybind11::module_& module);

}  // namespace nivora
