#include "session/simulation_list.h"

#include "base/scripted_dialogs.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

/// Two simulations; the first was current when the window of a definition was opened.
class DefinitionWasClosed : public testing::Test {
protected:
    DefinitionWasClosed() {
        Simulation first;
        first.name = "first";
        Simulation second;
        second.name = "second";
        session_.basin.simulations = {first, second};
        session_.basin.current_row = 0;
        session_.basin.Current_Sim_Name = "first";
        session_.shell.reports = true;
    }

    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
};

TEST_F(DefinitionWasClosed, ACancelSelectsNothing) {
    definition_was_closed(session_, false, 0);
    EXPECT_FALSE(session_.shell.run_simulation);
    EXPECT_TRUE(session_.shell.reports);
    EXPECT_TRUE(session_.shell.delete_simulation) << "the grid has rows";
}

TEST_F(DefinitionWasClosed, AnAcceptedDefinitionIsSelectedAndCountsAsEdited) {
    definition_was_closed(session_, true, 0);
    EXPECT_TRUE(session_.shell.run_simulation);
    EXPECT_FALSE(session_.shell.reports);
}

TEST_F(DefinitionWasClosed, ARowAddedByARefusedDefinitionIsSelected) {
    session_.basin.current_row = 1;
    definition_was_closed(session_, false, 0);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "second");
    EXPECT_TRUE(session_.shell.run_simulation);
}

TEST_F(DefinitionWasClosed, WithoutACurrentRowNothingIsSelected) {
    session_.basin.current_row.reset();
    definition_was_closed(session_, true, std::nullopt);
    EXPECT_FALSE(session_.shell.run_simulation);
}

}  // namespace
}  // namespace nivora
