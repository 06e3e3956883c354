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
#include <span>

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
    offered_.clear();
    flow_ = {};
    if (editor_ != nullptr) {
        for (const DailyColumn& column : editor_->columns()) {
            offered_.push_back(static_cast<int>(offered_.size()));
            patterns_.push_back(column.decimals > 0
                                    ? "0." + std::string(static_cast<std::size_t>(column.decimals), '0')
                                    : "0");
        }
    }
    seen_ = offered_;
    endResetModel();
}

void DailyModel::offer(ComputedFlow flow) {
    const auto& columns = editor_->columns();
    for (std::size_t column = 1; column < columns.size(); ++column) {
        if (!same_name(columns[column].field, flow.beside)) continue;
        flow_ = std::move(flow);
        offered_.insert(offered_.begin() + static_cast<std::ptrdiff_t>(column) + 1, k_computed);
        return;
    }
}

std::vector<OfferedColumn> DailyModel::offered() const {
    std::vector<OfferedColumn> columns;
    columns.reserve(offered_.size());
    for (const int source : offered_) {
        if (source == k_computed) {
            columns.push_back({.name = "Computed", .shown_at_first = false});
        } else {
            columns.push_back({.name = editor_->columns().at(static_cast<std::size_t>(source)).field});
        }
    }
    return columns;
}

QString DailyModel::offered_header(std::size_t offered) const { return header_of(offered_.at(offered)); }

void DailyModel::arrange(const std::vector<std::size_t>& seen) {
    std::vector<int> sources;
    sources.reserve(seen.size());
    for (const std::size_t offered : seen) sources.push_back(offered_.at(offered));
    if (sources == seen_) return;
    beginResetModel();
    seen_ = std::move(sources);
    endResetModel();
}

std::size_t DailyModel::offered_place(int column) const {
    const auto found = std::find(offered_.begin(), offered_.end(), source(column));
    return static_cast<std::size_t>(found - offered_.begin());
}

PrintedSheet DailyModel::sheet(const std::vector<std::size_t>& printed, int first_row, int last_row) const {
    DailyModel told(read_only_, units_, nullptr);
    told.editor_ = editor_;
    told.rows_ = rows_;
    told.patterns_ = patterns_;
    told.flow_ = flow_;
    std::vector<int> columns;
    columns.reserve(printed.size());
    for (const std::size_t offered : printed) {
        columns.push_back(static_cast<int>(told.seen_.size()));
        told.seen_.push_back(offered_.at(offered));
    }
    return sheet_of(told, first_row, last_row, columns);
}

std::size_t DailyModel::offered_field(std::size_t field_column) const {
    const auto found = std::find(offered_.begin(), offered_.end(), static_cast<int>(field_column));
    return static_cast<std::size_t>(found - offered_.begin());
}

std::optional<std::size_t> DailyModel::field_column(int column) const {
    if (is_computed(column)) return std::nullopt;
    return field_of(column);
}

std::optional<int> DailyModel::column_of_field(std::size_t field_column) const {
    const auto found = std::find(seen_.begin(), seen_.end(), static_cast<int>(field_column));
    if (found == seen_.end()) return std::nullopt;
    return static_cast<int>(found - seen_.begin());
}

bool DailyModel::changed(int row, int column) const {
    const auto day = static_cast<std::size_t>(row);
    return !is_computed(column) && day < editor_->rows() && editor_->differs(day, field_of(column));
}

QStringList DailyModel::changed_out_of_sight() const {
    QStringList headers;
    for (std::size_t column = 1; column < editor_->columns().size(); ++column) {
        if (column_of_field(column)) continue;
        bool differs = false;
        for (std::size_t row = 0; row < editor_->rows() && !differs; ++row)
            differs = editor_->differs(row, column);
        if (differs) headers << header_of(static_cast<int>(column));
    }
    return headers;
}

std::vector<int> DailyModel::changed_zones() const {
    try {
        return editor_->changed_zones();
    } catch (const StoreError&) {
        return {};
    }
}

double DailyModel::value_of(std::size_t day, int column) const {
    return is_computed(column) ? flow_.value(day) : editor_->value(day, field_of(column));
}

QVariant DailyModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != k_column_role || orientation != Qt::Horizontal)
        return GridModel::headerData(section, orientation, role);
    if (section < 0 || section >= columnCount()) return {};
    return is_computed(section) ? flow_.told_column : source(section);
}

void DailyModel::note_typed(const std::optional<CellText>& typed) {
    if (editor_ == nullptr) return;
    if (!typed) return editor_->note_typed(0, 0, std::nullopt);
    if (is_computed(typed->column)) return editor_->note_typed(0, 0, std::nullopt);
    editor_->note_typed(static_cast<std::size_t>(typed->row), field_of(typed->column),
                        exact_number(from_qt(typed->text)));
}

int DailyModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int DailyModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() || editor_ == nullptr ? 0 : static_cast<int>(seen_.size());
}

const DailyColumn& DailyModel::column_of(int column) const { return editor_->columns().at(field_of(column)); }

CellFormat DailyModel::format(int /*row*/, int column) const {
    if (column == 0) return {.kind = CellFormat::Kind::Date};
    const bool whole = !is_computed(column) && column_of(column).type == FieldType::Integer;
    return {.kind = whole ? CellFormat::Kind::Integer : CellFormat::Kind::Number};
}

QString DailyModel::number_text(double value, int column) const {
    return to_qt(format_number(value, is_computed(column) ? "0.00" : patterns_.at(field_of(column))));
}

QString DailyModel::text(int row, int column) const {
    const auto day = static_cast<std::size_t>(row);
    if (day >= editor_->rows()) return {};
    if (column == 0) return to_qt(long_date_text(editor_->date(day)));
    return number_text(value_of(day, column), column);
}

QString DailyModel::whole_text(int row, int column) const {
    const auto day = static_cast<std::size_t>(row);
    if (column == 0 || day >= editor_->rows()) return text(row, column);
    const double value = value_of(day, column);
    const bool single = !is_computed(column) && column_of(column).type == FieldType::Single;
    return to_qt(single ? shortest_text(static_cast<float>(value)) : shortest_text(value));
}

QString DailyModel::header_of(int source) const {
    return source == k_computed ? QStringLiteral("Computed")
                                : to_qt(editor_->columns().at(static_cast<std::size_t>(source)).header);
}

QString DailyModel::header(int column) const { return header_of(source(column)); }

bool DailyModel::locked(int /*row*/, int column) const {
    return column == 0 || read_only_ || is_computed(column);
}

std::optional<double> DailyModel::number(int row, int column) const {
    const auto day = static_cast<std::size_t>(row);
    if (column == 0 || day >= editor_->rows()) return std::nullopt;
    const double value = value_of(day, column);
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
    return column == 0 || is_computed(column) ? QColor{} : QColor{0, 0, 255};
}

/// Among numbers with the same number of decimals, the largest or the smallest has the longest text.
QString DailyModel::widest_text(int column) const {
    if (column == 0) return QStringLiteral("00/00/0000");
    double low = 0.0;
    double high = 0.0;
    for (std::size_t row = 0; row < editor_->rows(); ++row) {
        const double value = value_of(row, column);
        if (value < low) low = value;
        if (value > high) high = value;
    }
    const QString lowest = number_text(low, column);
    const QString highest = number_text(high, column);
    return lowest.size() > highest.size() ? lowest : highest;
}

QString DailyModel::unit(int column) const {
    if (is_computed(column)) return to_qt(daily_unit("DailyQ", flow_.units));
    return to_qt(daily_unit(column_of(column).field, units_));
}

QString DailyModel::place(int row, int column) const {
    return QStringLiteral("%1, %2, zone %3").arg(header(column), text(row, 0)).arg(editor_->zone());
}

QString DailyModel::locked_reason(int /*row*/, int column) const {
    if (is_computed(column)) return QStringLiteral("a run computes this value");
    return read_only_ ? QStringLiteral("this table is read-only")
                      : QStringLiteral("the days of a table can't be changed");
}

QString DailyModel::entry_refusal(int /*row*/, int column, const QString& text) const {
    const std::string typed = from_qt(text);
    if (auto refusal = number_refusal(typed); !refusal.empty()) return to_qt(refusal);
    const auto number = exact_number(typed);
    return number ? to_qt(editor_->refusal(field_of(column), *number)) : QString{};
}

std::optional<OfferedPaste> DailyModel::offered_paste(const CellBlock& copied, int active_column) const {
    if (read_only_ || editor_ == nullptr) return std::nullopt;
    const auto block = read_dated_block(copied);
    if (!block) return std::nullopt;
    std::vector<std::size_t> seen;
    std::size_t before = 0;
    seen.reserve(seen_.size());
    for (int column = 1; column < columnCount(); ++column) {
        if (is_computed(column)) continue;
        if (column < active_column) ++before;
        seen.push_back(field_of(column));
    }
    const DatedPlaces places = place_by_date(*block, *editor_, seen, std::span{seen}.subspan(before));
    if (places.values.empty()) return std::nullopt;
    OfferedPaste offer{.question = dated_paste_question(places), .cells = {}};
    offer.cells.reserve(places.values.size());
    for (const DatedValue& value : places.values) {
        if (const auto column = column_of_field(value.column))
            offer.cells.push_back({static_cast<int>(value.row), *column, to_qt(value.text)});
    }
    return offer;
}

bool DailyModel::put(int row, int column, const QString& text) {
    const std::string typed = from_qt(text);
    // An empty text that was pasted is a missing value; a cell that is emptied by hand gets a zero.
    auto number = trimmed(typed).empty() ? std::optional<double>{k_missing} : exact_number(typed);
    if (!number) return false;
    try {
        return editor_->set_value(static_cast<std::size_t>(row), field_of(column), *number);
    } catch (const StoreError& error) {
        fault_ = error.what();
        return false;
    }
}

}  // namespace nivora
