#include "windows/prep/month_model.h"

#include "base/entry_refusal.h"
#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "prep/daily_units.h"
#include "widgets/qt_text.h"

#include <array>
#include <cmath>

namespace nivora {
namespace {

constexpr int k_months = 12;
constexpr std::array<const char*, 12> k_month_names{"January",   "February", "March",    "April",
                                                    "May",       "June",     "July",     "August",
                                                    "September", "October",  "November", "December"};
constexpr std::array<const char*, 5> k_headers{"Month", "Maximum Temperature", "Minimum Temperature",
                                               "Average Temperature", "Precipitation"};

/// The daily variables whose averages the columns hold.
constexpr std::array<const char*, 5> k_fields{"", "Tmax", "Tmin", "Tavg", "Precip"};

}  // namespace

void MonthModel::show_zone(MonthlyAverages* averages, int zone) {
    const bool same_rows = averages_ == averages;
    averages_ = averages;
    zone_ = zone;
    if (same_rows) return show_values();
    reload();
}

void MonthModel::note_typed(const std::optional<CellText>& typed) {
    if (averages_ == nullptr) return;
    averages_->note_nothing_typed();
    if (!typed || typed->column == 0) return;
    const std::string text = from_qt(typed->text);
    const auto number = exact_number(text);
    if (!number && !trimmed(text).empty()) return;
    averages_->note_typed(zone_, typed->row + 1, static_cast<std::size_t>(typed->column - 1),
                          number ? static_cast<float>(*number) : k_missing);
}

int MonthModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() || averages_ == nullptr ? 0 : k_months;
}

int MonthModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(k_headers.size());
}

CellFormat MonthModel::format(int /*row*/, int column) const {
    return {.kind = column == 0 ? CellFormat::Kind::Text : CellFormat::Kind::Number};
}

float MonthModel::value(int row, int column) const {
    return averages_->values(zone_, row + 1).at(static_cast<std::size_t>(column - 1));
}

QString MonthModel::text(int row, int column) const {
    if (column == 0) return QString::fromUtf8(k_month_names.at(static_cast<std::size_t>(row)));
    return to_qt(format_number(as_double(value(row, column)), "0.00"));
}

QString MonthModel::whole_text(int row, int column) const {
    return column == 0 ? text(row, column) : to_qt(shortest_text(value(row, column)));
}

QString MonthModel::header(int column) const {
    return QString::fromUtf8(k_headers.at(static_cast<std::size_t>(column)));
}

bool MonthModel::locked(int /*row*/, int column) const { return column == 0; }

QString MonthModel::unit(int column) const {
    const std::string unit = daily_unit(k_fields.at(static_cast<std::size_t>(column)), units_);
    return column == static_cast<int>(k_fields.size()) - 1 ? to_qt(unit + " a day") : to_qt(unit);
}

QString MonthModel::place(int row, int column) const {
    return QStringLiteral("%1, %2, zone %3").arg(header(column), text(row, 0)).arg(zone_);
}

QString MonthModel::entry_refusal(int /*row*/, int /*column*/, const QString& text) const {
    return to_qt(single_refusal(from_qt(text)));
}

bool MonthModel::put(int row, int column, const QString& text) {
    const std::string typed = from_qt(text);
    float taken = k_missing;
    if (!trimmed(typed).empty()) {
        const auto number = exact_number(typed);
        if (!number) return false;
        taken = static_cast<float>(*number);
        if (!std::isfinite(taken)) return false;
    }
    const float held = value(row, column);
    if (taken == held || (std::isnan(taken) && std::isnan(held))) return true;
    try {
        averages_->set_value(zone_, row + 1, static_cast<std::size_t>(column - 1), taken);
    } catch (const StoreError& error) {
        fault_ = error.what();
        return false;
    }
    return true;
}

}  // namespace nivora
