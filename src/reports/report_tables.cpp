#include "reports/report_tables.h"

#include "store/store_error.h"

#include <algorithm>
#include <numeric>
#include <optional>

namespace nivora {
namespace {

/// Where a list holds each of some fields; nothing if it lacks one.
std::optional<std::vector<std::size_t>> places_in(const std::vector<std::string_view>& list,
                                                  const std::vector<std::string_view>& fields) {
    std::vector<std::size_t> places;
    for (const std::string_view field : fields) {
        const auto found = std::find(list.begin(), list.end(), field);
        if (found == list.end()) return std::nullopt;
        places.push_back(static_cast<std::size_t>(found - list.begin()));
    }
    return places;
}

}  // namespace

void ReportTables::expect(const ReportFields& wanted) {
    auto table = std::find_if(shared_.begin(), shared_.end(),
                              [&](const SharedTable& shared) { return shared.all.table == wanted.table; });
    if (table == shared_.end()) table = shared_.insert(shared_.end(), SharedTable{{.table = wanted.table}});
    ReportFields& all = table->all;
    all.zones = std::max(all.zones, wanted.zones);
    for (const std::string_view field : wanted.fields) {
        if (std::find(all.fields.begin(), all.fields.end(), field) == all.fields.end())
            all.fields.push_back(field);
    }
    table->columns.reset();
    table->tried = false;
}

ReportColumns ReportTables::read(const ReportFields& wanted) {
    for (SharedTable& table : shared_) {
        if (table.all.table != wanted.table || table.all.zones < wanted.zones) continue;
        const auto places = places_in(table.all.fields, wanted.fields);
        if (!places) continue;
        read_shared(table);
        if (table.columns) return {table.columns, *places};
    }
    std::vector<std::size_t> places(wanted.fields.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    return {columns_of(wanted), std::move(places)};
}

/// A fault is left to the report that shows the field: it reads its own fields then.
void ReportTables::read_shared(SharedTable& table) const {
    if (table.tried) return;
    table.tried = true;
    try {
        table.columns = columns_of(table.all);
    } catch (const StoreError&) {
        table.columns.reset();
    }
}

std::shared_ptr<const DailyColumns> ReportTables::columns_of(const ReportFields& fields) const {
    return std::make_shared<DailyColumns>(
        read_daily_columns(database_, fields.table, fields.fields, fields.zones, period_.start, period_.end));
}

}  // namespace nivora
