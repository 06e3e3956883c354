// Typesets the users manual: nivora_manual <manual.pdf> <folder of pictures> <chapter.md>...
// The same chapters and pictures give the same bytes, since a package holds the manual.

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHashSeed>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>
#include <numeric>
#include <set>

namespace {

constexpr int k_resolution = 300;
constexpr double k_margin_mm = 20.0;
constexpr double k_text_points = 10.0;
constexpr double k_code_points = 8.0;
constexpr double k_small_text_points = 7.0;
constexpr int k_columns_in_full_size = 8;

/// A page's text area in points, the unit of the document's layout.
struct Page {
    double width;
    double height;
};

/// The texts of the chapters; nothing if one cannot be read.
QStringList read_chapters(const QStringList& files) {
    QStringList chapters;
    for (const QString& name : files) {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly)) {
            std::cerr << "manual: can't read " << name.toStdString() << '\n';
            return {};
        }
        chapters << QString::fromUtf8(file.readAll());
    }
    return chapters;
}

/// Adds the pictures that the text names to the document. @return false if one is missing
bool add_pictures(QTextDocument& document, const QString& text, const QString& folder) {
    static const QRegularExpression k_picture(QStringLiteral(R"(!\[[^\]]*\]\((pictures/([^)]+))\))"));
    bool complete = true;
    for (auto found = k_picture.globalMatch(text); found.hasNext();) {
        const auto match = found.next();
        QImage picture(QDir(folder).filePath(match.captured(2)));
        if (picture.isNull()) {
            std::cerr << "manual: there is no picture " << match.captured(2).toStdString() << '\n';
            complete = false;
            continue;
        }
        document.addResource(QTextDocument::ImageResource, QUrl(match.captured(1)), picture);
    }
    return complete;
}

/// Shows each picture, which was drawn at twice its size, at about three quarters of its size on the screen,
/// but no wider than the text and no higher than half a page.
void fit_pictures(QTextDocument& document, const Page& page) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            const QTextFragment fragment = at.fragment();
            if (!fragment.charFormat().isImageFormat()) continue;
            QTextImageFormat format = fragment.charFormat().toImageFormat();
            const auto picture =
                document.resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>();
            if (picture.isNull()) continue;
            const double ratio = static_cast<double>(picture.height()) / picture.width();
            const double width = std::min({picture.width() * 0.36, page.width, page.height * 0.45 / ratio});
            format.setWidth(width);
            format.setHeight(width * ratio);
            QTextCursor cursor(&document);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
            break;  // the change rebuilds the block's fragments; the chapters have one picture per paragraph
        }
    }
}

void set_styles(QTextDocument& document) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QTextCursor cursor(block);
        QTextBlockFormat format = block.blockFormat();
        const int heading = format.headingLevel();
        if (heading > 0) {
            cursor.select(QTextCursor::BlockUnderCursor);
            QTextCharFormat letters;
            letters.setFontPointSize(heading == 1 ? 20.0 : heading == 2 ? 14.0 : 11.5);
            letters.setFontWeight(QFont::Bold);
            cursor.mergeCharFormat(letters);
            format.setTopMargin(heading == 1 ? 0.0 : 12.0);
            format.setBottomMargin(6.0);
        } else if (format.nonBreakableLines()) {
            // Program code or shell commands: small, and wrapped rather than cut off at the margin.
            cursor.select(QTextCursor::BlockUnderCursor);
            QTextCharFormat letters;
            letters.setFontPointSize(k_code_points);
            cursor.mergeCharFormat(letters);
            format.setNonBreakableLines(false);
        } else if (!block.textList()) {
            format.setBottomMargin(6.0);
        }
        // With a new cursor, since a selected block begins with the end of the
        // block before, which would be formatted too.
        QTextCursor(block).setBlockFormat(format);
    }
}

/// Whether a table has a header. Markdown requires one, so a table without a header begins with an empty row.
bool has_head(const QTextTable& table) {
    for (int column = 0; column < table.columns(); ++column) {
        if (!table.cellAt(0, column).firstCursorPosition().block().text().isEmpty()) return true;
    }
    return false;
}

/// Sets a table with many columns in small letters.
void set_small(QTextTable* table) {
    QTextCursor cursor = table->firstCursorPosition();
    cursor.setPosition(table->lastCursorPosition().position(), QTextCursor::KeepAnchor);
    QTextCharFormat letters;
    letters.setFontPointSize(k_small_text_points);
    cursor.mergeCharFormat(letters);
}

/// Gives each column the width of its longest word and distributes the rest by the amount of text. With equal
/// widths a column of long texts beside short ones would make a table of many pages.
void set_widths(QTextTable* table, QTextTableFormat& format, const Page& page) {
    const double letters_a_line = page.width / (k_text_points * 0.62);
    std::vector<double> needed;
    std::vector<double> text;
    for (int column = 0; column < table->columns(); ++column) {
        qsizetype longest = 3;
        double letters = 1.0;
        for (int row = 0; row < table->rows(); ++row) {
            const QString cell = table->cellAt(row, column).firstCursorPosition().block().text();
            letters += static_cast<double>(cell.size());
            for (const QString& word : cell.split(QLatin1Char(' '))) longest = std::max(longest, word.size());
        }
        needed.push_back(100.0 * std::min(static_cast<double>(longest) + 2.0, letters_a_line / 3.0) /
                         letters_a_line);
        text.push_back(std::sqrt(letters));
    }
    const double all_needed = std::accumulate(needed.begin(), needed.end(), 0.0);
    const double all_text = std::accumulate(text.begin(), text.end(), 0.0);
    if (all_needed >= 100.0) return;
    QList<QTextLength> widths;
    for (std::size_t i = 0; i < needed.size(); ++i) {
        const double width = needed[i] + (100.0 - all_needed) * text[i] / all_text;
        widths << QTextLength(QTextLength::PercentageLength, width);
    }
    format.setColumnWidthConstraints(widths);
}

void set_tables(QTextFrame* frame, const Page& page) {
    for (QTextFrame* child : frame->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(child)) {
            const bool headed = has_head(*table);
            if (!headed) table->removeRows(0, 1);
            QTextTableFormat format = table->format();
            format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
            format.setBorder(1.0);  // half a point rounds to no line
            format.setBorderBrush(QColor(190, 190, 190));
            format.setBorderCollapse(true);
            format.setCellPadding(3.0);
            format.setHeaderRowCount(headed ? 1 : 0);
            format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
            format.setTopMargin(4.0);
            format.setBottomMargin(8.0);
            set_widths(table, format, page);
            table->setFormat(format);
            if (table->columns() > k_columns_in_full_size) set_small(table);
        }
        set_tables(child, page);
    }
}

/// A chapter laid out on pages, with page breaks before the given blocks.
std::unique_ptr<QTextDocument> laid_out(const QString& chapter, const QString& folder, const Page& page,
                                        const std::set<int>& breaks, bool& complete) {
    auto document = std::make_unique<QTextDocument>();
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(k_text_points);
    document->setDefaultFont(font);
    document->setDocumentMargin(0.0);
    document->setMarkdown(chapter);
    // Not before, since a new text drops the pictures of the former one.
    complete = add_pictures(*document, chapter, folder);
    fit_pictures(*document, page);
    set_styles(*document);
    set_tables(document->rootFrame(), page);
    for (const int number : breaks) {
        const QTextBlock block = document->findBlockByNumber(number);
        QTextBlockFormat format = block.blockFormat();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        QTextCursor(block).setBlockFormat(format);
    }
    document->setPageSize(QSizeF(page.width, page.height));
    return document;
}

/// Whether a block makes sense only with the text after it: a heading, or a text that ends with a colon.
bool leads_on(const QTextBlock& block) {
    return block.blockFormat().headingLevel() > 0 || block.text().endsWith(QLatin1Char(':'));
}

/// The first block without a page break of its own that is separated by the end of a page from the text that
/// it introduces; if other introducing blocks precede it directly, the first of them. -1 if there is none.
int left_alone(const QTextDocument& document, const Page& page, const std::set<int>& breaks) {
    // A line may be on the page after the one where its block begins.
    const auto page_of = [&](const QTextBlock& block, int line) {
        const double top = document.documentLayout()->blockBoundingRect(block).top();
        return static_cast<int>((top + block.layout()->lineAt(line).y() + 1.0) / page.height);
    };
    for (QTextBlock block = document.begin().next(); block.isValid(); block = block.next()) {
        const QTextBlock next = block.next();
        if (!leads_on(block) || !next.isValid() || breaks.contains(block.blockNumber())) continue;
        if (page_of(block, block.layout()->lineCount() - 1) >= page_of(next, 0)) continue;
        QTextBlock first = block;
        while (first.previous().blockNumber() > 0 && leads_on(first.previous())) first = first.previous();
        if (!breaks.contains(first.blockNumber())) return first.blockNumber();
    }
    return -1;
}

/// The chapter without a heading as the last line of a page. After each page break it is laid out again from
/// the start, since changing an existing layout loses blocks.
std::unique_ptr<QTextDocument> set_chapter(const QString& chapter, const QString& folder, const Page& page,
                                           bool& complete) {
    std::set<int> breaks;
    for (;;) {
        auto document = laid_out(chapter, folder, page, breaks, complete);
        document->documentLayout()->documentSize();  // forces the layout of the whole document
        const int number = left_alone(*document, page, breaks);
        if (number < 0) return document;
        breaks.insert(number);
    }
}

/// Draws one chapter. @return the number of its last page
int draw_chapter(QTextDocument& document, QPainter& painter, QPdfWriter& writer, const Page& page,
                 int number) {
    const int pages = document.pageCount();
    const double scale = static_cast<double>(k_resolution) / 72.0;
    for (int at = 0; at < pages; ++at) {
        if (number > 0) writer.newPage();
        ++number;
        painter.save();
        painter.scale(scale, scale);
        const QRectF visible(0.0, at * page.height, page.width, page.height);
        painter.save();
        painter.translate(0.0, -visible.top());
        document.drawContents(&painter, visible);
        painter.restore();
        QFont font = document.defaultFont();
        font.setPointSizeF(8.0 * 72.0 / k_resolution);
        painter.setFont(font);
        painter.drawText(QRectF(0.0, page.height + 8.0, page.width, 14.0), Qt::AlignRight,
                         QString::number(number));
        painter.restore();
    }
    return number;
}

/// Sets all chapters. @return false if a picture is missing
bool set_manual(QIODevice& device, const QStringList& chapters, const QString& pictures) {
    QPdfWriter writer(&device);
    writer.setTitle(QStringLiteral("Hollin Flow Model (Nivora) Users Manual"));
    writer.setResolution(k_resolution);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(k_margin_mm, k_margin_mm, k_margin_mm, k_margin_mm),
                          QPageLayout::Millimeter);
    const QRectF area = writer.pageLayout().paintRect(QPageLayout::Point);
    const Page page{area.width(), area.height()};
    QPainter painter(&writer);
    bool complete = true;
    int number = 0;
    for (const QString& chapter : chapters) {
        bool has_pictures = false;
        const auto document = set_chapter(chapter, pictures, page, has_pictures);
        complete = has_pictures && complete;
        number = draw_chapter(*document, painter, writer, page, number);
    }
    return complete;
}

/// Takes the moment of the making out, and leaves all else where it stands: the offsets in the file count
/// bytes.
QByteArray without_date(QByteArray pdf) {
    const auto start = pdf.indexOf("/CreationDate (");
    const auto end = pdf.indexOf(')', start);
    if (start >= 0 && end > start) std::fill(pdf.begin() + start, pdf.begin() + end + 1, ' ');
    return pdf;
}

}  // namespace

int main(int argc, char** argv) {
    // The writer of the file walks the fonts in the order of their hashes.
    QHashSeed::setDeterministicGlobalSeed();
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 4) {
        std::cerr << "usage: nivora_manual <manual.pdf> <folder of pictures> <chapter.md>...\n";
        return 2;
    }
    const QStringList chapters = read_chapters(arguments.mid(3));
    if (chapters.isEmpty()) return 1;

    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    const bool complete = set_manual(pdf, chapters, arguments.at(2));
    QSaveFile file(arguments.at(1));
    const bool written =
        file.open(QIODevice::WriteOnly) && file.write(without_date(pdf.data())) >= 0 && file.commit();
    if (!written) std::cerr << "manual: can't write " << arguments.at(1).toStdString() << '\n';
    return complete && written ? 0 : 1;
}
