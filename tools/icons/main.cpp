// Paints an icon of data/desktop as PNG files of the sizes that desktops ask for.
//
//     nivora_icons ICON.svg FOLDER SIZE...
//
// writes FOLDER/<size>/<name>.png.

#include <QColor>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <filesystem>
#include <iostream>
#include <string>

int main(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "Usage: nivora_icons ICON.svg FOLDER SIZE...\n";
        return 2;
    }
    const std::filesystem::path icon{argv[1]};
    QSvgRenderer drawing(QString::fromStdString(icon.string()));
    if (!drawing.isValid()) {
        std::cerr << "The file '" << icon.string() << "' is not an SVG picture.\n";
        return 1;
    }
    for (int at = 3; at < argc; ++at) {
        const int size = std::stoi(argv[at]);
        QImage image(size, size, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        {
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            drawing.render(&painter);
        }
        const std::filesystem::path folder = std::filesystem::path{argv[2]} / argv[at];
        std::filesystem::create_directories(folder);
        const std::filesystem::path file = folder / icon.stem().concat(".png");
        if (!image.save(QString::fromStdString(file.string()))) {
            std::cerr << "The file '" << file.string() << "' can't be written.\n";
            return 1;
        }
    }
    return 0;
}
