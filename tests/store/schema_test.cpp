#include "store/schema.h"

#include "store/store_error.h"
#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;

/// The fields of a table as "name TYPE", in order.
std::vector<std::string> declarations(const TableSchema& table) {
    std::vector<std::string> texts;
    for (const Field& field : table.fields) texts.push_back(field.name + " " + declared_type(field));
    return texts;
}

std::vector<std::string> names(const std::vector<TableSchema>& tables) {
    std::vector<std::string> texts;
    for (const TableSchema& table : tables) texts.push_back(table.name);
    return texts;
}

TEST(Schema, ANewBasinHoldsFiveTables) {
    EXPECT_THAT(names(template_tables()),
                ElementsAre("BasinDescription", "ZoneDescription", "SimulationIndex", "PhysicalData",
                            "ClimateScenarioIndex"));
}

TEST(Schema, OfBasinDescription) {
    EXPECT_THAT(declarations(template_table("BasinDescription")),
                ElementsAre("BasinName TEXT(50)", "BasinDescription TEXT(255)", "Zones SMALLINT",
                            "Units SMALLINT", "RefElev DOUBLE", "Latitude DOUBLE", "Longitude DOUBLE"));
}

TEST(Schema, OfZoneDescriptionHasTheAspectsFromTheFifthFieldOn) {
    const TableSchema table = template_table("ZoneDescription");
    ASSERT_EQ(table.fields.size(), 12U);
    EXPECT_EQ(table.fields[0].name, "ZoneId");
    EXPECT_EQ(table.fields[0].type, FieldType::Text);
    EXPECT_EQ(table.fields[1].name, "ZoneArea");
    EXPECT_EQ(table.fields[2].name, "HypsometricElevation");
    for (std::size_t i = 4; i < 12; ++i) EXPECT_EQ(declared_type(table.fields[i]), "DOUBLE") << i;
}

TEST(Schema, OfSimulationIndexHasNamesShiftedByOneFieldFromTheTwelfthOn) {
    const TableSchema table = template_table("SimulationIndex");
    ASSERT_EQ(table.fields.size(), 17U);
    std::vector<std::string> fields;
    for (const Field& field : table.fields) fields.push_back(field.name);
    fields.pop_back();  // the name of the seventeenth field is not fixed
    EXPECT_THAT(fields, ElementsAre("SimName", "SimRunNumber", "SimStartDate", "SimEndDate", "SimUnits",
                                    "SimTempType", "SimTemp_Distribution", "SimP_Distribution",
                                    "SimLR_Distribution", "SimCoeff_Distribution", "SimTcrit_Distribution",
                                    "SimInitialRunoff", "SimPrecipThreshold", "SimX", "SimY", "SimAlt1X"));
    EXPECT_EQ(declared_type(table.fields[2]), "DATE");
    EXPECT_EQ(declared_type(table.fields[3]), "DATE");
    EXPECT_EQ(declared_type(table.fields[11]), "SMALLINT");  // how x and y are given, a code
    EXPECT_EQ(declared_type(table.fields[12]), "FLOAT");     // the initial runoff
    EXPECT_EQ(declared_type(table.fields[13]), "FLOAT");     // the threshold
}

TEST(Schema, OfPhysicalData) {
    EXPECT_THAT(declarations(template_table("PhysicalData")),
                ElementsAre("Zone SMALLINT", "Date DATE", "Runoff FLOAT", "Tmax FLOAT", "Tmin FLOAT",
                            "Tavg FLOAT", "Precip FLOAT", "SCA FLOAT", "NetRadiation FLOAT"));
}

TEST(Schema, OfClimateScenarioIndex) {
    std::vector<std::string> fields;
    for (const Field& field : template_table("ClimateScenarioIndex").fields) fields.push_back(field.name);
    EXPECT_THAT(fields,
                ElementsAre("SimulationFile", "ScenarioFile", "WinterEndDate", "CreationDate", "Comments"));
}

TEST(Schema, OfTheMonthlyAverages) {
    EXPECT_EQ(basin_averages_table().name, "BasinAverages");
    EXPECT_THAT(declarations(basin_averages_table()),
                ElementsAre("Zone SMALLINT", "Month TEXT(3)", "TMaxN FLOAT", "TMinN FLOAT", "TAvgN FLOAT",
                            "PrecipN FLOAT"));
}

TEST(Schema, OfAParameterTableHasTheSimulationsName) {
    EXPECT_EQ(parameter_table("Spring 1996").name, "Spring 1996");
    EXPECT_THAT(
        declarations(parameter_table("x")),
        ElementsAre("Zone SMALLINT", "Date DATE", "Tcrit FLOAT", "LagTime FLOAT", "LapseRate FLOAT",
                    "An FLOAT", "Cs FLOAT", "Cr FLOAT", "RCA SMALLINT", "Xcoeff DOUBLE", "Ycoeff DOUBLE"));
}

TEST(Schema, OfAScenarioTable) {
    EXPECT_EQ(scenario_table("Warm").name, "Warm");
    EXPECT_THAT(declarations(scenario_table("Warm")),
                ElementsAre("VarParm INTEGER", "StartDate DATE", "EndDate DATE", "EditAction INTEGER",
                            "EditFactor FLOAT", "Zones INTEGER"));
}

TEST(Schema, OfTheResultsHas57FieldsInTheOrderOfTheirCreation) {
    const std::vector<std::string> expected{"Zone SMALLINT",
                                            "Date DATE",
                                            "ActualQ FLOAT",
                                            "TMax FLOAT",
                                            "TMaxCC FLOAT",
                                            "Tmin FLOAT",
                                            "TminCC FLOAT",
                                            "TAvg FLOAT",
                                            "TAvgCC FLOAT",
                                            "Precip FLOAT",
                                            "PrecipCC FLOAT",
                                            "SCA FLOAT",
                                            "SCACC FLOAT",
                                            "SCAclim FLOAT",
                                            "SCAclimWA FLOAT",
                                            "SCAclimWAMA FLOAT",
                                            "ZoneDD FLOAT",
                                            "ZoneDDCC FLOAT",
                                            "LR FLOAT",
                                            "LRCC FLOAT",
                                            "Tcrit FLOAT",
                                            "TcritCC FLOAT",
                                            "AN FLOAT",
                                            "ANCC FLOAT",
                                            "CS FLOAT",
                                            "CSCC FLOAT",
                                            "CR FLOAT",
                                            "CRCC FLOAT",
                                            "LagTime FLOAT",
                                            "LagTimeCC FLOAT",
                                            "RCA SMALLINT",
                                            "RCACC SMALLINT",
                                            "NetRad FLOAT",
                                            "NetRadCC FLOAT",
                                            "Xcoeff DOUBLE",
                                            "XcoeffCC DOUBLE",
                                            "YCoeff DOUBLE",
                                            "YCoeffCC DOUBLE",
                                            "Cpr FLOAT",
                                            "SumAT FLOAT",
                                            "NewMelt FLOAT",
                                            "M1S FLOAT",
                                            "aT FLOAT",
                                            "SnowOnStore FLOAT",
                                            "ZonalMelt FLOAT",
                                            "TotalMelt FLOAT",
                                            "DailyQ DOUBLE",
                                            "MDCincl FLOAT",
                                            "MDCexcl FLOAT",
                                            "MDCexclWA FLOAT",
                                            "MDCexclWAnew FLOAT",
                                            "MeltOffset FLOAT",
                                            "DailyQPresent DOUBLE",
                                            "AZMincl FLOAT",
                                            "AZMexcl FLOAT",
                                            "AZMexclWA FLOAT",
                                            "AZMwork FLOAT"};
    ASSERT_EQ(expected.size(), 57U);
    EXPECT_EQ(sim_results_table().name, "SimResults");
    EXPECT_EQ(declarations(sim_results_table()), expected);
}

TEST(Schema, KnowsTheSevenFixedTablesInAnyCase) {
    for (const char* name : {"BasinDescription", "ZONEDESCRIPTION", "simulationindex", "PhysicalData",
                             "basinAverages", "CLIMATEscenarioINDEX", "simresults"}) {
        EXPECT_TRUE(is_fixed_table(name)) << name;
    }
    for (const char* name : {"", "SimResult", "SimResults ", "None", "Spring 1996"}) {
        EXPECT_FALSE(is_fixed_table(name)) << name;
    }
}

TEST(DeclaredType, OfEveryKindOfField) {
    EXPECT_EQ(declared_type({"f", FieldType::Integer}), "SMALLINT");
    EXPECT_EQ(declared_type({"f", FieldType::Long}), "INTEGER");
    EXPECT_EQ(declared_type({"f", FieldType::Single}), "FLOAT");
    EXPECT_EQ(declared_type({"f", FieldType::Double}), "DOUBLE");
    EXPECT_EQ(declared_type({"f", FieldType::Date}), "DATE");
    EXPECT_EQ(declared_type({"f", FieldType::Text, 50}), "TEXT(50)");
    EXPECT_EQ(declared_type({"f", FieldType::Text}), "TEXT");
}

TEST(QuotedName, DoublesTheQuotesInAName) {
    EXPECT_EQ(quoted_name("Spring 1996"), "\"Spring 1996\"");
    EXPECT_EQ(quoted_name("a\"b"), "\"a\"\"b\"");
    EXPECT_EQ(quoted_name("\""), "\"\"\"\"");
    EXPECT_EQ(quoted_name("it's 100%"), "\"it's 100%\"");
    EXPECT_EQ(quoted_name(""), "\"\"");
}

TEST(CreateStatement, QuotesTheTableAndItsFields) {
    const TableSchema table{"a\"b", {{"Zone", FieldType::Integer}, {"x y", FieldType::Text, 3}}};
    EXPECT_EQ(create_statement(table), "CREATE TABLE \"a\"\"b\" (\"Zone\" SMALLINT, \"x y\" TEXT(3))");
    EXPECT_EQ(field_list(table), "\"Zone\", \"x y\"");
}

TEST(TemplateTable, RefusesATableThatTheTemplateDoesNotHold) {
    EXPECT_EQ(refused([] { static_cast<void>(template_table("SimResults")); }), StoreFault::Missing);
}

}  // namespace
}  // namespace nivora
