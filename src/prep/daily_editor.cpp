#include "prep/daily_editor.h"

#include "base/entry_refusal.h"
#include "base/number_text.h"
#include "base/text.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

constexpr double k_longest_lag = 42.0;  // hours
constexpr double k_largest_coefficient = 9.99;
constexpr int k_recession_decimals = 4;

/// The tables whose fields a view may show.
std::vector<TableSchema> tables_of(DataView view) {
    switch (view) {
        case DataView::PhysicalData: return {template_table(k_physical_data)};
        case DataView::Parameters: return {parameter_table("")};
        case DataView::Results: return {sim_results_table()};
        case DataView::Scenario: break;
    }
    return {template_table(k_physical_data), parameter_table("")};
}

FieldType type_of(DataView view, const std::string& name) {
    for (const TableSchema& table : tables_of(view)) {
        for (const Field& field : table.fields) {
            if (same_name(field.name, name)) return field.type;
        }
    }
    return FieldType::Single;
}

/// Among results and the basin's own variables, snow covered area has the name of its depletion curve.
std::string header_of(DataView view, const std::string& field) {
    if (view == DataView::Results && same_name(field, "M1S")) return "M·(1-S)";
    const bool renamed = view == DataView::PhysicalData || view == DataView::Results;
    const std::size_t at = field.find("SCA");
    if (!renamed || at == std::string::npos) return field;
    return std::string{field}.replace(at, 3, "CDC");
}

/// The exponent y is a few hundredths: two decimals would show little of it.
bool is_recession_coefficient(const std::string& field) {
    for (const char* name : {"Xcoeff", "XcoeffCC", "Ycoeff", "YcoeffCC"}) {
        if (same_name(field, name)) return true;
    }
    return false;
}

void limit(DailyColumn& column) {
    if (same_name(column.field, "RCA")) {
        column.low = 0.0;
        column.high = 1.0;
    } else if (same_name(column.field, "LagTime")) {
        column.low = 0.0;
        column.high = k_longest_lag;
    } else if (same_name(column.field, "Xcoeff") || same_name(column.field, "Ycoeff")) {
        column.low = -k_largest_coefficient;
        column.high = k_largest_coefficient;
    }
}

bool outside_limits(const DailyColumn& column, double value) {
    return (column.low && value < *column.low) || (column.high && value > *column.high);
}

/// A value as the field keeps it; nothing if it can't.
std::optional<double> kept_value(FieldType type, double value) {
    if (is_missing(value)) return value;
    if (std::isinf(value)) return std::nullopt;
    if (type == FieldType::Double) return value + 0.0;
    if (type == FieldType::Single) {
        const auto rounded = static_cast<float>(value);
        if (std::isinf(rounded)) return std::nullopt;
        return static_cast<double>(rounded) + 0.0;
    }
    if (value != std::floor(value) || !to_integer16(value)) return std::nullopt;
    return value + 0.0;
}

bool same_value(double a, double b) { return a == b || (is_missing(a) && is_missing(b)); }

/// A stored value of a field; NaN for a missing one. @throws StoreError if the field can't hold it
double read_cell(SQLite::Statement& query, int position, FieldType type) {
    if (is_null(query, position)) return static_cast<double>(k_missing);
    if (type == FieldType::Integer) {
        std::int16_t value = 0;
        read_value(query, position, value);
        return value;
    }
    if (type == FieldType::Single) {
        float value = 0.0F;
        read_value(query, position, value);
        return static_cast<double>(value);
    }
    double value = 0.0;
    read_value(query, position, value);
    return value;
}

/// The SQL result of a mass edit in a field's type: a Single rounds, an Integer rounds to even.
std::string changed_value(const DailyColumn& column, MassEdit edit) {
    const std::string result =
        "(" + quoted_name(column.field) + (edit == MassEdit::Add ? " + " : " * ") + "?)";
    if (column.type == FieldType::Single) return "single" + result;
    if (column.type == FieldType::Double) return result;
    // One and a half times 2^52 leaves no room for a fraction: adding it rounds to even.
    return "CAST(" + result + " + 6755399441055744.0 - 6755399441055744.0 AS INTEGER)";
}

/// The days of a zone.
struct ZoneDays {
    std::vector<std::int64_t> rows;  ///< the row number of each day
    std::vector<DayCount> dates;
    std::vector<double> values;  ///< day by day, the columns after the date
};

}  // namespace

std::string daily_print_suffix(DataView view) {
    switch (view) {
        case DataView::PhysicalData: return "_variables";
        case DataView::Parameters: return "_parameters";
        case DataView::Results: return "_Results";
        case DataView::Scenario: break;
    }
    return {};
}

std::vector<std::string> daily_fields(DataView view) {
    switch (view) {
        case DataView::PhysicalData:
            return {"Date", "Runoff", "Tmax", "Tmin", "Tavg", "SCA", "Precip", "NetRadiation"};
        case DataView::Parameters:
            return {"Date", "LapseRate", "Tcrit", "AN", "LagTime", "CS", "Cr", "RCA", "Xcoeff", "Ycoeff"};
        case DataView::Results: {
            std::vector<std::string> fields;
            for (const Field& field : sim_results_table().fields) {
                if (!same_name(field.name, "Zone")) fields.push_back(field.name);
            }
            return fields;
        }
        case DataView::Scenario: break;
    }
    return {"Date",  "Runoff", "TMax",    "Tmin", "Tavg", "Precip", "SCA",    "NetRadiation", "LapseRate",
            "Tcrit", "AN",     "LagTime", "CS",   "cr",   "RCA",    "Xcoeff", "Ycoeff"};
}

std::vector<DailyColumn> daily_columns(DataView view, const std::vector<std::string>& fields) {
    std::vector<DailyColumn> columns;
    for (const std::string& field : fields) {
        DailyColumn column{.field = field,
                           .header = header_of(view, field),
                           .type = type_of(view, field),
                           .low = {},
                           .high = {}};
        if (column.type == FieldType::Date || column.type == FieldType::Integer) column.decimals = 0;
        if (is_recession_coefficient(field)) column.decimals = k_recession_decimals;
        if (view == DataView::Parameters) limit(column);
        columns.push_back(std::move(column));
    }
    return columns;
}

InputBox mass_edit_question(MassEdit edit, const std::string& field) {
    return {.prompt = edit == MassEdit::Add
                          ? "Enter a constant value (+,-) to add to each daily value in your selection"
                          : "Enter a desired proportion for each daily value in your selection",
            .title = "Change each daily value of " + field + " in the selection"};
}

struct DailyEditor::Content {
    Content(const std::filesystem::path& work_file, DataView shown, DailyQuery wanted)
        : database{work_file, Access::ReadWrite},
          view{shown},
          query{std::move(wanted)},
          columns{daily_columns(view, query.fields)},
          updates(columns.size()) {
        query.table = database.existing_table(query.table);
        days = read_zone(zone);
    }

    [[nodiscard]] std::string select_statement() const {
        std::string list;
        for (std::size_t column = 1; column < columns.size(); ++column)
            list += ", " + quoted_name(columns[column].field);
        const std::string table = quoted_name(query.table) + " AS t";
        const std::string variables =
            view == DataView::Scenario
                ? " INNER JOIN PhysicalData AS p ON p.Zone = t.Zone AND p.Date = t.Date"
                : "";
        return "SELECT t.rowid, t.Date" + list + " FROM " + table + variables + " WHERE t.Zone = ?" +
               (query.period ? " AND t.Date >= ? AND t.Date < ?" : "") + " ORDER BY t.Date, t.rowid";
    }

    [[nodiscard]] ZoneDays read_zone(int wanted) {
        return guarded([&] {
            SQLite::Statement rows{database.sql(), select_statement()};
            rows.bind(1, wanted);
            if (query.period) {
                rows.bind(2, query.period->start);
                rows.bind(3, query.period->end + 1);  // a date may carry a time part
            }
            ZoneDays read;
            while (rows.executeStep()) {
                read.rows.push_back(rows.getColumn(0).getInt64());
                read_value(rows, 1, read.dates.emplace_back());
                for (std::size_t column = 1; column < columns.size(); ++column)
                    read.values.push_back(
                        read_cell(rows, static_cast<int>(column) + 1, columns[column].type));
            }
            return read;
        });
    }

    [[nodiscard]] std::size_t cell(std::size_t row, std::size_t column) const {
        return row * (columns.size() - 1) + column - 1;
    }

    void store(std::size_t row, std::size_t column, double value) {
        guarded([&] {
            auto& update = updates[column];
            if (!update) {
                update = std::make_unique<SQLite::Statement>(
                    database.sql(), "UPDATE " + quoted_name(query.table) + " SET " +
                                        quoted_name(columns[column].field) + " = ? WHERE rowid = ?");
            }
            update->reset();
            bind_value(*update, 1, value);
            update->bind(2, days.rows[row]);
            update->exec();
            update->reset();
        });
    }

    /// Runs the one statement of a mass edit.
    void change_all(const DailyColumn& column, MassEdit edit, const Period& dates, double factor) {
        guarded([&] {
            SQLite::Statement update{database.sql(), "UPDATE " + quoted_name(query.table) + " SET " +
                                                         quoted_name(column.field) + " = " +
                                                         changed_value(column, edit) +
                                                         " WHERE Date >= ? AND Date < ? AND Zone = ?"};
            update.bind(1, factor);
            update.bind(2, dates.start);
            update.bind(3, dates.end + 1);
            update.bind(4, zone);
            update.exec();
        });
    }

    BasinDatabase database;
    HeldTransaction transaction{database};
    DataView view;
    DailyQuery query;
    std::vector<DailyColumn> columns;
    std::vector<std::unique_ptr<SQLite::Statement>> updates;  ///< by column, created at its first use
    ZoneDays days;
    int zone = 1;
    bool changed = false;
};

DailyEditor::DailyEditor(const std::filesystem::path& work_file, DataView view, DailyQuery query)
    : content_(std::make_unique<Content>(work_file, view, std::move(query))) {}

DailyEditor::~DailyEditor() = default;  // closing a file rolls back its open transaction

const std::vector<DailyColumn>& DailyEditor::columns() const { return content_->columns; }

std::size_t DailyEditor::rows() const { return content_->days.rows.size(); }

DayCount DailyEditor::date(std::size_t row) const { return content_->days.dates.at(row); }

double DailyEditor::value(std::size_t row, std::size_t column) const {
    if (column == 0) return static_cast<double>(date(row));
    return content_->days.values.at(content_->cell(row, column));
}

std::string DailyEditor::refusal(std::size_t column, double value) const {
    const DailyColumn& shown = content_->columns.at(column);
    if (outside_limits(shown, value)) return limits_refusal(*shown.low, *shown.high);
    if (kept_value(shown.type, value)) return {};
    const bool fraction = shown.type == FieldType::Integer && value != std::floor(value);
    return fraction ? "a whole number is needed" : k_number_too_large;
}

bool DailyEditor::set_value(std::size_t row, std::size_t column, double value) {
    Content& content = *content_;
    if (!content.transaction.is_open() || content.view == DataView::Scenario || column == 0) return false;
    const DailyColumn& shown = content.columns.at(column);
    const auto kept = kept_value(shown.type, value);
    if (!kept || outside_limits(shown, value)) return false;
    double& held = content.days.values.at(content.cell(row, column));
    if (same_value(held, *kept)) return true;
    content.store(row, column, *kept);
    held = *kept;
    content.changed = true;
    return true;
}

int DailyEditor::zone() const { return content_->zone; }

void DailyEditor::show_zone(int zone) {
    content_->days = content_->read_zone(zone);
    content_->zone = zone;
}

void DailyEditor::mass_edit(MassEdit edit, std::size_t column, std::size_t first_row, std::size_t last_row,
                            float factor) {
    Content& content = *content_;
    if (!content.transaction.is_open() || content.view == DataView::Scenario)
        throw StoreError(StoreFault::ReadOnly, "These values are read-only.");
    if (column == 0) throw StoreError(StoreFault::Value, "The days of a table can't be changed.");
    const auto exact_factor = exact_number(single_text(factor));
    if (!exact_factor) throw StoreError(StoreFault::Value, "No field can hold an infinite number.");
    const auto [first, last] = std::minmax({date(first_row), date(last_row)});
    const Period dates{first, last};
    ZoneDays days;
    atomically(content.database, [&] {
        content.change_all(content.columns.at(column), edit, dates, *exact_factor);
        days = content.read_zone(content.zone);  // throws if a field can't hold its value
    });
    const bool same = std::equal(days.values.begin(), days.values.end(), content.days.values.begin(),
                                 content.days.values.end(), same_value);
    content.days = std::move(days);
    content.changed = content.changed || !same;
}

bool DailyEditor::changed() const { return content_->changed; }

void DailyEditor::commit() { content_->transaction.commit(); }

void DailyEditor::roll_back() { content_->transaction.roll_back(); }

}  // namespace nivora
