// Works the windows as a user does: modal ones one after the other, boxes by keys, grids by the clipboard.
#pragma once

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QObject>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <deque>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace nivora {

/// Acts in each modal window as soon as it is shown. A window that the script does not expect next, or that
/// is still open after its turn, is kept as a complaint and cancelled, so that no test waits forever.
class ModalScript {
public:
    ModalScript() {
        QObject::connect(&clock_, &QTimer::timeout, &clock_, [this] { look(); });
        clock_.start(1);
    }

    ModalScript& then(const char* window, std::function<void(QWidget&)> act) {
        steps_.push_back({QString::fromUtf8(window), std::move(act)});
        return *this;
    }

    [[nodiscard]] std::size_t left() const { return steps_.size(); }
    [[nodiscard]] const std::vector<std::string>& complaints() const { return complaints_; }

private:
    struct Step {
        QString window;
        std::function<void(QWidget&)> act;
    };

    void look() {
        QWidget* window = QApplication::activeModalWidget();
        if (acting_ || window == nullptr || !window->isVisible()) return;
        acting_ = true;
        act_in(*window);
        acting_ = false;
    }

    void act_in(QWidget& window) {
        if (steps_.empty() || steps_.front().window != window.objectName()) {
            complaints_.push_back("not expected: " + window.objectName().toStdString());
        } else {
            const Step step = std::move(steps_.front());
            steps_.pop_front();
            try {
                step.act(window);
            } catch (const std::logic_error& error) {
                complaints_.emplace_back(error.what());
            }
            if (!window.isVisible()) return;
            complaints_.push_back("still open: " + window.objectName().toStdString());
        }
        cancel(window);
    }

    static void cancel(QWidget& window) {
        auto* button = window.findChild<QPushButton*>(QStringLiteral("Command1(1)"));
        if (button != nullptr) button->click();
        if (window.isVisible()) window.close();
    }

    QTimer clock_;
    std::deque<Step> steps_;
    std::vector<std::string> complaints_;
    bool acting_ = false;
};

/// An element of a window. @throws std::logic_error where there is none
template <typename Element>
Element& element(const QWidget& window, const char* name) {
    auto* found = window.findChild<Element*>(QString::fromUtf8(name));
    if (found == nullptr) throw std::logic_error(std::string{"there is no "} + name);
    return *found;
}

/// Types over what a box holds, from its first place on.
inline void type_over(QLineEdit& box, const QString& text) {
    box.setFocus();
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClick(&box, Qt::Key_Home);
    QTest::keyClicks(&box, text);
}

/// Types into a cell and leaves it with Enter.
inline void type_into_cell(QTableView& grid, int row, int column, const QString& text) {
    grid.setFocus();
    grid.setCurrentIndex(grid.model()->index(row, column));
    QTest::keyClick(&grid, Qt::Key_F2);
    // An editor that was closed may still wait for its end; the newest stands last.
    const auto editors = grid.viewport()->findChildren<QLineEdit*>();
    if (editors.isEmpty()) throw std::logic_error("the cell has no editor");
    auto* editor = editors.last();
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    // The grid takes the text once the key has been dealt with.
    QApplication::processEvents();
}

/// Puts a text on the clipboard, as another program does, and pastes it from a cell on.
inline void paste_at(QTableView& grid, int row, int column, const QString& text) {
    QApplication::clipboard()->setText(text);
    grid.setFocus();
    grid.setCurrentIndex(grid.model()->index(row, column));
    QTest::keyClick(&grid, Qt::Key_V, Qt::ControlModifier);
}

/// Selects a block from one corner to the other, both in it.
inline void select_block(QTableView& grid, int row, int column, int last_row, int last_column) {
    grid.setCurrentIndex(grid.model()->index(row, column));
    grid.selectionModel()->select(
        QItemSelection(grid.model()->index(row, column), grid.model()->index(last_row, last_column)),
        QItemSelectionModel::ClearAndSelect);
}

}  // namespace nivora
