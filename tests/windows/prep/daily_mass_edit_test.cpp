#include "tests/windows/prep/daily_window_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;

/// Many days changed at once.
class DailyMassEditTest : public DailyWindowTest {
protected:
    void edit(int index, std::optional<std::string> answer) {
        dialogs_.then_text(std::move(answer));
        choose("mnuEditItmAct(" + std::to_string(index) + ")");
    }
    std::vector<std::string> column(int which) {
        std::vector<std::string> texts;
        for (int row = 1; row <= 4; ++row) texts.push_back(whole(row, which));
        return texts;
    }
};

TEST_F(DailyMassEditTest, AConstantIsAddedToTheSelectedDays) {
    open_variables();
    select(2, 2, 3, 2);
    edit(0, "-1.5");
    ASSERT_EQ(dialogs_.inputs().size(), 1U);
    EXPECT_EQ(dialogs_.inputs()[0].prompt,
              "Enter a constant value (+,-) to add to each daily value in your selection");
    EXPECT_EQ(dialogs_.inputs()[0].title, "Change each daily value of Runoff in the selection");
    EXPECT_THAT(column(2), ElementsAre("101", "100.5", "101.5", "104"));
    press(0);
    EXPECT_EQ(runoff(1, 2), "100.5");
    EXPECT_EQ(runoff(2, 2), "202.0");
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(DailyMassEditTest, AProportionMultipliesTheSelectedDaysOfTheShownZone) {
    open_variables();
    zone()->setValue(2);
    select(1, 2, 2, 2);
    edit(1, "0.5");
    EXPECT_EQ(dialogs_.inputs()[0].prompt,
              "Enter a desired proportion for each daily value in your selection");
    EXPECT_THAT(column(2), ElementsAre("100.5", "101", "203", "204"));
    zone()->setValue(1);
    EXPECT_THAT(column(2), ElementsAre("101", "102", "103", "104"));
}

TEST_F(DailyMassEditTest, TheFieldIsNamedAsInTheFileNotByItsHeader) {
    open_variables();
    select(1, 6, 2, 6);
    EXPECT_EQ(header(6), "CDC");
    edit(0, std::nullopt);
    EXPECT_EQ(dialogs_.inputs()[0].title, "Change each daily value of SCA in the selection");
}

TEST_F(DailyMassEditTest, AWholeColumnIsOneVariable) {
    open_variables();
    grid()->selectColumn(1);
    edit(1, "2");
    EXPECT_THAT(column(2), ElementsAre("202", "204", "206", "208"));
}

TEST_F(DailyMassEditTest, TheWholeGridIsAnInvalidSelection) {
    open_variables();
    grid()->selectAll();
    choose("mnuEditItmAct(0)");
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().title, "Invalid selection");
    EXPECT_EQ(last_message().text,
              "The mass edit function may only be applied to one variable/parameter at a time");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_TRUE(dialogs_.inputs().empty());
    EXPECT_THAT(column(2), ElementsAre("101", "102", "103", "104"));
}

TEST_F(DailyMassEditTest, TwoColumnsAreAnInvalidSelection) {
    open_variables();
    select(1, 2, 2, 3);
    choose("mnuEditItmAct(1)");
    EXPECT_EQ(last_message().title, "Invalid selection");
}

TEST_F(DailyMassEditTest, AnEmptyAnswerOrCancelStops) {
    open_variables();
    select(1, 2, 2, 2);
    edit(0, std::nullopt);
    edit(0, "");
    EXPECT_EQ(messages(), 0U);
    EXPECT_THAT(column(2), ElementsAre("101", "102", "103", "104"));
    press(0);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(DailyMassEditTest, ATextThatIsNotANumberIsRefused) {
    open_variables();
    select(1, 2, 2, 2);
    for (const char* answer : {"abc", "1,5", "1 000", "5 cm", "nan"}) {
        edit(1, answer);
        EXPECT_EQ(last_message().title, "Invalid (non-numeric) edit value") << answer;
        EXPECT_EQ(last_message().text, "Non-numeric edit factors are not allowed");
        EXPECT_EQ(last_message().icon, Icon::Stop);
    }
    EXPECT_EQ(messages(), 5U);
    EXPECT_THAT(column(2), ElementsAre("101", "102", "103", "104"));
}

TEST_F(DailyMassEditTest, TheDatesCanBeSelectedButTheEditFails) {
    open_variables();
    select(1, 1, 2, 1);
    edit(0, "1");
    EXPECT_EQ(dialogs_.inputs()[0].title, "Change each daily value of Date in the selection");
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text,
              "Mass edit failed.  Make sure you have correctly 'selected' a group of cells.");
    EXPECT_THAT(last_message().title, testing::StartsWith("ERROR - "));
    EXPECT_GT(last_message().title.size(), std::string{"ERROR - "}.size());
    EXPECT_THAT(column(1), ElementsAre("10/01/1980", "10/02/1980", "10/03/1980", "10/04/1980"));
}

TEST_F(DailyMassEditTest, AResultThatNoFieldCanHoldFailsAsAWhole) {
    open_variables();
    set(2, 2, "1e38");
    select(1, 2, 3, 2);
    edit(1, "10");
    ASSERT_EQ(messages(), 1U);
    EXPECT_THAT(last_message().title, testing::StartsWith("ERROR - "));
    EXPECT_EQ(whole(1, 2), "101");
    EXPECT_EQ(whole(3, 2), "103");
}

TEST_F(DailyMassEditTest, MissingValuesStayMissing) {
    open_variables();
    set(2, 3, "4");  // Enter goes down to day 3, which is missing and stays missing
    select(1, 3, 3, 3);
    edit(0, "2");
    EXPECT_THAT(column(3), ElementsAre("", "6", "", ""));
}

TEST_F(DailyMassEditTest, TheCellThatIsBeingTypedCountsWithItsNewValue) {
    open_variables();
    go_to(1, 2);
    type("10");
    edit(1, "3");
    EXPECT_EQ(whole(1, 2), "30");
}

TEST_F(DailyMassEditTest, CancelUndoesAMassEdit) {
    open_variables();
    grid()->selectColumn(1);
    edit(1, "2");
    press(1);
    EXPECT_EQ(runoff(1, 1), "101.0");
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(DailyMassEditTest, AMassEditAloneLeadsToTheQuestionAboutTheResults) {
    session_.basin.Output_Valid = true;
    open_variables();
    select(1, 2, 1, 2);
    edit(0, "1");
    dialogs_.then(Answer::Yes);
    press(0);
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_EQ(runoff(1, 1), "102.0");
}

TEST_F(DailyMassEditTest, ParametersAreEditedInTheSimulationsOwnTable) {
    open_parameters();
    select(2, 4, 3, 4);
    edit(0, "0.5");
    EXPECT_THAT(column(4), ElementsAre("1", "1.5", "1.5", "1"));
    press(0);
    EXPECT_EQ(stored("SELECT count(*) FROM s WHERE An = 1.5"), "2");
}

}  // namespace
}  // namespace nivora
