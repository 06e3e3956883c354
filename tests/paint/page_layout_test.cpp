#include "paint/page_layout.h"

#include <gtest/gtest.h>

#include <QPageSize>
#include <QSize>
#include <QSizeF>

namespace nivora {
namespace {

TEST(PageLayout, AMarginOfZeroIsReadAsOneInch) {
    PageSetup setup;
    setup.margins = {0.0F, 0.5F, 0.75F, 2.0F};
    const QMarginsF margins = page_of(setup).margins(QPageLayout::Inch);
    EXPECT_DOUBLE_EQ(margins.left(), 1.0);
    EXPECT_DOUBLE_EQ(margins.top(), 0.5);
    EXPECT_DOUBLE_EQ(margins.right(), 0.75);
    EXPECT_DOUBLE_EQ(margins.bottom(), 2.0);
}

TEST(PageLayout, MarginsAndOrientationGoBackInTheirOrder) {
    PageSetup setup;
    setup.margins = {0.5F, 0.75F, 1.25F, 1.5F};
    setup.orientation = 2;
    const QPageLayout page = page_of(setup);
    EXPECT_EQ(page.orientation(), QPageLayout::Landscape);
    PageSetup kept;
    keep_page(kept, page);
    EXPECT_EQ(kept.margins, setup.margins);
    EXPECT_EQ(kept.orientation, 2);
}

TEST(PageLayout, PaperAndUnitFollowTheLocaleAtFirst) {
    const auto first = [](const char* locale) {
        const QPageLayout page = page_of({}, QLocale(QString::fromUtf8(locale)));
        return std::pair{page.pageSize().id(), page.units()};
    };
    EXPECT_EQ(first("de_AT"), (std::pair{QPageSize::A4, QPageLayout::Millimeter}));
    EXPECT_EQ(first("en_GB"), (std::pair{QPageSize::A4, QPageLayout::Millimeter}));
    EXPECT_EQ(first("en_US"), (std::pair{QPageSize::Letter, QPageLayout::Inch}));
    EXPECT_EQ(first("en_CA"), (std::pair{QPageSize::Letter, QPageLayout::Millimeter}));
}

TEST(PageLayout, PaperAndUnitThatWereChosenComeBackWhateverTheLocale) {
    PageSetup setup;
    QPageLayout page = page_of(setup, QLocale(QStringLiteral("en_US")));
    for (const auto& paper : {QPageSize(QPageSize::A4), QPageSize(QPageSize::A3), QPageSize(QPageSize::Legal),
                              QPageSize(QSizeF(200, 300), QPageSize::Millimeter)}) {
        for (const auto unit : {QPageLayout::Millimeter, QPageLayout::Inch}) {
            page.setPageSize(paper);
            page.setUnits(unit);
            keep_page(setup, page);
            for (const char* locale : {"en_US", "de_DE"}) {
                const QPageLayout again = page_of(setup, QLocale(QString::fromUtf8(locale)));
                EXPECT_EQ(again.pageSize().sizePoints(), paper.sizePoints()) << setup.paper;
                EXPECT_EQ(again.units(), unit);
            }
        }
    }
}

TEST(PageLayout, MarginsStayInInchesWhateverTheUnit) {
    PageSetup setup;
    setup.margins = {0.5F, 0.75F, 1.25F, 1.5F};
    setup.unit = "mm";
    const QPageLayout page = page_of(setup);
    EXPECT_DOUBLE_EQ(page.margins().left(), 12.7);
    PageSetup kept;
    keep_page(kept, page);
    EXPECT_EQ(kept.margins, setup.margins);
}

TEST(PageLayout, AMarginThatWasNotChangedKeepsItsThousandths) {
    // 0.375 inches are 9.525 mm, and 0.125 are 3.175 mm: the unit shows hundredths.
    for (const char* unit : {"mm", "in"}) {
        SCOPED_TRACE(unit);
        PageSetup setup;
        setup.margins = {0.375F, 0.125F, 0.625F, 0.0F};
        setup.unit = unit;
        keep_page(setup, page_of(setup));
        EXPECT_EQ(setup.margins, (std::array<float, 4>{0.375F, 0.125F, 0.625F, 1.0F}));
        EXPECT_EQ(setup.unit, unit);
    }
}

TEST(PageLayout, AMarginKeepsItsThousandthsWhenAnotherOneOrTheUnitIsChanged) {
    PageSetup setup;
    setup.margins = {0.375F, 0.125F, 0.75F, 1.0F};
    setup.unit = "in";
    QPageLayout page = page_of(setup);
    page.setUnits(QPageLayout::Millimeter);
    page.setLeftMargin(12.7);
    keep_page(setup, page);
    EXPECT_EQ(setup.margins, (std::array<float, 4>{0.5F, 0.125F, 0.75F, 1.0F}));
    EXPECT_EQ(setup.unit, "mm");
}

TEST(PageLayout, AMarginThatWasChangedByAHundredthIsKeptAsChanged) {
    PageSetup setup;
    setup.margins = {0.5F, 0.5F, 0.5F, 0.5F};
    setup.unit = "mm";
    QPageLayout page = page_of(setup);
    page.setLeftMargin(12.71);
    keep_page(setup, page);
    EXPECT_FLOAT_EQ(setup.margins[0], static_cast<float>(12.71 / 25.4));
    EXPECT_EQ(setup.margins[1], 0.5F);
}

TEST(PageLayout, MillimetresThatWereTypedAreShownAgain) {
    // 10 mm are 0.3937 inches; 0.39 would be 9.91 mm.
    PageSetup setup;
    setup.unit = "mm";
    QPageLayout page = page_of(setup);
    page.setMargins({10.0, 15.0, 20.0, 25.0});
    keep_page(setup, page);
    EXPECT_EQ(page_of(setup).margins(), QMarginsF(10.0, 15.0, 20.0, 25.0));
}

TEST(PageLayout, AnInvalidPaperIsReplacedByThatOfTheLocale) {
    for (const char* paper : {"", "A4x", "Custom", "0x0", "-5x300", "nanxnan", "9e9x1", "1x2x3"}) {
        PageSetup setup;
        setup.paper = paper;
        EXPECT_EQ(page_of(setup, QLocale(QStringLiteral("de_DE"))).pageSize().id(), QPageSize::A4) << paper;
    }
}

}  // namespace
}  // namespace nivora
