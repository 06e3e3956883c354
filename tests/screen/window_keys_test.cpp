// The keyboard in each window: which element has the focus first, which button Enter presses,
// and that Escape closes the window.

#include "tests/screen/climate_screen_fixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace nivora {
namespace {

struct WindowKeys {
    const char* window;
    const char* entry;  ///< the menu entry that opens it
    const char* first_focus;
    const char* enter_at;  ///< an element in which Enter has no other meaning
    const char* default_button;
};

class WindowKeysTest : public ClimateOnScreenTest, public testing::WithParamInterface<WindowKeys> {
protected:
    void SetUp() override {
        ClimateOnScreenTest::SetUp();
        if (!IsSkipped()) add_scenario();
    }
    /// Opens the window, modal or not, and acts on it.
    void in_window(const std::function<void(QWidget&)>& act) {
        int opened = 0;
        const auto once = [&](QWidget& window) {
            ++opened;
            act(window);
        };
        const std::string name = GetParam().window;
        const bool modal = name != "Results" && name != "frmCtrlClim";
        if (modal) in_modal(GetParam().window, once);
        choose(GetParam().entry);
        if (!modal) {
            QWidget* window = await_window(GetParam().window);
            ASSERT_NE(window, nullptr);
            await_active(*window);
            once(*window);
        }
        EXPECT_EQ(opened, 1);
    }
};

TEST_P(WindowKeysTest, EnterPressesItsDefaultButtonAndEscapeItsCloseControl) {
    int pressed = 0;
    in_window([&](QWidget& window) {
        EXPECT_EQ(focused(), GetParam().first_focus);
        auto* button = in<QPushButton>(&window, GetParam().default_button);
        EXPECT_TRUE(button->isDefault());
        QObject::connect(button, &QPushButton::clicked, window_.get(), [&] { ++pressed; });
        in<QWidget>(&window, GetParam().enter_at)->setFocus();
        press({"Return"});
        EXPECT_EQ(pressed, 1);
        EXPECT_FALSE(window.isVisible());
    });
    in_window([&](QWidget& window) {
        press({"Escape"});
        EXPECT_FALSE(window.isVisible());
    });
    EXPECT_EQ(pressed, 1) << "Escape presses no button";
    EXPECT_TRUE(dialogs_.messages().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Of, WindowKeysTest,
    testing::Values(WindowKeys{"SimOptions", "mnuDataOpt(0)", "mtxt(1)", "btnHelp", "Command1(0)"},
                    WindowKeys{"frmData", "mnuDataOptVar(1)", "Spread", "btnHelp", "Command1(0)"},
                    WindowKeys{"frmLongTermAvg", "mnuToolsItm(0)", "vaSpread1", "btnHelp", "Command1(0)"},
                    WindowKeys{"frmTimeLagDist", "mnuToolsItm(4)", "Text1(0)", "btnHelp", "Command1(0)"},
                    WindowKeys{"frmCC", "mnuDataOpt(2)", "DBCombo1", "DBCombo1", "Command1(0)"},
                    WindowKeys{"frmCtrlClim", "mnuRunClim", "CmboScenario", "CmboScenario", "Command1(0)"},
                    WindowKeys{"Results", "mnuRunSimVar(1)", "SpdStat", "RichTextBox1", "Command1(2)"}),
    [](const auto& tested) { return std::string{tested.param.window}; });

using DefinitionKeysTest = ClimateOnScreenTest;

TEST_F(DefinitionKeysTest, EnterLeadsThroughTheOptionsToTheNineParametersAndToAccept) {
    std::vector<std::string> way;
    dialogs_.then_text("hand");
    in_modal("SimOptions", [&](QWidget&) {
        for (int step = 0; step < 16; ++step) {
            way.push_back(focused());
            press({"Return"});
        }
        way.push_back(focused());
        press({"Escape"});
    });
    click(*find<QPushButton>("Command1(0)"));
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_THAT(way,
                testing::ElementsAre("mtxt(1)", "mtxt(2)", "mtxt(3)", "mtxt(4)", "mtxt(5)", "optTempType(0)",
                                     "mtxt(6)", "mtxt(7)", "mtxt(8)", "mtxt(9)", "mtxt(10)", "mtxt(11)",
                                     "mtxt(12)", "mtxt(13)", "mtxt(14)", "mtxt(15)", "Command1(0)"));
}

TEST_F(DefinitionKeysTest, TheUnitOfAParameterIsInItsTipTheStatusLineAndQuickHelp) {
    dialogs_.then_text("hand");
    in_modal("SimOptions", [&](QWidget& window) {
        const auto* factor = in<QLineEdit>(&window, "mtxt(6)");
        click(*factor);
        const auto* told = in<QLabel>(&window, "panel2");
        EXPECT_EQ(from_qt(told->text()), "AN: cm/(°C·day)");
        EXPECT_GT(drawn_points(picture(*told)), 30);
        point_at(*factor, factor->rect().center());
        EXPECT_TRUE(QToolTip::isVisible());
        EXPECT_EQ(from_qt(QToolTip::text()), "AN: cm/(°C·day)");
        click(*in<QWidget>(&window, "btnHelp"));
        click(*factor);
        EXPECT_THAT(from_qt(dynamic_cast<NivoraWindow&>(window).help_text()),
                    testing::EndsWith("Unit: cm/(°C·day)."));
        EXPECT_GT(drawn_points(picture(*in<QWidget>(&window, "lblHelp"))), 200);
        click(*in<QWidget>(&window, "btnHelp"));
        press({"Escape"});
    });
    click(*find<QPushButton>("Command1(0)"));
    EXPECT_EQ(modal_windows_seen_, 1);
}

}  // namespace
}  // namespace nivora
