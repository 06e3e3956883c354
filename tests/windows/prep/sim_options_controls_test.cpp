#include "tests/windows/prep/sim_options_fixture.h"

namespace nivora {
namespace {

using testing::Each;
using testing::ElementsAre;

/// What the controls of the definition window show.
class SimOptionsControlsTest : public SimOptionsWindowTest {};

TEST_F(SimOptionsControlsTest, ANewDefinitionShowsTheDefaults) {
    open_to_add("snow & rain");
    EXPECT_EQ(from_qt(window_->windowTitle()), "Edit Simulation Control Information");
    EXPECT_EQ(caption("lblSimName"), "snow && rain");
    EXPECT_EQ(text(1), "");
    EXPECT_EQ(text(2), "10/01/1980");
    EXPECT_EQ(text(3), "09/30/1981");
    EXPECT_TRUE(units(0)->isChecked());
    EXPECT_TRUE(temperature(0)->isChecked());
    for (int index = 0; index < 6; ++index) EXPECT_FALSE(by_zone(index)->isChecked()) << index;
    EXPECT_EQ(text(4), "");
    EXPECT_EQ(text(5), "6.00");
    EXPECT_THAT(first_values(), Each(std::string{}));
    EXPECT_EQ(from_qt(comments()->toPlainText()), "Comments concerning the simulation go here");
    EXPECT_EQ(messages(), 0U);
}

TEST_F(SimOptionsControlsTest, CaptionsAreTheGivenOnes) {
    open_to_add("s");
    EXPECT_EQ(caption("frmOptLbl5"), "Start Date:");
    EXPECT_EQ(caption("frmOptlbl6"), "End Date:");
    EXPECT_EQ(from_qt(units(0)->text()), "Metric");
    EXPECT_EQ(from_qt(units(1)->text()), "English");
    EXPECT_EQ(from_qt(temperature(0)->text()), "Daily Average");
    EXPECT_EQ(from_qt(temperature(1)->text()), "Max/Min Values");
    std::vector<std::string> captions;
    for (int index = 0; index < 6; ++index) captions.push_back(from_qt(by_zone(index)->text()));
    EXPECT_THAT(captions,
                ElementsAre("Temperature", "Precipitation", "Temperature Lapse Rates", "Runoff Coefficients",
                            "Critical Temperature", "Recession coefficients"));
    captions.clear();
    for (int index = 0; index < 9; ++index)
        captions.push_back(caption("Label4(" + std::to_string(index) + ")"));
    EXPECT_THAT(captions,
                ElementsAre("Degree Day Factor:", "Critical Temperature:", "Temperature Lapse Rate:",
                            "Runoff Coefficients (Snow):", "Runoff Coefficients (Rain):",
                            "Rainfall Contributing Area:", "Lag Time to Gage (hr):",
                            "X recession coefficient:", "Y recession coefficient:"));
    captions.clear();
    for (int index = 0; index < 3; ++index) captions.push_back(from_qt(button(index)->text()));
    EXPECT_THAT(captions, ElementsAre("&Accept", "&Cancel ", "&Help"));
    EXPECT_EQ(from_qt(comments()->placeholderText()), "Place comments about data here");
}

TEST_F(SimOptionsControlsTest, TheStatusBarShowsTheBasinsFile) {
    open_to_add("s");
    EXPECT_EQ(caption("panel1"), "alp.mdb");
}

TEST_F(SimOptionsControlsTest, TheThresholdsCaptionLosesItsLastLetterOnceUnitsAreShown) {
    open_to_add("s");
    EXPECT_EQ(frame("Frame1(5)"), "Rainfall Threshol(cm)");
    EXPECT_EQ(frame("Frame1(4)"), "Initial Runoff (m³/s)");
    units(1)->click();
    EXPECT_EQ(frame("Frame1(5)"), "Rainfall Threshol(in)");
    EXPECT_EQ(frame("Frame1(4)"), "Initial Runoff (f³/s)");
}

TEST_F(SimOptionsControlsTest, ChoosingUnitsForANewDefinitionBringsTheirThreshold) {
    open_to_add("s");
    box(5)->setText(QStringLiteral("9"));
    units(1)->click();
    EXPECT_EQ(text(5), "2.36");
    units(0)->click();
    EXPECT_EQ(text(5), "6.00");
}

TEST_F(SimOptionsControlsTest, ANewDefinitionInAnEnglishBasinStartsWithItsThreshold) {
    session_.basin.basin_units = session_.basin.Units_Code = Units::English;
    open_to_add("s");
    EXPECT_TRUE(units(1)->isChecked());
    EXPECT_EQ(text(5), "2.36");
    EXPECT_EQ(frame("Frame1(5)"), "Rainfall Threshol(in)");
}

TEST_F(SimOptionsControlsTest, AnEditShowsTheSelectedRow) {
    Simulation& row = add_simulation("a & b", october(1), october(4));
    row.run_number = 7;
    row.units = Units::English;
    row.temperature_values = std::int16_t{1};
    row.temperature = Distribution::Basinwide;
    row.precipitation = Distribution::ByZone;
    row.lapse_rate = Distribution::Basinwide;
    row.runoff_coefficients = Distribution::ByZone;
    row.critical_temperature = Distribution::ByZone;
    row.recession = Distribution::Basinwide;
    row.initial_runoff = 12.5F;
    row.precipitation_threshold = 3.5F;
    row.comments = "first\nsecond";
    make_parameter_table("a & b");
    add_parameters("a & b", {full_row(1, 1)});
    open_to_edit();
    EXPECT_EQ(caption("lblSimName"), "a && b");
    EXPECT_EQ(text(1), "7");
    EXPECT_EQ(text(2), "10/01/1980");
    EXPECT_EQ(text(3), "10/04/1980");
    EXPECT_TRUE(units(1)->isChecked());
    EXPECT_TRUE(temperature(1)->isChecked());
    std::vector<bool> flags;
    for (int index = 0; index < 6; ++index) flags.push_back(by_zone(index)->isChecked());
    EXPECT_THAT(flags, ElementsAre(false, true, false, true, true, false));
    EXPECT_EQ(text(4).find("12.5") != std::string::npos, true) << text(4);
    EXPECT_EQ(text(5).find("3.5") != std::string::npos, true) << text(5);
    EXPECT_EQ(from_qt(comments()->toPlainText()), "first\nsecond");
}

TEST_F(SimOptionsControlsTest, AnEditShowsTheParametersOfZoneOnesFirstDayAndSaysSo) {
    add_simulation("s", october(2), october(4));
    make_parameter_table("s");
    ParameterRow before = full_row(1, 1);
    before.an = 9.0F;
    ParameterRow other_zone = full_row(2, 2);
    other_zone.an = 8.0F;
    add_parameters("s", {other_zone, before, full_row(1, 3), full_row(1, 2)});
    open_to_edit();
    std::vector<double> numbers;
    for (const std::string& shown : first_values()) numbers.push_back(to_qt(shown).trimmed().toDouble());
    EXPECT_THAT(numbers, ElementsAre(0.45, 0.75, 0.65, 0.8, 0.7, 1, 18, 1.05, 0.025));
    EXPECT_EQ(caption("Label4(0)"), "Degree Day Factor: (Zone 1, Day 1)");
    EXPECT_EQ(caption("Label4(8)"), "Y recession coefficient: (Zone 1, Day 1)");
    EXPECT_EQ(messages(), 0U);
}

TEST_F(SimOptionsControlsTest, AnEditWithoutParametersSaysThatTheyAreMissingAndOpens) {
    add_simulation("s", october(1), october(4));
    make_parameter_table("s");
    open_to_edit();
    EXPECT_TRUE(opened_);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text,
              "Missing/empty parameter table for this simulation.  The table will be rebuilt when you click "
              "'Accept'.");
    EXPECT_EQ(last_message().title, "Missing parameter table");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_EQ(caption("Label4(0)"), "Degree Day Factor:");
}

TEST_F(SimOptionsControlsTest, AnEditKeepsItsThresholdWhenUnitsAreChosen) {
    Simulation& row = add_simulation("s", october(1), october(4));
    row.precipitation_threshold = 4.5F;
    make_parameter_table("s");
    add_parameters("s", {full_row(1, 1)});
    open_to_edit();
    const std::string before = text(5);
    units(1)->click();
    EXPECT_EQ(text(5), before);
    EXPECT_EQ(frame("Frame1(5)"), "Rainfall Threshol(in)");
}

TEST_F(SimOptionsControlsTest, AnImportShowsItsWorkingRecord) {
    SimulationRecord& record = session_.prep.working_record;
    record.definition.name = "legacy";
    record.definition.start = october(1);
    record.definition.end = october(31);
    record.definition.units = Units::English;
    record.definition.precipitation_threshold = 1.5F;
    record.first_values = full_row(1, 1);
    session_.prep.SimOptions_Mode = SimOptionsMode::Import;
    open();
    EXPECT_EQ(caption("lblSimName"), "legacy");
    EXPECT_EQ(text(2), "10/01/1980");
    EXPECT_EQ(text(3), "10/31/1980");
    EXPECT_TRUE(units(1)->isChecked());
    EXPECT_EQ(to_qt(text(5)).trimmed().toDouble(), 1.5);
    std::vector<double> numbers;
    for (const std::string& shown : first_values()) numbers.push_back(to_qt(shown).trimmed().toDouble());
    EXPECT_THAT(numbers, ElementsAre(0.45, 0.75, 0.65, 0.8, 0.7, 1, 18, 1.05, 0.025));
    EXPECT_EQ(caption("Label4(0)"), "Degree Day Factor:");
}

TEST_F(SimOptionsControlsTest, EnterAndDownLeadFromBoxToBox) {
    open_to_add("s");
    for (const Qt::Key which : {Qt::Key_Return, Qt::Key_Down, Qt::Key_Enter}) {
        box(1)->setFocus();
        for (int index = 2; index <= 5; ++index) {
            key(which);
            EXPECT_EQ(QApplication::focusWidget(), box(index)) << index;
        }
        key(which);
        EXPECT_EQ(QApplication::focusWidget(), temperature(0));
        box(6)->setFocus();
        for (int index = 7; index <= 14; ++index) {
            key(which);
            EXPECT_EQ(QApplication::focusWidget(), box(index)) << index;
        }
        key(which);
        EXPECT_EQ(QApplication::focusWidget(), comments());
    }
    key(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), button(0));
}

TEST_F(SimOptionsControlsTest, EnterLeadsThroughTheOptionsToTheNineParameters) {
    open_to_add("s");
    box(5)->setFocus();
    key(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), temperature(0));
    key(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), box(6));
    by_zone(3)->setFocus();
    key(Qt::Key_Enter);
    EXPECT_EQ(QApplication::focusWidget(), box(6));
    units(0)->setFocus();
    key(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), temperature(0));
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(SimOptionsControlsTest, UpLeadsBackwardsAndStopsAtTheFirstBox) {
    open_to_add("s");
    box(14)->setFocus();
    for (int index = 13; index >= 1; --index) {
        key(Qt::Key_Up);
        EXPECT_EQ(QApplication::focusWidget(), box(index)) << index;
    }
    key(Qt::Key_Up);
    EXPECT_EQ(QApplication::focusWidget(), box(1));
}

TEST_F(SimOptionsControlsTest, TheThresholdLeadsToTheTemperatureThatIsChosen) {
    open_to_add("s");
    temperature(1)->setChecked(true);
    box(5)->setFocus();
    key(Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), temperature(1));
    EXPECT_TRUE(temperature(1)->isChecked());
}

TEST_F(SimOptionsControlsTest, ABoxThatIsEnteredSelectsItsText) {
    open_to_add("s");
    box(5)->setFocus();
    QTest::qWait(1);
    EXPECT_EQ(box(5)->selectedText(), QStringLiteral("6.00"));
    type("7");
    EXPECT_EQ(text(5), "7");
}

TEST_F(SimOptionsControlsTest, TheFirstBoxHasTheFocusAtTheStart) {
    open_to_add("s");
    EXPECT_EQ(QApplication::focusWidget(), box(1));
}

TEST_F(SimOptionsControlsTest, ADateIsTypedAsDigitsBehindItsMask) {
    open_to_add("s");
    fill(box(2), "02291980");
    EXPECT_EQ(text(2), "02/29/1980");
}

TEST_F(SimOptionsControlsTest, HelpShowsItsTopicAndKeepsTheWindowOpen) {
    open_to_add("s");
    press(2);
    EXPECT_EQ(desktop_.topics.size(), 1U);
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(SimOptionsControlsTest, ClosingIsRefusedWhileQuickHelpIsOn) {
    open_to_add("s");
    quick_help_.set_on(true);
    EXPECT_FALSE(window_->close());
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(from_qt(window_->help_text()),
              "The Windows native control for closing the form is disabled while QuickHelp' is on.");
    quick_help_.set_on(false);
    EXPECT_TRUE(window_->close());
}

TEST_F(SimOptionsControlsTest, TheWindowOpensWhereItWasClosed) {
    open_to_add("s");
    window_->setGeometry(60, 40, 720, 650);
    QTest::qWait(1);
    const QPoint place = window_->pos();
    window_->close();
    open();
    EXPECT_EQ(window_->pos(), place);
    EXPECT_EQ(window_->size(), QSize(720, 650));
}

}  // namespace
}  // namespace nivora
