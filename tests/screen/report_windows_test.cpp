// The choice of reports and their display on a real screen: focus, stacking, painted texts, keys and mouse.

#include "tests/screen/climate_screen_fixture.h"

#include <QClipboard>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTextEdit>
#include <QWindow>

namespace nivora {
namespace {

class ReportsOnScreenTest : public ClimateOnScreenTest {
protected:
    static QCheckBox* box(QWidget& choice, int report) {
        return in<QCheckBox>(&choice, ("Check1(" + std::to_string(report) + ")").c_str());
    }
    static QPushButton* command(QWidget& choice, int index) {
        return in<QPushButton>(&choice, ("Command1(" + std::to_string(index) + ")").c_str());
    }
    static QPlainTextEdit* text_of(QWidget& display) { return in<QPlainTextEdit>(&display, "RichTextBox1"); }
    static void click_button(const QAbstractButton& button) { click(button, {8, button.height() / 2}); }

    /// Chooses Reports on the menu bar with the mouse, and acts in the window that it opens.
    void choose_reports(const std::function<void(QWidget&)>& act) {
        const int before = modal_windows_seen_;
        in_modal("frmPrint", act);
        const QRect place = window_->menuBar()->actionGeometry(find<QAction>("mnuReports"));
        click(*window_->menuBar(), place.center());
        ASSERT_TRUE(await([&] { return modal_windows_seen_ > before; }));
        EXPECT_TRUE(await([&] { return window_->isActiveWindow(); })) << "the keyboard is back";
    }
    /// Opens the viewer with Alt+V, and acts in it.
    void view(const std::function<void(QWidget&)>& act) {
        const int before = modal_windows_seen_;
        in_modal("frmFileDisp", act);
        press({"alt+v"});
        ASSERT_TRUE(await([&] { return modal_windows_seen_ > before; }));
    }
    void run() {
        choose("mnuRunSimVar(1)");
        QWidget* results = await_window("Results");
        ASSERT_NE(results, nullptr);
        results->close();
        await_active(*window_);
    }
    /// The grey value of the darkest point, which is in the letters of a caption.
    static int darkest(const QImage& image) {
        int least = 255;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) least = std::min(least, qGray(image.pixel(x, y)));
        }
        return least;
    }
    static int darkest_of_caption(const QCheckBox& box) {
        return darkest(picture(box, box.rect().adjusted(box.height() + 4, 0, 0, 0)));
    }
};

TEST_F(ReportsOnScreenTest, AReportIsTickedViewedAndCopied) {
    choose_reports([&](QWidget& choice) {
        EXPECT_TRUE(box(choice, 0)->hasFocus());
        EXPECT_EQ(choice.windowHandle()->transientParent(), window_->windowHandle());
        click_button(*box(choice, 1));
        EXPECT_TRUE(box(choice, 1)->isChecked());
        click_button(*in<QRadioButton>(&choice, "Option1(1)"));
        keep(choice, "output-definition.png");
        view([&](QWidget& display) {
            EXPECT_EQ(display.windowHandle()->transientParent(), choice.windowHandle());
            EXPECT_TRUE(text_of(display)->hasFocus());
            EXPECT_GT(drawn_points(picture(*text_of(display)->viewport())), 2000);
            EXPECT_GT(drawn_points(picture(*in<QLabel>(&display, "lblWindow"))), 50);
            keep(display, "file-display.png");
            press({"alt+e", "c"});
            EXPECT_EQ(QApplication::clipboard()->text(), text_of(display)->toPlainText());
            press({"Escape"});
            EXPECT_FALSE(display.isVisible());
        });
        EXPECT_TRUE(await([&] { return choice.isActiveWindow(); }));
        EXPECT_TRUE(box(choice, 1)->isChecked());
        press({"alt+c"});
        EXPECT_FALSE(choice.isVisible());
    });
    EXPECT_EQ(modal_windows_seen_, 2);
}

TEST_F(ReportsOnScreenTest, TheDisplayOpensInFrontOfTheChoice) {
    choose_reports([&](QWidget& choice) {
        press({"space"});
        click_button(*in<QRadioButton>(&choice, "Option1(1)"));
        view([&](QWidget& display) {
            display.move(choice.pos());
            settle();
            const auto* title = in<QLabel>(&display, "lblWindow");
            EXPECT_GT(drawn_points(picture(*title)), 100);
            EXPECT_EQ(display.windowHandle()->transientParent(), choice.windowHandle());
        });
        press({"Escape"});
        EXPECT_FALSE(choice.isVisible());
    });
}

TEST_F(ReportsOnScreenTest, ReportsOfComputedValuesAreGreyUntilARun) {
    choose_reports([&](QWidget& choice) {
        EXPECT_LT(darkest_of_caption(*box(choice, 4)) + 50, darkest_of_caption(*box(choice, 5)));
        click_button(*box(choice, 5));
        EXPECT_FALSE(box(choice, 5)->isChecked());
        keep(choice, "output-definition-no-run.png");
    });
    run();
    choose_reports([&](QWidget& choice) {
        EXPECT_NEAR(darkest_of_caption(*box(choice, 4)), darkest_of_caption(*box(choice, 5)), 20);
        EXPECT_LT(darkest_of_caption(*box(choice, 7)) + 50, darkest_of_caption(*box(choice, 8)));
        click_button(*box(choice, 5));
        EXPECT_TRUE(box(choice, 5)->isChecked());
    });
}

TEST_F(ReportsOnScreenTest, LettersTickAllViewAndReset) {
    run();
    choose_reports([&](QWidget& choice) {
        press({"alt+p"});  // nothing is ticked
        EXPECT_TRUE(choice.isActiveWindow());
        const QImage before = picture(*command(choice, 2));
        press({"alt+a"});
        for (int report = 0; report < 8; ++report) EXPECT_TRUE(box(choice, report)->isChecked()) << report;
        EXPECT_FALSE(box(choice, 8)->isChecked());
        EXPECT_EQ(command(choice, 2)->text(), QStringLiteral("&Reset"));
        EXPECT_NE(picture(*command(choice, 2)), before);
        click_button(*in<QRadioButton>(&choice, "Option1(1)"));
        view([&](QWidget& display) {
            EXPECT_EQ(in<QLabel>(&display, "lblWindow")->text(), QStringLiteral("Multiple NVR Reports"));
            press({"Next"});
            EXPECT_GT(text_of(display)->verticalScrollBar()->value(), 0);
            press({"ctrl+End"});
            // The range of the bar may leave room for a line below the last one, by the height of the window.
            const QPlainTextEdit* text = text_of(display);
            EXPECT_TRUE(text->textCursor().atEnd());
            EXPECT_TRUE(text->viewport()->rect().contains(text->cursorRect())) << "the last line is cut";
            EXPECT_GE(text->verticalScrollBar()->value(), text->verticalScrollBar()->maximum() - 1);
            EXPECT_GT(drawn_points(picture(*text_of(display)->viewport())), 300);
            keep(display, "file-display-all.png");
            press({"Tab"});
            EXPECT_TRUE(in<QPushButton>(&display, "cmdCancel")->hasFocus());
            press({"Return"});
            EXPECT_FALSE(display.isVisible());
        });
        EXPECT_TRUE(await([&] { return choice.isActiveWindow(); }));
        press({"alt+r"});
        EXPECT_FALSE(box(choice, 0)->isChecked());
        EXPECT_FALSE(command(choice, 1)->isEnabled());
    });
}

TEST_F(ReportsOnScreenTest, ASelectedPartIsCopiedAlone) {
    choose_reports([&](QWidget& choice) {
        press({"space"});
        click_button(*in<QRadioButton>(&choice, "Option1(1)"));
        view([&](QWidget& display) {
            QPlainTextEdit* text = text_of(display);
            press({"Home", "shift+End"});
            const QString selected = text->textCursor().selectedText();
            EXPECT_FALSE(selected.isEmpty());
            press({"alt+e", "c"});
            EXPECT_EQ(QApplication::clipboard()->text(), selected);
            EXPECT_FALSE(text->textCursor().hasSelection());
        });
    });
}

TEST_F(ReportsOnScreenTest, BothWindowsOpenWhereTheyWereLeft) {
    QPoint choice_corner;
    QRect display_frame;
    choose_reports([&](QWidget& choice) {
        choice.move(150, 90);
        press({"space"});
        click_button(*in<QRadioButton>(&choice, "Option1(1)"));
        view([&](QWidget& display) {
            display.resize(600, 420);
            display.move(220, 130);
            settle();
            display_frame = display.frameGeometry();
        });
        settle();
        choice_corner = choice.frameGeometry().topLeft();
    });
    choose_reports([&](QWidget& choice) {
        EXPECT_EQ(choice.frameGeometry().topLeft(), choice_corner);
        press({"space"});
        click_button(*in<QRadioButton>(&choice, "Option1(1)"));
        view([&](QWidget& display) { EXPECT_EQ(display.frameGeometry(), display_frame); });
    });
    EXPECT_EQ(modal_windows_seen_, 4);
}

TEST_F(ReportsOnScreenTest, QuickHelpExplainsAMenuOfTheDisplayWithItsEntries) {
    choose_reports([&](QWidget& choice) {
        press({"space"});
        click_button(*in<QRadioButton>(&choice, "Option1(1)"));
        view([&](QWidget& display) {
            const QString title = in<QLabel>(&display, "lblWindow")->text();
            const auto strip = [&] { return in<QTextEdit>(&display, "lblHelp")->toPlainText(); };
            quick_help_.set_on(true);
            settle();
            press({"alt+r"});
            EXPECT_TRUE(strip().startsWith(QStringLiteral("The list of reports."))) << from_qt(strip());
            press({"Down", "Return"});  // the second entry
            EXPECT_TRUE(strip().startsWith(QStringLiteral("Temperature Values:"))) << from_qt(strip());
            keep(display, "file-display-quickhelp.png");
            press({"Escape"});
            EXPECT_EQ(in<QLabel>(&display, "lblWindow")->text(), title) << "nothing acts";
            quick_help_.set_on(false);
        });
    });
}

TEST_F(ReportsOnScreenTest, AnotherReportIsMadeFromTheMenuOfTheDisplay) {
    run();
    choose_reports([&](QWidget& choice) {
        press({"space"});
        click_button(*in<QRadioButton>(&choice, "Option1(1)"));
        view([&](QWidget& display) {
            press({"alt+r", "Down", "Return"});  // the second entry
            EXPECT_EQ(in<QLabel>(&display, "lblWindow")->text(), QStringLiteral("Temperature Values"));
            press({"alt+r", "p"});
            EXPECT_EQ(in<QLabel>(&display, "lblWindow")->text(), QStringLiteral("Multiple NVR Reports"));
        });
    });
}

}  // namespace
}  // namespace nivora
