#include "tests/shell/file_menu_fixture.h"

namespace nivora {
namespace {

TEST_F(FileMenuTest, TheProgramStartsWithAFreshBasinWithoutMarks) { EXPECT_EQ(flags(), k_fresh); }

TEST_F(FileMenuTest, NewAsksNothingIfNothingChangedAndLeavesNoMark) {
    const fs::path file = open_sample();
    for (const Flags& before : worked(false)) {
        set(before);
        choose("mnuFileItem(0)");
        EXPECT_EQ(flags(), k_fresh) << before;
        EXPECT_TRUE(dialogs_.messages().empty());
        dialogs_.then_file(file);
        choose("mnuFileItem(1)");
    }
}

TEST_F(FileMenuTest, NewAfterChangesFollowsTheAnswer) {
    const fs::path file = open_sample();
    for (const Flags& before : worked(true)) {
        set(before);
        dialogs_.then(Answer::Cancel);
        choose("mnuFileItem(0)");
        expect_question("Save changes to " + path_text(file));
        EXPECT_EQ(flags(), before);
        dialogs_.then(Answer::No);
        choose("mnuFileItem(0)");
        EXPECT_EQ(flags(), k_fresh) << before;
        dialogs_.then_file(file);
        choose("mnuFileItem(1)");
    }
    EXPECT_EQ(box(0)->text(), QStringLiteral("Ellervane at Corben Bridge"));
}

TEST_F(FileMenuTest, NewShowsTheFirstStageAgainWithTheFocusOnTheName) {
    open_sample();
    find<QTableView>("DBGrid1")->setFocus();
    choose("mnuFileItem(0)");
    EXPECT_EQ(QApplication::focusWidget(), box(0));
    EXPECT_EQ(box(0)->text(), QStringLiteral("<basin name>"));
    EXPECT_TRUE(find<QComboBox>("Combo1")->isVisible());
    EXPECT_EQ(find<QComboBox>("Combo1")->currentIndex(), -1);
    EXPECT_FALSE(box(1)->isVisible());
    EXPECT_EQ(box(1)->text(), QString{});
    EXPECT_FALSE(find<QLabel>("lblZones")->isVisible());
    EXPECT_EQ(find<QLabel>("lblZones")->text(), QString{});
    EXPECT_FALSE(find<QLabel>("Label1(2)")->isVisible());
    EXPECT_EQ(find<QLabel>("lblBasinArea")->text(), QStringLiteral("--"));
    EXPECT_EQ(find<QLabel>("lblSimVisible")->text(), QStringLiteral("--"));
    EXPECT_EQ(find<QTableView>("vaSpread1")->model()->rowCount(), 0);
    EXPECT_EQ(find<QTableView>("DBGrid1")->model()->rowCount(), 0);
    EXPECT_EQ(session_.basin.Basin_File, program_ / "null.mdb");
    EXPECT_EQ(find<QLabel>("panel1")->text(), QString::fromStdString(path_text(program_ / "null.mdb")));
}

TEST_F(FileMenuTest, OpenLeavesNoMarkAndNoValidResults) {
    const fs::path file = open_sample();
    for (const Flags& before : worked(false)) {
        set(before);
        dialogs_.then_file(file);
        choose("mnuFileItem(1)");
        EXPECT_EQ(flags(), k_opened) << before;
    }
    set(k_fresh);
    dialogs_.then_file(file);
    choose("mnuFileItem(1)");
    EXPECT_EQ(flags(), k_opened);
}

TEST_F(FileMenuTest, ACancelledOpenChangesNothing) {
    open_sample();
    for (const Flags& before : worked(false)) {
        set(before);
        dialogs_.then_file(std::nullopt);
        choose("mnuFileItem(1)");
        EXPECT_EQ(flags(), before);
    }
    EXPECT_EQ(box(0)->text(), QStringLiteral("Ellervane at Corben Bridge"));
}

TEST_F(FileMenuTest, NoAndThenNoFileKeepsTheEditsAndExitAsksAgain) {
    const fs::path file = open_sample();
    type(4, "edited");
    const Flags before{.Basin_Changed = true, .Input_Changed = true, .Output_Valid = true};
    set(before);
    dialogs_.then(Answer::No).then_file(std::nullopt);
    choose("mnuFileItem(1)");
    EXPECT_EQ(flags(), before);
    EXPECT_EQ(box(4)->text(), QStringLiteral("edited"));
    dialogs_.then(Answer::Cancel);
    choose("mnuFileItem(9)");
    expect_question("Save changes to " + path_text(file));
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(FileMenuTest, ReservedNamesAreRefusedWhenOpeningAndNothingChanges) {
    open_sample();
    const fs::path before = session_.basin.Basin_File;
    for (const char* name : {"new.mdb", "NULL.MDB", "New.Mdb.old"}) {
        const fs::path file = user_ / name;
        dialogs_.then_file(file);
        choose("mnuFileItem(1)");
        EXPECT_EQ(last_message().text, path_text(file) + " is a reserved file name used by Nivora!");
        EXPECT_EQ(last_message().title, "Invalid file name");
        EXPECT_EQ(last_message().icon, Icon::Stop);
        EXPECT_EQ(session_.basin.Basin_File, before);
    }
    EXPECT_EQ(flags(), k_opened);
}

TEST_F(FileMenuTest, AFileThatIsNotABasinIsRefusedAndAFreshBasinOpens) {
    const fs::path good = open_sample();
    const std::string whole = file_bytes(good);
    for (const std::string& content : {std::string{}, std::string{"no database"}, whole.substr(0, 600),
                                       whole.substr(0, whole.size() / 2), std::string(4096, '\0')}) {
        const bool is_basin = content.size() > 100 && content.front() == whole.front();
        const fs::path file = user_.write("damaged.mdb", content);
        set({.Output_Valid = true});
        dialogs_.then_file(file);
        choose("mnuFileItem(1)");
        const std::string first =
            "The file you have selected, " + path_text(file) + ", has an unrecognized format";
        EXPECT_EQ(last_message().text.substr(0, first.size()), first);
        EXPECT_EQ(
            last_message().text.find(". The file '" + path_text(file) + "' is damaged") != std::string::npos,
            is_basin);
        EXPECT_EQ(last_message().text.size() > first.size(), is_basin);
        EXPECT_EQ(last_message().title, "Error encountered while reading this basin database");
        EXPECT_EQ(last_message().icon, Icon::Stop);
        EXPECT_EQ(flags(), k_fresh);
        EXPECT_EQ(box(0)->text(), QStringLiteral("<basin name>"));
        EXPECT_FALSE(enabled("mnuFileItem(4)"));
        EXPECT_TRUE(file_bytes(file) == content);
        dialogs_.then_file(good);
        choose("mnuFileItem(1)");
        EXPECT_EQ(session_.settings.recent_files, (std::vector<std::string>{path_text(good)}));
    }
}

TEST_F(FileMenuTest, ARecentEntryOpensAndMovesToTheTop) {
    const fs::path first = open_sample();
    const fs::path second = user_ / "second & last.mdb";
    fs::copy_file(first, second);
    dialogs_.then_file(second);
    choose("mnuFileItem(1)");
    EXPECT_EQ(find<QAction>("mnuFileArray(1)")->text(),
              QString::fromStdString(path_text(user_ / "second && last.mdb")));
    set({.Output_Valid = true});
    choose("mnuFileArray(2)");
    EXPECT_EQ(session_.basin.Basin_File, first);
    EXPECT_EQ(flags(), k_opened);
    EXPECT_EQ(session_.settings.recent_files,
              (std::vector<std::string>{path_text(first), path_text(second)}));
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(FileMenuTest, AMissingRecentFileIsReportedAfterTheSaveQuestion) {
    const fs::path file = open_sample();
    session_.settings.recent_files = {path_text(user_ / "gone.mdb")};
    session_.desktop.refresh_main_window();
    type(4, "changed");
    dialogs_.then(Answer::Cancel);
    choose("mnuFileArray(1)");
    expect_question("Save changes to " + path_text(file));
    dialogs_.then(Answer::No);
    choose("mnuFileArray(1)");
    EXPECT_EQ(last_message().title, "File not found");
    EXPECT_EQ(last_message().text, "The file selected from the recent files list, '" +
                                       path_text(user_ / "gone.mdb") + "' has been moved or deleted.");
    EXPECT_EQ(last_message().buttons, Buttons::Ok);
    EXPECT_EQ(box(0)->text(), QStringLiteral("Ellervane at Corben Bridge"));
    EXPECT_EQ(session_.basin.Basin_File, file);
    EXPECT_EQ(find<QLabel>("panel1")->text(), QString::fromStdString(path_text(file)));
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

}  // namespace
}  // namespace nivora
