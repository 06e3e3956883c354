#include "windows/prep/daily_model.h"

#include "base/entry_refusal.h"
#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "prep/daily_units.h"
#include "prep/dated_block.h"
#include "widgets/qt_text.h"

#include <algorithm>
#include <cmath>

namespace nivora {

void DailyModel::show(DailyEditor* editor) {
    const int rows = editor == nullptr ? 0 : static_cast<int>(editor->rows());
    if (editor == editor_) {
        change_rows(rows_, rows);
        return show_values();
    }
    beginResetModel();
    editor_ = editor;
    rows_ = rows;
    patterns_.clear();
    if (editor_ != nullptr) {
        for (const DailyColumn& column : editor_->columns()) {
            patterns_.push_back(column.decimals > 0
                                    ? "0." + std::string(static_cast<std::size_t>(column.decimals), '0')
                                    : "0");
        }
    }
    endResetModel();
}

void DailyModel::note_typed(const std::optional<CellText>& typed) {
    if (editor_ == nullptr) return;
    if (!typed) return editor_->note_typed(0, 0, std::nullopt);
    editor_->note_typed(static_cast<std::size_t>(typed->row), static_cast<std::size_t>(typed->column),
                        exact_number(from_qt(typed->text)));
}

int DailyModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int DailyModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() || editor_ == nullptr ? 0 : static_cast<int>(editor_->columns().size());
}

const DailyColumn& DailyModel::column_of(int column) const {
    return editor_->columns().at(static_cast<std::size_t>(column));
}

CellFormat DailyModel::format(int /*row*/, int column) const {
    if (column == 0) return {.kind = CellFormat::Kind::Date};
    const bool whole = column_of(column).type == FieldType::Integer;
    return {.kind = whole ? CellFormat::Kind::Integer : CellFormat::Kind::Number};
}

QString DailyModel::number_text(double value, int column) const {
    return to_qt(format_number(value, patterns_.at(static_cast<std::size_t>(column))));
}

QString DailyModel::text(int row, int column) const {
    const auto day = static_cast<std::size_t>(row);
    if (day >= editor_->rows()) return {};
    if (column == 0) return to_qt(long_date_text(editor_->date(day)));
    return number_text(editor_->value(day, static_cast<std::size_t>(column)), column);
}

QString DailyModel::whole_text(int row, int column) const {
    const auto day = static_cast<std::size_t>(row);
    if (column == 0 || day >= editor_->rows()) return text(row, column);
    const double value = editor_->value(day, static_cast<std::size_t>(column));
    const bool single = column_of(column).type == FieldType::Single;
    return to_qt(single ? shortest_text(static_cast<float>(value)) : shortest_text(value));
}

QString DailyModel::header(int column) const { return to_qt(column_of(column).header); }

bool DailyModel::locked(int /*row*/, int column) const { return column == 0 || read_only_; }

std::optional<double> DailyModel::number(int row, int column) const {
    const auto day = static_cast<std::size_t>(row);
    if (column == 0 || day >= editor_->rows()) return std::nullopt;
    const double value = editor_->value(day, static_cast<std::size_t>(column));
    return is_missing(value) ? std::nullopt : std::optional{value};
}

std::optional<Period> DailyModel::days() const {
    if (rows_ == 0) return std::nullopt;
    return Period{editor_->date(0), editor_->date(static_cast<std::size_t>(rows_) - 1)};
}

std::optional<int> DailyModel::row_of(DayCount day) const {
    const auto date_of = [this](int row) { return editor_->date(static_cast<std::size_t>(row)); };
    int first = 0;
    int last = rows_;
    while (first < last) {
        const int middle = first + (last - first) / 2;
        if (date_of(middle) < day) {
            first = middle + 1;
        } else {
            last = middle;
        }
    }
    if (first == rows_ || date_of(first) != day) return std::nullopt;
    return first;
}

QColor DailyModel::text_colour(int /*row*/, int column) const {
    return column == 0 ? QColor{} : QColor{0, 0, 255};
}

/// Among numbers with the same number of decimals, the largest or the smallest has the longest text.
QString DailyModel::widest_text(int column) const {
    if (column == 0) return QStringLiteral("00/00/0000");
    double low = 0.0;
    double high = 0.0;
    for (std::size_t row = 0; row < editor_->rows(); ++row) {
        const double value = editor_->value(row, static_cast<std::size_t>(column));
        if (value < low) low = value;
        if (value > high) high = value;
    }
    const QString lowest = number_text(low, column);
    const QString highest = number_text(high, column);
    return lowest.size() > highest.size() ? lowest : highest;
}

QString DailyModel::unit(int column) const { return to_qt(daily_unit(column_of(column).field, units_)); }

QString DailyModel::place(int row, int column) const {
    return QStringLiteral("%1, %2, zone %3").arg(header(column), text(row, 0)).arg(editor_->zone());
}

QString DailyModel::locked_reason(int /*row*/, int /*column*/) const {
    return read_only_ ? QStringLiteral("this table is read-only")
                      : QStringLiteral("the days of a table can't be changed");
}

QString DailyModel::entry_refusal(int /*row*/, int column, const QString& text) const {
    const std::string typed = from_qt(text);
    if (auto refusal = number_refusal(typed); !refusal.empty()) return to_qt(refusal);
    const auto number = exact_number(typed);
    return number ? to_qt(editor_->refusal(static_cast<std::size_t>(column), *number)) : QString{};
}

std::optional<OfferedPaste> DailyModel::offered_paste(const CellBlock& copied, int active_column) const {
    if (read_only_ || editor_ == nullptr) return std::nullopt;
    const auto block = read_dated_block(copied);
    if (!block) return std::nullopt;
    const DatedPlaces places = place_by_date(*block, *editor_, static_cast<std::size_t>(active_column));
    if (places.values.empty()) return std::nullopt;
    OfferedPaste offer{.question = dated_paste_question(places), .cells = {}};
    for (const DatedValue& value : places.values) {
        offer.cells.push_back(
            {static_cast<int>(value.row), static_cast<int>(value.column), to_qt(value.text)});
    }
    return offer;
}

bool DailyModel::put(int row, int column, const QString& text) {
    const std::string typed = from_qt(text);
    // An empty text that was pasted is a missing value; a cell that is emptied by hand gets a zero.
    auto number = trimmed(typed).empty() ? std::optional<double>{k_missing} : exact_number(typed);
    if (!number) return false;
    try {
        return editor_->set_value(static_cast<std::size_t>(row), static_cast<std::size_t>(column), *number);
    } catch (const StoreError& error) {
        fault_ = error.what();
        return false;
    }
}

}  // namespace nivora
