// What window tests rely on: an unexpected window is reported, and so is an expected one that does not open.
#include "tests/support/expected_windows.h"

#include <gmock/gmock.h>

#include <QDialog>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ExpectedWindowsTest : public testing::Test {
protected:
    static void open(const char* name) {
        QDialog dialog;
        dialog.setObjectName(QString::fromUtf8(name));
        dialog.exec();
    }

    ExpectedWindows windows_;
};

TEST_F(ExpectedWindowsTest, EachWindowIsHandledInItsTurn) {
    std::vector<std::string> seen;
    const auto note = [&seen](QWidget& window) {
        seen.push_back(window.objectName().toStdString());
        window.close();
    };
    windows_.then("first", note).then("second", note);
    EXPECT_EQ(windows_.left(), 2U);
    open("first");
    open("second");
    EXPECT_THAT(seen, ElementsAre("first", "second"));
    EXPECT_EQ(windows_.left(), 0U);
    EXPECT_THAT(windows_.complaints(), IsEmpty());
}

TEST_F(ExpectedWindowsTest, AWindowWithinAnotherIsHandledFirst) {
    std::vector<std::string> ended;
    windows_
        .then("outer",
              [&](QWidget& window) {
                  open("inner");
                  ended.emplace_back("outer");
                  window.close();
              })
        .then("inner", [&](QWidget& window) {
            ended.emplace_back("inner");
            window.close();
        });
    open("outer");
    EXPECT_THAT(ended, ElementsAre("inner", "outer"));
    EXPECT_THAT(windows_.complaints(), IsEmpty());
}

TEST_F(ExpectedWindowsTest, AnUnexpectedWindowIsReportedAndClosed) {
    open("surprise");
    EXPECT_THAT(windows_.complaints(), ElementsAre("not expected: surprise"));
}

TEST_F(ExpectedWindowsTest, AWindowOutOfTurnLeavesTheExpectedOneOpen) {
    windows_.then("first", [](QWidget& window) { window.close(); });
    open("second");
    EXPECT_THAT(windows_.complaints(), ElementsAre("not expected: second"));
    EXPECT_EQ(windows_.left(), 1U);
}

TEST_F(ExpectedWindowsTest, AWindowThatStaysOpenIsReportedAndClosed) {
    windows_.then("lazy", [](QWidget&) {});
    open("lazy");
    EXPECT_THAT(windows_.complaints(), ElementsAre("still open: lazy"));
}

TEST_F(ExpectedWindowsTest, AMissingElementIsReported) {
    windows_.then("poor", [](QWidget& window) {
        window.close();
        throw std::logic_error("there is no button");
    });
    open("poor");
    EXPECT_THAT(windows_.complaints(), ElementsAre("there is no button"));
}

TEST_F(ExpectedWindowsTest, AWindowThatIsNotModalMayOpen) {
    QWidget window;
    window.show();
    QTest::qWait(1);
    EXPECT_TRUE(window.isVisible());
    EXPECT_THAT(windows_.complaints(), IsEmpty());
}

}  // namespace
}  // namespace nivora
