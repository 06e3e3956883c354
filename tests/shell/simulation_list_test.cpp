#include "tests/shell/simulation_fixture.h"

#include <QScrollBar>

namespace nivora {
namespace {

using testing::ElementsAre;

/// Adding, editing and deleting simulations from the main window.
class SimulationListTest : public SimulationWindowTest {
protected:
    static constexpr const char* k_first = "ellervane-1996";
    static constexpr const char* k_second = "ellervane-1997-98";

    /// Adds a definition under a name for 1 to 3 October 1997, days that the record has.
    void add(const std::string& name, std::optional<Answer> overwrite = std::nullopt) {
        dialogs_.then_text(name);
        if (overwrite) dialogs_.then(*overwrite);
        look_at_modal("SimOptions", [](QWidget* window) {
            fill_first_values(window);
            window->findChild<QLineEdit*>(QStringLiteral("mtxt(2)"))->setText(QStringLiteral("10/01/1997"));
            window->findChild<QLineEdit*>(QStringLiteral("mtxt(3)"))->setText(QStringLiteral("10/03/1997"));
            press_in(window, 0);
        });
        press(0);
    }
    void expect_buttons(bool on) {
        EXPECT_EQ(find<QPushButton>("Command1(1)")->isEnabled(), on);
        EXPECT_EQ(find<QPushButton>("Command1(2)")->isEnabled(), on);
        EXPECT_EQ(enabled("mnuDataOpt(0)"), on);
        EXPECT_TRUE(enabled("mnuData"));
        EXPECT_TRUE(find<QPushButton>("Command1(0)")->isEnabled());
    }
};

TEST_F(SimulationListTest, AnAddedSimulationBecomesTheCurrentOne) {
    add("snow & rain");
    EXPECT_TRUE(seen_);
    ASSERT_EQ(rows(), 3U);
    EXPECT_EQ(cell(3, 1), "snow & rain");
    EXPECT_EQ(cell(3, 3), "10/01/1997");
    EXPECT_EQ(cell(3, 4), "10/03/1997");
    EXPECT_EQ(label(), "snow && rain");
    EXPECT_EQ(session_.basin.Current_Sim_Name, "snow & rain");
    EXPECT_EQ(session_.basin.current_row, 2U);
    EXPECT_EQ(grid()->currentIndex().row(), 2);
    EXPECT_EQ(count("\"snow & rain\""), 15);  // three days of five zones
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
    EXPECT_TRUE(enabled("mnuFileItem(4)"));
    expect_buttons(true);
}

TEST_F(SimulationListTest, TheNameIsAskedForInItsBox) {
    dialogs_.then_text(std::nullopt);
    press(0);
    ASSERT_EQ(dialogs_.inputs().size(), 1U);
    EXPECT_EQ(dialogs_.inputs()[0].prompt, "Enter a unique name to associate with this data");
    EXPECT_EQ(dialogs_.inputs()[0].title, "Name the New Simulation");
    EXPECT_EQ(rows(), 2U);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(SimulationListTest, AnEmptyOrBlankNameEndsTheAdding) {
    for (const char* name : {"", "   "}) {
        dialogs_.then_text(name);
        press(0);
    }
    EXPECT_EQ(dialogs_.inputs().size(), 2U);
    EXPECT_EQ(rows(), 2U);
    EXPECT_EQ(dialogs_.messages().size(), 0U);
}

TEST_F(SimulationListTest, CharactersThatNoTableNameHoldsAreAskedAboutAgain) {
    for (const char* name : {"a.b", "a!b", "a[b", "a]b", "a`b"}) dialogs_.then_text(name);
    dialogs_.then_text(std::nullopt);
    press(0);
    ASSERT_EQ(dialogs_.inputs().size(), 6U);
    for (std::size_t i = 1; i < 6; ++i) {
        EXPECT_EQ(dialogs_.inputs()[i].prompt, "Invalid character(s) in name, please re-enter");
        EXPECT_EQ(dialogs_.inputs()[i].title, "Name the New Simulation");
    }
    EXPECT_EQ(rows(), 2U);
}

TEST_F(SimulationListTest, BlanksAroundANameAreDropped) {
    add("  blank ");
    EXPECT_EQ(cell(3, 1), "blank");
    EXPECT_TRUE(has_table("blank"));
}

TEST_F(SimulationListTest, UnusualNamesAreAccepted) {
    const std::string longest(300, 'n');
    for (const std::string& name : {std::string{"it's \"100%\" 雪; DROP"}, longest}) {
        add(name);
        EXPECT_EQ(session_.basin.Current_Sim_Name, name);
        EXPECT_TRUE(has_table(name));
        BasinDatabase database = work_file();
        EXPECT_EQ(read_table<ParameterRow>(database, parameter_table(name)).size(), 15U);
    }
    EXPECT_EQ(rows(), 4U);
}

TEST_F(SimulationListTest, NoToADuplicateNameLeavesItsTable) {
    const auto before = count("\"ellervane-1996\"");
    dialogs_.then_text("Ellervane-1996").then(Answer::No);
    press(0);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().title, "Duplicate simulation same");
    EXPECT_EQ(last_message().text,
              "The current database already contains a simulation named 'Ellervane-1996 '.  Overwrite?");
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
    EXPECT_EQ(count("\"ellervane-1996\""), before);
    EXPECT_GT(before, 0);
    EXPECT_EQ(rows(), 2U);
}

TEST_F(SimulationListTest, AnOverwrittenSimulationKeepsItsRowAndIsTheCurrentOne) {
    go_to(2, 1);
    add("ELLERVANE-1996", Answer::Yes);
    ASSERT_EQ(rows(), 2U);
    EXPECT_EQ(cell(1, 1), "ELLERVANE-1996");
    EXPECT_EQ(cell(1, 3), "10/01/1997");
    EXPECT_EQ(cell(2, 1), k_second);
    EXPECT_EQ(label(), "ELLERVANE-1996");
    EXPECT_EQ(grid()->currentIndex().row(), 0);
    EXPECT_EQ(count("\"ellervane-1996\""), 15);  // three days of five zones
}

TEST_F(SimulationListTest, AnOverwrittenSimulationThatIsCancelledIsAChangeThatNewAsksAbout) {
    dialogs_.then_text(k_first).then(Answer::Yes);
    look_at_modal("SimOptions", [](QWidget* window) { press_in(window, 1); });
    press(0);
    EXPECT_EQ(rows(), 2U);
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
    dialogs_.then(Answer::Cancel);
    choose("mnuFileItem(0)");
    EXPECT_EQ(last_message().title, "Save Data?");
}

TEST_F(SimulationListTest, AnOverwrittenSimulationThatWasCancelledIsRebuiltByItsEdit) {
    dialogs_.then_text(k_first).then(Answer::Yes);
    look_at_modal("SimOptions", [](QWidget* window) { press_in(window, 1); });
    press(0);
    go_to(1, 1);
    // The mode is that of the daily variables, so the Yes adds nothing to the parameter table.
    dialogs_.then(Answer::Yes);
    look_at_modal("SimOptions", [](QWidget* window) {
        fill_first_values(window);
        press_in(window, 0);
    });
    press(2);
    EXPECT_EQ(rows(), 2U);
    EXPECT_EQ(count("\"ellervane-1996\""), 366 * 5);
}

TEST_F(SimulationListTest, YesToADuplicateNameEmptiesItsTableBeforeTheWindowOpens) {
    dialogs_.then_text(k_first).then(Answer::Yes);
    std::int64_t left = -1;
    look_at_modal("SimOptions", [&](QWidget*) { left = count("\"ellervane-1996\""); });
    press(0);
    EXPECT_TRUE(seen_);
    EXPECT_EQ(left, 0);
    EXPECT_EQ(rows(), 2U);
}

TEST_F(SimulationListTest, ATableOfTheBasinItselfIsNeverOverwritten) {
    const auto before = count("PhysicalData");
    for (const char* name : {"PhysicalData", "simulationindex"}) {
        dialogs_.then_text(name).then(Answer::Yes);
        press(0);
        EXPECT_EQ(last_message().title, "Duplicate simulation same");
    }
    EXPECT_EQ(count("PhysicalData"), before);
    EXPECT_EQ(rows(), 2U);
}

TEST_F(SimulationListTest, ACancelledDefinitionLeavesItsTableForTheNextNameCheck) {
    dialogs_.then_text("later");
    look_at_modal("SimOptions", [](QWidget* window) { press_in(window, 1); });
    press(0);
    EXPECT_TRUE(seen_);
    EXPECT_EQ(rows(), 2U);
    EXPECT_TRUE(has_table("later"));
    dialogs_.then_text("later").then(Answer::No);
    press(0);
    EXPECT_EQ(last_message().title, "Duplicate simulation same");
}

TEST_F(SimulationListTest, TheEditMenuAddsAsTheButtonDoes) {
    dialogs_.then_text(std::nullopt);
    choose("mnuEditItmInsert(0)");
    EXPECT_EQ(dialogs_.inputs().size(), 1U);
}

TEST_F(SimulationListTest, EditOpensTheSelectedDefinitionAndShowsWhatCameOfIt) {
    go_to(2, 1);
    look_at_modal("SimOptions", [](QWidget* window) {
        EXPECT_EQ(window->findChild<QLabel*>(QStringLiteral("lblSimName"))->text(),
                  QString::fromUtf8("ellervane-1997-98"));
        window->findChild<QLineEdit*>(QStringLiteral("mtxt(1)"))->setText(QStringLiteral("42"));
        press_in(window, 0);
    });
    press(2);
    EXPECT_TRUE(seen_);
    EXPECT_EQ(cell(2, 2), "42");
    EXPECT_EQ(label(), k_second);
    EXPECT_EQ(rows(), 2U);
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(SimulationListTest, TheDataMenuOpensTheSameDefinition) {
    go_to(2, 1);
    look_at_modal("SimOptions", [](QWidget* window) {
        EXPECT_EQ(window->findChild<QLabel*>(QStringLiteral("lblSimName"))->text(),
                  QString::fromUtf8("ellervane-1997-98"));
        press_in(window, 1);
    });
    choose("mnuDataOpt(0)");
    EXPECT_TRUE(seen_);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(SimulationListTest, TheWholeRowIsMarkedWhileTheDeleteQuestionShows) {
    go_to(2, 4);
    std::vector<QColor> colours;
    QColor other;
    dialogs_.while_shown = [&] {
        for (int column = 1; column <= 17; ++column) colours.push_back(cell_colour(2, column));
        other = cell_colour(1, 4);
    };
    dialogs_.then(Answer::No);
    press(1);
    EXPECT_THAT(colours, testing::SizeIs(17));
    EXPECT_THAT(colours, testing::Each(QColor(0xFF, 0x80, 0x80)));
    EXPECT_FALSE(other.isValid());
    EXPECT_FALSE(cell_colour(2, 1).isValid());
    EXPECT_EQ(last_message().title, "Delete a simulation");
    EXPECT_EQ(last_message().text, "Are you sure you want to delete 'ellervane-1997-98'?");
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
    EXPECT_EQ(rows(), 2U);
    EXPECT_TRUE(has_table(k_second));
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(SimulationListTest, YesDeletesTheRowAndItsTableAndSelectsNothing) {
    go_to(1, 1);
    dialogs_.then(Answer::Yes);
    press(1);
    ASSERT_EQ(rows(), 1U);
    EXPECT_EQ(cell(1, 1), k_second);
    EXPECT_FALSE(has_table(k_first));
    EXPECT_TRUE(has_table(k_second));
    EXPECT_EQ(label(), "--");
    EXPECT_EQ(session_.basin.Current_Sim_Name, "--");
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
    for (const char* action :
         {"mnuRunSim", "mnuRunFor", "mnuRunClim", "mnuDataOptVar(1)", "mnuWinGraphics", "mnuReports"})
        EXPECT_FALSE(enabled(action)) << action;
    expect_buttons(true);
}

TEST_F(SimulationListTest, ARowMustBeSelectedAfterADeletion) {
    go_to(1, 1);
    dialogs_.then(Answer::Yes);
    press(1);
    const QRect place = grid()->visualRect(grid()->model()->index(0, 0));
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, Qt::NoModifier, place.center());
    EXPECT_EQ(label(), k_second);
    for (const char* action :
         {"mnuRunSim", "mnuRunFor", "mnuRunClim", "mnuDataOptVar(1)", "mnuWinGraphics", "mnuReports"})
        EXPECT_TRUE(enabled(action)) << action;
}

TEST_F(SimulationListTest, AClickOnTheCurrentRowSelectsItToo) {
    ASSERT_EQ(grid()->currentIndex().row(), 0);
    ASSERT_FALSE(enabled("mnuDataOpt(7)"));
    const QRect place = grid()->visualRect(grid()->model()->index(0, 1));
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, Qt::NoModifier, place.center());
    EXPECT_TRUE(enabled("mnuDataOpt(7)"));
    EXPECT_EQ(label(), k_first);
}

TEST_F(SimulationListTest, TheLastRowIsTheActiveOneAfterADeletion) {
    add("third");
    go_to(1, 1);
    dialogs_.then(Answer::Yes).then(Answer::No);
    press(1);
    ASSERT_EQ(rows(), 2U);
    press(1);
    EXPECT_EQ(last_message().text, "Are you sure you want to delete 'third'?");
    EXPECT_EQ(label(), "--");
}

TEST_F(SimulationListTest, WithoutSimulationsTheirButtonsAreOffAndTheDataMenuStaysOn) {
    go_to(1, 1);
    dialogs_.then(Answer::Yes).then(Answer::Yes);
    press(1);
    go_to(1, 1);
    press(1);
    EXPECT_EQ(rows(), 0U);
    expect_buttons(false);
    EXPECT_EQ(label(), "--");
    choose("mnuFileItem(4)");
    EXPECT_EQ(last_message().text, "You must define at least 1 simulation before saving!");
}

TEST_F(SimulationListTest, TheEditMenuDeletesAsTheButtonDoes) {
    go_to(2, 1);
    dialogs_.then(Answer::Yes);
    choose("mnuEditItmDelete(0)");
    ASSERT_EQ(rows(), 1U);
    EXPECT_EQ(cell(1, 1), k_first);
    EXPECT_FALSE(has_table(k_second));
}

TEST_F(SimulationListTest, DeletingTheSimulationThatWasRunLeavesItsResults) {
    BasinDatabase database = work_file();
    database.create_table(sim_results_table());
    database.execute("INSERT INTO SimResults (Zone, Date) VALUES (1, 35065)");
    go_to(1, 1);
    dialogs_.then(Answer::Yes);
    press(1);
    EXPECT_EQ(rows(), 1U);
    EXPECT_EQ(count("SimResults"), 1);
}

TEST_F(SimulationListTest, RowItemsOfTheEditMenuFollowTheFocus) {
    const auto caption = [&](const char* name) { return from_qt(find<QAction>(name)->text()); };
    grid()->setFocus();
    EXPECT_EQ(caption("mnuEditItmInsert(0)"), "Add Simulation");
    EXPECT_EQ(caption("mnuEditItmDelete(0)"), "Delete Simulation");
    box(4)->setFocus();
    EXPECT_EQ(caption("mnuEditItmInsert(0)"), "Add ...");
    EXPECT_EQ(caption("mnuEditItmDelete(0)"), "Delete ...");
}

TEST_F(SimulationListTest, AScrollBarIsThereWheneverColumnsAreHidden) {
    ASSERT_EQ(rows(), 2U);
    window_->resize(900, 720);
    QTest::qWait(1);
    EXPECT_TRUE(grid()->horizontalScrollBar()->isVisible());
    EXPECT_GT(grid()->horizontalScrollBar()->maximum(), 0);
}

}  // namespace
}  // namespace nivora
