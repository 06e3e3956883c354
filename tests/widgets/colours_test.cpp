#include "widgets/colours.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QColorDialog>
#include <QPushButton>
#include <QTimer>

namespace nivora {
namespace {

constexpr std::int32_t k_orange = 255 + 128 * 0x100;

TEST(ColoursTest, RedIsTheLowestByteOfANumber) {
    EXPECT_EQ(colour_of(k_orange), QColor(255, 128, 0));
    EXPECT_EQ(number_of(QColor(1, 2, 3)), 0x030201);
}

TEST(ColoursTest, TheContrastIsThatOfTheGuidelines) {
    EXPECT_DOUBLE_EQ(contrast(Qt::black, Qt::white), 21.0);
    EXPECT_DOUBLE_EQ(contrast(Qt::red, Qt::red), 1.0);
    // Blue has the luminance 0.0722: (1 + 0.05) / (0.0722 + 0.05) = 8.592.
    EXPECT_NEAR(contrast(Qt::white, Qt::blue), 8.592, 0.001);
}

TEST(ColoursTest, ATextKeepsItsColourOnALightGround) {
    for (const QColor& ground : {QColor(Qt::white), QColor(0xF0, 0xF0, 0xF0), QColor(0xFF, 0x80, 0x80)})
        EXPECT_EQ(readable_on(Qt::blue, ground), QColor(Qt::blue)) << ground.name().toStdString();
}

TEST(ColoursTest, ATextIsReadableOnEveryDarkGroundAndKeepsItsHue) {
    for (int grey = 0; grey < 0x70; ++grey) {
        const QColor shown = readable_on(Qt::blue, QColor(grey, grey, grey));
        EXPECT_GE(contrast(shown, QColor(grey, grey, grey)), 4.5) << grey;
        EXPECT_NEAR(shown.hslHue(), QColor(Qt::blue).hslHue(), 2) << grey;
    }
    EXPECT_EQ(readable_on(Qt::white, Qt::black), QColor(Qt::white));
}

class ColourDialogTest : public testing::Test {
protected:
    /// Asks for a colour, and acts in the dialog.
    std::int32_t ask(const std::function<void(QColorDialog&)>& act) {
        QTimer::singleShot(0, qApp, [act] {
            auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            act(*dialog);
        });
        return colours_.Choose_Color(nullptr, k_orange);
    }
    /// Makes the current colour one of the user's own.
    static void add_to_custom(QColorDialog& dialog) {
        for (auto* button : dialog.findChildren<QPushButton*>()) {
            if (button->text() == QStringLiteral("&Add to Custom Colors")) return button->click();
        }
        ADD_FAILURE() << "the dialog has no such button";
    }
    static bool offers(const QColor& colour) {
        for (int i = 0; i < ColourDialog::k_custom_colours; ++i) {
            if (QColorDialog::customColor(i) == colour) return true;
        }
        return false;
    }
    /// What another user of the dialog may do meanwhile.
    static void spoil_custom_colours() {
        for (int i = 0; i < ColourDialog::k_custom_colours; ++i) QColorDialog::setCustomColor(i, Qt::gray);
    }

    ColourDialog colours_;
};

TEST_F(ColourDialogTest, ItShowsTheFirstColourAndGivesTheChosenOne) {
    QColor first;
    const std::int32_t chosen = ask([&](QColorDialog& dialog) {
        first = dialog.currentColor();
        dialog.setCurrentColor(QColor(1, 2, 3));
        dialog.accept();
    });
    EXPECT_EQ(first, QColor(255, 128, 0));
    EXPECT_EQ(chosen, 0x030201);
}

TEST_F(ColourDialogTest, ACancelGivesMinus1) {
    EXPECT_EQ(ask([](QColorDialog& dialog) { dialog.reject(); }), -1);
}

TEST_F(ColourDialogTest, AColourOfTheUsersOwnIsOfferedAgain) {
    const QColor own(11, 22, 33);
    static_cast<void>(ask([&](QColorDialog& dialog) {
        EXPECT_FALSE(offers(own));
        dialog.setCurrentColor(own);
        add_to_custom(dialog);
        dialog.accept();
    }));
    spoil_custom_colours();
    bool offered = false;
    static_cast<void>(ask([&](QColorDialog& dialog) {
        offered = offers(own);
        dialog.reject();
    }));
    EXPECT_TRUE(offered);
}

TEST_F(ColourDialogTest, AColourOfACancelledCallIsNotOfferedAgain) {
    const QColor own(44, 55, 66);
    static_cast<void>(ask([&](QColorDialog& dialog) {
        dialog.setCurrentColor(own);
        add_to_custom(dialog);
        EXPECT_TRUE(offers(own));
        dialog.reject();
    }));
    bool offered = true;
    static_cast<void>(ask([&](QColorDialog& dialog) {
        offered = offers(own);
        dialog.reject();
    }));
    EXPECT_FALSE(offered);
}

}  // namespace
}  // namespace nivora
