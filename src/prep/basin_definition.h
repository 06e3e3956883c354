// The definition of a basin as JSON: everything but its daily values, parameters, monthly averages and
// results.
#pragma once

#include "store/database.h"
#include "store/rows.h"

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// A row of the list of scenarios, and the edit rows of its table.
struct ScenarioDefinition {
    ScenarioIndexRow index;
    std::vector<ScenarioRow> edits = {};
};

/// `basin.zones` is the number of `zones`.
struct BasinDefinition {
    BasinDescription basin = {};
    std::vector<Zone> zones = {};
    std::vector<Simulation> simulations = {};
    std::vector<ScenarioDefinition> scenarios = {};
};

/// A value of a definition that can't be taken.
struct DefinitionProblem {
    std::size_t line = 0;  ///< of the text, from 1; 0 if it is missing as a whole
    std::string place;     ///< `zones[1].area`; empty for the text as a whole
    std::string reason;    ///< a clause without a full stop
};

/// The problems of a definition, at least one, in the order of the text.
class DefinitionFault : public std::runtime_error {
public:
    explicit DefinitionFault(std::vector<DefinitionProblem> problems);

    [[nodiscard]] const std::vector<DefinitionProblem>& problems() const { return problems_; }

private:
    std::vector<DefinitionProblem> problems_;
};

/// Reads a definition, in which all keys have to be known and all values have to have their types and ranges.
/// A key that is missing, or null, is a value without content. @throws DefinitionFault with all problems
[[nodiscard]] BasinDefinition read_definition(std::string_view json);

/// The text of a definition, which reads back to the same values, to the bit.
/// @throws DefinitionFault for a text that is not UTF-8
[[nodiscard]] std::string definition_text(const BasinDefinition& definition);

/// The definition that a basin has. @throws StoreError, also if the number of its zones is another than that
/// of their rows
[[nodiscard]] BasinDefinition stored_definition(BasinDatabase& database);

/// Puts a definition into a blank basin, with an empty parameter table for each simulation, wholly or not at
/// all. @throws StoreError
void store_definition(BasinDatabase& database, const BasinDefinition& definition);

/// Makes a new basin file of a definition, wholly or not at all.
/// @throws FileError if there is a file of this name, or it can't be written; StoreError
void make_basin(const std::filesystem::path& file, const BasinDefinition& definition);

}  // namespace nivora
