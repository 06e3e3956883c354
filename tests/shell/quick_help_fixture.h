// Visits everything that a user can reach in a window.
#pragma once

#include "tests/shell/main_window_fixture.h"

#include <QInputMethodEvent>
#include <QMenuBar>
#include <QSignalSpy>

namespace nivora {

inline constexpr const char* k_disabled = "  Menu items are disabled when 'QuickHelp' is on.";
inline constexpr const char* k_strip =
    "'Quickhelp' window.  When this window is visible, 'QuickHelp' is ON.  The user can view help related to "
    "each window element by clicking on the element. ";

/// Visits everything that a user can reach in a window, and checks that it explains itself and does nothing.
class QuickHelpSilenceTest : public MainWindowTest {
protected:
    void SetUp() override {
        open_sample();
        dialogs_before_ = asked();
    }

    [[nodiscard]] WindowContext context() { return {session_, quick_help_, program_.path(), printing_}; }
    [[nodiscard]] std::size_t asked() const {
        return dialogs_.messages().size() + dialogs_.inputs().size() + dialogs_.files().size();
    }

    /// Everything that an action could change, as one text.
    std::string state() {
        std::string text;
        for (const QWidget* top : QApplication::topLevelWidgets()) {
            if (!top->isVisible() || qobject_cast<const QMenu*>(top) != nullptr) continue;
            text += top->objectName().toStdString() + top->windowTitle().toStdString() + '\n';
            for (const auto* box : top->findChildren<QLineEdit*>()) text += box->text().toStdString() + '\n';
            for (const auto* list : top->findChildren<QComboBox*>())
                text += std::to_string(list->currentIndex()) + '\n';
            for (const auto* grid : top->findChildren<QTableView*>()) {
                text += std::to_string(grid->currentIndex().row()) + ' ' +
                        std::to_string(grid->currentIndex().column()) + '\n';
            }
            for (const auto* action : top->findChildren<QAction*>()) {
                text += action->text().toStdString() + (action->isEnabled() ? '+' : '-') +
                        (action->isChecked() ? 'x' : ' ') + (action->isVisible() ? 'v' : ' ') + '\n';
            }
        }
        const BasinState& basin = session_.basin;
        for (const bool flag : {basin.New_Basin, basin.Basin_Changed, basin.Input_Changed, basin.Output_Valid,
                                session_.run.NoSnow, session_.run.results_enabled})
            text += flag ? '1' : '0';
        text += basin.Basin_File.string() + basin.Current_Sim_Name + basin.basin_area_text;
        for (const Zone& zone : basin.zones) text += std::to_string(zone.area.value_or(-1.0)) + ' ';
        for (const float share : session_.run.LagDistribution) text += std::to_string(share) + ' ';
        for (const std::string& file : session_.settings.recent_files) text += file + '\n';
        return text;
    }

    /// The help line of an element: its own, or that of the nearest parent that has one.
    [[nodiscard]] static int line_of(const QWidget* element, const QWidget* window) {
        for (const QWidget* at = element; at != window; at = at->parentWidget()) {
            if (at->property("helpLine").isValid()) return at->property("helpLine").toInt();
        }
        return 0;
    }

    void expect_silent(NivoraWindow& window, const std::string& before, const std::string& text,
                       const std::string& what) {
        EXPECT_EQ(window.help_text().toStdString(), text) << what;
        EXPECT_EQ(asked(), dialogs_before_) << what;
        EXPECT_EQ(state(), before) << what;
        EXPECT_TRUE(window.isVisible()) << what;
        EXPECT_TRUE(quick_help_.is_on()) << what;
    }

    /// @param name the window's section among the help texts
    void walk_widgets(NivoraWindow& window, const char* name) {
        const QuickHelpTexts texts = Load_QuickHelp(program_.path(), name);
        const std::string before = state();
        int walked = 0;
        for (QWidget* element : window.findChildren<QWidget*>()) {
            if (!element->isVisible() || window.is_help_button(element)) continue;
            if (qobject_cast<QMenuBar*>(element) != nullptr || qobject_cast<QMenu*>(element) != nullptr)
                continue;
            const bool in_grid = qobject_cast<QTableView*>(element) != nullptr ||
                                 qobject_cast<QTableView*>(element->parentWidget()) != nullptr;
            if (in_grid) continue;
            const std::string what = std::string{name} + ' ' + element->metaObject()->className() + ' ' +
                                     element->objectName().toStdString();
            const std::string expected =
                window.is_help_strip(element) ? k_strip : texts.line(line_of(element, &window));
            const auto reset = [&] { window.explain_widget(nullptr); };
            reset();
            QTest::mouseClick(element, Qt::LeftButton);
            expect_silent(window, before, expected, "click " + what);
            QTest::mouseDClick(element, Qt::LeftButton);
            expect_silent(window, before, expected, "double click " + what);
            for (const Qt::Key key : {Qt::Key_A, Qt::Key_1, Qt::Key_Space, Qt::Key_Return, Qt::Key_Delete,
                                      Qt::Key_Backspace, Qt::Key_Down, Qt::Key_F1, Qt::Key_Escape}) {
                reset();
                QTest::keyClick(element, key);
                expect_silent(window, before, expected, "key " + std::to_string(key) + ' ' + what);
            }
            ++walked;
        }
        EXPECT_GT(walked, 3);
    }

    /// What the strip has to show for a menu entry.
    [[nodiscard]] static std::string text_of(const QAction* action, const QuickHelpTexts& texts) {
        const QVariant line = action->property("helpLine");
        if (line.isValid()) return texts.line(line.toInt());
        return k_disabled + texts.menu_text(action->property("helpMenu").toInt());
    }

    void walk_menus(NivoraWindow& window, const char* name, int at_least) {
        const QuickHelpTexts texts = Load_QuickHelp(program_.path(), name);
        const std::string before = state();
        int walked = 0;
        for (QMenu* menu : window.findChildren<QMenu*>()) {
            for (QAction* action : menu->actions()) {
                if (action->isSeparator() || action->menu() != nullptr || !action->isVisible()) continue;
                if (action->objectName().isEmpty()) continue;
                if (window.menuBar()->actions().contains(action)) continue;  // the bar's own overflow menu
                const std::string what = action->objectName().toStdString();
                const std::string expected = text_of(action, texts);
                const QSignalSpy triggered(action, &QAction::triggered);
                const auto open = [&] {
                    window.explain_widget(nullptr);
                    menu->popup(QPoint(0, 0));
                    QTest::qWait(1);
                };
                open();
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
                menu->hide();
                expect_silent(window, before, expected, "click " + what);
                if (action->isEnabled()) {
                    open();
                    menu->setActiveAction(action);
                    QTest::keyClick(menu, Qt::Key_Return);
                    menu->hide();
                    expect_silent(window, before, expected, "Enter " + what);
                }
                const QString letter = QKeySequence::mnemonic(action->text()).toString();
                if (!letter.isEmpty()) {
                    open();
                    QTest::keyClick(menu, letter.back().toLatin1());
                    menu->hide();
                    expect_silent(window, before, expected, "letter " + what);
                }
                EXPECT_TRUE(triggered.isEmpty()) << what;
                ++walked;
            }
        }
        EXPECT_GE(walked, at_least);
    }

    std::size_t dialogs_before_ = 0;
};

}  // namespace nivora
