// The Python module nivora._core: the calls that the package in python/nivora is made of.
#include "base/durable_file.h"
#include "base/program_module.h"
#include "base/version.h"
#include "prep/basin_definition.h"
#include "prep/csv_reader.h"
#include "prep/table_load.h"
#include "python/calls.h"
#include "python/refusal.h"
#include "store/store_error.h"

#include <fmt/format.h>
#include <pybind11/pybind11.h>

#include <string>

namespace py = pybind11;

PYBIND11_MODULE(_core, module) {
    module.attr("version") = nivora::k_version;
    // Day 0 of the day counts in results.
    module.attr("day_zero") = "1899-12-30";

    py::register_exception<nivora::StoreError>(module, "StoreError", PyExc_RuntimeError);
    py::register_exception<nivora::FileError>(module, "FileError", PyExc_RuntimeError);
    py::register_exception<nivora::Refusal>(module, "RefusedError", PyExc_ValueError);
    static const py::exception<nivora::TableFault> table_error{module, "TableError", PyExc_ValueError};
    py::register_exception_translator([](std::exception_ptr thrown) {
        const auto set = [&](std::size_t line, const char* reason) {
            const std::string text =
                line == 0 ? fmt::format("{}.", reason) : fmt::format("Line {}: {}.", line, reason);
            PyErr_SetString(table_error.ptr(), text.c_str());
        };
        try {
            if (thrown) std::rethrow_exception(thrown);
        } catch (const nivora::TableFault& fault) {
            set(fault.line(), fault.what());
        } catch (const nivora::CsvError& fault) {
            set(fault.line(), fault.what());
        } catch (const nivora::DefinitionFault& fault) {
            std::string text;
            for (const nivora::DefinitionProblem& problem : fault.problems()) {
                text += fmt::format("{}{}{}{}.", text.empty() ? "" : "\n", problem.place,
                                    problem.place.empty() ? "" : ": ", problem.reason);
            }
            PyErr_SetString(table_error.ptr(), text.c_str());
        }
    });

    module.def(
        "set_module_folder",
        [](const std::string& folder) { nivora::set_module_folder(nivora::path_from_utf8(folder)); },
        py::arg("folder"));
    nivora::add_basin_calls(module);
    nivora::add_run_calls(module);
    nivora::add_study_calls(module);
}
