// What stays on the screen for a basin whose save failed, whose recent
// entry is missing, or that got a new name.

#include "base/durable_file.h"
#include "tests/screen/screen_fixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>

namespace nivora {
namespace {

/// The sample basin, with a change of its name that was typed and not saved.
class KeptBasinOnScreenTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        file_ = open_sample();
        click(*name());
        press({"ctrl+a"});
        type("Alder");
    }

    QLineEdit* name() { return find<QLineEdit>("Text(0)"); }
    std::string panel() { return from_qt(find<QLabel>("panel1")->text()); }
    /// Opens the File menu with the mouse.
    QMenu& open_file_menu() {
        auto* menu = find<QMenu>("mnuFile");
        click(*window_->menuBar(), window_->menuBar()->actionGeometry(menu->menuAction()).center());
        EXPECT_TRUE(await([&] { return menu->isVisible(); }));
        return *menu;
    }
    void choose_entry(const char* entry) {
        QMenu& menu = open_file_menu();
        click(menu, menu.actionGeometry(find<QAction>(entry)).center());
    }

    std::filesystem::path file_;
};

TEST_F(KeptBasinOnScreenTest, AFailedSaveAtTheQuestionKeepsTheBasinOpenWithItsChanges) {
    std::filesystem::permissions(file_, std::filesystem::perms::owner_read);
    for (const char* command : {"n", "o", "x"}) {
        const std::size_t messages = dialogs_.messages().size();
        dialogs_.then(Answer::Yes);
        press({"alt+f", command});
        EXPECT_TRUE(await([&] { return dialogs_.messages().size() == messages + 2; })) << command;
        EXPECT_EQ(last_message().title, "The basin was not saved") << command;
        EXPECT_TRUE(window_->isVisible()) << command;
        EXPECT_EQ(name()->text(), QStringLiteral("Alder")) << command;
        EXPECT_EQ(panel(), path_text(file_)) << command;
        EXPECT_TRUE(session_.basin.Basin_Changed) << command;
    }
    EXPECT_EQ(dialogs_.files().size(), 1U) << "no other file was asked for";
    std::filesystem::permissions(file_, std::filesystem::perms::owner_all);
}

TEST_F(KeptBasinOnScreenTest, AfterAMissingRecentFileTheOpenBasinKeepsItsNameAndIsSaved) {
    session_.settings.recent_files.push_back(path_text(user_ / "gone.mdb"));
    session_.desktop.refresh_main_window();
    dialogs_.then(Answer::No);
    choose_entry("mnuFileArray(2)");
    ASSERT_TRUE(await([&] { return dialogs_.messages().size() == 2; }));
    EXPECT_EQ(last_message().title, "File not found");
    EXPECT_EQ(panel(), path_text(file_));
    const std::string before = file_bytes(file_);
    press({"alt+f", "s"});
    EXPECT_TRUE(await([&] { return !session_.basin.Basin_Changed; }));
    EXPECT_FALSE(std::filesystem::exists(user_ / "gone.mdb"));
    EXPECT_FALSE(file_bytes(file_) == before);
}

TEST_F(KeptBasinOnScreenTest, SaveAsPutsTheNewNameFirstIntoTheFileMenu) {
    const auto renamed = user_ / "renamed.mdb";
    dialogs_.then_file(renamed);
    press({"alt+f", "a"});
    ASSERT_TRUE(await([&] { return panel() == path_text(renamed); }));
    QMenu& menu = open_file_menu();
    const auto* first = find<QAction>("mnuFileArray(1)");
    EXPECT_EQ(from_qt(first->text()), path_text(renamed));
    EXPECT_EQ(from_qt(find<QAction>("mnuFileArray(2)")->text()), path_text(file_));
    EXPECT_GT(drawn_points(picture(menu, menu.actionGeometry(const_cast<QAction*>(first)))), 100);
    press({"Escape", "Escape"});
}

/// A mnemonic of the main window, and what it leads to.
using LettersOnScreenTest = MainWindowOnScreenTest;

TEST_F(LettersOnScreenTest, EachLetterOfTheWindowLeadsToItsElement) {
    open_sample();
    for (const auto& [key, menu] : {std::pair{"alt+t", "mnuData"}, std::pair{"alt+l", "mnuTools"},
                                    std::pair{"alt+i", "mnuEdit"}, std::pair{"alt+o", "mnuOpt"}}) {
        const auto* opened = find<QMenu>(menu);
        press({key});
        EXPECT_TRUE(await([opened] { return opened->isVisible(); }, 2000)) << key;
        press({"Escape", "Escape"});
    }
    click_cell(*find<QTableView>("DBGrid1"), 1, 1);
    dialogs_.then(Answer::No);
    press({"alt+d"});
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().title, "Delete a simulation");
    in_modal("SimOptions", [](QWidget&) { press({"Escape"}); });
    press({"alt+e"});
    EXPECT_TRUE(await([&] { return modal_windows_seen_ == 1; }));
    dialogs_.then_text(std::nullopt);
    press({"alt+a"});
    EXPECT_EQ(dialogs_.inputs().size(), 1U);
}

}  // namespace
}  // namespace nivora
