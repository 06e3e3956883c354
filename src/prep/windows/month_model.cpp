#include "prep/windows/month_model.h"

#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
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

}  // namespace

void MonthModel::show_zone(MonthlyAverages* averages, int zone) {
    averages_ = averages;
    zone_ = zone;
    reload();
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
    return to_qt(format_number(static_cast<double>(value(row, column)), "0.00"));
}

QString MonthModel::whole_text(int row, int column) const {
    return column == 0 ? text(row, column) : to_qt(shortest_text(value(row, column)));
}

QString MonthModel::header(int column) const {
    return QString::fromUtf8(k_headers.at(static_cast<std::size_t>(column)));
}

bool MonthModel::locked(int /*row*/, int column) const { return column == 0; }

bool MonthModel::put(int row, int column, const QString& text) {
    const std::string typed = from_qt(text);
    float taken = k_missing;
    if (!trimmed(typed).empty()) {
        const auto number = exact_number(typed);
        if (!number) return false;
        taken = static_cast<float>(*number);
        if (!std::isfinite(taken)) return false;
    }
    try {
        averages_->set_value(zone_, row + 1, static_cast<std::size_t>(column - 1), taken);
    } catch (const StoreError& error) {
        fault_ = error.what();
        return false;
    }
    edited_ = true;
    return true;
}

}  // namespace nivora
