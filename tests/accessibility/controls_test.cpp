// What every control of every window tells a screen reader, and in which order.
#include "tests/accessibility/every_window_fixture.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QTextEdit>
#include <algorithm>
#include <fstream>
#include <regex>

namespace nivora {
namespace {

using testing::Contains;

/// Names of the classes of windows that the sources declare.
std::set<std::string> window_classes() {
    const std::regex declaration{
        R"(class (\w+)(?: final)? : public (?:NivoraWindow|QDialog|QMainWindow|QMessageBox|QWizard)\b)"};
    std::set<std::string> classes;
    namespace fs = std::filesystem;
    for (const auto& file : fs::recursive_directory_iterator(fs::path{NIVORA_SOURCE_DIR} / "src")) {
        if (file.path().extension() != ".h" && file.path().extension() != ".cpp") continue;
        std::ifstream source(file.path());
        const std::string text{std::istreambuf_iterator<char>{source}, {}};
        for (std::sregex_iterator at{text.begin(), text.end(), declaration}, end; at != end; ++at)
            classes.insert((*at)[1]);
    }
    classes.erase("NivoraWindow");  // the base of windows
    return classes;
}

/// What a screen reader gets of an element.
struct Heard {
    QAccessibleInterface* element = nullptr;
    QWidget* widget = nullptr;  ///< null for cells and entries
};

/// All that is visible below an element, in reading order; of grids only the grid itself.
void listen(QAccessibleInterface* at, std::vector<Heard>& heard) {
    if (at == nullptr || at->state().invisible) return;
    heard.push_back({at, qobject_cast<QWidget*>(at->object())});
    if (at->tableInterface() != nullptr || at->role() == QAccessible::ComboBox) return;
    for (int child = 0; child < at->childCount(); ++child) listen(at->child(child), heard);
}

std::vector<Heard> heard_in(QWidget& window) {
    std::vector<Heard> heard;
    listen(QAccessible::queryAccessibleInterface(&window), heard);
    return heard;
}

std::string told(const Heard& heard) {
    const QString object = heard.widget == nullptr
                               ? QString{}
                               : QString::fromUtf8(heard.widget->metaObject()->className()) +
                                     QLatin1Char(' ') + heard.widget->objectName();
    return from_qt(object) + " '" + from_qt(heard.element->text(QAccessible::Name)) + "'";
}

/// Whether Tab can come to an element.
bool takes_tab(const QWidget& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.isVisible() && widget.isEnabled() &&
           widget.focusProxy() == nullptr;
}

/// The controls of a window as Tab goes to them, from an element on.
std::vector<const QWidget*> tab_order(const QWidget& window, const QWidget* from) {
    std::vector<const QWidget*> order;
    const QWidget* at = from;
    do {
        if (takes_tab(*at) && at->window() == &window) order.push_back(at);
        at = at->nextInFocusChain();
    } while (at != from);
    return order;
}

class ControlsTest : public EveryWindowTest {
protected:
    void check_names(const OpenedWindow& opened) {
        for (const Heard& heard : heard_in(opened.window)) {
            if (!heard.element->state().focusable) continue;
            EXPECT_FALSE(heard.element->text(QAccessible::Name).trimmed().isEmpty())
                << opened.name << ": no name: " << told(heard);
            EXPECT_THAT((std::set{QAccessible::NoRole, QAccessible::Client}),
                        testing::Not(Contains(heard.element->role())))
                << opened.name << ": no role: " << told(heard);
        }
    }

    /// A visible label that names a control is its name, or a part of it.
    void check_labels(const OpenedWindow& opened) {
        for (const QLabel* label : opened.window.findChildren<QLabel*>()) {
            if (!label->isVisible() || label->buddy() == nullptr) continue;
            // A shown text may have a buddy for the sake of its "&"; a value that is a label is read itself.
            if (label->objectName().startsWith(QStringLiteral("lbl"))) continue;
            if (qobject_cast<const QLabel*>(label->buddy()) != nullptr) continue;
            QString caption = label->text();
            caption.remove(QLatin1Char('&'));
            auto* element = QAccessible::queryAccessibleInterface(label->buddy());
            ASSERT_NE(element, nullptr);
            QString word = caption.trimmed();
            if (word.endsWith(QLatin1Char(':'))) word.chop(1);
            EXPECT_TRUE(element->text(QAccessible::Name).contains(word))
                << opened.name << ": '" << from_qt(caption) << "' names "
                << from_qt(element->text(QAccessible::Name));
        }
    }

    void check_order(const OpenedWindow& opened) {
        std::vector<const QWidget*> read;
        for (const Heard& heard : heard_in(opened.window)) {
            if (heard.widget != nullptr && takes_tab(*heard.widget)) read.push_back(heard.widget);
        }
        if (read.empty()) return;
        const auto tabbed = tab_order(opened.window, read.front());
        EXPECT_EQ(names(read), names(tabbed)) << opened.name;
    }

    static std::vector<std::string> names(const std::vector<const QWidget*>& widgets) {
        std::vector<std::string> names;
        for (const QWidget* widget : widgets) {
            names.push_back(from_qt(QString::fromUtf8(widget->metaObject()->className()) + QLatin1Char(' ') +
                                    widget->objectName()));
        }
        return names;
    }

    /// Tab never goes back to what stands above, or to the left in the same line, of one frame.
    void check_lines(const OpenedWindow& opened) {
        std::vector<Heard> read;
        for (const Heard& heard : heard_in(opened.window)) {
            if (heard.widget != nullptr && takes_tab(*heard.widget)) read.push_back(heard);
        }
        for (std::size_t next = 1; next < read.size(); ++next) {
            if (read[next].widget->parentWidget() != read[next - 1].widget->parentWidget()) continue;
            const QRect before = read[next - 1].element->rect();
            const QRect here = read[next].element->rect();
            const bool above = here.bottom() <= before.top() && here.left() < before.right();
            const bool left =
                here.right() <= before.left() && here.bottom() > before.top() && here.top() < before.bottom();
            EXPECT_FALSE(above || left)
                << opened.name << ": " << told(read[next]) << " after " << told(read[next - 1]);
        }
    }

    void check_grids(const OpenedWindow& opened) {
        for (GridView* grid : opened.window.findChildren<GridView*>()) {
            if (!grid->isVisible() || grid->model()->rowCount() == 0) continue;
            auto* element = QAccessible::queryAccessibleInterface(grid);
            ASSERT_NE(element->tableInterface(), nullptr);
            for (int column = 0; column < grid->model()->columnCount(); ++column) {
                if (!grid->isColumnHidden(column)) check_cell(opened, *grid, *element, column);
            }
        }
    }

    static void check_cell(const OpenedWindow& opened, const GridView& grid, QAccessibleInterface& table,
                           int column) {
        QAccessibleInterface* cell = table.tableInterface()->cellAt(0, column);
        ASSERT_NE(cell, nullptr);
        const std::string where =
            opened.name + ", " + from_qt(grid.accessibleName()) + ", column " + std::to_string(column + 1);
        EXPECT_EQ(cell->text(QAccessible::Name), grid.cells().text(0, column)) << where;
        const auto heads = cell->tableCellInterface()->columnHeaderCells();
        ASSERT_EQ(heads.size(), 1) << where;
        const auto sides = cell->tableCellInterface()->rowHeaderCells();
        ASSERT_EQ(sides.size(), 1) << where;
        EXPECT_FALSE(name_and_delete(heads[0]).isEmpty()) << where;
        EXPECT_FALSE(name_and_delete(sides[0]).isEmpty()) << where;
    }

    /// The cells of headers are made for who asks, and only a registered element can be deleted.
    static QString name_and_delete(QAccessibleInterface* header) {
        QString name = header->text(QAccessible::Name);
        QAccessible::deleteAccessibleInterface(QAccessible::registerAccessibleInterface(header));
        return name;
    }
};

TEST_F(ControlsTest, AllWindowsOfTheProgramAreOpened) {
    for_each_window([](const OpenedWindow&) {});
    for (const std::string& name : window_classes())
        EXPECT_THAT(shown_classes(), Contains(name))
            << "add it to tests/accessibility/every_window_fixture.h";
}

TEST_F(ControlsTest, EveryControlHasANameAndARole) {
    for_each_window([this](const OpenedWindow& opened) { check_names(opened); });
}

TEST_F(ControlsTest, ALabelNamesItsControl) {
    for_each_window([this](const OpenedWindow& opened) { check_labels(opened); });
}

TEST_F(ControlsTest, ControlsAreReadInTheOrderOfTab) {
    for_each_window([this](const OpenedWindow& opened) { check_order(opened); });
}

TEST_F(ControlsTest, TabGoesLineByLine) {
    for_each_window([this](const OpenedWindow& opened) { check_lines(opened); });
}

TEST_F(ControlsTest, CellsHaveTheirValueAndHeadersOfTheirRowAndColumn) {
    for_each_window([this](const OpenedWindow& opened) { check_grids(opened); });
}

}  // namespace
}  // namespace nivora
