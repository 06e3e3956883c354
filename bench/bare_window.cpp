// A window with a menu, boxes for texts and two tables, in the extent of the main window and without anything
// behind it: what the start of the program is measured beside. Its argument is a file that it makes before it
// waits for input.

#include <QApplication>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>
#include <fstream>

namespace {

void add_menus(QMainWindow& window) {
    constexpr int k_menus = 7;
    constexpr int k_entries = 7;
    for (int menu = 1; menu <= k_menus; ++menu) {
        QMenu* shown = window.menuBar()->addMenu(QStringLiteral("Menu %1").arg(menu));
        for (int entry = 1; entry <= k_entries; ++entry)
            shown->addAction(QStringLiteral("Entry %1").arg(entry));
    }
}

QTableView* new_table(int rows, int columns, QObject& owner) {
    auto* model = new QStandardItemModel(rows, columns, &owner);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            model->setItem(row, column, new QStandardItem(QString::number(row * columns + column)));
    }
    auto* table = new QTableView;
    table->setModel(model);
    return table;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    add_menus(window);
    auto* boxes = new QFormLayout;
    for (int box = 1; box <= 12; ++box)
        boxes->addRow(new QLabel(QStringLiteral("Box %1").arg(box)), new QLineEdit(QStringLiteral("text")));
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->addLayout(boxes);
    layout->addWidget(new_table(16, 5, window));
    layout->addWidget(new_table(10, 12, window));
    window.setCentralWidget(content);
    window.resize(900, 700);
    window.show();
    QApplication::processEvents();
    if (argc > 1) std::ofstream{argv[1]} << "ready\n";
    return QApplication::exec();
}
