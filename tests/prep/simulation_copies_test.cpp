// Copies of simulations, and new names for them.
#include "prep/simulation_copies.h"

#include "store/scenario_placeholder.h"
#include "tests/prep/prep_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;

/// The simulations "wet", with two rows of parameters and the scenarios "warm" and "cold", and "dry" with
/// none; "wet" is the current one.
class SimulationCopies : public PrepTest {
protected:
    SimulationCopies() {
        for (const char* name : {"dry", "wet"}) {
            make_parameter_table(name);
            select(name, october(1), october(3));
            store(basin_.simulations.back());
        }
        basin_.simulations[1].comments = "a wet year";
        ParameterRow row = parameter_day(1, october(1), 0.1F);
        row.xcoeff = 1.0 / 3.0;
        row.rca = 1;
        add_parameters("wet", {row, parameter_day(2, october(2))});
        add_scenario("wet", "warm", 1.5F);
        add_scenario("wet", "cold", -2.0F);
        ensure_scenario_placeholder(database_, "dry");
    }

    void store(const Simulation& simulation) {
        add_rows<Simulation>(database_, template_table(k_simulation_index), std::span{&simulation, 1});
    }

    void add_scenario(const std::string& simulation, const std::string& name, float factor) {
        const ScenarioIndexRow index{.simulation = simulation,
                                     .scenario = name,
                                     .winter_end_date = 29503.5,
                                     .creation_date = 40000.0,
                                     .comments = "about " + name};
        add_rows<ScenarioIndexRow>(database_, template_table(k_scenario_index), std::span{&index, 1});
        database_.create_table(scenario_table(name));
        const ScenarioRow row{
            .variable = 1, .start = october(1), .end = october(2), .action = 0, .factor = factor, .zones = 0};
        add_rows<ScenarioRow>(database_, scenario_table(name), std::span{&row, 1});
    }

    SimulationCopy duplicate(std::size_t row, const std::string& name) {
        return duplicate_simulation(context_, database_, row, name);
    }
    void rename(std::size_t row, const std::string& name) {
        rename_simulation(context_, database_, row, name);
    }
    std::optional<std::string> problem(const std::string& name, std::optional<std::size_t> renamed = {}) {
        return other_name_problem(database_, basin_, name, renamed);
    }

    /// All that the file holds, table by table.
    std::vector<std::string> content() {
        std::vector<std::string> all = rows("SELECT name FROM sqlite_schema ORDER BY name");
        for (const std::string& table : database_.table_names()) {
            all.push_back(table);
            for (std::string& row : rows("SELECT * FROM " + quoted_name(table)))
                all.push_back(std::move(row));
        }
        return all;
    }
    std::vector<std::string> scenarios() {
        return rows("SELECT SimulationFile, ScenarioFile FROM ClimateScenarioIndex ORDER BY rowid");
    }
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const Simulation& simulation : basin_.simulations) names.push_back(simulation.name);
        return names;
    }
    /// Lets the last step of the work fail, after the tables were made or renamed.
    void refuse_next_index_row() {
        database_.execute(
            "CREATE TEMP TRIGGER full BEFORE INSERT ON main.ClimateScenarioIndex BEGIN SELECT RAISE(ABORT, "
            "'no room'); END");
        database_.execute(
            "CREATE TEMP TRIGGER held BEFORE UPDATE ON main.ClimateScenarioIndex BEGIN SELECT RAISE(ABORT, "
            "'no room'); END");
    }
};

TEST_F(SimulationCopies, AreTheLastRowWithAllThatTheSimulationHas) {
    const SimulationCopy made = duplicate(1, "wetter");
    EXPECT_EQ(made.row, 2U);
    EXPECT_THAT(names(), ElementsAre("dry", "wet", "wetter"));
    EXPECT_THAT(basin_.simulations[2].comments, Optional(std::string{"a wet year"}));
    EXPECT_EQ(basin_.simulations[2].start, october(1));
    EXPECT_EQ(basin_.Current_Sim_Name, "wet");
}

TEST_F(SimulationCopies, HaveTheParametersToTheBit) {
    duplicate(1, "wetter");
    const std::string fields = "SELECT *, rowid, typeof(An), typeof(RCA), hex(Xcoeff) FROM ";
    EXPECT_THAT(rows(fields + "wetter"), testing::SizeIs(2));
    EXPECT_EQ(rows(fields + "wetter"), rows(fields + "wet"));
    const auto stored = read_table<ParameterRow>(database_, parameter_table("wetter"));
    EXPECT_EQ(stored[0].xcoeff, 1.0 / 3.0);
    EXPECT_TRUE(is_missing(stored[1].an));
    EXPECT_THAT(rows("SELECT tbl_name FROM sqlite_schema WHERE name = 'wetter.key'"), ElementsAre("wetter"));
}

TEST_F(SimulationCopies, HaveScenariosOfTheirOwnUnderOtherNames) {
    const SimulationCopy made = duplicate(1, "wetter");
    EXPECT_THAT(made.scenarios, ElementsAre("warm (wetter)", "cold (wetter)"));
    EXPECT_THAT(scenarios(), ElementsAre("wet warm", "wet cold", "dry None", "wetter warm (wetter)",
                                         "wetter cold (wetter)"));
    const auto copied = read_table<ScenarioRow>(database_, scenario_table("cold (wetter)"));
    ASSERT_EQ(copied.size(), 1U);
    EXPECT_EQ(copied[0].factor, -2.0F);
    EXPECT_THAT(rows("SELECT WinterEndDate, CreationDate, Comments FROM ClimateScenarioIndex WHERE "
                     "SimulationFile = 'wetter'"),
                ElementsAre("29503.5 40000 about warm", "29503.5 40000 about cold"));
    database_.execute("DELETE FROM [cold (wetter)]");
    EXPECT_THAT(rows("SELECT EditFactor FROM cold"), ElementsAre("-2.0"));
}

TEST_F(SimulationCopies, OfOneWithoutScenariosHaveThePlaceholder) {
    EXPECT_THAT(duplicate(0, "drier").scenarios, IsEmpty());
    EXPECT_THAT(scenarios(), ElementsAre("wet warm", "wet cold", "dry None", "drier None"));
}

TEST_F(SimulationCopies, NumberAScenarioWhoseNameIsTaken) {
    database_.create_table(scenario_table("WARM (wetter)"));
    EXPECT_THAT(duplicate(1, "wetter").scenarios, ElementsAre("warm (wetter) 2", "cold (wetter)"));
}

TEST_F(SimulationCopies, LeaveOutAScenarioWhoseTableIsMissing) {
    database_.drop_table("warm");
    EXPECT_THAT(duplicate(1, "wetter").scenarios, ElementsAre("cold (wetter)"));
}

TEST_F(SimulationCopies, ThatHaveAnUnreadableScenarioAreNotMade) {
    database_.drop_table("cold");
    database_.execute("CREATE TABLE cold (Kept TEXT)");
    const auto before = content();
    EXPECT_THAT(refusal_text([&] { duplicate(1, "wetter"); }), HasSubstr("'cold' can't be read"));
    EXPECT_EQ(content(), before);
    EXPECT_THAT(names(), ElementsAre("dry", "wet"));
}

TEST_F(SimulationCopies, OfOneWithoutATableHaveNone) {
    database_.drop_table("dry");
    duplicate(0, "drier");
    EXPECT_FALSE(database_.has_table("drier"));
    EXPECT_THAT(names(), ElementsAre("dry", "wet", "drier"));
}

TEST_F(SimulationCopies, ChangeTheBasinButNoResult) {
    basin_.Output_Valid = true;
    duplicate(1, "wetter");
    EXPECT_TRUE(basin_.Basin_Changed);
    EXPECT_FALSE(basin_.Input_Changed);
    EXPECT_TRUE(basin_.Output_Valid);
}

TEST_F(SimulationCopies, ThatTheStoreRefusesLeaveFileAndGridAsTheyWere) {
    const auto before = content();
    refuse_next_index_row();
    EXPECT_TRUE(refused([&] { duplicate(1, "wetter"); }).has_value());
    EXPECT_EQ(content(), before);
    EXPECT_THAT(names(), ElementsAre("dry", "wet"));
    EXPECT_FALSE(basin_.Basin_Changed);
    EXPECT_TRUE(is_free());
}

TEST_F(SimulationCopies, RenamedTakeEverythingWithThem) {
    prep_.query.table = "wet";
    prep_.working_record.definition.name = "WET";
    rename(1, "moist");
    EXPECT_THAT(names(), ElementsAre("dry", "moist"));
    EXPECT_EQ(basin_.Current_Sim_Name, "moist");
    EXPECT_EQ(prep_.query.table, "moist");
    EXPECT_EQ(prep_.working_record.definition.name, "moist");
    EXPECT_FALSE(database_.has_table("wet"));
    EXPECT_THAT(days("moist"), ElementsAre("1 1", "2 2"));
    EXPECT_THAT(scenarios(), ElementsAre("moist warm", "moist cold", "dry None"));
    EXPECT_THAT(rows("SELECT SimName FROM SimulationIndex ORDER BY rowid"), ElementsAre("dry", "moist"));
    EXPECT_TRUE(basin_.Basin_Changed);
    EXPECT_FALSE(basin_.Input_Changed);
}

TEST_F(SimulationCopies, RenamedLeaveTheCurrentSimulationIfItIsAnother) {
    rename(0, "arid");
    EXPECT_EQ(basin_.Current_Sim_Name, "wet");
    EXPECT_THAT(scenarios(), ElementsAre("wet warm", "wet cold", "arid None"));
}

TEST_F(SimulationCopies, RenamedLeaveTheirFormerNameFree) {
    rename(1, "moist");
    EXPECT_EQ(problem("wet"), std::nullopt);
    make_parameter_table("wet");  // would fail if the index still had the former name
    EXPECT_THAT(rows("SELECT name FROM sqlite_schema WHERE tbl_name = 'moist' AND type = 'index'"),
                ElementsAre("moist.key"));
}

TEST_F(SimulationCopies, RenamedInOtherLettersStayTheSame) {
    EXPECT_EQ(problem("Wet", 1), std::nullopt);
    rename(1, "Wet");
    EXPECT_THAT(database_.stored_name("wet"), Optional(std::string{"Wet"}));
    EXPECT_EQ(basin_.Current_Sim_Name, "Wet");
    EXPECT_THAT(days("Wet"), ElementsAre("1 1", "2 2"));
}

TEST_F(SimulationCopies, RenamedFindScenariosThatADeletedOneLeft) {
    const ScenarioIndexRow left = scenario_placeholder("moist");
    add_rows<ScenarioIndexRow>(database_, template_table(k_scenario_index), std::span{&left, 1});
    rename(1, "moist");
    EXPECT_THAT(scenarios(), ElementsAre("moist warm", "moist cold", "dry None"));
}

TEST_F(SimulationCopies, RenamedWithoutATableHaveNone) {
    database_.drop_table("wet");
    rename(1, "moist");
    EXPECT_FALSE(database_.has_table("moist"));
    EXPECT_EQ(basin_.Current_Sim_Name, "moist");
}

TEST_F(SimulationCopies, RenamedNeverTakeATableOfTheBasin) {
    basin_.simulations[1].name = "PhysicalData";
    rename(1, "moist");
    EXPECT_TRUE(database_.has_table("PhysicalData"));
    EXPECT_FALSE(database_.has_table("moist"));
}

TEST_F(SimulationCopies, NewNamesThatTheStoreRefusesChangeNothing) {
    const auto before = content();
    refuse_next_index_row();
    EXPECT_TRUE(refused([&] { rename(1, "moist"); }).has_value());
    EXPECT_EQ(content(), before);
    EXPECT_THAT(names(), ElementsAre("dry", "wet"));
    EXPECT_EQ(basin_.Current_Sim_Name, "wet");
    EXPECT_FALSE(basin_.Basin_Changed);
    EXPECT_TRUE(is_free());
}

TEST_F(SimulationCopies, CantHaveANameOfTheSystemOrOneThatIsTaken) {
    const std::string reserved = "This name is reserved for system use, please re-enter";
    const std::string taken = "This name is already in use in this database, please re-enter";
    EXPECT_THAT(problem("a.b"), Optional(std::string{"Invalid character(s) in name, please re-enter"}));
    for (const char* name : {"SimResults", "physicaldata", "BasinAverages", "none", "--", "sqlite_x"})
        EXPECT_THAT(problem(name), Optional(reserved)) << name;
    for (const char* name : {"wet", "DRY", "Warm"}) EXPECT_THAT(problem(name), Optional(taken)) << name;
    EXPECT_THAT(problem("DRY", 1), Optional(taken));
    // In the grid alone, as the table of a simulation that was damaged.
    database_.drop_table("dry");
    EXPECT_THAT(problem("dry", 1), Optional(taken));
    EXPECT_EQ(problem("other"), std::nullopt);
}

TEST_F(SimulationCopies, AreNamedByTheirUser) {
    dialogs_.then_text("dry").then_text("  wetter ");
    EXPECT_THAT(ask_copy_name(database_, context_, 1), Optional(std::string{"wetter"}));
    ASSERT_EQ(dialogs_.inputs().size(), 2U);
    EXPECT_EQ(dialogs_.inputs()[0].prompt, "Enter a unique name to associate with this data");
    EXPECT_EQ(dialogs_.inputs()[0].title, "Name the New Simulation");
    EXPECT_EQ(dialogs_.inputs()[0].proposed, "wet copy");
    EXPECT_EQ(dialogs_.inputs()[1].prompt, "This name is already in use in this database, please re-enter");
    EXPECT_EQ(dialogs_.inputs()[1].proposed, "dry");
}

TEST_F(SimulationCopies, AreProposedAFreeName) {
    make_parameter_table("wet copy");
    dialogs_.then_text(std::nullopt);
    EXPECT_EQ(ask_copy_name(database_, context_, 1), std::nullopt);
    EXPECT_EQ(dialogs_.inputs()[0].proposed, "wet copy 2");
}

TEST_F(SimulationCopies, KeepANameThatWasNotChanged) {
    dialogs_.then_text("wet").then_text("").then_text("WET");
    EXPECT_EQ(ask_new_name(database_, context_, 1), std::nullopt);
    EXPECT_EQ(ask_new_name(database_, context_, 1), std::nullopt);
    EXPECT_THAT(ask_new_name(database_, context_, 1), Optional(std::string{"WET"}));
    EXPECT_EQ(dialogs_.inputs()[0].title, "Rename the simulation 'wet'");
    EXPECT_EQ(dialogs_.inputs()[0].proposed, "wet");
}

}  // namespace
}  // namespace nivora
