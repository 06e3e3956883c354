// The dialog in which a plot is saved, worked by keys.

#include "session/file_names.h"
#include "tests/screen/screen_fixture.h"
#include "widgets/desktop_dialogs.h"

#include <QComboBox>
#include <QLineEdit>
#include <cstdlib>

namespace nivora {
namespace {

class PlotSaveDialogOnScreen : public MainWindowOnScreenTest {
protected:
    /// Asks for the file of a discharge plot and acts in its dialog.
    std::optional<PlotFileName> ask(std::function<void(QFileDialog&)> act) {
        session_.basin.Basin_File = user_ / "alder.mdb";
        in_dialog<QFileDialog>(std::move(act));
        DesktopDialogs dialogs;
        FileNames names{dialogs, user_.path()};
        return names.GetPlotFileName(session_.basin, true);
    }
    static QLineEdit& name_of(const QFileDialog& dialog) {
        return *dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    }
    static QComboBox& filters_of(const QFileDialog& dialog) {
        return *dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
    }
    static void keep(const QWidget& window, const char* name) {
        const char* folder = std::getenv("NIVORA_PICTURES");
        if (folder != nullptr)
            picture(window).save(QString::fromUtf8(folder) + QLatin1Char('/') + QString::fromUtf8(name));
    }
};

TEST_F(PlotSaveDialogOnScreen, TheFlowFileIsProposedAndTakenByReturn) {
    const auto name = ask([](QFileDialog& dialog) {
        EXPECT_EQ(filters_of(dialog).currentText(), QStringLiteral("Slurp Files (*.flx)"));
        EXPECT_EQ(name_of(dialog).text(), QStringLiteral("alder.flx"));
        EXPECT_EQ(QApplication::focusWidget(), &name_of(dialog));
        keep(dialog, "plot-save.png");
        press({"Return"});
    });
    ASSERT_TRUE(name);
    EXPECT_EQ(name->file, user_ / "alder.flx");
    EXPECT_EQ(name->form, PlotForm::Flow);
}

TEST_F(PlotSaveDialogOnScreen, TheNameFollowsAFilterThatIsChosenByKeys) {
    const auto name = ask([](QFileDialog& dialog) {
        filters_of(dialog).setFocus();
        press({"Down"});
        EXPECT_EQ(filters_of(dialog).currentText(), QStringLiteral("PNG Files (*.png)"));
        EXPECT_EQ(name_of(dialog).text(), QStringLiteral("alder.png"));
        press({"Down", "Down"});
        EXPECT_EQ(name_of(dialog).text(), QStringLiteral("alder.pdf"));
        keep(dialog, "plot-save-pdf.png");
        name_of(dialog).setFocus();
        press({"Return"});
    });
    ASSERT_TRUE(name);
    EXPECT_EQ(name->file, user_ / "alder.pdf");
    EXPECT_EQ(name->form, PlotForm::Pdf);
}

TEST_F(PlotSaveDialogOnScreen, AnEndingThatIsTypedMovesTheFilterAndTheNameStaysAsTyped) {
    const auto name = ask([](QFileDialog& dialog) {
        press({"ctrl+a"});
        type("spring.svg");
        EXPECT_EQ(filters_of(dialog).currentText(), QStringLiteral("SVG Files (*.svg)"));
        EXPECT_EQ(name_of(dialog).text(), QStringLiteral("spring.svg"));
        press({"BackSpace", "BackSpace", "BackSpace"});
        type("png");
        EXPECT_EQ(filters_of(dialog).currentText(), QStringLiteral("PNG Files (*.png)"));
        press({"Return"});
    });
    ASSERT_TRUE(name);
    EXPECT_EQ(name->file, user_ / "spring.png");
    EXPECT_EQ(name->form, PlotForm::Png);
}

TEST_F(PlotSaveDialogOnScreen, ANameWithoutAnEndingGetsThatOfTheFilter) {
    const auto name = ask([](QFileDialog& dialog) {
        filters_of(dialog).setFocus();
        press({"Up", "Up"});
        name_of(dialog).setFocus();
        press({"ctrl+a"});
        type("spring");
        EXPECT_EQ(filters_of(dialog).currentText(), QStringLiteral("Bitmap Files (*.bmp)"));
        press({"Return"});
    });
    ASSERT_TRUE(name);
    EXPECT_EQ(name->file, user_ / "spring.bmp");
    EXPECT_EQ(name->form, PlotForm::Bitmap);
}

TEST_F(PlotSaveDialogOnScreen, EscapeSavesNothing) {
    EXPECT_FALSE(ask([](QFileDialog&) { press({"Escape"}); }));
    EXPECT_EQ(modal_windows_seen_, 1);
}

}  // namespace
}  // namespace nivora
