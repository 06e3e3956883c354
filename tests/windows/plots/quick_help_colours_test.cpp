#include "tests/windows/plots/colour_window_fixture.h"
#include "windows/plots/colour_field.h"
#include "windows/plots/frmColorDef.h"

#include <QAbstractScrollArea>
#include <QContextMenuEvent>
#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace nivora {
namespace {

using testing::ElementsAre;

constexpr std::int32_t k_cream = 0xE0FFFF;

class QuickHelpColoursTest : public ColourWindowTest {
protected:
    QuickHelpColoursTest() {
        session_.settings.quick_help_fore = k_navy;
        session_.settings.quick_help_back = k_cream;
    }

    frmColorDef& open() {
        dialog_ = std::make_unique<frmColorDef>(context(), colours_, nullptr);
        dialog_->show();
        return *dialog_;
    }
    [[nodiscard]] ColourField* field(int index) const {
        return in<ColourField>(*dialog_, index == 0 ? "Picture2(0)" : "Picture2(1)");
    }
    [[nodiscard]] QColor sample_colour(QPalette::ColorRole role) const {
        return in<QLabel>(*dialog_, "lblSample")->palette().color(role);
    }
    void press(const char* button) const { in<QPushButton>(*dialog_, button)->click(); }

    std::unique_ptr<frmColorDef> dialog_;
};

TEST_F(QuickHelpColoursTest, ItsTextsAreThese) {
    const frmColorDef& dialog = open();
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("QuickHelp Color Definition"));
    std::vector<std::string> labels;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) labels.push_back(from_qt(label->text()));
    EXPECT_THAT(labels, testing::UnorderedElementsAre(
                            "Foreground Color:", "Background Color:",
                            "The quickhelp text for Tarnlog-7 will appear as demonstrated in this box."));
    EXPECT_EQ(in<QPushButton>(dialog, "Command1(0)")->text(), QStringLiteral("Accept"));
    EXPECT_EQ(in<QPushButton>(dialog, "Command1(1)")->text(), QStringLiteral("Cancel"));
    EXPECT_EQ(from_qt(field(1)->toolTip()),
              "Background Color: the colour behind the text. Click to choose another.");
}

TEST_F(QuickHelpColoursTest, ItShowsTheColoursOfTheSettings) {
    open();
    EXPECT_EQ(field(0)->fill().colour, k_navy);
    EXPECT_EQ(field(1)->fill().colour, k_cream);
    EXPECT_EQ(sample_colour(QPalette::Text), QColor(0, 0, 128));
    EXPECT_EQ(sample_colour(QPalette::Base), QColor(255, 255, 224));
    EXPECT_EQ(colour_at(*in<QLabel>(*dialog_, "lblSample"), {4, 4}), QColor(255, 255, 224));
}

TEST_F(QuickHelpColoursTest, WithoutStoredColoursItShowsThoseOfTheStrip) {
    session_.settings.quick_help_fore.reset();
    session_.settings.quick_help_back.reset();
    quick_help_.set_on(true);
    open();
    const QPalette strip = find<QWidget>("lblHelp")->palette();
    EXPECT_EQ(nivora::colour_of(field(0)->fill().colour), strip.color(QPalette::Text));
    EXPECT_EQ(nivora::colour_of(field(1)->fill().colour), strip.color(QPalette::Base));
}

TEST_F(QuickHelpColoursTest, AChosenColourShowsAtOnceAndIsStoredByAccept) {
    frmColorDef& dialog = open();
    colours_.answers = {k_orange, 0};
    field(1)->click();
    EXPECT_EQ(field(1)->fill().colour, k_orange);
    EXPECT_EQ(sample_colour(QPalette::Base), QColor(255, 128, 0));
    EXPECT_EQ(session_.settings.quick_help_back, k_cream);
    field(0)->click();
    EXPECT_EQ(sample_colour(QPalette::Text), QColor(Qt::black));
    EXPECT_THAT(colours_.firsts, ElementsAre(k_cream, k_navy));
    EXPECT_EQ(colours_.owners.front(), &dialog);
    press("Command1(0)");
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(session_.settings.quick_help_back, k_orange);
    EXPECT_EQ(session_.settings.quick_help_fore, 0);
}

TEST_F(QuickHelpColoursTest, CancelAndEscapeStoreNothing) {
    for (const bool escape : {false, true}) {
        frmColorDef& dialog = open();
        colours_.answers = {k_orange};
        field(1)->click();
        if (escape) {
            QTest::keyClick(&dialog, Qt::Key_Escape);
        } else {
            press("Command1(1)");
        }
        EXPECT_FALSE(dialog.isVisible());
        EXPECT_EQ(session_.settings.quick_help_back, k_cream);
    }
}

TEST_F(QuickHelpColoursTest, ACancelledColourChangesNothing) {
    open();
    colours_.answers = {Colours::k_cancelled};
    field(0)->click();
    EXPECT_EQ(field(0)->fill().colour, k_navy);
    EXPECT_EQ(sample_colour(QPalette::Text), QColor(0, 0, 128));
}

TEST_F(QuickHelpColoursTest, ARightClickOnAStripOpensItAndItActsWhileQuickHelpIsOn) {
    quick_help_.set_on(true);
    const QString before = window_->help_text();
    look_at_modal("frmColorDef", [&](QWidget* dialog) {
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
        EXPECT_TRUE(quick_help_.is_on());
        QTest::mouseClick(in<QPushButton>(*dialog, "Command1(0)"), Qt::LeftButton);
        EXPECT_FALSE(dialog->isVisible());
    });
    session_.settings.quick_help_back.reset();
    QTest::mouseClick(find<QAbstractScrollArea>("lblHelp")->viewport(), Qt::RightButton);
    EXPECT_TRUE(QTest::qWaitFor([&] { return seen_; }));
    settle();
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WhatsThisCursor);
    EXPECT_EQ(window_->help_text(), before);
    EXPECT_TRUE(session_.settings.quick_help_back.has_value());
}

TEST_F(QuickHelpColoursTest, TheMenuKeyOnAStripOpensItToo) {
    quick_help_.set_on(true);
    look_at_modal("frmColorDef", [](QWidget*) {});
    QWidget* strip = find<QAbstractScrollArea>("lblHelp")->viewport();
    const QPoint middle = strip->rect().center();
    QContextMenuEvent key(QContextMenuEvent::Keyboard, middle, strip->mapToGlobal(middle));
    QApplication::sendEvent(strip, &key);
    EXPECT_TRUE(QTest::qWaitFor([&] { return seen_; }));
    settle();
}

TEST_F(QuickHelpColoursTest, TheMouseMenuOfAStripOpensNothing) {
    quick_help_.set_on(true);
    QWidget* strip = find<QAbstractScrollArea>("lblHelp")->viewport();
    const QPoint middle = strip->rect().center();
    QContextMenuEvent mouse(QContextMenuEvent::Mouse, middle, strip->mapToGlobal(middle));
    QApplication::sendEvent(strip, &mouse);
    QTest::qWait(20);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(QuickHelpColoursTest, ARightClickOnTheQuickHelpButtonOpensNothing) {
    quick_help_.set_on(true);
    QTest::mouseClick(find<QWidget>("btnHelp"), Qt::RightButton);
    QTest::qWait(20);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(QuickHelpColoursTest, AllOpenStripsTakeNewColoursAtOnceAndKeepTheirText) {
    quick_help_.set_on(true);
    window_->explain_line(3);
    const QString text = window_->help_text();
    session_.settings.quick_help_back = k_orange;
    emit quick_help_.colours_changed();
    EXPECT_EQ(find<QWidget>("lblHelp")->palette().color(QPalette::Base), QColor(255, 128, 0));
    EXPECT_EQ(window_->help_text(), text);
}

}  // namespace
}  // namespace nivora
