#include "tests/shell/file_menu_fixture.h"

namespace nivora {
namespace {

using FileSaveTest = FileMenuTest;

TEST_F(FileSaveTest, YesSavesANamedBasinBeforeNew) {
    const fs::path file = open_sample();
    type(4, "larch above, fir below");
    dialogs_.then(Answer::Yes);
    choose("mnuFileItem(0)");
    EXPECT_EQ(stored_description(file), "larch above, fir below");
    EXPECT_EQ(flags(), k_fresh);
}

TEST_F(FileSaveTest, NoLeavesTheFileAsItWas) {
    const fs::path file = open_sample();
    const std::string before = file_bytes(file);
    type(4, "larch above, fir below");
    dialogs_.then(Answer::No);
    choose("mnuFileItem(0)");
    EXPECT_TRUE(file_bytes(file) == before);
}

TEST_F(FileSaveTest, AnUnnamedBasinIsAskedAboutInOtherWords) {
    define_fresh();
    dialogs_.then(Answer::Cancel);
    choose("mnuFileItem(1)");
    expect_question("Create database containing these data?");
    EXPECT_TRUE(dialogs_.files().empty());
    EXPECT_EQ(find<QTableView>("vaSpread1")->model()->rowCount(), 2);
}

TEST_F(FileSaveTest, YesWithoutANameStopsWithEverythingKept) {
    define_fresh();
    const Flags before = flags();
    dialogs_.then(Answer::Yes).then_file(std::nullopt);
    choose("mnuFileItem(0)");
    ASSERT_EQ(dialogs_.files().size(), 1U);
    EXPECT_EQ(dialogs_.files()[0].title, "Save a Nivora data base");
    EXPECT_EQ(dialogs_.files()[0].proposed_name, "");
    EXPECT_EQ(flags(), before);
    EXPECT_EQ(find<QTableView>("vaSpread1")->model()->rowCount(), 2);
}

TEST_F(FileSaveTest, YesWithoutASimulationStopsAndTheProgramStaysOpen) {
    define_fresh();
    dialogs_.then(Answer::Yes).then_file(user_ / "first.mdb");
    EXPECT_FALSE(window_->close());
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(last_message().text, "You must define at least 1 simulation before saving!");
    EXPECT_EQ(last_message().title, "Error during save");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_FALSE(fs::exists(user_ / "first.mdb"));
    EXPECT_EQ(session_.basin.Basin_File, program_ / "null.mdb");
}

TEST_F(FileSaveTest, SaveClearsTheMarksAndKeepsTheStateOfTheResults) {
    const fs::path file = open_sample();
    for (const bool changed : {false, true}) {
        for (const Flags& before : worked(changed)) {
            set(before);
            choose("mnuFileItem(4)");
            EXPECT_EQ(flags(), (Flags{.Output_Valid = before.Output_Valid})) << before;
        }
    }
    type(4, "saved by the menu");
    choose("mnuFileItem(4)");
    EXPECT_EQ(stored_description(file), "saved by the menu");
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(FileSaveTest, SaveAsClearsTheMarksAndInvalidatesTheResults) {
    open_sample();
    int copy = 0;
    for (const bool changed : {false, true}) {
        for (const Flags& before : worked(changed)) {
            set(before);
            const fs::path file = user_ / ("copy" + std::to_string(++copy) + ".mdb");
            dialogs_.then_file(file);
            choose("mnuFileItem(5)");
            EXPECT_EQ(flags(), k_opened) << before;
            EXPECT_EQ(session_.basin.Basin_File, file);
        }
    }
    EXPECT_EQ(dialogs_.files().back().title, "Save a Nivora data base as ...");
}

TEST_F(FileSaveTest, ACancelledSaveAsKeepsTheMarksAndTheName) {
    const fs::path file = open_sample();
    for (const Flags& before : worked(true)) {
        set(before);
        dialogs_.then_file(std::nullopt);
        choose("mnuFileItem(5)");
        EXPECT_EQ(flags(), before);
    }
    EXPECT_EQ(session_.basin.Basin_File, file);
}

TEST_F(FileSaveTest, SaveAsOverAnExistingFileAsksAndNoReturnsToTheFileDialog) {
    open_sample();
    const fs::path taken = user_.write("taken.mdb", "precious");
    dialogs_.then_file(taken).then(Answer::No).then_file(std::nullopt);
    choose("mnuFileItem(5)");
    EXPECT_EQ(last_message().text, path_text(taken) + " already exists!\n  Do you want to replace it?");
    EXPECT_EQ(last_message().icon, Icon::Warning);
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
    EXPECT_EQ(last_message().default_answer, Answer::No);
    EXPECT_EQ(file_bytes(taken), "precious");
    EXPECT_EQ(dialogs_.files().back().folder, user_.path());
    dialogs_.then_file(taken).then(Answer::Yes);
    choose("mnuFileItem(5)");
    EXPECT_EQ(session_.basin.Basin_File, taken);
    EXPECT_EQ(stored_description(taken), stored_description(program_ / "new.mdb"));
}

TEST_F(FileSaveTest, AReservedNameIsRefusedWhenSavingAndAskedAgain) {
    open_sample();
    const fs::path fine = user_ / "fine.mdb";
    dialogs_.then_file(user_ / "Null.mdb").then_file(fine);
    choose("mnuFileItem(5)");
    EXPECT_EQ(last_message().text, "This database file name, " + path_text(user_ / "Null.mdb") +
                                       ", is reserved for system use.  Please choose another.");
    EXPECT_EQ(last_message().title, "Invalid file name");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_EQ(session_.basin.Basin_File, fine);
    EXPECT_FALSE(fs::exists(user_ / "Null.mdb"));
}

TEST_F(FileSaveTest, SaveAsNeedsTheZones) {
    choose_units(0, Answer::Yes);
    choose("mnuFileItem(5)");
    EXPECT_EQ(last_message().text,
              "A basin database cannot be created until the number of zones has been specified");
    EXPECT_EQ(last_message().title, "Missing data");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_TRUE(dialogs_.files().empty());
}

TEST_F(FileSaveTest, SaveAsNeedsASimulation) {
    define_fresh();
    choose("mnuFileItem(5)");
    EXPECT_EQ(last_message().text, "You must define at least 1 simulation before saving!");
    EXPECT_TRUE(dialogs_.files().empty());
}

TEST_F(FileSaveTest, ExitAndTheCloseControlAskTheSame) {
    const fs::path file = open_sample();
    type(4, "left unsaved");
    dialogs_.then(Answer::Cancel);
    choose("mnuFileItem(9)");
    expect_question("Save changes to " + path_text(file));
    EXPECT_TRUE(window_->isVisible());
    EXPECT_TRUE(session_.basin.Basin_Changed);
    dialogs_.then(Answer::Cancel);
    window_->close();
    expect_question("Save changes to " + path_text(file));
    EXPECT_TRUE(window_->isVisible());
    dialogs_.then(Answer::Yes);
    choose("mnuFileItem(9)");
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(stored_description(file), "left unsaved");
    EXPECT_FALSE(session_.basin.Basin_Changed);
    EXPECT_FALSE(session_.basin.Input_Changed);
}

TEST_F(FileSaveTest, ExitWithoutChangesAsksNothingAndKeepsTheWindowsPlace) {
    open_sample();
    window_->move(30, 20);
    choose("mnuFileItem(9)");
    EXPECT_FALSE(window_->isVisible());
    EXPECT_TRUE(dialogs_.messages().empty());
    EXPECT_EQ(session_.settings.places[1].left, 30);
    EXPECT_EQ(session_.settings.places[1].top, 20);
    EXPECT_TRUE(fs::exists(program_ / "new.mdb"));
}

TEST_F(FileSaveTest, ClosingTheMainWindowClosesTheHelpWindowWithIt) {
    choose("mnuHelpItm(0)");
    const auto help_shown = [] {
        for (const QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == QStringLiteral("frmNVRHelp") && top->isVisible()) return true;
        }
        return false;
    };
    ASSERT_TRUE(help_shown());
    window_->close();
    EXPECT_FALSE(help_shown());
}

TEST_F(FileSaveTest, SaveAndSaveAsCheckTheBoxThatIsBeingTypedInAsIfItWereLeft) {
    const fs::path file = open_sample();
    const std::string before = file_bytes(file);
    for (const char* command : {"mnuFileItem(4)", "mnuFileItem(5)"}) {
        type(2, "99999");
        choose(command);
        EXPECT_EQ(last_message().text, "Basin elevation out of range!") << command;
        EXPECT_EQ(box(2)->text(), QString{}) << command;
    }
    EXPECT_TRUE(file_bytes(file) == before);
    EXPECT_TRUE(dialogs_.files().size() == 1) << "no name to save under was asked for";
}

TEST_F(FileSaveTest, AMenuCommandWhileABoxHoldsARefusableValueAsksItsOwnQuestionAlone) {
    open_sample();
    type(2, "99999");
    dialogs_.then(Answer::Cancel);
    choose("mnuFileItem(0)");
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().title, "Save Data?");
    EXPECT_EQ(box(2)->text(), QStringLiteral("99999"));
}

TEST_F(FileSaveTest, YesAtTheQuestionChecksTheBoxThatIsTypedIn) {
    const auto file = open_sample();
    const std::string before = file_bytes(file);
    type(2, "99999");
    dialogs_.then(Answer::Yes);
    choose("mnuFileItem(0)");
    EXPECT_EQ(last_message().title, "Unreasonable basin elevation");
    EXPECT_TRUE(file_bytes(file) == before);
    EXPECT_EQ(session_.basin.Basin_File, file) << "the basin is still open";
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(FileSaveTest, ChangesThatCannotBeKeptForACrashAreToldInTheStatusBarAsLongAsTheyAreNot) {
    open_sample();
    auto* told = find<QLabel>("notKept");
    EXPECT_TRUE(told->isHidden());
    fs::create_directory(program_ / "recovery.state");  // as a full disk, it lets no file be written
    type(4, "larch above");
    constexpr int k_longest_wait = 20'000;
    EXPECT_TRUE(QTest::qWaitFor([&] { return told->isVisible(); }, k_longest_wait));
    EXPECT_NE(told->toolTip(), QString{});
    fs::remove(program_ / "recovery.state");
    EXPECT_TRUE(QTest::qWaitFor([&] { return told->isHidden(); }, k_longest_wait));
    EXPECT_TRUE(fs::is_regular_file(program_ / "recovery.state"));
}

}  // namespace
}  // namespace nivora
