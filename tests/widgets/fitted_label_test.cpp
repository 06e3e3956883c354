// Texts in as many words as there is room for.

#include "widgets/fitted_label.h"

#include "tests/widgets/grid_fixture.h"
#include "widgets/grid_sums.h"

namespace nivora {
namespace {

class FittedLabelTest : public testing::Test {
protected:
    FittedLabelTest() { label_.set_forms(sums_texts(sums_)); }
    void give(int width) { label_.resize(width, 20); }
    [[nodiscard]] int width_of(qsizetype form) const {
        return label_.fontMetrics().horizontalAdvance(sums_texts(sums_).at(form));
    }

    GridSums sums_{.count = 31, .sum = 310.5, .least = 1.25, .most = 25.75};
    FittedLabel label_;
};

TEST_F(FittedLabelTest, EachFormIsShownWhereItFitsAndNoLongerOneDoes) {
    const QStringList forms = sums_texts(sums_);
    ASSERT_EQ(forms.size(), 5);
    for (qsizetype form = 0; form < forms.size(); ++form) {
        give(width_of(form));
        EXPECT_EQ(from_qt(label_.shown()), from_qt(forms.at(form)));
        give(width_of(form) - 1);
        EXPECT_NE(from_qt(label_.shown()), from_qt(forms.at(form)));
    }
}

TEST_F(FittedLabelTest, TheShortestFormEndsInAMarkIfItDoesNotFit) {
    give(width_of(4) - 1);
    EXPECT_TRUE(label_.shown().endsWith(QChar(0x2026)));
}

TEST_F(FittedLabelTest, TextAndTipStayWhole) {
    give(60);
    const QString whole =
        QStringLiteral("31 numbers   Sum 310.5   Mean 10.0161   Minimum 1.25   Maximum 25.75");
    EXPECT_EQ(label_.text(), whole);
    EXPECT_EQ(label_.toolTip(), whole);
    EXPECT_EQ(label_.minimumSizeHint().width(), 0);
}

TEST_F(FittedLabelTest, WithoutFormsThereIsNoText) {
    label_.set_forms({});
    EXPECT_EQ(label_.shown(), QString{});
    EXPECT_EQ(label_.toolTip(), QString{});
    EXPECT_TRUE(sums_texts({.count = 1, .sum = 3.0, .least = 3.0, .most = 3.0}).isEmpty());
}

}  // namespace
}  // namespace nivora
