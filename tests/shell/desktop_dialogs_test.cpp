#include "widgets/desktop_dialogs.h"

#include "tests/support/temporary_folder.h"
#include "widgets/busy_pointer.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <algorithm>

namespace nivora {
namespace {

/// The boxes of the desktop, inspected while they are shown.
class DesktopDialogsTest : public testing::Test {
protected:
    /// Runs an action on the box of a type once it is shown.
    template <typename Box, typename Look>
    void when_shown(Look look) {
        QTimer::singleShot(0, qApp, [this, look] {
            auto* box = qobject_cast<Box*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            seen_ = true;
            look(box);
        });
    }

    void TearDown() override { EXPECT_TRUE(seen_); }

    static QStringList buttons_of(const QMessageBox* box) {
        QStringList names;
        for (const auto button : {QMessageBox::Ok, QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel}) {
            if (box->button(button) != nullptr) names << QString::number(button);
        }
        return names;
    }

    DesktopDialogs dialogs_;
    bool seen_ = false;
};

TEST_F(DesktopDialogsTest, AChoiceHasItsCaptionsInOrderAndTheFirstIsTheDefault) {
    const Choice choice{
        .text = "Which?", .title = "A title", .buttons = {"&Recover", "&Save a copy", "&Discard"}};
    when_shown<QMessageBox>([](QMessageBox* box) {
        EXPECT_EQ(box->text(), QStringLiteral("Which?"));
        EXPECT_EQ(box->windowTitle(), QStringLiteral("A title"));
        QStringList captions;
        QList<QAbstractButton*> buttons = box->buttons();
        std::sort(buttons.begin(), buttons.end(),
                  [](const QAbstractButton* a, const QAbstractButton* b) { return a->x() < b->x(); });
        for (const QAbstractButton* button : buttons) captions << button->text();
        EXPECT_EQ(captions, (QStringList{QStringLiteral("&Recover"), QStringLiteral("&Save a copy"),
                                         QStringLiteral("&Discard")}));
        EXPECT_EQ(box->defaultButton(), buttons.front());
        buttons[2]->click();
    });
    EXPECT_EQ(dialogs_.choose(choice), 2U);
}

TEST_F(DesktopDialogsTest, EscapeAndTheCloseControlLeaveAChoiceWithoutAButton) {
    const Choice choice{.text = "Which?", .buttons = {"One", "Two", "Three"}};
    when_shown<QMessageBox>([](QMessageBox* box) { QTest::keyClick(box, Qt::Key_Escape); });
    EXPECT_EQ(dialogs_.choose(choice), std::nullopt);
    when_shown<QMessageBox>([](QMessageBox* box) { box->close(); });
    EXPECT_EQ(dialogs_.choose(choice), std::nullopt);
}

TEST_F(DesktopDialogsTest, ABoxHasItsTextTitleIconAndButtons) {
    when_shown<QMessageBox>([](QMessageBox* box) {
        EXPECT_EQ(box->text(), QStringLiteral("<b>Basin</b> & more"));
        EXPECT_EQ(box->textFormat(), Qt::PlainText);
        EXPECT_EQ(box->windowTitle(), QStringLiteral("A title"));
        EXPECT_EQ(box->icon(), QMessageBox::Critical);
        EXPECT_EQ(buttons_of(box), QStringList{QString::number(QMessageBox::Ok)});
        box->button(QMessageBox::Ok)->click();
    });
    EXPECT_EQ(dialogs_.message({.text = "<b>Basin</b> & more", .title = "A title", .icon = Icon::Stop}),
              Answer::Ok);
}

TEST_F(DesktopDialogsTest, ABoxWithoutATitleHasTheProgramsName) {
    when_shown<QMessageBox>([](QMessageBox* box) {
        EXPECT_EQ(box->windowTitle(), QStringLiteral("Nivora"));
        EXPECT_EQ(box->icon(), QMessageBox::NoIcon);
        box->button(QMessageBox::Ok)->click();
    });
    dialogs_.message({.text = "text"});
}

TEST_F(DesktopDialogsTest, EachAnswerIsTheButtonThatWasChosen) {
    struct Case {
        Buttons buttons;
        QMessageBox::StandardButton button;
        Answer answer;
    };
    for (const Case& c : {Case{Buttons::OkCancel, QMessageBox::Ok, Answer::Ok},
                          Case{Buttons::OkCancel, QMessageBox::Cancel, Answer::Cancel},
                          Case{Buttons::YesNo, QMessageBox::Yes, Answer::Yes},
                          Case{Buttons::YesNo, QMessageBox::No, Answer::No},
                          Case{Buttons::YesNoCancel, QMessageBox::Yes, Answer::Yes},
                          Case{Buttons::YesNoCancel, QMessageBox::No, Answer::No},
                          Case{Buttons::YesNoCancel, QMessageBox::Cancel, Answer::Cancel}}) {
        when_shown<QMessageBox>([&](QMessageBox* box) { box->button(c.button)->click(); });
        EXPECT_EQ(dialogs_.message({.text = "text", .buttons = c.buttons}), c.answer);
    }
}

TEST_F(DesktopDialogsTest, TheFirstButtonIsTheDefaultUnlessAnotherIsNamed) {
    when_shown<QMessageBox>([](QMessageBox* box) {
        EXPECT_EQ(box->defaultButton(), box->button(QMessageBox::Yes));
        QTest::keyClick(box, Qt::Key_Return);
    });
    EXPECT_EQ(dialogs_.message({.text = "text", .buttons = Buttons::YesNoCancel}), Answer::Yes);
    when_shown<QMessageBox>([](QMessageBox* box) {
        EXPECT_EQ(box->defaultButton(), box->button(QMessageBox::No));
        QTest::keyClick(box, Qt::Key_Return);
    });
    EXPECT_EQ(
        dialogs_.message(
            {.text = "text", .icon = Icon::Warning, .buttons = Buttons::YesNo, .default_answer = Answer::No}),
        Answer::No);
}

TEST_F(DesktopDialogsTest, ClosingABoxRefuses) {
    when_shown<QMessageBox>([](QMessageBox* box) { box->reject(); });
    EXPECT_EQ(dialogs_.message({.text = "text", .buttons = Buttons::YesNoCancel}), Answer::Cancel);
}

TEST_F(DesktopDialogsTest, AnInputBoxShowsItsPromptAndGivesItsText) {
    when_shown<QInputDialog>([](QInputDialog* box) {
        EXPECT_EQ(box->windowTitle(), QStringLiteral("Enter Forecast Frequency"));
        EXPECT_EQ(box->labelText(), QStringLiteral("How often?"));
        EXPECT_EQ(box->textValue(), QString{});
        box->setTextValue(QStringLiteral(" 7 "));
        box->accept();
    });
    EXPECT_EQ(dialogs_.input({.prompt = "How often?", .title = "Enter Forecast Frequency", .proposed = {}}),
              " 7 ");
    when_shown<QInputDialog>([](QInputDialog* box) { box->reject(); });
    EXPECT_EQ(dialogs_.input({.prompt = "How often?"}), std::nullopt);
}

TEST_F(DesktopDialogsTest, AFileQuestionShowsTitleFolderPatternsAndName) {
    when_shown<QFileDialog>([](QFileDialog* box) {
        EXPECT_EQ(box->windowTitle(), QStringLiteral("Save a Nivora data base as ..."));
        EXPECT_EQ(box->directory().absolutePath(), QStringLiteral("/tmp"));
        auto* kinds = box->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
        ASSERT_NE(kinds, nullptr);
        EXPECT_EQ(kinds->itemText(0), QStringLiteral("Windows NVR Data (*.mdb)"));
        EXPECT_EQ(kinds->itemText(1), QStringLiteral("All Files (*.*)"));
        EXPECT_EQ(box->acceptMode(), QFileDialog::AcceptSave);
        EXPECT_TRUE(box->testOption(QFileDialog::DontConfirmOverwrite));
        EXPECT_EQ(box->selectedFiles(), QStringList{QStringLiteral("/tmp/alder #1.mdb")});
        box->reject();
    });
    EXPECT_EQ(dialogs_.file({.title = "Save a Nivora data base as ...",
                             .folder = "/tmp",
                             .proposed_name = "alder #1.mdb",
                             .patterns = {"Windows NVR Data (*.mdb)", "All Files (*.*)"},
                             .saving = true}),
              std::nullopt);
}

TEST_F(DesktopDialogsTest, AllFilesShowsANameWithoutAPoint) {
    TemporaryFolder folder;
    folder.write("plain", "");
    folder.write("basin.MDB", "");
    folder.write("other.txt", "");
    const auto rows = [](QFileDialog* box, const char* kind) {
        box->selectNameFilter(box->nameFilters().filter(QString::fromUtf8(kind)).front());
        auto* list = box->findChild<QAbstractItemView*>(QStringLiteral("listView"));
        QStringList names;
        const auto listed = [&] {
            names.clear();
            for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row)
                names << list->model()->index(row, 0, list->rootIndex()).data().toString();
            names.sort();
        };
        EXPECT_TRUE(QTest::qWaitFor([&] {
            listed();
            return !names.isEmpty();
        }));
        QTest::qWait(50);
        listed();
        return names;
    };
    when_shown<QFileDialog>([&](QFileDialog* box) {
        EXPECT_EQ(
            rows(box, "All Files"),
            (QStringList{QStringLiteral("basin.MDB"), QStringLiteral("other.txt"), QStringLiteral("plain")}));
        EXPECT_EQ(rows(box, "Windows NVR"), QStringList{QStringLiteral("basin.MDB")});
        box->reject();
    });
    EXPECT_EQ(dialogs_.file({.title = "Open a NVR database",
                             .folder = folder.path(),
                             .patterns = {"Windows NVR Data (*.mdb)", "All Files (*.*)"}}),
              std::nullopt);
}

// A title bar has an icon and three buttons, each as wide as the bar is high, beside its bold text. By itself
// a box leaves only 50 pixels for them.
TEST_F(DesktopDialogsTest, ABoxHasRoomForItsTitleBesideTheButtonsOfTheTitleBar) {
    const std::string title = "The title of this box says much more than the box itself does";
    when_shown<QMessageBox>([&](QMessageBox* box) {
        QFont font = box->font();
        font.setBold(true);
        const int beside = 4 * box->style()->pixelMetric(QStyle::PM_TitleBarHeight);
        EXPECT_GT(beside, 60);
        EXPECT_GE(box->width(), QFontMetrics(font).horizontalAdvance(QString::fromStdString(title)) + beside);
        EXPECT_LE(box->width(), box->screen()->availableGeometry().width());
        box->button(QMessageBox::Ok)->click();
    });
    dialogs_.message({.text = "no", .title = title});
}

/// A save of a plot, where the pattern decides what is written.
class PatternDecidesTest : public DesktopDialogsTest {
protected:
    static QLineEdit& name_of(QFileDialog* box) {
        return *box->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    }
    static QComboBox& kinds_of(QFileDialog* box) {
        return *box->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
    }
    static void type(QFileDialog* box, const char* name) {
        name_of(box).selectAll();
        QTest::keyClicks(&name_of(box), QString::fromUtf8(name));
    }
    /// Selects a kind as a user does, who sees the list act at once.
    static void choose_kind(QFileDialog* box, const char* kind) {
        kinds_of(box).setFocus();
        kinds_of(box).setCurrentText(QString::fromUtf8(kind));
        emit kinds_of(box).activated(kinds_of(box).currentIndex());
        emit kinds_of(box).textActivated(kinds_of(box).currentText());
    }
    static void save(QFileDialog* box) {
        box->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
    }
    std::optional<FileAnswer> ask(bool decides = true) {
        return dialogs_.file(
            {.title = "Save a Nivora plot as ...",
             .folder = folder_.path(),
             .proposed_name = "alder.flx",
             .patterns = {"Bitmap Files (*.bmp)", "Slurp Files (*.flx)", "PNG Files (*.png)"},
             .saving = true,
             .pattern = 1,
             .pattern_decides = decides});
    }

    TemporaryFolder folder_;
};

TEST_F(PatternDecidesTest, TheDialogBeginsWithThePatternAndAnswersWithTheOneThatIsLeft) {
    when_shown<QFileDialog>([](QFileDialog* box) {
        EXPECT_EQ(kinds_of(box).currentText(), QStringLiteral("Slurp Files (*.flx)"));
        EXPECT_EQ(name_of(box).text(), QStringLiteral("alder.flx"));
        save(box);
    });
    EXPECT_EQ(ask(), (FileAnswer{folder_ / "alder.flx", 1}));
}

TEST_F(PatternDecidesTest, TheProposedNameTakesTheEndingOfThePatternThatIsChosen) {
    when_shown<QFileDialog>([](QFileDialog* box) {
        choose_kind(box, "PNG Files (*.png)");
        EXPECT_EQ(name_of(box).text(), QStringLiteral("alder.png"));
        choose_kind(box, "Bitmap Files (*.bmp)");
        EXPECT_EQ(name_of(box).text(), QStringLiteral("alder.bmp"));
        save(box);
    });
    EXPECT_EQ(ask(), (FileAnswer{folder_ / "alder.bmp", 0}));
}

TEST_F(PatternDecidesTest, AnEndingThatIsTypedSelectsItsPattern) {
    when_shown<QFileDialog>([](QFileDialog* box) {
        type(box, "picture.PNG");
        EXPECT_EQ(kinds_of(box).currentText(), QStringLiteral("PNG Files (*.png)"));
        EXPECT_EQ(name_of(box).text(), QStringLiteral("picture.PNG"));
        save(box);
    });
    EXPECT_EQ(ask(), (FileAnswer{folder_ / "picture.PNG", 2}));
}

TEST_F(PatternDecidesTest, AnEndingThatNoPatternHasSelectsNothing) {
    when_shown<QFileDialog>([](QFileDialog* box) {
        type(box, "run.2002");
        EXPECT_EQ(kinds_of(box).currentText(), QStringLiteral("Slurp Files (*.flx)"));
        save(box);
    });
    EXPECT_EQ(ask(), (FileAnswer{folder_ / "run.2002", 1}));
}

TEST_F(PatternDecidesTest, ElsewhereATypedEndingSelectsNothing) {
    when_shown<QFileDialog>([](QFileDialog* box) {
        type(box, "picture.png");
        EXPECT_EQ(kinds_of(box).currentText(), QStringLiteral("Slurp Files (*.flx)"));
        box->reject();
    });
    EXPECT_EQ(ask(false), std::nullopt);
}

TEST_F(DesktopDialogsTest, AFileToOpenMustExist) {
    when_shown<QFileDialog>([](QFileDialog* box) {
        EXPECT_EQ(box->acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(box->fileMode(), QFileDialog::ExistingFile);
        box->reject();
    });
    EXPECT_EQ(dialogs_.file({.title = "Open a NVR database", .folder = "/tmp"}), std::nullopt);
}

TEST_F(DesktopDialogsTest, TheBusyPointerIsSuspendedDuringAQuestion) {
    const BusyPointer busy;
    const BusyPointer busy_below;
    when_shown<QMessageBox>([](QMessageBox* box) {
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        box->button(QMessageBox::Ok)->click();
    });
    dialogs_.message({.text = "Continue?"});
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    QApplication::restoreOverrideCursor();
    EXPECT_NE(QApplication::overrideCursor(), nullptr) << "both came back";
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

}  // namespace
}  // namespace nivora
