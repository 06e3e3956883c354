// The tables of a basin file, once, as data: their names, fields, types and order.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// Kinds of field. Single and Date do not round or truncate by themselves; reading and writing rows does.
enum class FieldType {
    Integer,  ///< 16-bit signed
    Long,     ///< 32-bit signed
    Single,   ///< 32-bit float
    Double,   ///< 64-bit float
    Date,     ///< day count with an optional time part, day 0 = 1899-12-30
    Text      ///< UTF-8, at most `width` characters if the width is not 0
};

struct Field {
    std::string name;
    FieldType type = FieldType::Text;
    int width = 0;
};

struct TableSchema {
    std::string name;
    std::vector<Field> fields;
};

inline constexpr const char* k_basin_description = "BasinDescription";
inline constexpr const char* k_zone_description = "ZoneDescription";
inline constexpr const char* k_simulation_index = "SimulationIndex";
inline constexpr const char* k_physical_data = "PhysicalData";
inline constexpr const char* k_basin_averages = "BasinAverages";
inline constexpr const char* k_scenario_index = "ClimateScenarioIndex";
inline constexpr const char* k_sim_results = "SimResults";

/// The name of a basin that nobody has named yet.
inline constexpr const char* k_unnamed_basin = "<basin name>";
/// The scenario name for "no climate change".
inline constexpr const char* k_no_scenario = "None";

/// The five tables that a new basin file holds, in the order of their creation.
[[nodiscard]] std::vector<TableSchema> template_tables();

[[nodiscard]] TableSchema basin_averages_table();
[[nodiscard]] TableSchema sim_results_table();
/// The parameter table of a simulation; it has the simulation's name.
[[nodiscard]] TableSchema parameter_table(std::string_view simulation_name);
/// The table of edit rows of a climate scenario; it has the scenario's name.
[[nodiscard]] TableSchema scenario_table(std::string_view scenario_name);

/// Whether a name is one of the seven fixed table names, in any case.
[[nodiscard]] bool is_fixed_table(std::string_view name);

/// The type as the store's SQL declares it: SMALLINT, INTEGER, FLOAT, DOUBLE, DATE, TEXT(n).
[[nodiscard]] std::string declared_type(const Field& field);

/// A name from a user as an identifier in SQL text.
[[nodiscard]] std::string quoted_name(std::string_view name);

/// The statement that creates a table.
[[nodiscard]] std::string create_statement(const TableSchema& table);

/// The fields' quoted names joined by ", ".
[[nodiscard]] std::string field_list(const TableSchema& table);

}  // namespace nivora
