// The page of a device as the layout of pages sees it.

#include "tests/paint/paint_fixture.h"

#include <QBuffer>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <limits>

namespace nivora {
namespace {

class PaintedDeviceTest : public PaintTest {
protected:
    PaintedDeviceTest() { nowhere_.open(QIODevice::WriteOnly); }

    QBuffer nowhere_;
    QPdfWriter writer_{&nowhere_};
};

// 18 points are 360 twips, half an inch is 720.
TEST_F(PaintedDeviceTest, AMarginThatTheDeviceCannotPrintIsRaised) {
    const QMarginsF least(18.0, 18.0, 18.0, 18.0);
    ASSERT_TRUE(writer_.setPageLayout(
        QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, least, QPageLayout::Point, least)));
    PaintedDevice device{writer_};
    ASSERT_TRUE(device.set_margins({0.1F, 0.5F, 0.1F, 0.25F}));
    EXPECT_EQ(device.page().left, 360);
    EXPECT_EQ(device.page().top, 720);
    EXPECT_EQ(device.page().right, 360);
    EXPECT_EQ(device.page().bottom, 360);
}

TEST_F(PaintedDeviceTest, AMarginOfZeroIsOneInch) {
    PaintedDevice device{writer_};
    ASSERT_TRUE(device.set_margins({0.0F, 0.5F, 0.0F, 0.5F}));
    EXPECT_EQ(device.page().left, 1440);
    EXPECT_EQ(device.page().top, 720);
    EXPECT_EQ(device.page().right, 1440);
}

TEST_F(PaintedDeviceTest, AMarginThatIsNoLengthIsRefusedAndTheOldOnesStay) {
    PaintedDevice device{writer_};
    ASSERT_TRUE(device.set_margins({0.5F, 0.5F, 0.5F, 0.5F}));
    EXPECT_FALSE(device.set_margins({-0.1F, 1.0F, 1.0F, 1.0F}));
    EXPECT_FALSE(device.set_margins({1.0F, std::numeric_limits<float>::quiet_NaN(), 1.0F, 1.0F}));
    EXPECT_FALSE(device.set_margins({1.0F, 1.0F, std::numeric_limits<float>::infinity(), 1.0F}));
    EXPECT_EQ(device.page().left, 720);
    EXPECT_EQ(device.page().top, 720);
}

// A5 is 420 by 595 points.
TEST_F(PaintedDeviceTest, PaperAndOrientationGiveThePage) {
    PaintedDevice device{writer_};
    ASSERT_TRUE(device.set_orientation(2));
    ASSERT_TRUE(device.set_page_size("A5"));
    EXPECT_NEAR(device.page().paper_width, 595 * 20, 20);
    EXPECT_NEAR(device.page().paper_height, 420 * 20, 20);
    ASSERT_TRUE(device.set_orientation(1));
    EXPECT_NEAR(device.page().paper_width, 420 * 20, 20);
    ASSERT_TRUE(device.set_page_size("")) << "the paper of the device stays";
    EXPECT_NEAR(device.page().paper_width, 420 * 20, 20);
}

TEST_F(PaintedDeviceTest, TwipsAreMeasuredInTheDotsOfTheDevice) {
    writer_.setResolution(720);
    const PaintedDevice device{writer_};
    EXPECT_DOUBLE_EQ(device.across(), 0.5);
    EXPECT_DOUBLE_EQ(device.down(), 0.5);
}

}  // namespace
}  // namespace nivora
