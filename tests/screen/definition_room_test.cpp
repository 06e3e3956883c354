// Which parts of the definition window are visible, with enough room and with too little.

#include "tests/screen/screen_fixture.h"

#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

namespace nivora {
namespace {

class DefinitionRoomTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        open_sample();
        click_cell(*find<QTableView>("DBGrid1"), 0, 1);
    }
    template <typename Look>
    void look_at_definition(Look look) {
        in_modal("SimOptions", look);
        find<QPushButton>("Command1(2)")->click();
        EXPECT_EQ(modal_windows_seen_, 1);
    }
    static QRect in_window(const QWidget& part, const QWidget& window) {
        return {part.mapTo(&window, QPoint{}), part.size()};
    }
};

TEST_F(DefinitionRoomTest, IfTheScreenHasRoomNothingScrolls) {
    look_at_definition([](QWidget& window) {
        const auto* area = window.findChild<QScrollArea*>();
        ASSERT_NE(area, nullptr);
        EXPECT_FALSE(area->verticalScrollBar()->isVisible());
        EXPECT_FALSE(area->horizontalScrollBar()->isVisible());
        EXPECT_GE(area->viewport()->height(), area->widget()->height());
    });
}

TEST_F(DefinitionRoomTest, TheButtonsStayVisibleIfTheBoxesScroll) {
    look_at_definition([](QWidget& window) {
        window.setMinimumSize(1, 1);
        window.resize(window.width(), 320);
        settle();
        auto* area = window.findChild<QScrollArea*>();
        ASSERT_TRUE(await([&] { return area->verticalScrollBar()->isVisible(); }));
        for (const int scrolled : {0, area->verticalScrollBar()->maximum()}) {
            area->verticalScrollBar()->setValue(scrolled);
            for (const char* name : {"Command1(0)", "Command1(1)", "Command1(2)"}) {
                const auto* button = window.findChild<QPushButton*>(QString::fromUtf8(name));
                EXPECT_TRUE(window.rect().contains(in_window(*button, window))) << name;
                EXPECT_GT(drawn_points(picture(*button)), 30) << name;
            }
        }
        click(*window.findChild<QPushButton*>(QStringLiteral("Command1(1)")));
        EXPECT_FALSE(window.isVisible());
    });
}

}  // namespace
}  // namespace nivora
