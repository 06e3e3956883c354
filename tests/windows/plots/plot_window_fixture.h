// The plot window over a small basin of two zones that was run.
#pragma once

#include "base/scripted_dialogs.h"
#include "tests/support/plot_basin.h"
#include "tests/support/recorded_printers.h"
#include "tests/support/temporary_folder.h"
#include "widgets/colours.h"
#include "widgets/qt_text.h"
#include "widgets/quick_help.h"
#include "windows/plots/frmNVRPlot.h"
#include "windows/plots/plot_canvas.h"

#include <gmock/gmock.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMouseEvent>
#include <QStandardItemModel>
#include <QTest>
#include <QToolButton>
#include <filesystem>
#include <memory>

namespace nivora {

/// Colours that a test answers.
class AnsweredColours : public Colours {
public:
    std::int32_t Choose_Color(QWidget* /*owner*/, std::int32_t /*first*/) override { return answer; }
    std::int32_t answer = k_cancelled;
};

/// Eight days from October 1, 2001, or more, on which the snow cover begins anew: it falls from 1 by 1/16 a
/// day and is 1/16 lower in zone B; the measured discharge is 10 on the first day and grows by 10 a day, the
/// computed one is half of it.
class PlotWindowTest : public testing::Test {
protected:
    static constexpr PlotNumber k_snow_cover = PlotNumber::SnowCover;

    explicit PlotWindowTest(int zones = 2, int days = 8) : small_(zones, days) {
        small_.write_variables([](PhysicalRow& row, int zone, int day) {
            row.sca = 1.0F - 0.0625F * static_cast<float>((day + zone - 2) % 16);
            row.precip = static_cast<float>(day);
        });
        small_.write_results([](SimResults& t, std::size_t row, int, int day) {
            t.ActualQ[row] = 10.0F * static_cast<float>(day);
            t.DailyQ[row] = 5.0 * day;
        });
        std::filesystem::copy_file(std::filesystem::path{NIVORA_SOURCE_DIR} / "data/quickhelp.txt",
                                   folder_ / "quickhelp.txt");
        session_.basin = small_.basin;
        session_.run = small_.run;
        session_.file_names.begin_in(folder_.path());
        window_ = std::make_unique<frmNVRPlot>(
            WindowContext{session_, quick_help_, folder_.path(), printing_}, colours_, screen_);
    }
    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    void open() {
        window_->open();
        QTest::qWait(1);
    }

    template <typename Element = QWidget>
    Element* in(const char* name) {
        auto* element = window_->findChild<Element*>(QString::fromUtf8(name));
        EXPECT_NE(element, nullptr) << name;
        return element;
    }
    QToolButton* button(const char* name) { return in<QToolButton>(name); }
    QComboBox* plots() { return in<QComboBox>("PlotList"); }
    QComboBox* zones() { return in<QComboBox>("ZoneList"); }
    std::string box(const char* name) { return from_qt(in<QLineEdit>(name)->text()); }
    std::string label(const char* name) { return from_qt(in<QLabel>(name)->text()); }

    static bool is_enabled(const QComboBox& list, int number) {
        return qobject_cast<QStandardItemModel*>(list.model())->item(number - 1)->isEnabled();
    }
    /// The numbers of the enabled entries of a list.
    static std::vector<int> enabled(const QComboBox& list) {
        std::vector<int> numbers;
        for (int number = 1; number <= list.count(); ++number) {
            if (is_enabled(list, number)) numbers.push_back(number);
        }
        return numbers;
    }
    static void choose(QComboBox& list, int number) {
        list.setCurrentIndex(number - 1);
        emit list.activated(number - 1);
    }
    void pick(PlotNumber plot) { choose(*plots(), number_of(plot)); }
    void pick_zone(int zone) { choose(*zones(), zone); }
    void type_over(const char* name, const char* text) {
        auto* typed = in<QLineEdit>(name);
        typed->setFocus();
        typed->selectAll();
        QTest::keyClicks(typed, QString::fromUtf8(text));
    }
    PlotCanvas& canvas() { return *in<PlotCanvas>("Plotframe"); }
    /// A place on the surface of a day, from 1, and a value.
    QPoint place(double day, double y) {
        const World world{lay_out_axes(*screen_.plot(), GridMode::None).transform,
                          {static_cast<double>(canvas().width()), static_cast<double>(canvas().height())}};
        const SurfacePoint at = world.to_surface(static_cast<double>(small_.day(1)) + day - 1.0, y);
        return {static_cast<int>(at.x + 0.5), static_cast<int>(at.y + 0.5)};
    }
    void drag(QPoint from, QPoint to) {
        QTest::mousePress(&canvas(), Qt::LeftButton, Qt::NoModifier, from);
        QTest::mouseMove(&canvas(), (from + to) / 2);
        QTest::mouseMove(&canvas(), to);
        QTest::mouseRelease(&canvas(), Qt::LeftButton, Qt::NoModifier, to);
    }

    PlotBasin small_;
    TemporaryFolder folder_;
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    QuickHelp quick_help_;
    RecordedPrinters printers_;
    Printing printing_{session_, printers_};
    AnsweredColours colours_;
    PlotScreen screen_;
    std::unique_ptr<frmNVRPlot> window_;
};

}  // namespace nivora
