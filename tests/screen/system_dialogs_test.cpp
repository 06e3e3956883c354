// The file and page dialogs and the boxes of the Help menu on a real display.

#include "tests/screen/screen_fixture.h"
#include "widgets/desktop_dialogs.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QPageSetupDialog>
#include <QPushButton>

namespace nivora {
namespace {

class SystemDialogsOnScreen : public MainWindowOnScreenTest {
protected:
    static QStringList files_shown(const QFileDialog& dialog) {
        const auto* list = dialog.findChild<QAbstractItemView*>(QStringLiteral("listView"));
        QStringList names;
        for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row) {
            const QModelIndex index = list->model()->index(row, 0, list->rootIndex());
            const QRect place = list->visualRect(index) & list->viewport()->rect();
            if (!place.isEmpty() && drawn_points(picture(*list->viewport(), place)) > 30)
                names << index.data().toString();
        }
        names.sort();
        return names;
    }
    template <typename Element>
    static Element& part(const QWidget& dialog, const char* name) {
        return *dialog.findChild<Element*>(QString::fromUtf8(name));
    }
};

TEST_F(SystemDialogsOnScreen, AllFilesChosenByKeysShowsANameWithoutAPoint) {
    user_.write("plain", "");
    user_.write("basin.mdb", "");
    in_dialog<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_TRUE(await([&] { return files_shown(dialog) == QStringList{QStringLiteral("basin.mdb")}; }));
        auto& kinds = part<QComboBox>(dialog, "fileTypeCombo");
        kinds.setFocus();
        press({"Down"});
        EXPECT_EQ(kinds.currentText(), QStringLiteral("All Files (*.*)"));
        const QStringList all{QStringLiteral("basin.mdb"), QStringLiteral("plain")};
        EXPECT_TRUE(await([&] { return files_shown(dialog) == all; }));
        press({"Escape"});
    });
    DesktopDialogs dialogs;
    EXPECT_EQ(dialogs.file({.title = "Open a NVR database",
                            .folder = user_.path(),
                            .patterns = {"Windows NVR Data (*.mdb)", "All Files (*.*)"}}),
              std::nullopt);
    EXPECT_EQ(modal_windows_seen_, 1);
}

TEST_F(SystemDialogsOnScreen, PageSetupKeepsThePaperThatWasChosen) {
    for (const char* paper : {"A4", "Letter", "A4"}) {
        in_dialog<QPageSetupDialog>([&](QPageSetupDialog& dialog) {
            auto& sizes = part<QComboBox>(dialog, "pageSizeCombo");
            const int index = sizes.findText(QString::fromUtf8(paper), Qt::MatchStartsWith);
            ASSERT_GE(index, 0) << paper;
            sizes.setCurrentIndex(index);
            click(*dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok));
        });
        choose("mnuFileItem(7)");
        EXPECT_EQ(session_.settings.page.paper, paper);
        in_dialog<QPageSetupDialog>([&](QPageSetupDialog& dialog) {
            EXPECT_TRUE(
                part<QComboBox>(dialog, "pageSizeCombo").currentText().startsWith(QString::fromUtf8(paper)));
            press({"Escape"});
        });
        choose("mnuFileItem(7)");
        EXPECT_EQ(session_.settings.page.paper, paper);
    }
    EXPECT_EQ(modal_windows_seen_, 6);
}

TEST_F(SystemDialogsOnScreen, TheAboutBoxShowsTheProgramsOneVersion) {
    in_dialog<QDialog>([](QDialog& dialog) {
        ASSERT_EQ(dialog.objectName(), QStringLiteral("frmAbout"));
        QStringList versions;
        for (const QLabel* label : dialog.findChildren<QLabel*>()) {
            if (!label->text().startsWith(QStringLiteral("Version"))) continue;
            versions << label->text();
            EXPECT_GT(drawn_points(picture(*label)), 30);
        }
        EXPECT_EQ(versions, QStringList{QStringLiteral("Version 1.10")});
        press({"Escape"});
    });
    choose("mnuHelpItm(3)");
    EXPECT_EQ(modal_windows_seen_, 1);
}

}  // namespace
}  // namespace nivora
