// The order in which Tab goes through the main window.
#include "tests/shell/simulation_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;

class TabOrderTest : public SimulationWindowTest {
protected:
    /// The elements that Tab reaches, from the name of the basin back to it; a grid counts as one element.
    std::vector<std::string> order() {
        std::vector<std::string> names;
        QWidget* at = box(0);
        do {
            const bool reached =
                (at->focusPolicy() & Qt::TabFocus) != 0 && at->isVisible() && at->isEnabled();
            if (reached && !at->objectName().isEmpty()) names.push_back(from_qt(at->objectName()));
            at = at->nextInFocusChain();
        } while (at != box(0));
        return names;
    }
};

TEST_F(TabOrderTest, GoesThroughTheDefinitionTheZonesTheSimulationsAndTheButtons) {
    EXPECT_THAT(order(), ElementsAre("Text(0)", "Text(2)", "Text(3)", "Text(5)", "Text(4)", "vaSpread1",
                                     "DBGrid1", "Command1(0)", "Command1(1)", "Command1(2)", "btnHelp"));
}

TEST_F(TabOrderTest, HasTheUnitsAndTheZonesOfAFreshBasinAfterItsName) {
    choose("mnuFileItem(0)");
    EXPECT_THAT(order(), ElementsAre("Text(0)", "Combo1", "Text(2)", "Text(3)", "Text(5)", "Text(4)",
                                     "vaSpread1", "DBGrid1", "Command1(0)", "btnHelp"));
    choose_units(0, Answer::Yes);
    EXPECT_THAT(order(), ElementsAre("Text(0)", "Text(1)", "Text(2)", "Text(3)", "Text(5)", "Text(4)",
                                     "vaSpread1", "DBGrid1", "Command1(0)", "btnHelp"));
}

}  // namespace
}  // namespace nivora
