#include "paint/plot_picture.h"

#include "paint/image_surface.h"
#include "plots/draw_head.h"
#include "tests/paint/paint_fixture.h"

#include <QImageReader>
#include <QPainter>
#include <QXmlStreamReader>
#include <cmath>
#include <fstream>

namespace nivora {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::HasSubstr;

constexpr std::array k_forms{PictureForm::Png, PictureForm::Svg, PictureForm::Pdf, PictureForm::Bmp};

/// Two hydrographs of a year from 1 October 2001 on.
Plot hydrographs() {
    Plot plot;
    plot.head.title = "Runoff (Measured vs Computed)";
    plot.head.subtitle = "/basins/alder.mdb (wy2002)";
    plot.head.period = PeriodLine::ToDayBefore;
    plot.head.scenario_line = "wy2002";
    plot.head.run_kind = "Year round Simulation";
    plot.y_label = " (m³/s)";
    plot.frame = {37165.0F, 37530.0F, 0.0F, 60.0F, 1.0F, std::nullopt};
    for (int line = 1; line <= 2; ++line) {
        PlotCurve curve;
        curve.name = line == 1 ? "Measured Runoff" : "Computed Runoff";
        curve.line = line;
        for (int day = 0; day < 365; ++day) {
            const double flow = 30.0 - (20.0 + 3.0 * line) * std::cos(day / 58.0);
            curve.points.push_back({37165.0F + static_cast<float>(day), static_cast<float>(flow)});
        }
        plot.legend.push_back(
            {.text = curve.name, .line = line, .curve = static_cast<std::size_t>(line - 1)});
        plot.curves.push_back(std::move(curve));
    }
    return plot;
}

DrawOptions with_legend() { return {.now = 46000.5, .legend = true}; }

QImage read_back(const QByteArray& bytes, const char* format) { return QImage::fromData(bytes, format); }

/// The texts of an SVG file in their order.
std::vector<std::string> svg_texts(const QByteArray& bytes) {
    std::vector<std::string> texts;
    QXmlStreamReader reader(bytes);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QStringLiteral("text"))
            texts.push_back(
                reader.readElementText(QXmlStreamReader::IncludeChildElements).trimmed().toStdString());
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return texts;
}

class PlotPicture : public PaintTest {
protected:
    void write(const QByteArray& bytes) const {
        std::ofstream{file_, std::ios::binary}.write(bytes.constData(), bytes.size());
    }
};

TEST(SmallPlotPicture, HasItsHeadAboveTheFrame) {
    for (const SurfaceSize size : {SurfaceSize{400.0, 250.0}, {700.0, 420.0}, {800.0, 500.0}}) {
        QImage image{static_cast<int>(size.width), static_cast<int>(size.height), QImage::Format_RGB32};
        QPainter painter{&image};
        const PaintedSurface surface{painter, size};
        const std::vector<PlacedText> head = head_texts(surface, hydrographs(), 46000.5);
        EXPECT_EQ(head.size(), 6U);
        for (const PlacedText& text : head) {
            const double bottom = text.box.top + surface.text_size(text.text, text.font).height;
            EXPECT_LT(bottom, k_frame_top * size.height) << text.text << " at " << size.width;
        }
    }
}

TEST(PictureForm, IsThatOfTheEnding) {
    EXPECT_EQ(picture_form(".png"), PictureForm::Png);
    EXPECT_EQ(picture_form("svg"), PictureForm::Svg);
    EXPECT_EQ(picture_form(".PDF"), PictureForm::Pdf);
    EXPECT_EQ(picture_form(".Bmp"), PictureForm::Bmp);
    for (const char* other : {"", ".", ".jpg", ".pngg", "..png", ".txt"})
        EXPECT_FALSE(picture_form(other)) << other;
}

TEST_F(PlotPicture, TheSurfaceHas96PointsAnInch) {
    const SurfaceSize half = surface_size({.width = 3200, .height = 1800, .dpi = 192.0});
    EXPECT_DOUBLE_EQ(half.width, 1600.0);
    EXPECT_DOUBLE_EQ(half.height, 900.0);
}

TEST_F(PlotPicture, ImagesHaveTheirPixelsAndTellTheirResolution) {
    for (const double dpi : {72.0, 96.0, 192.0}) {
        const PictureSize size{.width = 800, .height = 500, .dpi = dpi};
        for (const auto& [form, name] :
             {std::pair{PictureForm::Png, "PNG"}, std::pair{PictureForm::Bmp, "BMP"}}) {
            const QImage image = read_back(plot_picture(hydrographs(), with_legend(), size, form), name);
            ASSERT_EQ(image.size(), QSize(800, 500)) << name;
            EXPECT_NEAR(image.dotsPerMeterX() * 0.0254, dpi, 0.02) << name;
            EXPECT_NEAR(image.dotsPerMeterY() * 0.0254, dpi, 0.02) << name;
        }
    }
}

TEST_F(PlotPicture, PngAndBitmapHoldTheImage) {
    const PictureSize size{.width = 640, .height = 400};
    const QImage image = plot_image(hydrographs(), with_legend(), size);
    EXPECT_EQ(image.pixel(0, 0), qRgb(255, 255, 255));
    for (const auto& [form, name] :
         {std::pair{PictureForm::Png, "PNG"}, std::pair{PictureForm::Bmp, "BMP"}}) {
        const QImage read = read_back(plot_picture(hydrographs(), with_legend(), size, form), name);
        EXPECT_EQ(read.convertToFormat(QImage::Format_RGB32), image.convertToFormat(QImage::Format_RGB32))
            << name;
    }
}

TEST_F(PlotPicture, BothCurvesAreSeenInTheirColours) {
    const QImage image = plot_image(hydrographs(), {}, {.width = 800, .height = 500});
    int red = 0;
    int green = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qRed(pixel) > qGreen(pixel) + 60) ++red;
            if (qGreen(pixel) > qRed(pixel) + 60) ++green;
        }
    }
    EXPECT_GT(red, 500);
    EXPECT_GT(green, 300);
}

TEST_F(PlotPicture, APdfIsOnePageOfThePicturesSizeWithItsTexts) {
    write(plot_picture(hydrographs(), with_legend(), {.width = 1600, .height = 900}, PictureForm::Pdf));
    EXPECT_EQ(page_count(), 1U);
    EXPECT_THAT(info("Page size"), HasSubstr("1200 x 675 pts"));
    EXPECT_EQ(info("Title"), "Runoff (Measured vs Computed)");
    const std::string text = output_of("pdftotext -raw " + quoted() + " -");
    for (const char* expected :
         {"Runoff (Measured vs Computed)", "/basins/alder.mdb (wy2002)", "10/01/2001 to 09/30/2002", "(m³/s)",
          "Year round Simulation", "Measured Runoff"})
        EXPECT_THAT(text, HasSubstr(expected));
    for (const FoundWord& word : words()) {
        EXPECT_GE(word.left, 0.0) << word.text;
        EXPECT_LE(word.right, 1200.0) << word.text;
        EXPECT_GE(word.top, -2.0) << word.text;
        EXPECT_LE(word.bottom, 677.0) << word.text;
    }
}

TEST_F(PlotPicture, APdfOfTwiceTheResolutionIsHalfAsLarge) {
    const PictureSize size{.width = 1600, .height = 960, .dpi = 192.0};
    write(plot_picture(hydrographs(), with_legend(), size, PictureForm::Pdf));
    EXPECT_THAT(info("Page size"), HasSubstr("600 x 360 pts"));
}

TEST_F(PlotPicture, ThePdfHoldsItsFonts) {
    write(plot_picture(hydrographs(), with_legend(), {}, PictureForm::Pdf));
    std::istringstream fonts{output_of("pdffonts " + quoted())};
    int listed = 0;
    for (std::string line; std::getline(fonts, line);) {
        if (line.starts_with("name") || line.starts_with("---")) continue;
        ++listed;
        EXPECT_THAT(line, AnyOf(HasSubstr(" yes yes yes "), HasSubstr(" yes no  yes ")));
    }
    EXPECT_GE(listed, 1);
}

TEST_F(PlotPicture, AnSvgHasItsSizeAndItsTexts) {
    const QByteArray bytes = plot_picture(hydrographs(), with_legend(),
                                          {.width = 1920, .height = 960, .dpi = 192.0}, PictureForm::Svg);
    // 10 by 5 inches, drawn on 960 by 480 points.
    EXPECT_THAT(bytes.toStdString(),
                AllOf(HasSubstr("width=\"254mm\" height=\"127mm\""), HasSubstr("viewBox=\"0 0 960 480\"")));
    EXPECT_THAT(svg_texts(bytes),
                AllOf(Contains("Runoff (Measured vs Computed)"), Contains("/basins/alder.mdb (wy2002)"),
                      Contains("10/01/2001 to 09/30/2002"), Contains("(m³/s)"), Contains("Measured Runoff")));
}

TEST_F(PlotPicture, TextsWithMarkUpStayTexts) {
    Plot plot = hydrographs();
    plot.head.title = "Runoff <b> & \"more\"";
    const QByteArray bytes = plot_picture(plot, {}, {}, PictureForm::Svg);
    EXPECT_THAT(svg_texts(bytes), Contains("Runoff <b> & \"more\""));
    EXPECT_THAT(bytes.toStdString(), HasSubstr("<title>Runoff &lt;b&gt; &amp; &quot;more&quot;</title>"));
}

// A bar filled with lines needs neither a pattern nor a clip, which many readers of SVG lack.
TEST_F(PlotPicture, HatchesOfAnSvgAreLines) {
    Plot plot = hydrographs();
    plot.number = PlotNumber::WaterEquivalent;
    plot.bars = {{.name = "Rain", .line = 1, .x1 = 37200.0F, .x2 = 37300.0F, .bottom = 10.0F, .top = 50.0F}};
    DrawOptions options;
    const auto plain = plot_picture(plot, options, {}, PictureForm::Svg);
    options.lines[0].fill = 4;
    const auto hatched = plot_picture(plot, options, {}, PictureForm::Svg);
    EXPECT_GT(hatched.size(), plain.size() + 1000);
    EXPECT_FALSE(hatched.contains("<pattern"));
    EXPECT_FALSE(hatched.contains("<image"));
}

TEST_F(PlotPicture, TheSmallestPicturesAreMade) {
    for (const PictureSize size :
         {PictureSize{1, 1, 96.0}, PictureSize{1, 300, 96.0}, PictureSize{300, 1, 192.0},
          PictureSize{40, 30, 96.0}, PictureSize{1, 1, 2400.0}, PictureSize{1, 1, 10.0}}) {
        const QImage image = plot_image(hydrographs(), with_legend(), size);
        EXPECT_EQ(image.size(), QSize(size.width, size.height));
        for (const PictureForm form : k_forms)
            EXPECT_FALSE(plot_picture(hydrographs(), {}, size, form).isEmpty());
    }
}

TEST_F(PlotPicture, TheWidestPictureIsMade) {
    const PictureSize size{.width = k_most_pixels, .height = 200};
    EXPECT_EQ(plot_image(hydrographs(), with_legend(), size).size(), QSize(k_most_pixels, 200));
    for (const PictureForm form : k_forms)
        EXPECT_FALSE(plot_picture(hydrographs(), {}, size, form).isEmpty());
}

TEST_F(PlotPicture, SizesBeyondTheLimitsAreRefused) {
    for (const PictureSize size :
         {PictureSize{0, 500, 96.0}, PictureSize{800, 0, 96.0}, PictureSize{-800, 500, 96.0},
          PictureSize{k_most_pixels + 1, 500, 96.0}, PictureSize{800, 100'000, 96.0},
          PictureSize{800, 500, 0.0}, PictureSize{800, 500, -96.0}, PictureSize{800, 500, 9.9},
          PictureSize{800, 500, 2401.0}, PictureSize{800, 500, NAN}, PictureSize{800, 500, INFINITY}}) {
        EXPECT_FALSE(is_possible(size)) << size.width << " x " << size.height << ", " << size.dpi;
        EXPECT_TRUE(plot_image(hydrographs(), {}, size).isNull());
        for (const PictureForm form : k_forms)
            EXPECT_TRUE(plot_picture(hydrographs(), {}, size, form).isEmpty());
    }
    EXPECT_TRUE(is_possible({}));
}

TEST_F(PlotPicture, TheSamePlotGivesTheSamePixels) {
    const PictureSize size{.width = 640, .height = 400, .dpi = 120.0};
    EXPECT_EQ(plot_image(hydrographs(), with_legend(), size), plot_image(hydrographs(), with_legend(), size));
}

}  // namespace
}  // namespace nivora
