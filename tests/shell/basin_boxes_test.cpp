#include "tests/shell/main_window_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

constexpr int k_name = 0;
constexpr int k_zones = 1;
constexpr int k_elevation = 2;
constexpr int k_latitude = 3;
constexpr int k_description = 4;
constexpr int k_longitude = 5;

// The colour with the value 0x8080FF, red in its lowest byte.
const QColor k_refused(0xFF, 0x80, 0x80);

class BasinBoxesTest : public MainWindowTest {
protected:
    /// Types keys into an empty box, one by one.
    QString typed(int number, const char* keys) {
        box(number)->clear();
        type(number, keys);
        return box(number)->text();
    }

    /// Leaves a box with a value that is refused, and checks its colour while the message is shown.
    void expect_refusal(int number, const char* value, const char* text, const char* title) {
        const std::size_t before = dialogs_.messages().size();
        QColor shown;
        dialogs_.while_shown = [&] { shown = colour_of(box(number)); };
        type(number, value);
        leave(box(number));
        dialogs_.while_shown = nullptr;
        ASSERT_EQ(dialogs_.messages().size(), before + 1) << value;
        EXPECT_EQ(last_message().text, text);
        EXPECT_EQ(last_message().title, title);
        EXPECT_EQ(last_message().icon, Icon::Stop);
        EXPECT_EQ(last_message().buttons, Buttons::Ok);
        EXPECT_EQ(shown, k_refused) << value;
        EXPECT_EQ(colour_of(box(number)), QColor(Qt::white)) << value;
        EXPECT_EQ(box(number)->text(), QString{}) << value;
        EXPECT_EQ(QApplication::focusWidget(), box(number)) << value;
    }

    void expect_accepted(int number, const char* value) {
        const std::size_t before = dialogs_.messages().size();
        type(number, value);
        leave(box(number));
        EXPECT_EQ(dialogs_.messages().size(), before) << value;
        EXPECT_EQ(box(number)->text(), QString::fromUtf8(value));
    }

    void lower_flags() {
        session_.basin.Basin_Changed = false;
        session_.basin.Input_Changed = false;
        session_.basin.Output_Valid = true;
    }
};

TEST_F(BasinBoxesTest, WholeNumberBoxesTakeDigitsAlone) {
    choose_units(0, Answer::Yes);
    for (const int number : {k_zones, k_elevation}) {
        EXPECT_EQ(typed(number, "1-2.3a4 5,6"), QStringLiteral("123456"));
        EXPECT_EQ(typed(number, "-"), QString{});
    }
}

TEST_F(BasinBoxesTest, AngleBoxesTakeDigitsOneSignAndOnePoint) {
    for (const int number : {k_latitude, k_longitude}) {
        EXPECT_EQ(typed(number, "-12.5.-x 7"), QStringLiteral("-12.57"));
        EXPECT_EQ(typed(number, "."), QStringLiteral("."));
        EXPECT_EQ(typed(number, "-"), QStringLiteral("-"));
    }
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(BasinBoxesTest, NamesTakeEveryCharacter) {
    EXPECT_EQ(typed(k_name, "a-1.b !\"'&"), QStringLiteral("a-1.b !\"'&"));
    EXPECT_EQ(typed(k_description, "a-1.b !\"'&"), QStringLiteral("a-1.b !\"'&"));
}

TEST_F(BasinBoxesTest, ATypedKeyReplacesTheSelection) {
    for (const int number : {k_elevation, k_latitude, k_longitude}) {
        box(number)->setText(QStringLiteral("45"));
        box(number)->selectAll();
        QTest::keyClicks(box(number), QStringLiteral("7"));
        EXPECT_EQ(box(number)->text(), QStringLiteral("7")) << number;
        box(number)->selectAll();
        QTest::keyClicks(box(number), QStringLiteral("x"));
        EXPECT_EQ(box(number)->text(), QStringLiteral("7")) << number;
    }
}

TEST_F(BasinBoxesTest, ASignOrPointInTheSelectionMayBeTypedAgain) {
    for (const int number : {k_latitude, k_longitude}) {
        box(number)->setText(QStringLiteral("-45.5"));
        box(number)->selectAll();
        QTest::keyClicks(box(number), QStringLiteral("-"));
        EXPECT_EQ(box(number)->text(), QStringLiteral("-"));
        box(number)->setText(QStringLiteral("45.5"));
        box(number)->setSelection(2, 2);
        QTest::keyClicks(box(number), QStringLiteral("."));
        EXPECT_EQ(box(number)->text(), QStringLiteral("45."));
        box(number)->setText(QStringLiteral("-45"));
        box(number)->setSelection(1, 1);
        QTest::keyClicks(box(number), QStringLiteral("-"));
        EXPECT_EQ(box(number)->text(), QStringLiteral("-45"));
    }
}

TEST_F(BasinBoxesTest, BackspaceAndTheClipboardKeysPass) {
    type(k_latitude, "45");
    QTest::keyClick(box(k_latitude), Qt::Key_Backspace);
    EXPECT_EQ(box(k_latitude)->text(), QStringLiteral("4"));
    box(k_latitude)->setText(QStringLiteral("46.5"));
    box(k_latitude)->selectAll();
    QTest::sendKeyEvent(QTest::Click, box(k_latitude), Qt::Key_C, QString(QChar(0x03)), Qt::ControlModifier);
    box(k_longitude)->clear();
    box(k_longitude)->setFocus();
    QTest::sendKeyEvent(QTest::Click, box(k_longitude), Qt::Key_V, QString(QChar(0x16)), Qt::ControlModifier);
    EXPECT_EQ(box(k_longitude)->text(), QStringLiteral("46.5"));
}

TEST_F(BasinBoxesTest, EnterNeverReachesABoxAndLeadsFromTheNameToWhatIsStillOpen) {
    box(k_name)->setFocus();
    QTest::keyClick(box(k_name), Qt::Key_Enter);
    EXPECT_EQ(QApplication::focusWidget(), find<QComboBox>("Combo1"));
    EXPECT_EQ(box(k_name)->text(), QStringLiteral("<basin name>"));
    choose_units(0, Answer::Yes);
    box(k_name)->setFocus();
    QTest::keyClick(box(k_name), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), box(k_zones));
    QTest::keyClick(box(k_zones), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), box(k_elevation));
    give_zones("2", Answer::Yes);
    box(k_name)->setFocus();
    QTest::keyClick(box(k_name), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), box(k_elevation));
}

TEST_F(BasinBoxesTest, ABoxThatGetsTheFocusSelectsItsWholeText) {
    open_sample();
    for (const int number : {k_elevation, k_latitude, k_longitude, k_description, k_name}) {
        find<QTableView>("DBGrid1")->setFocus();
        box(number)->deselect();
        box(number)->setFocus(Qt::TabFocusReason);
        QTest::qWait(1);
        EXPECT_EQ(box(number)->selectedText(), box(number)->text()) << number;
    }
}

TEST_F(BasinBoxesTest, AMenuOrAnotherWindowDoesNotLeaveTheBox) {
    type(k_elevation, "99999");
    for (const Qt::FocusReason reason :
         {Qt::PopupFocusReason, Qt::MenuBarFocusReason, Qt::ActiveWindowFocusReason}) {
        QFocusEvent out(QEvent::FocusOut, reason);
        QApplication::sendEvent(box(k_elevation), &out);
    }
    EXPECT_TRUE(dialogs_.messages().empty());
    EXPECT_EQ(box(k_elevation)->text(), QStringLiteral("99999"));
}

TEST_F(BasinBoxesTest, ElevationsHaveTheirLimitsInMetres) {
    choose_units(0, Answer::Yes);
    expect_accepted(k_elevation, "0");
    expect_accepted(k_elevation, "8849");
    for (const char* value : {"8850", "29035"}) {
        expect_refusal(k_elevation, value, "Basin elevation out of range!", "Unreasonable basin elevation");
    }
}

TEST_F(BasinBoxesTest, ElevationsHaveTheirLimitsInFeet) {
    choose_units(1, Answer::Yes);
    expect_accepted(k_elevation, "0");
    expect_accepted(k_elevation, "8850");
    expect_accepted(k_elevation, "29035");
    expect_refusal(k_elevation, "29036", "Basin elevation out of range!", "Unreasonable basin elevation");
}

TEST_F(BasinBoxesTest, ANegativeElevationCanOnlyBePastedAndIsRefused) {
    box(k_elevation)->setText(QStringLiteral("-1"));
    leave(box(k_elevation));
    EXPECT_EQ(last_message().title, "Unreasonable basin elevation");
    EXPECT_EQ(box(k_elevation)->text(), QString{});
}

TEST_F(BasinBoxesTest, LatitudesHaveTheirLimits) {
    for (const char* value : {"90", "-90", "0", "89.9", "-", ".", "-."}) expect_accepted(k_latitude, value);
    for (const char* value : {"90.1", "-90.1", "91", "-91"}) {
        expect_refusal(k_latitude, value, "Latitude must be between 90° North and 90° South (-90°)",
                       "Latitude out of range");
    }
}

TEST_F(BasinBoxesTest, LongitudesHaveTheirLimits) {
    for (const char* value : {"180", "-180", "0", "-"}) expect_accepted(k_longitude, value);
    for (const char* value : {"180.1", "-180.1", "181"}) {
        expect_refusal(k_longitude, value, "Longitude must be between 180° East and 180° West (-180°)",
                       "Longitude out of range");
    }
}

TEST_F(BasinBoxesTest, LimitsAreComparedInSinglePrecision) {
    // Next to 90, Singles are 7.6E-6 apart, so 90.000001 is read as 90.
    expect_accepted(k_latitude, "90.000001");
    expect_refusal(k_latitude, "90.00001", "Latitude must be between 90° North and 90° South (-90°)",
                   "Latitude out of range");
}

TEST_F(BasinBoxesTest, ZoneCountsHaveTheirLimits) {
    choose_units(0, Answer::Yes);
    for (const char* value : {"0", "17", "00"}) {
        expect_refusal(k_zones, value, "Number of zones must be between 1 and 16",
                       "Invalid zone specification");
    }
    give_zones("16", Answer::No);
    EXPECT_EQ(last_message().title, "Zone definition");
    give_zones("1", Answer::No);
    EXPECT_EQ(last_message().title, "Zone definition");
}

TEST_F(BasinBoxesTest, AnEmptyBoxOfANumberPassesWithoutAMessageOrAMark) {
    choose_units(0, Answer::Yes);
    lower_flags();
    for (const int number : {k_zones, k_elevation, k_latitude, k_longitude}) leave(box(number));
    EXPECT_EQ(dialogs_.messages().size(), 1U);  // the question about the units
    EXPECT_FALSE(session_.basin.Basin_Changed);
    EXPECT_FALSE(session_.basin.Input_Changed);
}

TEST_F(BasinBoxesTest, AValidNumberThatIsLeftMarksTheBasinAsChangedThoughNothingWasTyped) {
    open_sample();
    box(k_longitude)->setText(QStringLiteral("9.5"));
    for (const int number : {k_elevation, k_latitude, k_longitude}) {
        lower_flags();
        leave(box(number));
        EXPECT_TRUE(session_.basin.Basin_Changed) << number;
        EXPECT_TRUE(session_.basin.Input_Changed) << number;
        EXPECT_TRUE(session_.basin.Output_Valid) << number;
    }
}

TEST_F(BasinBoxesTest, ALeftNameOrDescriptionMarksNothing) {
    open_sample();
    leave(box(k_name));
    leave(box(k_description));
    EXPECT_FALSE(session_.basin.Basin_Changed);
    EXPECT_FALSE(session_.basin.Input_Changed);
}

TEST_F(BasinBoxesTest, EveryChangeOfABoxEvenByTheProgramInvalidatesTheResultsAndSetsTheMarks) {
    open_sample();
    for (const int number : {k_name, k_elevation, k_latitude, k_description, k_longitude}) {
        lower_flags();
        box(number)->setText(QStringLiteral("12"));
        EXPECT_FALSE(session_.basin.Output_Valid) << number;
        EXPECT_TRUE(session_.basin.Basin_Changed) << number;
        EXPECT_TRUE(session_.basin.Input_Changed) << number;
    }
}

TEST_F(BasinBoxesTest, ANameIsCutAtFiftyAndADescriptionAt255Characters) {
    box(k_name)->setText(QString(51, QLatin1Char('n')));
    EXPECT_EQ(box(k_name)->text(), QString(50, QLatin1Char('n')));
    box(k_name)->setText(QString(50, QChar(0x00F6)));
    EXPECT_EQ(box(k_name)->text().size(), 50);
    box(k_description)->setText(QString(256, QLatin1Char('d')));
    EXPECT_EQ(box(k_description)->text(), QString(255, QLatin1Char('d')));
    EXPECT_EQ(session_.basin.basin_description.size(), 255U);
}

TEST_F(BasinBoxesTest, ASignThatIsNotTheFirstCharacterIsReportedAtOnceAndEverySignIsRemoved) {
    struct Angle {
        int number;
        const char* name;
    };
    for (const Angle& angle : {Angle{k_latitude, "latitude"}, Angle{k_longitude, "longitude"}}) {
        const std::size_t before = dialogs_.messages().size();
        QColor shown;
        dialogs_.while_shown = [&] { shown = colour_of(box(angle.number)); };
        box(angle.number)->setFocus();
        box(angle.number)->setText(QStringLiteral("-4-5-"));
        dialogs_.while_shown = nullptr;
        ASSERT_EQ(dialogs_.messages().size(), before + 1);
        EXPECT_EQ(last_message().title, "Invalid character");
        EXPECT_EQ(last_message().text,
                  std::string{"If needed, negative sign must be the leftmost character of "} + angle.name);
        EXPECT_EQ(last_message().icon, Icon::Stop);
        EXPECT_EQ(shown, QColor(Qt::white));
        EXPECT_EQ(box(angle.number)->text(), QStringLiteral("45"));
        EXPECT_EQ(QApplication::focusWidget(), box(angle.number));
    }
}

TEST_F(BasinBoxesTest, ASignTypedAfterTheNumberIsRemovedWithAMessage) {
    EXPECT_EQ(typed(k_latitude, "45-"), QStringLiteral("45"));
    EXPECT_EQ(last_message().title, "Invalid character");
}

TEST_F(BasinBoxesTest, AnEmptyNameIsReportedAndReplacedByThePlaceholder) {
    box(k_name)->clear();
    leave(box(k_name));
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "A basin name is required!");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_EQ(last_message().buttons, Buttons::Ok);
    EXPECT_EQ(box(k_name)->text(), QStringLiteral("<basin name>"));
}

TEST_F(BasinBoxesTest, ABoxReadsItsLeadingNumber) {
    box(k_latitude)->setText(QStringLiteral("12abc"));
    leave(box(k_latitude));
    EXPECT_TRUE(dialogs_.messages().empty());
    box(k_latitude)->setText(QStringLiteral("120abc"));
    leave(box(k_latitude));
    EXPECT_EQ(last_message().title, "Latitude out of range");
}

}  // namespace
}  // namespace nivora
