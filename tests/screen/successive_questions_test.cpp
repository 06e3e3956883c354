// Two questions in a row: the window manager has not yet returned the keyboard when the second one opens.

#include "tests/screen/screen_fixture.h"
#include "widgets/desktop_dialogs.h"
#include "widgets/grid_view.h"

#include <QMessageBox>

namespace nivora {
namespace {

using SuccessiveQuestionsTest = MainWindowOnScreenTest;

// A box in front of the main window would raise that window above the one that asked.
TEST_F(SuccessiveQuestionsTest, TheSecondComesFromTheWindowOfTheFirst) {
    open_sample();
    click_cell(*find<GridView>("DBGrid1"), 1, 0);
    choose("mnuRunSimVar(1)");
    QWidget* results = await_window("Results");
    ASSERT_NE(results, nullptr);
    await_active(*results);

    DesktopDialogs dialogs;
    std::vector<const QWidget*> callers;
    for (const char* text : {"First?", "Second?", "Third?"}) {
        in_dialog<QMessageBox>([&](QMessageBox& box) {
            callers.push_back(box.parentWidget());
            box.accept();
        });
        dialogs.message({.text = text, .title = "Nivora"});
    }
    EXPECT_EQ(modal_windows_seen_, 3);
    EXPECT_EQ(callers, (std::vector<const QWidget*>{results, results, results}));
    EXPECT_TRUE(await([&] { return results->isActiveWindow(); }));
    results->close();
}

}  // namespace
}  // namespace nivora
