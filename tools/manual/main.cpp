// Sets the users manual: nivora_manual <manual.pdf> <folder of pictures> <chapter.md>...

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
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

/// A page's text area, in the points in which the document is laid out.
struct Page {
    double width;
    double height;
};

/// All chapters as one text; each begins on a page of its own.
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

/// Gives the document the pictures that it names. False where one is missing.
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

/// Shows each picture, drawn at twice its size, at about three quarters of its size on the screen, and never
/// larger than fits the text and half a page.
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
            break;  // the block's fragments are made anew; the chapters have one picture a paragraph
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
            // Lines of a program or of a shell: small, and broken rather than cut at the margin.
            cursor.select(QTextCursor::BlockUnderCursor);
            QTextCharFormat letters;
            letters.setFontPointSize(k_code_points);
            cursor.mergeCharFormat(letters);
            format.setNonBreakableLines(false);
        } else if (!block.textList()) {
            format.setBottomMargin(6.0);
        }
        // With a cursor of its own: a selected block begins with the end of the one before, which would get
        // the format too.
        QTextCursor(block).setBlockFormat(format);
    }
}

/// Whether a table has a head; Markdown has none without, so that a table without one begins with an empty
/// row.
bool has_head(const QTextTable& table) {
    for (int column = 0; column < table.columns(); ++column) {
        if (!table.cellAt(0, column).firstCursorPosition().block().text().isEmpty()) return true;
    }
    return false;
}

/// The letters of a table with many columns.
void set_small(QTextTable* table) {
    QTextCursor cursor = table->firstCursorPosition();
    cursor.setPosition(table->lastCursorPosition().position(), QTextCursor::KeepAnchor);
    QTextCharFormat letters;
    letters.setFontPointSize(k_small_text_points);
    cursor.mergeCharFormat(letters);
}

/// Gives each column the room of its longest word, and shares the rest by the amount of text. With one width
/// for all, a column of long texts beside short ones makes a table of many pages.
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
            format.setBorder(1.0);  // half a point rounds to no line at all
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

/// A chapter laid out on its pages, with page breaks before some of its blocks.
std::unique_ptr<QTextDocument> laid_out(const QString& chapter, const QString& folder, const Page& page,
                                        const std::set<int>& breaks, bool& complete) {
    auto document = std::make_unique<QTextDocument>();
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(k_text_points);
    document->setDefaultFont(font);
    document->setDocumentMargin(0.0);
    document->setMarkdown(chapter);
    // Only now, since a new text drops the pictures of the one before.
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

/// Whether a line makes sense only with what stands behind it: a heading, or a text that ends in a colon.
bool leads_on(const QTextBlock& block) {
    return block.blockFormat().headingLevel() > 0 || block.text().endsWith(QLatin1Char(':'));
}

/// The number of the first block, behind those that were moved already, that leads on to another page; of a
/// heading with such a block right behind it, the heading. -1 where there is none.
int left_alone(const QTextDocument& document, const Page& page, const std::set<int>& breaks) {
    // A line may be moved to the page behind the one on which its block begins.
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

/// The chapter with no heading as the last line of a page. It is laid out from the beginning after each one
/// that was moved: a change of a layout that stands already loses blocks.
std::unique_ptr<QTextDocument> set_chapter(const QString& chapter, const QString& folder, const Page& page,
                                           bool& complete) {
    std::set<int> breaks;
    for (;;) {
        auto document = laid_out(chapter, folder, page, breaks, complete);
        document->documentLayout()->documentSize();  // which lays it out to its end
        const int number = left_alone(*document, page, breaks);
        if (number < 0) return document;
        breaks.insert(number);
    }
}

/// Draws one chapter; gives back the number of its last page.
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

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 4) {
        std::cerr << "usage: nivora_manual <manual.pdf> <folder of pictures> <chapter.md>...\n";
        return 2;
    }
    const QStringList chapters = read_chapters(arguments.mid(3));
    if (chapters.isEmpty()) return 1;

    QPdfWriter writer(arguments.at(1));
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
        const auto document = set_chapter(chapter, arguments.at(2), page, has_pictures);
        complete = has_pictures && complete;
        number = draw_chapter(*document, painter, writer, page, number);
    }
    return complete ? 0 : 1;
}
