// A grid of one column for each kind of cell, in a window with a menu and a box beside it.
#pragma once

#include "base/calendar.h"
#include "base/number_text.h"
#include "base/scripted_dialogs.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QTest>
#include <QVBoxLayout>
#include <cmath>
#include <memory>
#include <set>

namespace nivora {

/// Cells in memory: the columns are a text, a number that shows with two decimals, an integer, a date and a
/// list.
class CellsInMemory : public GridModel {
public:
    enum Column { k_text, k_number, k_integer, k_date, k_list, k_columns };

    explicit CellsInMemory(int rows) : texts_(static_cast<std::size_t>(rows)) {
        for (int row = 0; row < rows; ++row) {
            const QString day = QStringLiteral("%1").arg(row % 28 + 1, 2, 10, QLatin1Char('0'));
            texts_.at(static_cast<std::size_t>(row)) = {
                QStringLiteral("t%1").arg(row), QStringLiteral("%1.125").arg(row), QString::number(row),
                QStringLiteral("10/%1/1980").arg(day), QStringLiteral("Metric")};
        }
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(texts_.size());
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : k_columns;
    }
    [[nodiscard]] CellFormat format(int /*row*/, int column) const override {
        switch (column) {
            case k_number: return {.kind = CellFormat::Kind::Number};
            case k_integer: return {.kind = CellFormat::Kind::Integer};
            case k_date: return {.kind = CellFormat::Kind::Date};
            case k_list:
                return {.kind = CellFormat::Kind::List,
                        .items = {QStringLiteral("Metric"), QStringLiteral("English")}};
            default: return {};
        }
    }
    [[nodiscard]] QString whole_text(int row, int column) const override {
        return texts_.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column));
    }
    [[nodiscard]] QString text(int row, int column) const override {
        const QString whole = whole_text(row, column);
        if (column != k_number || whole.isEmpty()) return whole;
        return to_qt(format_number(whole.toDouble(), "0.00"));
    }
    [[nodiscard]] QString header(int column) const override { return headers.at(column); }
    [[nodiscard]] bool locked(int row, int column) const override {
        return locked_cells.count({row, column}) > 0;
    }

    void rename(int column, const QString& text) {
        headers[column] = text;
        emit headerDataChanged(Qt::Horizontal, column, column);
    }

    std::set<std::pair<int, int>> locked_cells;
    QStringList headers{QStringLiteral("Name"), QStringLiteral("Amount"), QStringLiteral("Count"),
                        QStringLiteral("Day"), QStringLiteral("Units")};

protected:
    [[nodiscard]] bool put(int row, int column, const QString& text) override {
        const std::string typed = from_qt(text);
        const auto number = exact_number(typed);
        const bool fits = typed.empty() || column == k_text || (column == k_number && number) ||
                          (column == k_integer && number && *number == std::floor(*number)) ||
                          (column == k_date && read_date(typed)) ||
                          (column == k_list && format(row, column).items.contains(text));
        if (fits) texts_.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column)) = text;
        return fits;
    }

private:
    std::vector<std::array<QString, k_columns>> texts_;
};

class GridTest : public testing::Test {
protected:
    using Column = CellsInMemory::Column;
    static constexpr int k_rows = 10;

    GridTest() { show_grid(k_rows); }
    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    /// Shows a grid with this number of rows in a new window.
    void show_grid(int rows) {
        window_ = std::make_unique<QMainWindow>();
        cells_ = std::make_unique<CellsInMemory>(rows);
        auto* content = new QWidget(window_.get());
        auto* layout = new QVBoxLayout(content);
        grid_ = new GridView(cells_.get(), dialogs_, content);
        beside_ = new QLineEdit(content);
        layout->addWidget(grid_);
        layout->addWidget(beside_);
        window_->setCentralWidget(content);
        menu_ = window_->menuBar()->addMenu(QStringLiteral("&Edit"));
        menu_->addAction(QStringLiteral("&Copy"));
        window_->resize(700, 500);
        QObject::connect(grid_, &GridView::pasted, grid_, [this] { ++pastes_; });
        QObject::connect(grid_, &GridView::left_cell, grid_, [this](int row, int column) {
            left_.push_back({row, column});
        });
        QObject::connect(cells_.get(), &GridModel::edited, grid_, [this] { ++edits_; });
        QObject::connect(cells_.get(), &GridModel::refused, grid_,
                         [this](int, int, const QString& text) { refused_.push_back(from_qt(text)); });
        window_->show();
        window_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
        grid_->setFocus();
        QApplication::clipboard()->clear();
    }

    void go_to(int row, int column) {
        grid_->setCurrentIndex(cells_->index(row, column));
        left_.clear();
    }
    void select(int first_row, int first_column, int last_row, int last_column) {
        go_to(first_row, first_column);
        grid_->selectionModel()->select(
            QItemSelection(cells_->index(first_row, first_column), cells_->index(last_row, last_column)),
            QItemSelectionModel::ClearAndSelect);
    }

    /// Sends a key to where a user's key would go: to the widget that has the focus.
    void key(Qt::Key which, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), which, with);
        QApplication::processEvents();  // the grid takes the text only after Enter was processed
    }
    void type(const char* text) {
        for (const char* at = text; *at != '\0'; ++at) QTest::keyClick(QApplication::focusWidget(), *at);
    }

    [[nodiscard]] std::string at(int row, int column) const {
        return from_qt(cells_->whole_text(row, column));
    }
    [[nodiscard]] std::pair<int, int> active() const {
        return {grid_->currentIndex().row(), grid_->currentIndex().column()};
    }
    [[nodiscard]] std::vector<int> block() const {
        const CellRange range = grid_->block();
        return {range.first_row, range.first_column, range.last_row, range.last_column};
    }
    [[nodiscard]] std::vector<std::string> column(int which, int first_row, int last_row) const {
        std::vector<std::string> texts;
        for (int row = first_row; row <= last_row; ++row) texts.push_back(at(row, which));
        return texts;
    }
    [[nodiscard]] QLineEdit* editor() const {
        auto* focused = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        return focused != nullptr && grid_->isAncestorOf(focused) ? focused : nullptr;
    }

    static void put_on_clipboard(const QString& text) { QApplication::clipboard()->setText(text); }
    static std::string clipboard() { return from_qt(QApplication::clipboard()->text()); }

    ScriptedDialogs dialogs_;
    std::unique_ptr<CellsInMemory> cells_;
    std::unique_ptr<QMainWindow> window_;
    GridView* grid_ = nullptr;
    QLineEdit* beside_ = nullptr;
    QMenu* menu_ = nullptr;
    int pastes_ = 0;
    std::vector<std::pair<int, int>> left_;
    std::vector<std::string> refused_;
    int edits_ = 0;
};

}  // namespace nivora
