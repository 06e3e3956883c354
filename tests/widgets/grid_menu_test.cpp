// The context menu of a grid.

#include "widgets/grid_menu.h"

#include "tests/widgets/grid_fixture.h"

#include <QContextMenuEvent>
#include <QMenu>

namespace nivora {
namespace {

using testing::ElementsAre;

class GridMenuTest : public GridTest {
protected:
    /// Opens the menu by its key or by a right click on a cell.
    QMenu* open_by_key() {
        send(QContextMenuEvent::Keyboard, QPoint{});
        return menu();
    }
    QMenu* open_at(int row, int column) {
        const QPoint at = grid_->visualRect(cells_->index(row, column)).center();
        QTest::mousePress(grid_->viewport(), Qt::RightButton, Qt::NoModifier, at);
        send(QContextMenuEvent::Mouse, at);
        QTest::mouseRelease(grid_->viewport(), Qt::RightButton, Qt::NoModifier, at);
        return menu();
    }
    void send(QContextMenuEvent::Reason reason, QPoint at) {
        QContextMenuEvent event(reason, at, grid_->viewport()->mapToGlobal(at));
        QApplication::sendEvent(grid_->viewport(), &event);
    }
    QMenu* menu() {
        for (QMenu* found : grid_->findChildren<QMenu*>(QStringLiteral("mnuGrid"))) {
            if (found->isVisible()) return found;
        }
        return nullptr;
    }
    static QAction* entry(const QMenu* menu, const char* name) {
        return menu->findChild<QAction*>(QString::fromUtf8(name));
    }
    static std::vector<std::string> texts(const QMenu* menu) {
        std::vector<std::string> found;
        for (const QAction* action : menu->actions()) found.push_back(from_qt(action->text()));
        return found;
    }
    static std::vector<std::string> enabled(const QMenu* menu) {
        std::vector<std::string> found;
        for (const QAction* action : menu->actions()) {
            if (action->isEnabled() && !action->isSeparator()) found.push_back(from_qt(action->objectName()));
        }
        return found;
    }
    void close_menu() {
        menu()->close();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
    }
};

TEST_F(GridMenuTest, EntriesShowTheirKeys) {
    go_to(1, 1);
    const QMenu* opened = open_by_key();
    ASSERT_NE(opened, nullptr);
    EXPECT_THAT(texts(opened), ElementsAre("Cu&t\tCtrl+X", "&Copy\tCtrl+C",
                                           "Copy with &headers\tCtrl+Shift+C", "&Paste\tCtrl+V"));
    EXPECT_FALSE(opened->accessibleName().isEmpty());
    close_menu();
    EXPECT_EQ(menu(), nullptr);
    EXPECT_TRUE(grid_->findChildren<QMenu*>(QStringLiteral("mnuGrid")).isEmpty());
}

TEST_F(GridMenuTest, OnlyWhatCanBeUsedIsEnabled) {
    go_to(1, 1);
    EXPECT_THAT(enabled(open_by_key()), ElementsAre("gridCut", "gridCopy", "gridCopyWithHeaders"));
    close_menu();
    put_on_clipboard(QStringLiteral("5"));
    EXPECT_THAT(enabled(open_by_key()),
                ElementsAre("gridCut", "gridCopy", "gridCopyWithHeaders", "gridPaste"));
    close_menu();
    for (int row = 0; row < k_rows; ++row) {
        for (int column = 0; column < Column::k_columns; ++column) cells_->locked_cells.insert({row, column});
    }
    EXPECT_THAT(enabled(open_by_key()), ElementsAre("gridCopy", "gridCopyWithHeaders"));
    close_menu();
    show_grid(0);
    put_on_clipboard(QStringLiteral("5"));
    EXPECT_THAT(enabled(open_by_key()), ElementsAre());
    close_menu();
}

TEST_F(GridMenuTest, ARightClickKeepsTheSelectionThatItIsOnAndMovesToAnyOtherCell) {
    select(1, 1, 3, 2);
    ASSERT_NE(open_at(2, 2), nullptr);
    EXPECT_THAT(block(), ElementsAre(1, 1, 3, 2));
    entry(menu(), "gridCopy")->trigger();
    EXPECT_EQ(clipboard(), "1.125\t1\n2.125\t2\n3.125\t3\n");
    close_menu();
    ASSERT_NE(open_at(5, 1), nullptr);
    EXPECT_THAT(block(), ElementsAre(5, 1, 5, 1));
    close_menu();
}

TEST_F(GridMenuTest, EntriesDoWhatTheirKeysDo) {
    go_to(2, 2);
    entry(open_by_key(), "gridCopyWithHeaders")->trigger();
    EXPECT_EQ(clipboard(), "Count\n2\n");
    close_menu();
    entry(open_by_key(), "gridCut")->trigger();
    EXPECT_EQ(clipboard(), "2\n");
    EXPECT_EQ(at(2, 2), "0");
    close_menu();
    put_on_clipboard(QStringLiteral("77"));
    entry(open_by_key(), "gridPaste")->trigger();
    EXPECT_EQ(at(2, 2), "77");
    close_menu();
}

TEST_F(GridMenuTest, AnOpenEditorIsStoredBeforeTheMenuOpens) {
    go_to(2, 2);
    key(Qt::Key_F2);
    editor()->selectAll();
    type("15");
    ASSERT_NE(open_at(6, 2), nullptr);
    EXPECT_EQ(at(2, 2), "15");
    EXPECT_EQ(editor(), nullptr);
    close_menu();
}

TEST_F(GridMenuTest, AMenuThatOpensBesideTheCellsStoresAnOpenEditor) {
    go_to(3, 2);
    key(Qt::Key_F2);
    editor()->selectAll();
    type("16");
    ASSERT_NE(open_by_key(), nullptr);
    EXPECT_EQ(at(3, 2), "16");
    close_menu();
}

TEST_F(GridMenuTest, AWindowAddsItsEntries) {
    QObject::connect(grid_, &GridView::menu_asked, grid_,
                     [](QMenu* opened) { add_grid_entry(*opened, "own", "Own", Qt::Key_F3, true, [] {}); });
    go_to(0, 0);
    EXPECT_EQ(from_qt(entry(open_by_key(), "own")->text()), "Own\tF3");
    close_menu();
}

}  // namespace
}  // namespace nivora
