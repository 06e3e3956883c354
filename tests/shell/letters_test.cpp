// The mnemonic letters of all windows: with Alt, each leads to one place only, except for Run and Reports in
// the menu bar of the main window, which share theirs.

#include "shell/frmAbout.h"
#include "shell/frmNVRHelp.h"
#include "shell/frmSplash.h"
#include "tests/shell/main_window_fixture.h"
#include "windows/climate/frmCC.h"
#include "windows/climate/frmCtrlClim.h"
#include "windows/engine/Results.h"
#include "windows/engine/frmRuns.h"
#include "windows/engine/frmTimeLagDist.h"
#include "windows/prep/SimOptions.h"
#include "windows/prep/frmData.h"
#include "windows/prep/frmDataCheck.h"
#include "windows/prep/frmLongTermAvg.h"
#include "windows/prep/frmParameterChange.h"
#include "windows/prep/frmPopulate.h"
#include "windows/prep/frmTableExport.h"
#include "windows/prep/frmTableImport.h"
#include "windows/reports/frmFileDisp.h"
#include "windows/reports/frmPrint.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QGroupBox>
#include <QMenuBar>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The mnemonic letter of a caption; empty if it has none.
std::string letter_of(const QString& caption) {
    const QKeySequence keys = QKeySequence::mnemonic(caption);
    return keys.isEmpty() ? std::string{} : keys.toString().right(1).toStdString();
}

std::vector<std::string> letters_of(const QList<QAction*>& entries) {
    std::vector<std::string> letters;
    for (const QAction* entry : entries) {
        const std::string letter = letter_of(entry->text());
        if (!entry->isSeparator() && !letter.empty()) letters.push_back(letter);
    }
    return letters;
}

/// The letters of a window that work with Alt, in alphabetical order: those of its menu bar, of its buttons
/// and boxes, and of labels that belong to a box.
std::vector<std::string> letters(const QWidget& window) {
    std::vector<std::string> found;
    if (const auto* bar = window.findChild<QMenuBar*>()) found = letters_of(bar->actions());
    QStringList captions;
    for (const auto* button : window.findChildren<QAbstractButton*>()) captions << button->text();
    for (const auto* frame : window.findChildren<QGroupBox*>()) captions << frame->title();
    for (const auto* label : window.findChildren<QLabel*>()) {
        if (label->buddy() != nullptr) captions << label->text();
    }
    for (const QString& caption : captions) {
        if (const std::string letter = letter_of(caption); !letter.empty()) found.push_back(letter);
    }
    std::sort(found.begin(), found.end());
    return found;
}

/// The letters that appear more than once in a list.
std::vector<std::string> shared(std::vector<std::string> letters) {
    std::sort(letters.begin(), letters.end());
    std::vector<std::string> twice;
    for (std::size_t i = 1; i < letters.size(); ++i) {
        if (letters[i] == letters[i - 1]) twice.push_back(letters[i]);
    }
    return twice;
}

class LettersTest : public MainWindowTest {
protected:
    [[nodiscard]] WindowContext context() { return {session_, quick_help_, program_.path(), printing_}; }

    /// Expects that no menu of a window uses a letter twice.
    static void expect_clear_menus(const QWidget& window) {
        const auto* bar = window.findChild<QMenuBar*>();
        for (const auto* menu : window.findChildren<QMenu*>()) {
            // The bar itself makes a menu for entries that it has no room for.
            if (menu->isEmpty() || bar->actions().contains(menu->actions().front())) continue;
            EXPECT_THAT(shared(letters_of(menu->actions())), IsEmpty()) << menu->title().toStdString();
        }
    }
};

TEST_F(LettersTest, OfTheMainWindowOnlyRunAndReportsShareOne) {
    // Add, Delete, Edit Simulation; File, Graphics, Help, Edit, Tools, Options, Run, Reports, Data
    EXPECT_THAT(letters(*window_), ElementsAre("A", "D", "E", "F", "G", "H", "I", "L", "O", "R", "R", "T"));
    expect_clear_menus(*window_);
}

TEST_F(LettersTest, OfTheDefinitionAreAcceptCancelAndHelp) {
    EXPECT_THAT(letters(SimOptions{context()}), ElementsAre("A", "C", "H"));
}

TEST_F(LettersTest, OfAChangeOfAParameterAreItsButtonsAndItsChoices) {
    // Apply, Cancel, Dates, Help, Months, Number, Parameter, Action, All zones
    EXPECT_THAT(letters(frmParameterChange{context()}),
                ElementsAre("A", "C", "D", "H", "M", "N", "P", "T", "Z"));
}

TEST_F(LettersTest, OfThePeriodAreAcceptContinueAndHelp) {
    EXPECT_THAT(letters(frmPopulate{context()}), ElementsAre("A", "C", "H"));
}

TEST_F(LettersTest, OfTheDailyEditorAreItsButtonsAndItsMenu) {
    const frmData editor{context()};
    EXPECT_THAT(letters(editor), ElementsAre("C", "D", "E", "H", "P"));
    expect_clear_menus(editor);
}

TEST_F(LettersTest, OfTheMonthlyAveragesAreItsButtonsAndItsMenu) {
    const frmLongTermAvg averages{context()};
    EXPECT_THAT(letters(averages), ElementsAre("A", "C", "E", "H", "P"));
    expect_clear_menus(averages);
}

TEST_F(LettersTest, OfTheScenariosAreItsButtonsAndItsMenu) {
    const frmCC scenarios{context()};
    EXPECT_THAT(letters(scenarios), ElementsAre("C", "D", "E", "H", "I", "N", "P", "V"));
    expect_clear_menus(scenarios);
}

TEST_F(LettersTest, OfTheClimateStepsAreItsButtons) {
    EXPECT_THAT(letters(frmCtrlClim{context()}), ElementsAre("A", "D", "H", "P"));
}

TEST_F(LettersTest, OfTheStatisticsAreItsButtons) {
    EXPECT_THAT(letters(Results{context()}), ElementsAre("D", "H", "P"));
}

TEST_F(LettersTest, OfTheRunsAreItsButtonsAndItsChoice) {
    EXPECT_THAT(letters(frmRuns{context()}), ElementsAre("A", "C", "D", "H"));
}

TEST_F(LettersTest, OfTheCheckOfDataAreItsButtonsAndChoices) {
    EXPECT_THAT(letters(frmDataCheck{context()}), ElementsAre("A", "C", "D", "G", "H", "W", "Z"));
}

TEST_F(LettersTest, OfTheTablesAreTheirButtonsAndChoices) {
    EXPECT_THAT(letters(frmTableImport{context()}),
                ElementsAre("D", "E", "F", "G", "H", "I", "K", "L", "M", "N", "O", "S", "T", "Z"));
    EXPECT_THAT(letters(frmTableExport{context()}), ElementsAre("D", "E", "H", "T", "U"));
}

TEST_F(LettersTest, OfTheTimeLagAreItsButtons) {
    EXPECT_THAT(letters(frmTimeLagDist{context()}), ElementsAre("A", "C", "H"));
}

TEST_F(LettersTest, OfTheChoiceOfReportsAreItsButtons) {
    EXPECT_THAT(letters(frmPrint{context()}), ElementsAre("A", "C", "H", "P"));
}

TEST_F(LettersTest, OfTheDisplayOfReportsAreItsMenus) {
    const frmFileDisp display{context()};
    EXPECT_THAT(letters(display), ElementsAre("E", "H", "R"));
    expect_clear_menus(display);
}

TEST_F(LettersTest, OfTheHelpAreItsMenus) {
    const frmNVRHelp help{context()};
    EXPECT_THAT(letters(help), ElementsAre("E", "F", "H", "O"));
    expect_clear_menus(help);
}

TEST_F(LettersTest, OfWelcomeAndAboutAreTheirButtons) {
    EXPECT_THAT(letters(frmSplash{session_, true}), ElementsAre("E", "N", "S"));
    EXPECT_THAT(letters(frmSplash{session_, false}), ElementsAre("N", "S"));
    EXPECT_THAT(letters(frmAbout{}), IsEmpty());
}

}  // namespace
}  // namespace nivora
