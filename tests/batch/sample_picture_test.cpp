// The picture of the bands of a sample.
#include "tests/batch/study_call.h"
#include "tests/support/full_disk.h"

#include <gmock/gmock.h>

#include <QImage>

namespace nivora {
namespace {

using testing::HasSubstr;

class SamplePictureTest : public StudyFolder {
protected:
    [[nodiscard]] BatchResult sample(const std::string& out, std::vector<std::string> more) const {
        more.insert(more.end(), {"--free", "Degree Day Factors:multiply:0.7..1.4:All", "--runs", "20",
                                 "--out", path(out)});
        return study("sample", more);
    }
    void expect_sampled(const BatchResult& result) const { EXPECT_EQ(result.status, 0) << result.err; }
    [[nodiscard]] QImage image(const std::string& name) const {
        return QImage{QString::fromStdString(path(name))};
    }
};

TEST_F(SamplePictureTest, IsDrawnInGreyWithTheShareOfMeasuredDays) {
    const BatchResult result =
        sample("runs.csv", {"--bands", path("bands.csv"), "--picture", path("bands.png")});
    expect_sampled(result);
    EXPECT_TRUE(has("bands.csv"));
    const QImage picture = image("bands.png");
    ASSERT_EQ(picture.size(), QSize(1600, 900));
    int grey = 0;
    int black = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            if (pixel == qRgb(0xDC, 0xDC, 0xDC) || pixel == qRgb(0xA8, 0xA8, 0xA8)) ++grey;
            if (pixel == qRgb(0, 0, 0)) ++black;
        }
    }
    EXPECT_GT(grey, 5000);
    EXPECT_GT(black, 2000);

    expect_sampled(sample("runs.csv", {"--resume", "--picture", path("bands.svg")}));
    const std::string line = result.out.substr(result.out.find("Bands of 20 runs"));
    EXPECT_THAT(content("bands.svg"), HasSubstr(line.substr(0, line.find('\n'))));
    EXPECT_THAT(content("bands.svg"), HasSubstr("Ellervane at Corben Bridge, simulation ellervane-1997-98"));
}

TEST_F(SamplePictureTest, HasTheSizeAndResolutionThatAreAskedFor) {
    expect_sampled(sample("runs.csv", {"--picture", path("a.png"), "--dpi", "192"}));
    EXPECT_EQ(image("a.png").size(), QSize(3200, 1800));
    EXPECT_NEAR(image("a.png").dotsPerMeterX(), 192 / 0.0254, 1.0);
    expect_sampled(sample("runs.csv", {"--resume", "--picture", path("b.png"), "--size", "640x360"}));
    EXPECT_EQ(image("b.png").size(), QSize(640, 360));
    expect_sampled(sample("two.csv", {"--with", basin() + ":ellervane-1996", "--picture", path("two.png")}));
    EXPECT_EQ(image("two.png").size(), QSize(1600, 980));
    expect_refused(sample("x.csv", {"--picture", path("b.jpg")}), "does not end in .png", 2);
    expect_refused(sample("x.csv", {"--picture", path("b.png"), "--size", "0x9"}), "is not a size", 2);
    expect_refused(sample("x.csv", {"--picture", path("b.png"), "--dpi", "nan"}), "is not a number", 2);
    expect_refused(sample("x.csv", {"--dpi", "96"}), "--picture", 2);
    EXPECT_FALSE(has("x.csv"));
}

TEST_F(SamplePictureTest, IsTheSameForPartsAndAfterAStop) {
    expect_sampled(sample("whole.csv", {"--picture", path("whole.png")}));
    for (const char* part : {"1", "2"})
        expect_sampled(sample(std::string{"part"} + part, {"--share", std::string{part} + "/2"}));
    expect_refused(sample("x.csv", {"--share", "1/2", "--picture", path("x.png")}),
                   "A part of a sample has no bands");
    EXPECT_EQ(batch({"gather", path("part1"), path("part2"), "--out", path("all.csv")}).status, 0);
    expect_sampled(sample("all.csv", {"--resume", "--picture", path("all.png")}));
    EXPECT_EQ(content("all.png"), content("whole.png"));
    EXPECT_FALSE(has("x.png"));
}

TEST_F(SamplePictureTest, ADayWithoutMeasuredDischargeIsLeftOut) {
    BasinDatabase{basin(), Access::ReadWrite}.execute(
        "UPDATE PhysicalData SET Runoff = NULL WHERE Date > 35800 AND Date < 35900");
    const BatchResult result = sample("runs.csv", {"--picture", path("gap.svg")});
    expect_sampled(result);
    EXPECT_THAT(result.out, HasSubstr("of 266 measured days"));
    EXPECT_THAT(content("gap.svg"), HasSubstr("of 266 measured days"));
}

TEST_F(SamplePictureTest, NamesOfAnyKindDoNotHarmIt) {
    BasinDatabase{basin(), Access::ReadWrite}.execute(
        "UPDATE BasinDescription SET BasinName = '<script>&\"' || char(1) || char(10) || 'x'");
    expect_sampled(sample("runs.csv", {"--picture", path("name.svg")}));
    const std::string svg = content("name.svg");
    EXPECT_EQ(svg.find("<script>"), std::string::npos);
    EXPECT_EQ(svg.find('\x01'), std::string::npos);
    EXPECT_THAT(svg, HasSubstr("&lt;script&gt;"));
}

TEST_F(SamplePictureTest, ASimulationWithCommasInItsNameIsOneFieldOfTheBands) {
    printed({"simulations", basin(), "--duplicate", "ellervane-1996", "--as", "a,b \"c\""});
    expect_sampled(sample("runs.csv", {"--with", basin() + ":a,b \"c\"", "--bands", path("bands.csv"),
                                       "--picture", path("names.svg")}));
    const std::string bands = content("bands.csv");
    EXPECT_THAT(bands, HasSubstr("\nellervane-1997-98,1997-10-01,"));
    EXPECT_THAT(bands, HasSubstr("\n\"a,b \"\"c\"\"\",1996-01-01,"));
    EXPECT_THAT(content("names.svg"), HasSubstr("a,b &quot;c&quot;: 01/01/1996 to 12/31/1996"));
}

TEST_F(SamplePictureTest, NeverReplacesABasinOrAnotherOutput) {
    const std::string before = content("sample.mdb");
    std::filesystem::create_symlink(basin(), path("basin.png"));
    expect_refused(sample("runs.csv", {"--picture", path("basin.png")}), "basin.png");
    std::filesystem::copy_file(basin(), path("other.png"));
    expect_refused(sample("runs.csv", {"--picture", path("other.png")}), "it is a basin");
    EXPECT_EQ(content("sample.mdb"), before);
    EXPECT_EQ(content("other.png"), before);
    expect_refused(sample("runs.png", {"--picture", path("runs.png")}), "Two outputs have the same name");
    expect_refused(sample("runs.csv", {"--bands", path("b.png"), "--picture", path("b.png")}),
                   "Two outputs have the same name");
    // Before the runs, which may take hours.
    expect_refused(sample("runs.csv", {"--picture", path("nowhere/b.png")}), "nowhere");
    EXPECT_FALSE(has("runs.csv"));
}

TEST_F(SamplePictureTest, AFullDiskLeavesNeitherBandsNorPicture) {
    expect_sampled(sample("runs.csv", {}));
    const std::string runs = content("runs.csv");
    BatchResult result;
    {
        const FullDisk full{20'000};
        result = sample("runs.csv", {"--resume", "--bands", path("b.csv"), "--picture", path("b.png")});
    }
    expect_refused(result, "full");
    EXPECT_FALSE(has("b.csv"));
    EXPECT_FALSE(has("b.png"));
    EXPECT_EQ(content("runs.csv"), runs);
}

}  // namespace
}  // namespace nivora
