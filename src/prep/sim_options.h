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

/// The texts that follow from the units of a definition.
struct UnitTexts {
    std::string area_word;          ///< "cm" or "in"
    std::string flow_letter;        ///< "m" or "f"
    std::string default_threshold;  ///< "6.00" or "2.36"
};
[[nodiscard]] UnitTexts unit_texts(Units units);

/// What stands in the window's controls. A number is a text, empty where there is none.
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
    bool rebuilds_table = false;          ///< the parameter table lacks the period: an edit writes it anew
    std::optional<std::size_t> grid_row;  ///< the row that an Accept has grown already
};

/// The working record of a simulation that is to be added under a name.
[[nodiscard]] SimulationRecord new_simulation_record(const BasinState& basin, const std::string& name);

/// What the window shows when it opens, by `PrepState::SimOptions_Mode`: the working record, or for an edit
/// the selected row of the grid with the values of its parameter table on zone 1's first day. Says so where
/// that table is missing or empty.
[[nodiscard]] SimOptionsForm open_sim_options(const PrepContext& context, BasinDatabase& database);

/// Whether an Accept writes the first values: those of a simulation that is added, or of an edited one whose
/// parameter table is rebuilt. Otherwise the table holds values of its own, which nothing here changes.
[[nodiscard]] bool first_values_count(SimOptionsMode mode, const SimOptionsForm& form);

/// Why the first values can't be changed here, and where they can be; empty where they count.
[[nodiscard]] std::string first_values_note(SimOptionsMode mode, const SimOptionsForm& form);

/// The first of the nine values that is missing, or is no number that a parameter table can take.
[[nodiscard]] std::optional<FirstValue> faulty_first_value(const SimOptionsForm& form);

/// The caption of the box of a first value.
[[nodiscard]] const char* first_value_caption(FirstValue which);

/// What holds a definition up before anything is changed: the first box that has no date or number which can
/// be stored, by its caption, with the reason as a sentence. Empty where there is none.
[[nodiscard]] std::string definition_fault(SimOptionsMode mode, const SimOptionsForm& form);

/// Says that a definition can't be stored. @param reason a sentence, shown below the text
void refuse_definition(Dialogs& dialogs, const std::string& reason);

/// Takes the definition into the grid, where it becomes the current simulation, with the questions in their
/// order. One that is added or imported under the name of a row replaces that row. A definition that is added
/// gets its parameter table filled and the daily variables of its period; an edit rebuilds a table that lacks
/// the period, and adds no rows otherwise; nor does an import. What is wrong is shown. Dates and first values
/// are looked at before anything is changed; what a later refusal finds done stays.
///
/// A box that holds no number leaves its cell empty, but first values that count have to be there.
///
/// @return whether the window closes
[[nodiscard]] bool accept_sim_options(const PrepContext& context, BasinDatabase& database,
                                      SimOptionsForm& form);

}  // namespace nivora
