// The link to the manual in the help window, with the mouse.

#include "shell/frmNVRHelp.h"
#include "tests/screen/screen_fixture.h"
#include "widgets/desktop_dialogs.h"

#include <QClipboard>
#include <QMessageBox>
#include <QTextBrowser>

namespace nivora {
namespace {

class HelpLinksTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        choose("mnuHelpItm(0)");
        help_ = dynamic_cast<frmNVRHelp*>(await_window("frmNVRHelp"));
        ASSERT_NE(help_, nullptr);
        await_active(*help_);
        text_ = help_->findChild<QTextBrowser*>(QStringLiteral("txtHelp"));
    }
    /// Clicks into the middle of the link.
    void click_link() {
        const QString link = QStringLiteral("Nivora Users Manual");
        QTextCursor cursor = text_->document()->find(link);
        cursor.setPosition(cursor.selectionStart() + static_cast<int>(link.size()) / 2);
        click(*text_->viewport(), text_->cursorRect(cursor).center());
    }
    /// The number of pixels in the colour of a link.
    [[nodiscard]] int blue_points() const {
        const QImage seen = picture(*text_->viewport());
        int count = 0;
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x) {
                const QRgb point = seen.pixel(x, y);
                count += qBlue(point) > qRed(point) + 80 ? 1 : 0;
            }
        }
        return count;
    }

    frmNVRHelp* help_ = nullptr;
    QTextBrowser* text_ = nullptr;
};

TEST_F(HelpLinksTest, ATopicAfterTheManualsLinkIsPlainText) {
    EXPECT_GT(blue_points(), 100) << "the link stands out";
    click_link();
    EXPECT_EQ(last_message().title, "Unable to access the Nivora Users Manual");
    help_->findChild<QAction*>(QStringLiteral("mnuHlpItm(17)"))->trigger();
    settle();
    EXPECT_EQ(help_->windowTitle(), QStringLiteral("Help for Custom Time Lag Distribution"));
    EXPECT_EQ(blue_points(), 0);
    const std::size_t messages = dialogs_.messages().size();
    click(*text_->viewport(), {60, 20});
    EXPECT_EQ(dialogs_.messages().size(), messages) << "its text is no link";
}

/// An existing manual, on a desktop that has no program for it.
class ManualOnScreenTest : public HelpLinksTest {
protected:
    void SetUp() override {
        const auto asker = user_.write("xdg-mime", "#!/bin/sh\nexit 0\n");
        std::filesystem::permissions(asker, std::filesystem::perms::owner_all);
        qputenv("PATH", QByteArray::fromStdString(user_.path().string()) + ":" + path_);
        HelpLinksTest::SetUp();
    }
    void TearDown() override {
        qputenv("PATH", path_);
        HelpLinksTest::TearDown();
    }

    const QByteArray path_ = qgetenv("PATH");
};

TEST_F(ManualOnScreenTest, WithoutAProgramForItItsPathIsShownAndCopiedByAKey) {
    const auto manual = program_.write("Hollin Flow Model (Nivora) Users Manual.pdf", "%PDF-1.4");
    QApplication::clipboard()->setText(QStringLiteral("before"));
    DesktopDialogs boxes;
    dialogs_.boxes = &boxes;
    const auto answer = [&](const char* key) {
        const int seen = modal_windows_seen_;
        in_dialog<QMessageBox>([&, key](QMessageBox& box) {
            EXPECT_THAT(from_qt(box.text()), testing::HasSubstr(manual.string()));
            press({key});
            EXPECT_FALSE(box.isVisible());
        });
        click_link();
        EXPECT_TRUE(await([&] { return modal_windows_seen_ == seen + 1; }));
        return QApplication::clipboard()->text().toStdString();
    };
    EXPECT_EQ(answer("alt+n"), "before");
    EXPECT_EQ(answer("alt+y"), manual.string());
    dialogs_.boxes = nullptr;
}

}  // namespace
}  // namespace nivora
