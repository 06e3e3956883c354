// Opening the window that defines a simulation.
#include "prep/sim_options.h"

#include "tests/prep/prep_fixture.h"

namespace nivora {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class SimOptionsOpen : public PrepTest {
protected:
    SimOptionsForm open(SimOptionsMode mode) {
        prep_.SimOptions_Mode = mode;
        return open_sim_options(context_, database_);
    }

    /// A row of the grid with all its cells filled, selected.
    Simulation& select_whole_row() {
        Simulation& row = select("wet", october(1), october(3));
        row.run_number = std::int16_t{12};
        row.units = Units::English;
        row.temperature_values = std::int16_t{1};
        row.temperature = Distribution::Basinwide;
        row.precipitation = Distribution::ByZone;
        row.lapse_rate = Distribution::ByZone;
        row.runoff_coefficients = Distribution::Basinwide;
        row.critical_temperature = Distribution::ByZone;
        row.recession = Distribution::Basinwide;
        row.initial_runoff = 0.1F;
        row.precipitation_threshold = 2.36F;
        row.initial_x = 1.125;
        row.initial_y = 0.02;
        row.comments = "wet year";
        return row;
    }
};

constexpr const char* k_missing_table =
    "Missing/empty parameter table for this simulation.  The table will be rebuilt when you click 'Accept'.";

TEST(UnitTexts, OfMetricAndEnglishUnits) {
    EXPECT_EQ(unit_texts(Units::Metric).area_word, "cm");
    EXPECT_EQ(unit_texts(Units::Metric).flow_letter, "m");
    EXPECT_EQ(unit_texts(Units::Metric).default_threshold, "6.00");
    EXPECT_EQ(unit_texts(Units::English).area_word, "in");
    EXPECT_EQ(unit_texts(Units::English).flow_letter, "f");
    EXPECT_EQ(unit_texts(Units::English).default_threshold, "2.36");
}

TEST(NewSimulation, HasADefaultYearTheBasinsUnitsAndNothingElse) {
    BasinState basin;
    basin.basin_units = basin.Units_Code = Units::English;
    const SimulationRecord record = new_simulation_record(basin, "wet");
    EXPECT_EQ(record.definition.text(1), "wet");
    EXPECT_EQ(record.definition.text(3), "10/01/1980");
    EXPECT_EQ(record.definition.text(4), "09/30/1981");
    EXPECT_EQ(record.definition.text(5), "English");
    EXPECT_EQ(record.definition.text(17), "Comments concerning the simulation go here");
    for (const int column : {2, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16})
        EXPECT_EQ(record.definition.text(column), "") << column;
    EXPECT_TRUE(is_missing(static_cast<double>(record.first_values.an)));
    EXPECT_EQ(record.first_values.rca, std::nullopt);
}

TEST(NewSimulation, HasNoUnitsWhereTheBasinHasNone) {
    EXPECT_EQ(new_simulation_record(BasinState{}, "wet").definition.units, std::nullopt);
}

TEST_F(SimOptionsOpen, ANewSimulationShowsItsRecordAndTheThresholdOfItsUnits) {
    prep_.working_record = new_simulation_record(basin_, "wet & dry");
    const SimOptionsForm form = open(SimOptionsMode::Add);
    EXPECT_EQ(form.name, "wet & dry");
    EXPECT_EQ(form.run_number, "");
    EXPECT_EQ(form.start, "10/01/1980");
    EXPECT_EQ(form.end, "09/30/1981");
    EXPECT_EQ(form.units, Units::Metric);
    EXPECT_EQ(form.temperature_values, 0);
    EXPECT_THAT(form.by_zone, Each(false));
    EXPECT_EQ(form.initial_runoff, "");
    EXPECT_EQ(form.threshold, "6.00");
    EXPECT_EQ(form.comments, "Comments concerning the simulation go here");
    EXPECT_THAT(form.first_values, Each(IsEmpty()));
    EXPECT_FALSE(form.values_of_first_day);
    EXPECT_EQ(form.grid_row, std::nullopt);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(SimOptionsOpen, ANewEnglishSimulationHasTheEnglishThreshold) {
    basin_.basin_units = basin_.Units_Code = Units::English;
    prep_.working_record = new_simulation_record(basin_, "wet");
    EXPECT_EQ(open(SimOptionsMode::Add).threshold, "2.36");
}

TEST_F(SimOptionsOpen, ANewSimulationIsNotTheSelectedOne) {
    select_whole_row();
    prep_.working_record = new_simulation_record(basin_, "new");
    EXPECT_EQ(open(SimOptionsMode::Add).name, "new");
    EXPECT_EQ(open(SimOptionsMode::Add).grid_row, std::nullopt);
}

TEST_F(SimOptionsOpen, AnImportShowsItsFirstValuesAndItsOwnThreshold) {
    prep_.working_record = new_simulation_record(basin_, "alder");
    prep_.working_record.definition.precipitation_threshold = 5.5F;
    ParameterRow& values = prep_.working_record.first_values;
    values.an = 0.45F;
    values.tcrit = 1.5F;
    values.lapse_rate = 0.65F;
    values.cs = 0.9F;
    values.cr = 0.7F;
    values.rca = std::int16_t{1};
    values.lag_hours = 18.0F;
    values.xcoeff = 1.05;
    values.ycoeff = 0.025;
    const SimOptionsForm form = open(SimOptionsMode::Import);
    EXPECT_EQ(form.threshold, "5.5");
    EXPECT_THAT(form.first_values,
                ElementsAre("0.45", "1.5", "0.65", "0.9", "0.7", "1", "18", "1.05", "0.025"));
}

TEST_F(SimOptionsOpen, AnImportWithoutAThresholdGetsNone) {
    prep_.working_record = new_simulation_record(basin_, "alder");
    EXPECT_EQ(open(SimOptionsMode::Import).threshold, "");
}

TEST_F(SimOptionsOpen, AnEditShowsTheSelectedRow) {
    select_whole_row();
    make_parameter_table("wet");
    add_parameters("wet", {parameter_day(1, october(1), 0.5F)});
    const SimOptionsForm form = open(SimOptionsMode::Edit);
    EXPECT_EQ(form.name, "wet");
    EXPECT_EQ(form.run_number, "12");
    EXPECT_EQ(form.start, "10/01/1980");
    EXPECT_EQ(form.end, "10/03/1980");
    EXPECT_EQ(form.units, Units::English);
    EXPECT_EQ(form.temperature_values, 1);
    EXPECT_THAT(form.by_zone, ElementsAre(false, true, true, false, true, false));
    EXPECT_EQ(form.initial_runoff, "0.1");
    EXPECT_EQ(form.threshold, "2.36");
    EXPECT_EQ(form.comments, "wet year");
    EXPECT_THAT(form.grid_row, Optional(std::size_t{0}));
    EXPECT_EQ(messages(), 0U);
}

TEST_F(SimOptionsOpen, AnEditShowsTheValuesOfZone1OnTheFirstDayOfThePeriod) {
    select_whole_row();
    make_parameter_table("wet");
    ParameterRow values = parameter_day(1, october(1), 0.45F);
    values.tcrit = -1.5F;
    values.lapse_rate = 0.65F;
    values.cs = 0.9F;
    values.cr = 0.7F;
    values.rca = std::int16_t{0};
    values.lag_hours = 4.5F;
    values.xcoeff = static_cast<double>(1.05F);
    values.ycoeff = 0.025;
    // A day before the period is stored, too; another zone and a later day come first.
    add_parameters("wet", {parameter_day(2, october(1), 2.0F), parameter_day(1, october(2), 3.0F), values,
                           parameter_day(1, october(0), 4.0F)});
    const SimOptionsForm form = open(SimOptionsMode::Edit);
    EXPECT_TRUE(form.values_of_first_day);
    EXPECT_THAT(form.first_values,
                ElementsAre("0.45", "-1.5", "0.65", "0.9", "0.7", "0", "4.5", "1.05", "0.025"));
}

TEST_F(SimOptionsOpen, AMissingValueOfTheFirstDayIsAnEmptyBox) {
    select_whole_row();
    make_parameter_table("wet");
    add_parameters("wet", {parameter_day(1, october(1), 0.5F)});
    EXPECT_THAT(open(SimOptionsMode::Edit).first_values, ElementsAre("0.5", "", "", "", "", "", "", "", ""));
}

TEST_F(SimOptionsOpen, AnEmptyParameterTableIsReported) {
    select_whole_row();
    make_parameter_table("wet");
    const SimOptionsForm form = open(SimOptionsMode::Edit);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, k_missing_table);
    EXPECT_EQ(last_message().title, "Missing parameter table");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_FALSE(form.values_of_first_day);
    EXPECT_THAT(form.first_values, ElementsAre("", "", "", "", "", "", "", "1.125", "0.02"))
        << "x and y are in the grid, too";
}

TEST_F(SimOptionsOpen, AParameterTableWithoutADayOfThePeriodIsReported) {
    select_whole_row();
    make_parameter_table("wet");
    add_parameters("wet", {parameter_day(1, october(4), 0.5F)});
    open(SimOptionsMode::Edit);
    EXPECT_EQ(last_message().text, k_missing_table);
}

TEST_F(SimOptionsOpen, AMissingParameterTableIsReported) {
    select_whole_row();
    open(SimOptionsMode::Edit);
    EXPECT_EQ(last_message().text, k_missing_table);
}

TEST_F(SimOptionsOpen, AParameterTableThatCannotBeReadIsReportedAsSuch) {
    select_whole_row();
    make_parameter_table("wet");
    add_parameters("wet", {parameter_day(1, october(1), 0.5F)});
    database_.execute("UPDATE wet SET Cs = 'much'");
    const SimOptionsForm form = open(SimOptionsMode::Edit);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, "The field 'Cs' holds text instead of a number.");
    EXPECT_FALSE(form.values_of_first_day);
}

}  // namespace
}  // namespace nivora
