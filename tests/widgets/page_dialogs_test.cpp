#include "widgets/page_dialogs.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(PageSetup, IsThatOfThePrinterThatWasChosenLast) {
    const QStringList printers{QStringLiteral("Laser"), QStringLiteral("Ink")};
    PageSetup setup;
    setup.printer = "Ink";
    EXPECT_EQ(page_printer(printers, setup), QStringLiteral("Ink"));
}

TEST(PageSetup, FindsAPrinterWhoseNameWasCutTo32Characters) {
    const QString name = QStringLiteral("Plotter in the cellar of the house next door");
    PageSetup setup;
    setup.printer = "Plotter in the cellar of the hou";
    ASSERT_EQ(setup.printer.size(), 32U);
    EXPECT_EQ(page_printer({QStringLiteral("Laser"), name}, setup), name);
}

TEST(PageSetup, IsThatOfTheStandardPrinterIfNoneWasChosenOrItIsGone) {
    const QStringList printers{QStringLiteral("Laser"), QStringLiteral("Ink")};
    PageSetup setup;
    EXPECT_TRUE(page_printer(printers, setup).isEmpty());
    setup.printer = "Plotter";
    EXPECT_TRUE(page_printer(printers, setup).isEmpty());
    EXPECT_TRUE(page_printer({}, setup).isEmpty());
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
