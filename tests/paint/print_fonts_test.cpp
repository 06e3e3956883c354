#include "paint/print_fonts.h"

#include "tests/paint/paint_fixture.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QTextLayout>

namespace nivora {
namespace {

class PrintFonts : public PaintTest {
protected:
    /// The number of glyphs of a text in a font.
    static qsizetype glyphs(const QString& text, const QFont& font) {
        QTextLayout layout(text, font);
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        qsizetype count = 0;
        for (const QGlyphRun& run : layout.glyphRuns()) count += run.glyphIndexes().size();
        return count;
    }
};

// A PDF reader does not find "Runoff" if the font joins "ff" to one glyph.
TEST_F(PrintFonts, EveryLetterIsAGlyphOfItsOwn) {
    for (const std::string family : {"MS Sans Serif", "Courier New", "DejaVu Sans"}) {
        for (const bool bold : {false, true}) {
            const QFont font = print_font({family, 8.25, family == "Courier New"}, bold);
            EXPECT_EQ(glyphs(QStringLiteral("Runoff"), font), 6) << family;
            EXPECT_EQ(glyphs(QStringLiteral("Coefficient"), font), 11) << family;
        }
    }
}

TEST_F(PrintFonts, AMissingFontIsReplacedByAFixedPitchOneWithOutlines) {
    for (const char* missing : {"Courier New", "Courier", "No Such Font", ""}) {
        const QString family = fixed_pitch_family(QString::fromUtf8(missing));
        ASSERT_FALSE(family.isEmpty()) << missing;
        EXPECT_TRUE(QFontDatabase::isFixedPitch(family)) << missing;
        EXPECT_TRUE(QFontDatabase::isSmoothlyScalable(family)) << missing;
    }
}

TEST_F(PrintFonts, AFixedPitchFontOfTheSystemStandsForItself) {
    const QString family = fixed_pitch_family(QStringLiteral("No Such Font"));
    EXPECT_EQ(fixed_pitch_family(family), family);
}

TEST_F(PrintFonts, AllLettersOfAReportAreOfOneWidth) {
    for (const bool bold : {false, true}) {
        const QFontMetricsF metrics(print_font(report_font(), bold));
        const double width = metrics.horizontalAdvance(QLatin1Char('-'));
        for (const QChar letter : QStringLiteral("iMW.0·²°"))
            EXPECT_DOUBLE_EQ(metrics.horizontalAdvance(letter), width) << static_cast<int>(letter.unicode());
    }
}

TEST_F(PrintFonts, NoLetterIsMovedByTheSpacing) {
    const QFont font = print_font({"MS Sans Serif", 8.25, false}, false);
    QFont plain = font;
    plain.setLetterSpacing(QFont::PercentageSpacing, 0.0);
    EXPECT_DOUBLE_EQ(QFontMetricsF(font).horizontalAdvance(QStringLiteral("Basin")),
                     QFontMetricsF(plain).horizontalAdvance(QStringLiteral("Basin")));
}

}  // namespace
}  // namespace nivora
