// The sample basin with a scenario, on a real display.
#pragma once

#include "tests/screen/screen_fixture.h"
#include "tests/support/warmer_scenario.h"
#include "windows/climate/frmCtrlClim.h"
#include "windows/engine/Results.h"

#include <QCheckBox>
#include <QComboBox>
#include <cstdlib>

namespace nivora {

/// The sample basin with a scenario, two degrees warmer.
class ClimateOnScreenTest : public MainWindowOnScreenTest {
protected:
    static constexpr const char* k_simulation = "ellervane-1997-98";

    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        open_sample();
        choose_simulation_named(k_simulation);
    }
    void TearDown() override {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() != QStringLiteral("frmNVR")) top->hide();
        }
        MainWindowOnScreenTest::TearDown();
    }

    void choose_simulation_named(const char* name) {
        const auto row = find_simulation(session_.basin, name);
        ASSERT_TRUE(row);
        click_cell(*find<QTableView>("DBGrid1"), static_cast<int>(*row), 0);
        ASSERT_EQ(session_.basin.Current_Sim_Name, name);
    }
    void change(const std::string& statement) {
        BasinDatabase{session_.basin.Work_File, Access::ReadWrite}.execute(statement);
    }
    void add_scenario() {
        const BasinState& basin = session_.basin;
        add_warmer_scenario(basin.Work_File, basin.Current_Sim_Name, *basin.Current_Start,
                            *basin.Current_End);
    }

    template <typename Element>
    static Element* in(QWidget* window, const char* name) {
        auto* element = window->findChild<Element*>(QString::fromUtf8(name));
        EXPECT_NE(element, nullptr) << name;
        return element;
    }

    /// Opens the window of an evaluation and chooses the scenario.
    QWidget* open_climate() {
        choose("mnuRunClim");
        QWidget* window = await_window("frmCtrlClim");
        if (window == nullptr) return nullptr;
        await_active(*window);
        in<QComboBox>(window, "CmboScenario")->setCurrentText(QStringLiteral("warmer"));
        return window;
    }
    /// Ticks the steps up to `last` with the mouse.
    void tick_to(QWidget* window, int last) {
        for (int step = 1; step <= last; ++step) {
            if (step == 5) {
                for (int zone = 1; zone <= session_.basin.ZoneCount; ++zone) dialogs_.then_text("0");
            }
            const auto name = "Check1(" + std::to_string(step - 1) + ")";
            auto* box = in<QCheckBox>(window, name.c_str());
            click(*box, {8, box->height() / 2});
            ASSERT_TRUE(await([&] { return box->isChecked() && !box->isEnabled(); })) << step;
        }
    }
    /// Presses the window manager's key that closes a window, and gives the answer to the question that
    /// follows. On a busy machine the window manager misses a key now and then; it is pressed again then.
    void close_by_key(Answer answer) {
        dialogs_.then(answer);
        const auto answered = [&] { return dialogs_.answers_left() == 0; };
        constexpr int k_presses = 3;
        constexpr int k_patience_ms = 4000;
        for (int i = 0; i < k_presses && !answered(); ++i) {
            press({"alt+F4"});
            await(answered, k_patience_ms);
        }
        ASSERT_TRUE(answered());
    }
    /// Saves a picture that a developer can look at.
    static void keep(const QWidget& window, const char* name) {
        const char* folder = std::getenv("NIVORA_PICTURES");
        if (folder != nullptr)
            picture(window).save(QString::fromUtf8(folder) + QLatin1Char('/') + QString::fromUtf8(name));
    }
};

}  // namespace nivora
