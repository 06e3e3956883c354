#include "store/schema.h"

#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace nivora {
namespace {

constexpr int k_name_width = 255;
constexpr int k_memo_width = 65535;

Field integer(const char* name) { return {name, FieldType::Integer}; }
Field whole(const char* name) { return {name, FieldType::Long}; }
Field single(const char* name) { return {name, FieldType::Single}; }
Field real(const char* name) { return {name, FieldType::Double}; }
Field date(const char* name) { return {name, FieldType::Date}; }
Field text(const char* name, int width) { return {name, FieldType::Text, width}; }

TableSchema basin_description_table() {
    return {k_basin_description,
            {text("BasinName", 50), text("BasinDescription", k_name_width), integer("Zones"),
             integer("Units"), real("RefElev"), real("Latitude"), real("Longitude")}};
}

TableSchema zone_description_table() {
    return {
        k_zone_description,
        {text("ZoneId", 8), real("ZoneArea"), real("HypsometricElevation"), text("ZoneNotes", k_name_width),
         real("ShareNE"), real("ElevationNE"), real("ShareSE"), real("ElevationSE"), real("ShareNW"),
         real("ElevationNW"), real("ShareSW"), real("ElevationSW")}};
}

/// Intended: from the twelfth field on, each name describes the content of the next field; files of every
/// version have these names.
TableSchema simulation_index_table() {
    return {k_simulation_index,
            {text("SimName", k_name_width), integer("SimRunNumber"), date("SimStartDate"), date("SimEndDate"),
             integer("SimUnits"), integer("SimTempType"), integer("SimTemp_Distribution"),
             integer("SimP_Distribution"), integer("SimLR_Distribution"), integer("SimCoeff_Distribution"),
             integer("SimTcrit_Distribution"), integer("SimInitialRunoff"), single("SimPrecipThreshold"),
             single("SimX"), real("SimY"), real("SimAlt1X"), text("SimComments", k_memo_width)}};
}

TableSchema physical_data_table() {
    return {k_physical_data,
            {integer("Zone"), date("Date"), single("Runoff"), single("Tmax"), single("Tmin"), single("Tavg"),
             single("Precip"), single("SCA"), single("NetRadiation")}};
}

TableSchema scenario_index_table() {
    return {k_scenario_index,
            {text("SimulationFile", k_name_width), text("ScenarioFile", k_name_width), date("WinterEndDate"),
             date("CreationDate"), text("Comments", k_memo_width)}};
}

}  // namespace

std::vector<TableSchema> template_tables() {
    return {basin_description_table(), zone_description_table(), simulation_index_table(),
            physical_data_table(), scenario_index_table()};
}

TableSchema basin_averages_table() {
    return {k_basin_averages,
            {integer("Zone"), text("Month", 3), single("TMaxN"), single("TMinN"), single("TAvgN"),
             single("PrecipN")}};
}

TableSchema sim_results_table() {
    return {k_sim_results,
            {integer("Zone"),       date("Date"),        single("ActualQ"),      single("TMax"),
             single("TMaxCC"),      single("Tmin"),      single("TminCC"),       single("TAvg"),
             single("TAvgCC"),      single("Precip"),    single("PrecipCC"),     single("SCA"),
             single("SCACC"),       single("SCAclim"),   single("SCAclimWA"),    single("SCAclimWAMA"),
             single("ZoneDD"),      single("ZoneDDCC"),  single("LR"),           single("LRCC"),
             single("Tcrit"),       single("TcritCC"),   single("AN"),           single("ANCC"),
             single("CS"),          single("CSCC"),      single("CR"),           single("CRCC"),
             single("LagTime"),     single("LagTimeCC"), integer("RCA"),         integer("RCACC"),
             single("NetRad"),      single("NetRadCC"),  real("Xcoeff"),         real("XcoeffCC"),
             real("YCoeff"),        real("YCoeffCC"),    single("Cpr"),          single("SumAT"),
             single("NewMelt"),     single("M1S"),       single("aT"),           single("SnowOnStore"),
             single("ZonalMelt"),   single("TotalMelt"), real("DailyQ"),         single("MDCincl"),
             single("MDCexcl"),     single("MDCexclWA"), single("MDCexclWAnew"), single("MeltOffset"),
             real("DailyQPresent"), single("AZMincl"),   single("AZMexcl"),      single("AZMexclWA"),
             single("AZMwork")}};
}

TableSchema parameter_table(std::string_view simulation_name) {
    return {std::string{simulation_name},
            {integer("Zone"), date("Date"), single("Tcrit"), single("LagTime"), single("LapseRate"),
             single("An"), single("Cs"), single("Cr"), integer("RCA"), real("Xcoeff"), real("Ycoeff")}};
}

TableSchema scenario_table(std::string_view scenario_name) {
    return {std::string{scenario_name},
            {whole("VarParm"), date("StartDate"), date("EndDate"), whole("EditAction"), single("EditFactor"),
             whole("Zones")}};
}

bool is_fixed_table(std::string_view name) {
    constexpr std::array k_fixed{k_basin_description, k_zone_description, k_simulation_index, k_physical_data,
                                 k_basin_averages,    k_scenario_index,   k_sim_results};
    return std::any_of(k_fixed.begin(), k_fixed.end(),
                       [&](const char* fixed) { return same_name(fixed, name); });
}

std::string declared_type(const Field& field) {
    switch (field.type) {
        case FieldType::Integer: return "SMALLINT";
        case FieldType::Long: return "INTEGER";
        case FieldType::Single: return "FLOAT";
        case FieldType::Double: return "DOUBLE";
        case FieldType::Date: return "DATE";
        case FieldType::Text: break;
    }
    return field.width > 0 ? fmt::format("TEXT({})", field.width) : "TEXT";
}

std::string quoted_name(std::string_view name) {
    std::string quoted = "\"";
    for (const char character : name) {
        quoted.push_back(character);
        if (character == '"') quoted.push_back('"');
    }
    return quoted + "\"";
}

std::string create_statement(const TableSchema& table) {
    std::string columns;
    for (const Field& field : table.fields) {
        if (!columns.empty()) columns += ", ";
        columns += quoted_name(field.name) + " " + declared_type(field);
    }
    return fmt::format("CREATE TABLE {} ({})", quoted_name(table.name), columns);
}

std::string field_list(const TableSchema& table) {
    std::string list;
    for (const Field& field : table.fields) {
        if (!list.empty()) list += ", ";
        list += quoted_name(field.name);
    }
    return list;
}

}  // namespace nivora
