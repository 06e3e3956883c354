#include "widgets/page_dialogs.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(PageSetup, AMarginOfZeroIsReadAsOneInch) {
    Settings settings;
    settings.margins = {0.0F, 0.5F, 0.75F, 2.0F};
    const QMarginsF margins = page_of(settings).margins(QPageLayout::Inch);
    EXPECT_DOUBLE_EQ(margins.left(), 1.0);
    EXPECT_DOUBLE_EQ(margins.top(), 0.5);
    EXPECT_DOUBLE_EQ(margins.right(), 0.75);
    EXPECT_DOUBLE_EQ(margins.bottom(), 2.0);
}

TEST(PageSetup, MarginsAndOrientationGoBackInTheirOrder) {
    Settings settings;
    settings.margins = {0.5F, 0.75F, 1.25F, 1.5F};
    settings.orientation = 2;
    const QPageLayout page = page_of(settings);
    EXPECT_EQ(page.orientation(), QPageLayout::Landscape);
    Settings kept;
    keep_page(kept, page);
    EXPECT_EQ(kept.margins, settings.margins);
    EXPECT_EQ(kept.orientation, 2);
}

TEST(ChooseFont, BoldIsEveryWeightButTheNormalOne) {
    QFont font(QStringLiteral("Sans"));
    font.setPointSizeF(9.6);
    EXPECT_EQ(FontChooser::choice_of(font).size, 10);
    EXPECT_FALSE(FontChooser::choice_of(font).bold);
    font.setWeight(QFont::Light);
    font.setItalic(true);
    EXPECT_TRUE(FontChooser::choice_of(font).bold);
    EXPECT_TRUE(FontChooser::choice_of(font).italic);
    EXPECT_EQ(FontChooser::choice_of(font).text, QStringLiteral("Sans 10 300 italic"));
}

}  // namespace
}  // namespace nivora
