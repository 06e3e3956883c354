// What all windows have in common: their size on a small screen, first focus, and the keys of the window.

#include "widgets/nivora_window.h"

#include "base/scripted_dialogs.h"
#include "tests/support/recorded_printers.h"
#include "tests/support/temporary_folder.h"
#include "widgets/built_in_icons.h"

#include <gtest/gtest.h>

#include <QGroupBox>
#include <QIcon>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

namespace nivora {
namespace {

class ProbeWindow : public NivoraWindow {
public:
    using NivoraWindow::close_on_escape;
    using NivoraWindow::set_default_button;
    using NivoraWindow::set_first_focus;

    ProbeWindow(const WindowContext& context, QSize content_size)
        : NivoraWindow(context, "Results", WindowNumber::Results) {
        auto* content = new QWidget(this);
        auto* layout = new QVBoxLayout(content);
        auto* frame = new QGroupBox(content);
        box = new QLineEdit(QStringLiteral("proposed"), frame);
        (new QVBoxLayout(frame))->addWidget(box);
        table = new QTableWidget(2, 2, content);
        button = new QPushButton(content);
        other = new QPushButton(content);
        for (QWidget* part : std::initializer_list<QWidget*>{frame, table, button, other})
            layout->addWidget(part);
        content->setMinimumSize(content_size);
        set_content(content);
        connect(button, &QPushButton::clicked, this, [this] { ++pressed; });
        connect(other, &QPushButton::clicked, this, [this] { ++other_pressed; });
    }

    QLineEdit* box = nullptr;
    QTableWidget* table = nullptr;
    QPushButton* button = nullptr;
    QPushButton* other = nullptr;
    int pressed = 0;
    int other_pressed = 0;
};

class NivoraWindowTest : public testing::Test {
protected:
    void show(ProbeWindow& window) {
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    TemporaryFolder program_;
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    QuickHelp quick_help_;
    RecordedPrinters printers_;
    Printing printing_{session_, printers_};
    WindowContext context_{session_, quick_help_, program_.path(), printing_};
};

TEST_F(NivoraWindowTest, ContentThatIsLargerThanTheScreenScrollsAndTheWindowFitsIt) {
    ProbeWindow window(context_, {3000, 2500});
    show(window);
    EXPECT_TRUE(window.screen()->availableGeometry().contains(window.frameGeometry()));
    EXPECT_TRUE(window.other->visibleRegion().isEmpty());
    window.other->setFocus();
    EXPECT_FALSE(window.other->visibleRegion().isEmpty()) << "what gets the focus is scrolled to";
}

TEST_F(NivoraWindowTest, ContentThatHasRoomDoesNotScrollAndKeepsTheWindowFromShrinking) {
    ProbeWindow window(context_, {300, 260});
    show(window);
    window.resize(10, 10);
    const auto* area = window.findChild<QScrollArea*>();
    EXPECT_GE(area->viewport()->width(), 300);
    EXPECT_GE(area->viewport()->height(), 260);
}

TEST_F(NivoraWindowTest, ALongFileNameMakesNoWindowWide) {
    session_.basin.Basin_File = std::string(400, 'm');
    ProbeWindow window(context_, {300, 260});
    EXPECT_LT(window.minimumSizeHint().width(), 600);
}

TEST_F(NivoraWindowTest, ItOpensWithTheFirstBoxOfItsContentAndItsTextSelected) {
    ProbeWindow window(context_, {300, 260});
    show(window);
    EXPECT_EQ(QApplication::focusWidget(), window.box);
    QTest::keyClicks(window.box, QStringLiteral("x"));
    EXPECT_EQ(window.box->text(), QStringLiteral("x"));
}

TEST_F(NivoraWindowTest, ATableThatComesFirstHasACell) {
    ProbeWindow window(context_, {300, 260});
    window.set_first_focus(window.table);
    show(window);
    EXPECT_EQ(QApplication::focusWidget(), window.table);
    EXPECT_EQ(window.table->currentIndex(), window.table->model()->index(0, 0));
}

TEST_F(NivoraWindowTest, EnterPressesTheDefaultButtonUnlessAnotherHasTheFocus) {
    ProbeWindow window(context_, {300, 260});
    window.set_default_button(window.button);
    show(window);
    EXPECT_TRUE(window.button->isDefault());
    QTest::keyClick(window.box, Qt::Key_Return);
    EXPECT_EQ(window.pressed, 1);
    window.other->setFocus();
    QTest::keyClick(window.other, Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(window.pressed, 1);
    EXPECT_EQ(window.other_pressed, 1);
    window.button->setEnabled(false);
    window.box->setFocus();
    QTest::keyClick(window.box, Qt::Key_Return);
    EXPECT_EQ(window.pressed, 1);
}

TEST_F(NivoraWindowTest, WithoutADefaultButtonEnterPressesNone) {
    ProbeWindow window(context_, {300, 260});
    show(window);
    QTest::keyClick(window.box, Qt::Key_Return);
    EXPECT_EQ(window.pressed + window.other_pressed, 0);
}

TEST_F(NivoraWindowTest, EscapeClosesWhereTheWindowSaysSo) {
    ProbeWindow window(context_, {300, 260});
    show(window);
    QTest::keyClick(window.table, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible());
    window.close_on_escape();
    window.table->setFocus();
    window.table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    QTest::keyClick(window.table, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(NivoraWindowTest, EscapeClosesNothingWhileQuickHelpIsOn) {
    ProbeWindow window(context_, {300, 260});
    window.close_on_escape();
    show(window);
    quick_help_.set_on(true);
    QTest::keyClick(window.box, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible());
    quick_help_.set_on(false);
    QTest::keyClick(window.box, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(NivoraWindowTest, F6LeadsFromAreaToAreaAndBack) {
    ProbeWindow window(context_, {300, 260});
    show(window);
    const auto after = [&](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        return QApplication::focusWidget();
    };
    EXPECT_EQ(after(Qt::Key_F6, {}), window.table);
    EXPECT_EQ(after(Qt::Key_F6, {}), window.button);
    EXPECT_EQ(after(Qt::Key_F6, Qt::ShiftModifier), window.table);
    EXPECT_EQ(after(Qt::Key_Tab, Qt::ControlModifier), window.button);
    EXPECT_EQ(after(Qt::Key_F6, {})->objectName(), QStringLiteral("btnHelp"));
    EXPECT_EQ(after(Qt::Key_F6, {}), window.box);
}

/// The icon theme "Frost", which has a picture for questions, is that of the desktop.
class BuiltInIconsTest : public testing::Test {
protected:
    BuiltInIconsTest() {
        std::filesystem::create_directories(folder_ / "Frost/16");
        folder_.write("Frost/index.theme", "[Icon Theme]\nName=Frost\nDirectories=16\n\n[16]\nSize=16\n");
        QPixmap picture(16, 16);
        picture.fill(Qt::red);
        picture.save(QString::fromStdString((folder_ / "Frost/16/dialog-question.png").string()));
        QIcon::setThemeSearchPaths({QString::fromStdString(folder_.path().string())});
        QIcon::setThemeName(QStringLiteral("Frost"));
    }
    ~BuiltInIconsTest() override {
        QIcon::setThemeName(name_);
        QIcon::setThemeSearchPaths(paths_);
    }

    [[nodiscard]] static bool theme_has_icon() {
        return QIcon::hasThemeIcon(QStringLiteral("dialog-question"));
    }

    TemporaryFolder folder_;
    QStringList paths_ = QIcon::themeSearchPaths();
    QString name_ = QIcon::themeName();
};

TEST_F(BuiltInIconsTest, NoThemeIsSearchedWhileTheyAreWanted) {
    ASSERT_TRUE(theme_has_icon());
    {
        const BuiltInIcons icons;
        EXPECT_FALSE(theme_has_icon());
    }
    EXPECT_TRUE(theme_has_icon());
}

TEST_F(BuiltInIconsTest, TheIconOfQuickHelpIsTheSameOnEveryDesktop) {
    const auto icon = [] {
        ScriptedDialogs dialogs;
        Desktop desktop;
        Session session{dialogs, desktop};
        QuickHelp quick_help;
        RecordedPrinters printers;
        Printing printing{session, printers};
        const ProbeWindow window({session, quick_help, {}, printing}, {300, 260});
        return window.findChild<QToolButton*>(QStringLiteral("btnHelp"))->icon().pixmap(16).toImage();
    };
    EXPECT_NE(icon(), QImage(QString::fromStdString((folder_ / "Frost/16/dialog-question.png").string())));
    const QImage of_theme = icon();
    QIcon::setThemeName(QStringLiteral("none"));
    EXPECT_EQ(icon(), of_theme);
}

}  // namespace
}  // namespace nivora
