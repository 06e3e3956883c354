// Undo and redo in the main window.
#include "session/basin_life.h"
#include "store/basin_marks.h"
#include "tests/shell/simulation_fixture.h"

#include <algorithm>
#include <vector>

namespace nivora {
namespace {

class UndoTest : public SimulationWindowTest {
protected:
    UndoTest() { mark_saved(session_.basin); }

    GridView* zones() { return find<GridView>("vaSpread1"); }
    static void undo() { key(Qt::Key_Z, Qt::ControlModifier); }
    static void redo() { key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier); }
    void set_zone(int zone, int column, const char* text) {
        zones()->setFocus();
        zones()->setCurrentIndex(zones()->model()->index(zone - 1, column - 1));
        keys(text);
        key(Qt::Key_Return);
    }
    void set(int number, int column, const char* text) {
        go_to(number, column);
        keys(text);
        key(Qt::Key_Tab);
        QTest::qWait(1);
    }
    std::string area_of(int zone) { return from_qt(zones()->model()->index(zone - 1, 1).data().toString()); }
    std::string total() { return from_qt(find<QLabel>("lblBasinArea")->text()); }
    [[nodiscard]] bool changed() const { return session_.basin.Basin_Changed; }
};

TEST_F(UndoTest, ATypedCellOfTheZonesIsTakenBackAndMadeAgain) {
    const std::string before = area_of(2);
    const std::string total_before = total();
    set_zone(2, 2, "10.5");
    EXPECT_TRUE(changed());
    EXPECT_NE(total(), total_before);
    undo();
    EXPECT_EQ(area_of(2), before);
    EXPECT_EQ(total(), total_before);
    EXPECT_FALSE(changed()) << "the basin is as its file has it";
    EXPECT_FALSE(session_.basin.Input_Changed);
    EXPECT_EQ(zones()->currentIndex(), zones()->model()->index(1, 1));
    redo();
    EXPECT_EQ(area_of(2), "10.5");
    EXPECT_TRUE(changed());
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(area_of(2), before);
    key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(area_of(2), "10.5");
}

TEST_F(UndoTest, APasteIsOneStep) {
    const std::string first = area_of(1);
    const std::string second = area_of(2);
    QApplication::clipboard()->setText(QStringLiteral("11\n12\n"));
    zones()->setFocus();
    zones()->setCurrentIndex(zones()->model()->index(0, 1));
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(area_of(2), "12");
    undo();
    EXPECT_EQ(area_of(1), first);
    EXPECT_EQ(area_of(2), second);
    EXPECT_FALSE(changed());
}

TEST_F(UndoTest, ACutRowOfTheSimulationsComesBackWhole) {
    grid()->setFocus();
    grid()->go_to(grid()->model()->index(1, 1));
    const Simulation before = row(2);
    grid()->cut();
    EXPECT_EQ(cell(2, 3), "01/01/1980") << "what an emptied date is";
    EXPECT_NE(session_.basin.Current_Start, before.start);
    undo();
    EXPECT_EQ(row(2), before);
    EXPECT_EQ(session_.basin.Current_Start, before.start);
    EXPECT_EQ(session_.basin.Current_End, before.end);
    EXPECT_FALSE(changed());
    redo();
    EXPECT_EQ(cell(2, 3), "01/01/1980");
    EXPECT_TRUE(changed());
}

TEST_F(UndoTest, TheUnitsOfTheSelectedSimulationFollow) {
    go_to(1, 5);
    ASSERT_EQ(session_.basin.Units_Code, Units::Metric);
    QApplication::clipboard()->setText(QStringLiteral("English"));
    grid()->paste();
    EXPECT_EQ(session_.basin.Units_Code, Units::English);
    undo();
    EXPECT_EQ(session_.basin.Units_Code, Units::Metric);
    EXPECT_EQ(cell(1, 5), "Metric");
}

TEST_F(UndoTest, ARepairBelongsToWhatWasTyped) {
    const std::string before = cell(2, 4);
    set(2, 4, "01/01/1990");  // before the start: leaving the cell restores the old date
    EXPECT_EQ(cell(2, 4), before);
    EXPECT_FALSE(session_.history.can_undo()) << "in the end nothing was edited";
    set(2, 13, "7");
    undo();
    EXPECT_FALSE(session_.history.can_undo());
}

TEST_F(UndoTest, TheTextOfABoxIsOneStep) {
    const std::string before = session_.basin.basin_name;
    type(0, "Upper valley");
    zones()->setFocus();
    set_zone(1, 2, "10.5");
    undo();
    EXPECT_EQ(session_.basin.basin_name, "Upper valley");
    undo();
    EXPECT_EQ(session_.basin.basin_name, before);
    EXPECT_EQ(from_qt(box(0)->text()), before);
    EXPECT_TRUE(box(0)->hasFocus());
    EXPECT_FALSE(changed());
    redo();
    EXPECT_EQ(session_.basin.basin_name, "Upper valley");
    redo();
    EXPECT_EQ(area_of(1), "10.5");
}

TEST_F(UndoTest, WhileABoxIsTypedInItsCharactersAreTakenBack) {
    const std::string before = session_.basin.basin_name;
    box(0)->setFocus();
    box(0)->setCursorPosition(static_cast<int>(before.size()));
    box(0)->deselect();
    keys("ab");
    EXPECT_EQ(session_.basin.basin_name, before + "ab");
    undo();
    EXPECT_EQ(session_.basin.basin_name, before);
    EXPECT_FALSE(changed());
    redo();
    EXPECT_EQ(session_.basin.basin_name, before + "ab");
    EXPECT_TRUE(changed());
}

TEST_F(UndoTest, AfterASaveUndoneTextsDifferFromTheFile) {
    const std::string before = area_of(2);
    set_zone(2, 2, "10.5");
    mark_saved(session_.basin);
    undo();
    EXPECT_EQ(area_of(2), before);
    EXPECT_TRUE(changed());
    redo();
    EXPECT_EQ(area_of(2), "10.5");
    EXPECT_FALSE(changed()) << "this is what was saved";
}

TEST_F(UndoTest, AfterARunUndoneInputsOutdateIt) {
    set_zone(2, 2, "10.5");
    mark_results_stored(session_.basin);
    mark_results_current(session_.basin);
    undo();
    EXPECT_TRUE(session_.basin.Input_Changed);
    EXPECT_TRUE(changed());
    EXPECT_FALSE(session_.basin.Output_Valid);
}

TEST_F(UndoTest, AnEditThatIsTakenBackLeavesTheResultsValid) {
    mark_results_current(session_.basin);
    set_zone(2, 2, "10.5");
    EXPECT_FALSE(session_.basin.Output_Valid);
    undo();
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_FALSE(session_.basin.Input_Changed);
}

TEST_F(UndoTest, AChangeFromElsewhereStaysMarked) {
    set_zone(2, 2, "10.5");
    mark_basin_changed(session_.basin);
    undo();
    EXPECT_TRUE(changed());
}

TEST_F(UndoTest, ADeletedSimulationForgetsItsEdits) {
    set(1, 13, "7");
    dialogs_.then(Answer::Yes);
    go_to(1, 2);
    press(1);
    ASSERT_EQ(rows(), 1U);
    const Simulation left = row(1);
    undo();
    EXPECT_EQ(row(1), left);
    EXPECT_FALSE(session_.history.can_undo());
}

TEST_F(UndoTest, EditsOfZonesOutliveADeletedSimulation) {
    const std::string before = area_of(2);
    set_zone(2, 2, "10.5");
    dialogs_.then(Answer::Yes);
    go_to(1, 2);
    press(1);
    undo();
    EXPECT_EQ(area_of(2), before);
    EXPECT_EQ(rows(), 1U);
    EXPECT_TRUE(changed());
}

TEST_F(UndoTest, AnotherBasinHasNothingToUndo) {
    set_zone(2, 2, "10.5");
    mark_saved(session_.basin);
    const auto other = user_ / "other.mdb";
    std::filesystem::copy_file(std::filesystem::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb", other);
    dialogs_.then_file(other);
    key(Qt::Key_O, Qt::ControlModifier);
    ASSERT_EQ(session_.basin.Basin_File, other);
    EXPECT_FALSE(session_.history.can_undo());
    const std::string shown = area_of(2);
    zones()->setFocus();
    undo();
    EXPECT_EQ(area_of(2), shown);
    EXPECT_FALSE(changed());
}

TEST_F(UndoTest, InACellThatIsBeingEditedTheKeysAreThoseOfItsText) {
    const std::string before = area_of(2);
    set_zone(1, 2, "10.5");
    zones()->setCurrentIndex(zones()->model()->index(1, 1));
    keys("77");
    undo();
    key(Qt::Key_Escape);
    EXPECT_EQ(area_of(1), "10.5");
    EXPECT_EQ(area_of(2), before);
}

TEST_F(UndoTest, AnEditorThatTabOpenedDoesNotKeepTheKeys) {
    set(2, 13, "7");
    const std::string next = cell(2, 14);
    ASSERT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
    undo();
    EXPECT_NE(cell(2, 13), "7");
    EXPECT_EQ(cell(2, 14), next);
    EXPECT_TRUE(grid()->hasFocus());
}

TEST_F(UndoTest, EachEntryOfTheContextMenuHasALetterOfItsOwn) {
    go_to(1, 2);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), grid()->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(grid()->viewport(), &event);
    auto* menu = grid()->findChild<QMenu*>(QStringLiteral("mnuGrid"));
    ASSERT_NE(menu, nullptr);
    std::vector<QString> letters;
    for (const QAction* entry : menu->actions()) {
        if (entry->isSeparator()) continue;
        const qsizetype mark = entry->text().indexOf(QLatin1Char('&'));
        ASSERT_GE(mark, 0) << from_qt(entry->text());
        letters.push_back(entry->text().mid(mark + 1, 1).toLower());
    }
    menu->close();
    EXPECT_GE(letters.size(), 9U);
    std::sort(letters.begin(), letters.end());
    EXPECT_EQ(std::adjacent_find(letters.begin(), letters.end()), letters.end());
}

TEST_F(UndoTest, TheContextMenuOffersBoth) {
    const auto entry = [&](const char* name) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), zones()->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(zones()->viewport(), &event);
        auto* menu = zones()->findChild<QMenu*>(QStringLiteral("mnuGrid"));
        auto* found = menu == nullptr ? nullptr : menu->findChild<QAction*>(QString::fromUtf8(name));
        const bool enabled = found != nullptr && found->isEnabled();
        if (enabled) found->trigger();
        if (menu != nullptr) menu->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
        return enabled;
    };
    const std::string before = area_of(2);
    set_zone(2, 2, "10.5");
    EXPECT_FALSE(entry("gridRedo"));
    EXPECT_TRUE(entry("gridUndo"));
    EXPECT_EQ(area_of(2), before);
    EXPECT_FALSE(entry("gridUndo"));
    EXPECT_TRUE(entry("gridRedo"));
    EXPECT_EQ(area_of(2), "10.5");
}

}  // namespace
}  // namespace nivora
