// The window in which a simulation is defined, as texts and choices without a window.
#pragma once

#include "prep/prep_state.h"
#include "store/database.h"

#include <array>
#include <optional>
#include <string>

namespace nivora {

/// The first values of a parameter table, in the order of their boxes.
enum class FirstValue { An, Tcrit, LapseRate, Cs, Cr, RCA, LagTime, Xcoeff, Ycoeff };
inline constexpr std::size_t k_first_values = 9;

/// The texts that depend on the units of a definition.
struct UnitTexts {
    std::string area_word;          ///< "cm" or "in"
    std::string flow_letter;        ///< "m" or "f"
    std::string default_threshold;  ///< "6.00" or "2.36"
};
[[nodiscard]] UnitTexts unit_texts(Units units);

/// The content of the window's controls. A number is a text, empty if there is none.
struct SimOptionsForm {
    std::string name;
    std::string run_number;
    std::string start;  ///< mm/dd/yyyy
    std::string end;    ///< mm/dd/yyyy
    Units units = Units::Metric;
    int temperature_values = 0;
    std::array<bool, 6> by_zone{};
    std::string initial_runoff;
    std::string threshold;
    std::string comments;
    std::array<std::string, k_first_values> first_values;
    bool values_of_first_day = false;     ///< the first values are those of zone 1 on the first day
    bool rebuilds_table = false;          ///< the parameter table lacks the period: an edit rewrites it
    std::optional<std::size_t> grid_row;  ///< the row that an earlier Accept has added
};

/// The working record of a simulation that is to be added under a name.
[[nodiscard]] SimulationRecord new_simulation_record(const BasinState& basin, const std::string& name);

/// What the window shows when it opens, by `PrepState::SimOptions_Mode`: the working record, or for an edit
/// the selected row of the grid with the values of its parameter table on zone 1's first day. Shows a message
/// if that table is missing or empty.
[[nodiscard]] SimOptionsForm open_sim_options(const PrepContext& context, BasinDatabase& database);

/// Whether an Accept writes the first values: if a simulation is added, or the parameter table of an edited
/// one is rebuilt. Otherwise the table has values of its own, which this window does not change.
[[nodiscard]] bool first_values_count(SimOptionsMode mode, const SimOptionsForm& form);

/// Why the first values can't be changed here, and where they can be; empty if they count.
[[nodiscard]] std::string first_values_note(SimOptionsMode mode, const SimOptionsForm& form);

/// The first of the nine values that is missing or not a number that a parameter table can hold.
[[nodiscard]] std::optional<FirstValue> faulty_first_value(const SimOptionsForm& form);

/// The caption of the box of a first value.
[[nodiscard]] const char* first_value_caption(FirstValue which);

/// Why a definition can't be stored, checked before anything is changed: a sentence with the caption of the
/// first box without a valid date or number, and the reason. Empty if there is none.
[[nodiscard]] std::string definition_fault(SimOptionsMode mode, const SimOptionsForm& form);

/// Says that a definition can't be stored. @param reason a sentence, shown below the text
void refuse_definition(Dialogs& dialogs, const std::string& reason);

/// Puts the definition into the grid, where it becomes the current simulation, and asks the questions in
/// their order. A definition that is added or imported under the name of a row replaces that row. For an
/// added definition it fills the parameter table and the daily variables of the period; an edit rebuilds a
/// table that lacks the period and otherwise adds no rows; nor does an import. Errors are shown. Dates and
/// first values are checked before anything is changed; what was done before a later refusal stays.
///
/// A box without a number leaves its cell empty, but first values that count must not be empty.
///
/// @return whether the window closes
[[nodiscard]] bool accept_sim_options(const PrepContext& context, BasinDatabase& database,
                                      SimOptionsForm& form);

}  // namespace nivora
