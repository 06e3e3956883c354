// Whether every control of every window is reached by keys, and left by them.
#include "tests/accessibility/every_window_fixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QMenuBar>
#include <QRadioButton>
#include <QTextEdit>
#include <algorithm>

namespace nivora {
namespace {

constexpr int k_most_keys = 120;

std::string called(const QWidget* widget) {
    if (widget == nullptr) return "nothing";
    return from_qt(QString::fromUtf8(widget->metaObject()->className()) + QLatin1Char(' ') +
                   widget->objectName());
}

/// A control that a user works with.
bool is_control(const QWidget& widget) {
    return qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
           qobject_cast<const QLineEdit*>(&widget) != nullptr ||
           qobject_cast<const QComboBox*>(&widget) != nullptr ||
           qobject_cast<const QAbstractSpinBox*>(&widget) != nullptr ||
           qobject_cast<const QTableView*>(&widget) != nullptr;
}

class KeyboardTest : public EveryWindowTest {
protected:
    /// The controls of a window that a key has to reach: enabled, visible, not a part of another control.
    static std::set<const QWidget*> wanted(const QWidget& window) {
        std::set<const QWidget*> wanted;
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            if (!is_control(*widget) || !widget->isVisible() || !widget->isEnabled()) continue;
            if (widget->window() != &window || widget->focusProxy() != nullptr) continue;
            if (widget->inherits("QTableCornerButton") || widget->inherits("nivora::FrozenColumn")) continue;
            if (widget->inherits("QToolBarExtension") || widget->inherits("QMenuBarExtension")) continue;
            wanted.insert(widget);
        }
        return wanted;
    }

    /// Where Tab goes, with Ctrl in a grid, whose cells Tab visits; arrows go through radio buttons.
    static std::set<const QWidget*> visited(QWidget& window, bool forward) {
        std::set<const QWidget*> visited;
        for (int key = 0; key < k_most_keys; ++key) {
            QWidget* at = QApplication::focusWidget();
            if (at == nullptr) at = &window;
            visited.insert(at);
            const bool grid = qobject_cast<QTableView*>(at) != nullptr;
            const Qt::KeyboardModifiers control = grid ? Qt::ControlModifier : Qt::NoModifier;
            QTest::keyClick(at, forward ? Qt::Key_Tab : Qt::Key_Backtab,
                            forward ? control : control | Qt::ShiftModifier);
            if (QApplication::focusWidget() == at) {
                ADD_FAILURE() << called(&window) << ": the focus stays in " << called(at);
                break;
            }
        }
        return visited;
    }

    static bool reached(const QWidget* control, const std::set<const QWidget*>& visited) {
        if (visited.contains(control)) return true;
        // Arrows go on among the buttons of a group.
        const auto* radio = qobject_cast<const QRadioButton*>(control);
        return radio != nullptr && std::any_of(visited.begin(), visited.end(), [radio](const QWidget* at) {
                   return qobject_cast<const QRadioButton*>(at) != nullptr &&
                          at->parentWidget() == radio->parentWidget();
               });
    }

    static void check(const OpenedWindow& opened, bool forward) {
        const auto controls = wanted(opened.window);
        if (controls.size() < 2) return;
        const auto seen = visited(opened.window, forward);
        for (const QWidget* control : controls)
            EXPECT_TRUE(reached(control, seen)) << opened.name << ": no way to " << called(control);
    }
};

TEST_F(KeyboardTest, TabComesToEveryControlAndLeavesIt) {
    for_each_window([](const OpenedWindow& opened) { check(opened, true); });
}

TEST_F(KeyboardTest, ShiftTabComesToEveryControlAndLeavesIt) {
    for_each_window([](const OpenedWindow& opened) { check(opened, false); });
}

TEST_F(KeyboardTest, F10GoesToTheMenusOfAWindowThatHasThem) {
    for_each_window([](const OpenedWindow& opened) {
        auto* bar = opened.window.findChild<QMenuBar*>();
        if (bar == nullptr || bar->actions().empty()) return;
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F10);
        EXPECT_NE(bar->activeAction(), nullptr) << opened.name;
        // Escape closes the menu, then leaves the bar.
        for (int key = 0; key < 2; ++key) {
            QWidget* open = QApplication::activePopupWidget();
            QTest::keyClick(open != nullptr ? open : bar, Qt::Key_Escape);
        }
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << opened.name;
    });
}

TEST_F(KeyboardTest, ShiftF10OpensTheMenuOfACell) {
    auto& grid = *find<GridView>("vaSpread1");
    window_->activateWindow();
    grid.setFocus();
    grid.setCurrentIndex(grid.model()->index(1, 1));
    QTest::keyClick(&grid, Qt::Key_F10, Qt::ShiftModifier);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->objectName(), QStringLiteral("mnuGrid"));
    menu->close();
}

}  // namespace
}  // namespace nivora
