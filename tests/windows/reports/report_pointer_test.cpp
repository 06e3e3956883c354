// The pointer of the windows of reports: busy while they make reports, normal when they wait for the user.

#include "tests/windows/reports/report_window_fixture.h"

#include <sqlite3.h>

#include <QCheckBox>
#include <QRadioButton>

namespace nivora {
namespace {

using testing::AllOf;
using testing::Each;
using testing::IsEmpty;
using testing::Not;

bool is_busy() {
    const QCursor* pointer = QApplication::overrideCursor();
    return pointer != nullptr && pointer->shape() == Qt::WaitCursor;
}

/// Notes, whenever a basin is opened, whether the pointer is busy. Reports are read from the basin, so that
/// it looks in the middle of their making.
class PointerAtReading {
public:
    PointerAtReading() {
        seen().clear();
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(&look));
    }
    PointerAtReading(const PointerAtReading&) = delete;
    PointerAtReading& operator=(const PointerAtReading&) = delete;
    ~PointerAtReading() { sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&look)); }

    static std::vector<bool>& seen() {
        static std::vector<bool> busy;
        return busy;
    }

private:
    static int look(sqlite3* /*basin*/, const char** /*error*/, const void* /*functions*/) {
        seen().push_back(is_busy());
        return SQLITE_OK;
    }
};

class ReportPointerTest : public ReportWindowTest {
protected:
    static void expect_busy_while_reading() {
        EXPECT_THAT(PointerAtReading::seen(), AllOf(Not(IsEmpty()), Each(true)));
    }
    void expect_normal_in_messages() {
        dialogs_.while_shown = [this] {
            ++messages_seen_;
            EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        };
    }

    int messages_seen_ = 0;
};

TEST_F(ReportPointerTest, TheOutputDefinitionIsBusyUntilTheDisplayOpens) {
    frmPrint window(context());
    window.show();
    in<QCheckBox>(window, QStringLiteral("Check1(0)"))->click();
    in<QRadioButton>(window, QStringLiteral("Option1(1)"))->click();
    look_at_modal("frmFileDisp", [](QWidget*) { EXPECT_EQ(QApplication::overrideCursor(), nullptr); });
    const PointerAtReading reading;
    button(window, 1)->click();
    EXPECT_TRUE(seen_);
    expect_busy_while_reading();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ReportPointerTest, TheOutputDefinitionIsBusyUntilItsMessage) {
    frmPrint window(context());
    window.show();
    in<QCheckBox>(window, QStringLiteral("Check1(4)"))->click();
    expect_normal_in_messages();
    const PointerAtReading reading;
    button(window, 1)->click();
    EXPECT_EQ(messages_seen_, 1);
    expect_busy_while_reading();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ReportPointerTest, TheDisplayIsBusyUntilItShowsTheReport) {
    frmFileDisp display(context());
    display.show();
    const PointerAtReading reading;
    in<QAction>(display, QStringLiteral("mnuRptItm(0)"))->trigger();
    expect_busy_while_reading();
    EXPECT_EQ(label(display, "lblWindow"), "Current data description");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ReportPointerTest, TheDisplayIsBusyUntilItsMessage) {
    frmFileDisp display(context());
    display.show();
    expect_normal_in_messages();
    const PointerAtReading reading;
    in<QAction>(display, QStringLiteral("mnuRptItm(4)"))->trigger();
    EXPECT_EQ(messages_seen_, 1);
    expect_busy_while_reading();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

}  // namespace
}  // namespace nivora
