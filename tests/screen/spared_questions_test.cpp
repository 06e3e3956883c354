// Questions that are not asked because only one answer is possible.

#include "tests/prep/legacy_text.h"
#include "tests/screen/climate_screen_fixture.h"

namespace nivora {
namespace {

using SparedQuestionsTest = ClimateOnScreenTest;

TEST_F(SparedQuestionsTest, TheOnlyScenarioIsChosenWhenTheEvaluationOpens) {
    add_scenario();
    press({"alt+r", "l"});
    QWidget* window = await_window("frmCtrlClim");
    ASSERT_NE(window, nullptr);
    await_active(*window);
    const auto* scenario = in<QComboBox>(window, "CmboScenario");
    EXPECT_EQ(scenario->currentText(), QStringLiteral("warmer"));
    EXPECT_GT(drawn_points(picture(*scenario, scenario->rect().adjusted(4, 4, -30, -4))), 20);
    tick_to(window, 1);
    click(*in<QWidget>(window, "Command1(1)"));
    EXPECT_FALSE(window->isVisible());
}

using SparedZonesTest = MainWindowOnScreenTest;

TEST_F(SparedZonesTest, AnImportIntoTheZonesOfItsFileAsksAboutTheDaysAlone) {
    const auto file = user_.write("alder.NVR", LegacyParts{}.text());
    const auto import = [&](const char* name) {
        in_modal("SimOptions", [](QWidget&) { press({"alt+a"}); });
        press({"alt+f", "i"});
        EXPECT_TRUE(await([&] { return session_.basin.Current_Sim_Name == name; }));
    };
    dialogs_.then_file(file).then_text("first");
    import("first");
    EXPECT_TRUE(dialogs_.messages().empty());
    dialogs_.then_file(file).then_text("second").then(Answer::Yes);
    import("second");
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().title, "Import file contains days already present in the database!");
    EXPECT_EQ(modal_windows_seen_, 2);
}

}  // namespace
}  // namespace nivora
