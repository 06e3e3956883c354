// The daily tables of a basin, as the reports of one request read them.
#pragma once

#include "store/daily_columns.h"
#include "store/daily_table.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The fields of a daily table that a report shows.
struct ReportFields {
    std::string table = {};
    std::vector<std::string_view> fields = {};
    int zones = 0;  ///< from zone 1 on
};

/// The fields of one report over its period, numbered as the report lists them. Missing values are NaN.
class ReportColumns {
public:
    /// @param places where the columns hold each of the report's fields
    ReportColumns(std::shared_ptr<const DailyColumns> columns, std::vector<std::size_t> places)
        : columns_(std::move(columns)), places_(std::move(places)) {}

    /// A field of a zone (from 1), one value a day; valid as long as this object.
    [[nodiscard]] std::span<const double> column(int zone, std::size_t field) const {
        return columns_->column(zone, places_.at(field));
    }
    [[nodiscard]] double at(int zone, std::size_t field, DayCount day) const {
        return columns_->at(zone, places_.at(field), day);
    }

private:
    std::shared_ptr<const DailyColumns> columns_;
    std::vector<std::size_t> places_;
};

/// Reads the tables of a request, and reads a table once for all reports that are expected.
class ReportTables {
public:
    ReportTables(BasinDatabase& database, const Period& period) : database_(database), period_(period) {}

    /// Tells that a report with these fields will follow.
    void expect(const ReportFields& wanted);

    /// The fields of a report. If a field of another report cannot be read, this report is not affected.
    /// @throws StoreError if the table or one of its own fields is missing, or holds what is not a number
    [[nodiscard]] ReportColumns read(const ReportFields& wanted);

private:
    /// A table with the fields of all reports that are expected to show it.
    struct SharedTable {
        ReportFields all = {};
        std::shared_ptr<const DailyColumns> columns = {};
        bool tried = false;
    };

    void read_shared(SharedTable& table) const;
    [[nodiscard]] std::shared_ptr<const DailyColumns> columns_of(const ReportFields& fields) const;

    BasinDatabase& database_;
    Period period_;
    std::vector<SharedTable> shared_;
};

}  // namespace nivora
