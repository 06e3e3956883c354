// Sets the users manual: nivora_manual <manual.pdf> <folder of pictures> <chapter.md>...

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
#include <iostream>

namespace {

constexpr int k_resolution = 300;
constexpr double k_margin_mm = 20.0;
constexpr double k_text_points = 10.0;

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
        } else if (!block.textList()) {
            format.setBottomMargin(6.0);
        }
        cursor.setBlockFormat(format);
    }
}

void set_tables(QTextFrame* frame) {
    for (QTextFrame* child : frame->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(child)) {
            QTextTableFormat format = table->format();
            format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
            format.setBorder(0.5);
            format.setBorderBrush(QColor(150, 150, 150));
            format.setBorderCollapse(true);
            format.setCellPadding(3.0);
            format.setHeaderRowCount(1);
            format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
            format.setTopMargin(4.0);
            format.setBottomMargin(8.0);
            table->setFormat(format);
        }
        set_tables(child);
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
        QTextDocument document;
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPointSizeF(k_text_points);
        document.setDefaultFont(font);
        document.setDocumentMargin(0.0);
        complete = add_pictures(document, chapter, arguments.at(2)) && complete;
        document.setMarkdown(chapter);
        fit_pictures(document, page);
        set_styles(document);
        set_tables(document.rootFrame());
        document.setPageSize(QSizeF(page.width, page.height));
        number = draw_chapter(document, painter, writer, page, number);
    }
    return complete ? 0 : 1;
}
