#include "paint/print_fonts.h"

#include "tests/paint/paint_fixture.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QTextLayout>

namespace nivora {
namespace {

class PrintFonts : public PaintTest {
protected:
    /// The signs that a text becomes in a font.
    static qsizetype signs(const QString& text, const QFont& font) {
        QTextLayout layout(text, font);
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        qsizetype count = 0;
        for (const QGlyphRun& run : layout.glyphRuns()) count += run.glyphIndexes().size();
        return count;
    }
};

// "ff" and "ffi" as one sign each are letters that a reader of the PDF doesn't find: "Runoff" was
// "Runo\uFB00".
TEST_F(PrintFonts, EveryLetterIsASignOfItsOwn) {
    for (const std::string family : {"MS Sans Serif", "Courier New", "DejaVu Sans"}) {
        for (const bool bold : {false, true}) {
            const QFont font = print_font({family, 8.25, family == "Courier New"}, bold);
            EXPECT_EQ(signs(QStringLiteral("Runoff"), font), 6) << family;
            EXPECT_EQ(signs(QStringLiteral("Coefficient"), font), 11) << family;
        }
    }
}

TEST_F(PrintFonts, NoLetterIsMovedByIt) {
    const QFont font = print_font({"MS Sans Serif", 8.25, false}, false);
    QFont plain = font;
    plain.setLetterSpacing(QFont::PercentageSpacing, 0.0);
    EXPECT_DOUBLE_EQ(QFontMetricsF(font).horizontalAdvance(QStringLiteral("Basin")),
                     QFontMetricsF(plain).horizontalAdvance(QStringLiteral("Basin")));
}

}  // namespace
}  // namespace nivora
