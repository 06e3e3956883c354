#include "tests/shell/simulation_fixture.h"

namespace nivora {
namespace {

/// The entries of the Data menu, and the questions that come before each view.
class SimulationDataMenuTest : public SimulationWindowTest {
protected:
    static constexpr const char* k_days_missing = "The physical data table is missing days.  Add?";

    /// Chooses an entry and inspects the daily editor that opens.
    template <typename Look>
    void choose_and_look(const char* action, Look look) {
        seen_ = false;
        look_at_modal("frmData", look);
        choose(action);
    }
    bool opens_editor(const char* action) {
        choose_and_look(action, [](QWidget*) {});
        return std::exchange(seen_, false);
    }
    /// Chooses an entry that must not open a window; one that opens becomes a complaint.
    void opens_nothing(const char* action) { choose(action); }
    /// Selects the first row, which is already the active one, by leaving it first.
    void select_first() {
        go_to(2, 1);
        go_to(1, 1);
    }
    void execute(const char* statement) { work_file().execute(statement); }
    std::size_t messages() { return dialogs_.messages().size(); }
};

TEST_F(SimulationDataMenuTest, CompleteParametersOpenWithoutAQuestion) {
    go_to(1, 1);
    choose_and_look("mnuDataOpt(5)", [](QWidget* window) {
        EXPECT_EQ(window->windowTitle(), QStringLiteral("Edit simulation parameters"));
        auto* grid = window->findChild<QTableView*>(QStringLiteral("Spread"));
        EXPECT_EQ(grid->model()->rowCount(), 366);
        EXPECT_EQ(grid->model()->columnCount(), 10);
        EXPECT_EQ(grid->model()->index(0, 0).data().toString(), QStringLiteral("01/01/1996"));
    });
    EXPECT_TRUE(seen_);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(SimulationDataMenuTest, NoToMissingParametersOpensNothing) {
    go_to(1, 1);
    execute("DELETE FROM \"ellervane-1996\" WHERE Date = 35070");
    dialogs_.then(Answer::No);
    opens_nothing("mnuDataOpt(5)");
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().title, "Incomplete parameter table");
    EXPECT_EQ(last_message().text,
              "This simulation, ellervane-1996, is missing data.  Add the additional daily records?");
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
}

TEST_F(SimulationDataMenuTest, YesAddsInTheModeOfTheViewThatWasOpenedLast) {
    go_to(1, 1);
    execute("DELETE FROM \"ellervane-1996\" WHERE Date = 35070");
    const auto left = count("\"ellervane-1996\"");
    // No view was opened yet: the mode is that of the daily variables, which are complete.
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(opens_editor("mnuDataOpt(5)"));
    EXPECT_EQ(messages(), 1U);
    EXPECT_EQ(count("\"ellervane-1996\""), left);
}

TEST_F(SimulationDataMenuTest, MissingParametersAreAddedAfterTheirViewWasOpened) {
    go_to(1, 1);
    const auto before = count("\"ellervane-1996\"");
    // Rows that are added later take their values from the definition window,
    // and their mode from the view of parameters.
    look_at_modal("SimOptions", [](QWidget* window) {
        fill_first_values(window);
        press_in(window, 0);
    });
    choose("mnuDataOpt(0)");
    EXPECT_TRUE(opens_editor("mnuDataOpt(5)"));
    execute("DELETE FROM \"ellervane-1996\" WHERE Date = 35070");
    EXPECT_EQ(count("\"ellervane-1996\""), before - 5);
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(opens_editor("mnuDataOpt(5)"));
    ASSERT_EQ(messages(), 2U);
    EXPECT_THAT(last_message().text,
                testing::StartsWith("The parameter table for this simulation will be created"));
    EXPECT_EQ(count("\"ellervane-1996\""), before);
}

TEST_F(SimulationDataMenuTest, APeriodOf367DaysOpensNoParameters) {
    go_to(1, 1);
    row(1).end = *day_count({1997, 1, 1});
    opens_nothing("mnuDataOpt(5)");
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, "Date range error!  366 ");
    EXPECT_EQ(last_message().icon, Icon::Stop);
}

TEST_F(SimulationDataMenuTest, ForASimulationWithoutDatesTheUserIsAskedToCheckThem) {
    go_to(1, 1);
    row(1).start.reset();
    row(1).end.reset();
    // The period is then that of the table itself, which is complete.
    opens_nothing("mnuDataOpt(5)");
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, "Please check the start/end dates for this simulation!");
    EXPECT_EQ(last_message().icon, Icon::Stop);
}

TEST_F(SimulationDataMenuTest, TheVariablesOfTheSimulationOpenWithoutAQuestion) {
    go_to(2, 1);
    choose_and_look("mnuDataOptVar(1)", [](QWidget* window) {
        EXPECT_EQ(window->windowTitle(), QStringLiteral("Edit basin variables"));
        auto* grid = window->findChild<QTableView*>(QStringLiteral("Spread"));
        EXPECT_EQ(grid->model()->rowCount(), 365);
        EXPECT_EQ(grid->model()->index(0, 0).data().toString(), QStringLiteral("10/01/1997"));
    });
    EXPECT_TRUE(seen_);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(SimulationDataMenuTest, NoToMissingDaysOpensNoVariablesAndAddsNone) {
    go_to(2, 1);
    const auto before = count("PhysicalData");
    execute("DELETE FROM PhysicalData WHERE Date = 35710");
    dialogs_.then(Answer::No);
    opens_nothing("mnuDataOptVar(1)");
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, k_days_missing);
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
    EXPECT_EQ(count("PhysicalData"), before - 5);
}

TEST_F(SimulationDataMenuTest, YesToMissingDaysAddsThemWithZeros) {
    go_to(2, 1);
    const auto before = count("PhysicalData");
    execute("DELETE FROM PhysicalData WHERE Date = 35710");
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(opens_editor("mnuDataOptVar(1)"));
    EXPECT_EQ(count("PhysicalData"), before);
    EXPECT_EQ(
        count("PhysicalData WHERE Date = 35710 AND Runoff = 0 AND Tmax = 0 AND Tmin = 0 AND Tavg = 0 AND "
              "Precip = 0 AND SCA = 0 AND NetRadiation = 0"),
        5);
}

TEST_F(SimulationDataMenuTest, ThePeriodOfRecordAsksAboutTheGapBetweenItsYears) {
    // From 01/01/1996 to 09/30/1998 the record has 731 of 1004 days.
    dialogs_.then(Answer::No);
    opens_nothing("mnuDataOptVar(0)");
    EXPECT_EQ(last_message().text, k_days_missing);
    EXPECT_EQ(count("PhysicalData"), 731 * 5);
    dialogs_.then(Answer::Yes);
    choose_and_look("mnuDataOptVar(0)", [](QWidget* window) {
        auto* grid = window->findChild<QTableView*>(QStringLiteral("Spread"));
        EXPECT_EQ(grid->model()->rowCount(), 1004);
    });
    EXPECT_TRUE(seen_);
    EXPECT_EQ(count("PhysicalData"), 1004 * 5);
    EXPECT_EQ(session_.prep.record.count, 1004 * 5);
    EXPECT_TRUE(opens_editor("mnuDataOptVar(0)"));
    EXPECT_EQ(messages(), 2U);
}

TEST_F(SimulationDataMenuTest, AnEmptyRecordAsksAndAfterNoOpensNothing) {
    execute("DELETE FROM PhysicalData");
    session_.prep.record = {};
    dialogs_.then(Answer::No);
    opens_nothing("mnuDataOptVar(0)");
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, k_days_missing);
}

TEST_F(SimulationDataMenuTest, AnEmptyDailyTableOffersToAddTheDaysOfTheSimulation) {
    execute("DELETE FROM PhysicalData");
    go_to(1, 1);
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(opens_editor("mnuDataOptVar(1)"));
    EXPECT_EQ(count("PhysicalData"), 366 * 5);
}

TEST_F(SimulationDataMenuTest, NoToADefinitionWithMissingParametersOpensNothing) {
    go_to(1, 1);
    execute("DELETE FROM \"ellervane-1996\"");
    dialogs_.then(Answer::No);
    opens_nothing("mnuDataOpt(0)");
    EXPECT_EQ(last_message().title, "Incomplete parameter table");
}

TEST_F(SimulationDataMenuTest, YesToADefinitionWithMissingParametersOpensItWithItsWarning) {
    go_to(1, 1);
    execute("DELETE FROM \"ellervane-1996\"");
    dialogs_.then(Answer::Yes);
    look_at_modal("SimOptions", [](QWidget*) {});
    choose("mnuDataOpt(0)");
    EXPECT_TRUE(seen_);
    ASSERT_EQ(messages(), 2U);
    EXPECT_EQ(last_message().title, "Missing parameter table");
}

TEST_F(SimulationDataMenuTest, ResultsWithoutARunOpenNothing) {
    select_first();
    ASSERT_TRUE(enabled("mnuDataOpt(7)"));
    opens_nothing("mnuDataOpt(7)");
}

TEST_F(SimulationDataMenuTest, ResultsOfAnotherPeriodDoNotMatch) {
    {
        BasinDatabase database = work_file();
        database.create_table(sim_results_table());
        database.execute("INSERT INTO SimResults (Zone, Date) VALUES (1, 20000)");
    }
    select_first();
    ASSERT_TRUE(enabled("mnuDataOpt(7)"));
    opens_nothing("mnuDataOpt(7)");
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text,
              "Simulation results table does not match the current simulation.  Please run the current "
              "simulation/climate change again.");
}

TEST_F(SimulationDataMenuTest, ResultsOfTheSimulationOpen) {
    {
        BasinDatabase database = work_file();
        database.create_table(sim_results_table());
        database.execute("INSERT INTO SimResults (Zone, Date) VALUES (1, 35065)");
    }
    select_first();
    ASSERT_TRUE(enabled("mnuDataOpt(7)"));
    choose_and_look("mnuDataOpt(7)", [](QWidget* window) {
        EXPECT_EQ(window->windowTitle(), QStringLiteral("Simulation results"));
    });
    EXPECT_TRUE(seen_);
}

TEST_F(SimulationDataMenuTest, TheEditMenuIsEnabledAgainWhenTheEditorCloses) {
    go_to(1, 1);
    EXPECT_TRUE(enabled("mnuEdit"));
    bool while_open = true;
    choose_and_look("mnuDataOpt(5)", [&](QWidget* window) {
        press_in(window, 1);
        while_open = session_.shell.edit_menu;
    });
    EXPECT_FALSE(while_open);
    EXPECT_TRUE(enabled("mnuEdit"));
}

TEST_F(SimulationDataMenuTest, LongTermAveragesOpenFromTheToolsMenu) {
    go_to(1, 1);
    look_at_modal("frmLongTermAvg", [](QWidget* window) { press_in(window, 1); });
    choose("mnuToolsItm(0)");
    EXPECT_TRUE(seen_);
}

TEST_F(SimulationDataMenuTest, AcceptedAveragesInvalidateTheResults) {
    go_to(1, 1);
    session_.basin.Output_Valid = true;
    look_at_modal("frmLongTermAvg", [](QWidget* window) {
        press_in(window, 3);
        press_in(window, 0);
    });
    choose("mnuToolsItm(0)");
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_EQ(count("BasinAverages WHERE TAvgN IS NOT NULL"), 60);  // twelve months of five zones
}

}  // namespace
}  // namespace nivora
