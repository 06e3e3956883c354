// The window that changes one parameter in many zones and days.
#include "tests/windows/prep/prep_window_fixture.h"
#include "windows/prep/frmParameterChange.h"

#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// The simulation "wet" of two zones from 29 September to 2 October 1980, day -1 to day 2; the degree-day
/// factor of zone 1 is 0.5, that of zone 2 is 0.25, and the lag time is 18 hours.
class ParameterChangeWindowTest : public PrepWindowTest {
protected:
    ParameterChangeWindowTest() {
        make_parameter_table("wet");
        std::vector<ParameterRow> rows;
        for (std::int16_t zone = 1; zone <= k_zones; ++zone) {
            for (int day = -1; day <= 2; ++day) {
                ParameterRow row;
                row.zone = zone;
                row.date = october(day);
                row.an = zone == 1 ? 0.5F : 0.25F;
                row.lag_hours = 18.0F;
                rows.push_back(row);
            }
        }
        add_parameters("wet", rows);
        add_simulation("wet", october(-1), october(2));
        session_.basin.Output_Valid = true;
        session_.run.ClimateStep = 3;
    }

    void open() {
        auto window = std::make_unique<frmParameterChange>(context());
        ASSERT_TRUE(window->open());
        window_ = std::move(window);
        show_window();
    }
    void choose_parameter(const char* field) {
        auto* box = find<QComboBox>("cboParameter");
        box->setCurrentIndex(box->findData(QString::fromUtf8(field)));
    }
    void number(const char* text) { fill(find<QLineEdit>("txtNumber"), text); }
    std::string summary() { return from_qt(find<QLabel>("lblSummary")->text()); }
    int shown_rows() { return find<GridView>("grdPreview")->model()->rowCount(); }
    std::string cell(int row, int column) {
        return from_qt(find<GridView>("grdPreview")->model()->index(row - 1, column - 1).data().toString());
    }
    [[nodiscard]] std::string factors() const {
        return stored("SELECT group_concat(An, ' ') FROM (SELECT An FROM wet ORDER BY Zone, Date)");
    }
};

TEST_F(ParameterChangeWindowTest, ShowsWhatAChangeDoesBeforeItIsMade) {
    open();
    EXPECT_EQ(from_qt(window_->windowTitle()), "Change a parameter of wet");
    EXPECT_EQ(summary(), "Enter a number.");
    EXPECT_FALSE(button(0)->isEnabled());
    choose_parameter("AN");
    EXPECT_EQ(from_qt(find<QLabel>("lblUnit")->text()), "cm/(°C·day)");
    find<QComboBox>("cboAction")->setCurrentIndex(2);
    EXPECT_EQ(find<QLabel>("lblUnit")->text(), QString{}) << "a factor has no unit";
    number("1.5");
    EXPECT_EQ(summary(), "Rows: 8, of which 8 change.\nBefore: 0.25 to 0.5. After: 0.375 to 0.75.");
    ASSERT_EQ(shown_rows(), 8);
    EXPECT_EQ(cell(1, 1), "A");
    EXPECT_EQ(cell(1, 2), "09/29/1980");
    EXPECT_EQ(cell(1, 3), "0.5000");
    EXPECT_EQ(cell(1, 4), "0.7500");
    EXPECT_EQ(cell(8, 1), "B");
    EXPECT_EQ(cell(8, 4), "0.3750");
    EXPECT_TRUE(button(0)->isEnabled());
    EXPECT_EQ(factors(), "0.5 0.5 0.5 0.5 0.25 0.25 0.25 0.25");
}

TEST_F(ParameterChangeWindowTest, ApplyMakesTheChangeAndMarksTheBasin) {
    open();
    choose_parameter("AN");
    number("0.75");
    find<QCheckBox>("chkAllZones")->click();
    find<QCheckBox>("chkZone(1)")->click();
    find<QCheckBox>("chkMonth(9)")->click();
    EXPECT_THAT(summary(), StartsWith("Rows: 2, of which 2 change."));
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(factors(), "0.5 0.5 0.5 0.5 0.25 0.25 0.75 0.75");
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_EQ(session_.run.ClimateStep, 0);
}

TEST_F(ParameterChangeWindowTest, CancelChangesNothing) {
    open();
    choose_parameter("AN");
    number("0.75");
    press(1);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(factors(), "0.5 0.5 0.5 0.5 0.25 0.25 0.25 0.25");
    EXPECT_FALSE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_EQ(session_.run.ClimateStep, 3);
}

TEST_F(ParameterChangeWindowTest, DatesNarrowThePeriod) {
    open();
    choose_parameter("AN");
    number("0.75");
    EXPECT_FALSE(find<QLineEdit>("mtxtDate(0)")->isEnabled());
    find<QRadioButton>("optDates")->click();
    EXPECT_FALSE(find<QCheckBox>("chkMonth(1)")->isEnabled());
    EXPECT_EQ(from_qt(find<QLineEdit>("mtxtDate(0)")->text()), "09/29/1980");
    EXPECT_EQ(from_qt(find<QLineEdit>("mtxtDate(1)")->text()), "10/02/1980");
    find<QLineEdit>("mtxtDate(1)")->setText(QStringLiteral("09/30/1980"));
    EXPECT_THAT(summary(), StartsWith("Rows: 4, "));
    find<QLineEdit>("mtxtDate(1)")->setText(QStringLiteral("10/03/1980"));
    EXPECT_EQ(summary(),
              "The dates must lie in the simulation, 09/29/1980 to 10/02/1980, the first one first.");
    EXPECT_FALSE(button(0)->isEnabled());
    EXPECT_EQ(shown_rows(), 0);
    find<QLineEdit>("mtxtDate(1)")->setText(QStringLiteral("13/40/1980"));
    EXPECT_EQ(summary(), "Enter two dates as mm/dd/yyyy.");
}

TEST_F(ParameterChangeWindowTest, AValueThatNoCellTakesCantBeApplied) {
    open();
    choose_parameter("LagTime");
    find<QComboBox>("cboAction")->setCurrentIndex(1);
    number("30");
    EXPECT_THAT(summary(),
                HasSubstr("Refused: 8 of the values. Zone A, 09/29/1980: 18 would become 48, but "));
    EXPECT_FALSE(button(0)->isEnabled());
    EXPECT_EQ(cell(1, 4), "48.0000");
    number("24");
    EXPECT_THAT(summary(), Not(HasSubstr("Refused")));
    EXPECT_TRUE(button(0)->isEnabled());
}

TEST_F(ParameterChangeWindowTest, SaysWhatIsMissing) {
    open();
    number("x");
    EXPECT_THAT(summary(), StartsWith("Number: "));
    number("1");
    find<QCheckBox>("chkAllZones")->click();
    find<QCheckBox>("chkZone(1)")->click();
    find<QCheckBox>("chkZone(2)")->click();
    EXPECT_EQ(summary(), "Choose a zone.");
    find<QCheckBox>("chkAllZones")->click();
    EXPECT_TRUE(find<QCheckBox>("chkZone(2)")->isChecked());
    for (int month = 1; month <= 12; ++month)
        find<QCheckBox>("chkMonth(" + std::to_string(month) + ")")->click();
    EXPECT_EQ(summary(), "Choose a month.");
    EXPECT_FALSE(button(0)->isEnabled());
}

TEST_F(ParameterChangeWindowTest, AChangeOfNothingCantBeApplied) {
    open();
    choose_parameter("LagTime");
    number("18");
    EXPECT_THAT(summary(), StartsWith("Rows: 8, of which 0 change."));
    EXPECT_FALSE(button(0)->isEnabled());
}

TEST_F(ParameterChangeWindowTest, AFileThatIsHeldIsTold) {
    open();
    choose_parameter("AN");
    number("0.75");
    BasinDatabase other = file_.open();
    other.execute("BEGIN IMMEDIATE");
    press(0);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(last_message().title, "Change a parameter");
    EXPECT_FALSE(session_.basin.Basin_Changed);
    other.execute("ROLLBACK");
}

TEST_F(ParameterChangeWindowTest, NeedsDaysOfTheSimulation) {
    file_.open().execute("DELETE FROM wet");
    frmParameterChange window(context());
    EXPECT_FALSE(window.open());
    EXPECT_EQ(last_message().text,
              "The parameter table of the simulation 'wet' has no day of its period. "
              "Choose Data, Parameters: it adds the days.");
    session_.basin.simulations[0].end.reset();
    EXPECT_FALSE(window.open());
}

TEST_F(ParameterChangeWindowTest, F1OpensItsHelp) {
    open();
    key(Qt::Key_F1);
    EXPECT_EQ(desktop_.topics, std::vector<int>{73});
}

}  // namespace
}  // namespace nivora
