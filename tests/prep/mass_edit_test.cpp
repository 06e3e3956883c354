// A mass edit: one operation on many days.
#include "prep/daily_editor.h"
#include "tests/prep/prep_fixture.h"

#include <limits>

namespace nivora {
namespace {

using testing::ElementsAre;

constexpr std::size_t k_edited_an = 3;
constexpr std::size_t k_edited_lag = 4;
constexpr std::size_t k_edited_rca = 7;
constexpr std::size_t k_edited_y = 9;

class MassEditTest : public PrepTest {
protected:
    MassEditTest() {
        make_parameter_table("wet");
        add_parameters("wet", {parameter_day(1, october(1), 0.5F), parameter_day(1, october(2)),
                               parameter_day(1, october(3), 0.75F), parameter_day(1, october(4), 1.0F),
                               parameter_day(2, october(2), 0.25F)});
    }

    [[nodiscard]] DailyEditor open() const {
        return {file_.path(),
                DataView::Parameters,
                {.table = "wet", .fields = daily_fields(DataView::Parameters), .period = {}}};
    }

    std::vector<std::string> stored(const std::string& field) {
        return rows("SELECT " + field + " FROM wet ORDER BY rowid");
    }
};

TEST_F(MassEditTest, AddsToTheRowsOfTheSelectionAndItsZone) {
    DailyEditor editor = open();
    editor.mass_edit(MassEdit::Add, k_edited_an, 1, 2, 0.5F);
    EXPECT_EQ(editor.value(2, k_edited_an), 1.25);
    EXPECT_TRUE(editor.changed());
    editor.commit();
    EXPECT_THAT(stored("An"), ElementsAre("0.5", "-", "1.25", "1.0", "0.25"));
}

TEST_F(MassEditTest, ThatLeavesEveryValueAsItIsChangesNothing) {
    DailyEditor editor = open();
    editor.mass_edit(MassEdit::Add, k_edited_an, 0, 3, 0.0F);
    editor.mass_edit(MassEdit::Multiply, k_edited_an, 0, 3, 1.0F);
    editor.mass_edit(MassEdit::Add, k_edited_lag, 0, 3, 5.0F);  // the lags are missing
    EXPECT_FALSE(editor.changed());
    EXPECT_EQ(editor.value(0, k_edited_an), 0.5);
}

TEST_F(MassEditTest, MultipliesOneDay) {
    DailyEditor editor = open();
    editor.mass_edit(MassEdit::Multiply, k_edited_an, 0, 0, -3.0F);
    editor.commit();
    EXPECT_THAT(stored("An"), ElementsAre("-1.5", "-", "0.75", "1.0", "0.25"));
}

TEST_F(MassEditTest, TakesTheRowsOfAnUpwardSelection) {
    DailyEditor editor = open();
    editor.mass_edit(MassEdit::Multiply, k_edited_an, 3, 2, 2.0F);
    editor.commit();
    EXPECT_THAT(stored("An"), ElementsAre("0.5", "-", "1.5", "2.0", "0.25"));
}

TEST_F(MassEditTest, BuildsOnEarlierEdits) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(1, k_edited_an, 2.0));
    editor.mass_edit(MassEdit::Add, k_edited_an, 0, 3, 1.0F);
    editor.mass_edit(MassEdit::Multiply, k_edited_an, 0, 3, 2.0F);
    editor.commit();
    // (0.5 + 1) * 2 = 3, (2 + 1) * 2 = 6, (0.75 + 1) * 2 = 3.5, (1 + 1) * 2 = 4.
    EXPECT_THAT(stored("An"), ElementsAre("3.0", "6.0", "3.5", "4.0", "0.25"));
}

TEST_F(MassEditTest, RoundsASingleAndKeepsADouble) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_edited_y, 0.02));
    editor.mass_edit(MassEdit::Multiply, k_edited_y, 0, 0, 1.1F);
    // The factor is the text "1.1", not the Single nearest to it.
    EXPECT_EQ(editor.value(0, k_edited_y), 0.02 * 1.1);
    EXPECT_NE(editor.value(0, k_edited_y), 0.02 * static_cast<double>(1.1F));
    editor.mass_edit(MassEdit::Add, k_edited_an, 0, 0, 0.1F);
    EXPECT_EQ(editor.value(0, k_edited_an), static_cast<double>(0.6F));
    editor.commit();
    // 0.6 as a Single is 10066330 / 2^24.
    EXPECT_THAT(rows("SELECT An = 10066330.0 / 16777216.0 FROM wet LIMIT 1"), ElementsAre("1"));
}

TEST_F(MassEditTest, RoundsASwitchToAWholeNumberTiesToEven) {
    DailyEditor editor = open();
    for (std::size_t row = 0; row < 2; ++row)
        EXPECT_TRUE(editor.set_value(row, k_edited_rca, static_cast<double>(row)));
    editor.mass_edit(MassEdit::Add, k_edited_rca, 0, 3, 0.5F);
    editor.commit();
    // 0.5 rounds to 0, 1.5 to 2; missing values stay missing.
    EXPECT_THAT(stored("RCA"), ElementsAre("0", "2", "-", "-", "-"));
}

TEST_F(MassEditTest, IgnoresTheLimitsOfACell) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_edited_lag, 42.0));
    editor.mass_edit(MassEdit::Add, k_edited_lag, 0, 0, 1.0F);
    EXPECT_EQ(editor.value(0, k_edited_lag), 43.0);
}

TEST_F(MassEditTest, OfTheDatesIsRefusedAndLeavesTheRows) {
    DailyEditor editor = open();
    EXPECT_EQ(refused([&] { editor.mass_edit(MassEdit::Add, 0, 0, 3, 1.0F); }), StoreFault::Value);
    EXPECT_EQ(editor.date(0), october(1));
    EXPECT_FALSE(editor.changed());
    editor.commit();
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "1 3", "1 4", "2 2"));
}

TEST_F(MassEditTest, WithOneResultThatExceedsItsFieldChangesNothing) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(2, k_edited_an, 0x1p127));
    EXPECT_TRUE(editor.set_value(0, k_edited_rca, 1.0));
    EXPECT_TRUE(editor.set_value(3, k_edited_y, 9.0));
    // 2^128 is not a Single; the rows before it are restored.
    EXPECT_TRUE(refused([&] { editor.mass_edit(MassEdit::Multiply, k_edited_an, 0, 3, 2.0F); }).has_value());
    EXPECT_EQ(editor.value(0, k_edited_an), 0.5);
    // 1 * 40000 does not fit a 16-bit Integer.
    EXPECT_EQ(refused([&] { editor.mass_edit(MassEdit::Multiply, k_edited_rca, 0, 3, 40000.0F); }),
              StoreFault::Value);
    EXPECT_EQ(editor.value(0, k_edited_rca), 1.0);
    editor.commit();
    EXPECT_THAT(stored("An"), ElementsAre("0.5", "-", "1.70141183460469e+38", "1.0", "0.25"));
    EXPECT_THAT(stored("RCA"), ElementsAre("1", "-", "-", "-", "-"));
}

TEST_F(MassEditTest, WithADoubleThatExceedsItsFieldChangesNothing) {
    database_.execute("UPDATE wet SET Ycoeff = 1e300");
    DailyEditor editor = open();
    EXPECT_EQ(refused([&] { editor.mass_edit(MassEdit::Multiply, k_edited_y, 0, 3, 1e30F); }),
              StoreFault::Value);
    EXPECT_EQ(editor.value(0, k_edited_y), 1e300);
}

TEST_F(MassEditTest, WithAFactorThatIsNotANumberChangesNothing) {
    DailyEditor editor = open();
    for (const float factor : {k_missing, std::numeric_limits<float>::infinity()}) {
        EXPECT_EQ(refused([&] { editor.mass_edit(MassEdit::Add, k_edited_an, 0, 3, factor); }),
                  StoreFault::Value);
    }
    EXPECT_EQ(editor.value(0, k_edited_an), 0.5);
    EXPECT_FALSE(editor.changed());
}

TEST_F(MassEditTest, TakesAVerySmallAndAVeryLargeFactor) {
    DailyEditor editor = open();
    editor.mass_edit(MassEdit::Multiply, k_edited_an, 0, 0, 1e-5F);
    EXPECT_EQ(editor.value(0, k_edited_an), static_cast<double>(5e-6F));
    editor.mass_edit(MassEdit::Multiply, k_edited_an, 0, 0, 1e7F);
    EXPECT_EQ(editor.value(0, k_edited_an), static_cast<double>(50.0F));
}

TEST(MassEditQuestion, AsksForAConstantOrForAProportion) {
    const InputBox add = mass_edit_question(MassEdit::Add, "SCA");
    EXPECT_EQ(add.prompt, "Enter a constant value (+,-) to add to each daily value in your selection");
    EXPECT_EQ(add.title, "Change each daily value of SCA in the selection");
    const InputBox multiply = mass_edit_question(MassEdit::Multiply, "Tcrit");
    EXPECT_EQ(multiply.prompt, "Enter a desired proportion for each daily value in your selection");
    EXPECT_EQ(multiply.title, "Change each daily value of Tcrit in the selection");
}

}  // namespace
}  // namespace nivora
