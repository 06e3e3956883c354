#include "store/daily_fields.h"

#include "store/table_io.h"

#include <utility>

namespace nivora {
namespace {

std::string select_statement(const DailySelection& selection) {
    std::string list;
    for (const Field& field : selection.fields) list += ", " + quoted_name(field.name);
    const std::string variables = selection.with_variables
                                      ? " INNER JOIN PhysicalData AS p ON p.Zone = t.Zone AND p.Date = t.Date"
                                      : "";
    return "SELECT t.rowid, t.Date" + list + " FROM " + quoted_name(selection.table) + " AS t" + variables +
           " WHERE t.Zone = ?" + (selection.period ? " AND t.Date >= ? AND t.Date < ?" : "") +
           " ORDER BY t.Date, t.rowid";
}

/// The SQL result of a mass edit in a field's type: a Single rounds, an Integer rounds to even.
std::string changed_value(const Field& field, MassEdit edit) {
    const std::string result = "(" + quoted_name(field.name) + (edit == MassEdit::Add ? " + " : " * ") + "?)";
    if (field.type == FieldType::Single) return "single" + result;
    if (field.type == FieldType::Double) return result;
    // One and a half times 2^52 leaves no room for a fraction: adding it rounds to even.
    return "CAST(" + result + " + 6755399441055744.0 - 6755399441055744.0 AS INTEGER)";
}

}  // namespace

DailyFields::DailyFields(BasinDatabase& database, DailySelection selection)
    : database_(database), selection_(std::move(selection)), updates_(selection_.fields.size()) {
    selection_.table = database_.existing_table(selection_.table);
}

ZoneDays DailyFields::read(int zone) {
    return guarded([&] {
        SQLite::Statement query{database_.sql(), select_statement(selection_)};
        query.bind(1, zone);
        if (selection_.period) {
            query.bind(2, selection_.period->start);
            query.bind(3, selection_.period->end + 1);  // a date may carry a time part
        }
        ZoneDays days;
        while (query.executeStep()) {
            days.rows.push_back(query.getColumn(0).getInt64());
            read_value(query, 1, days.dates.emplace_back());
            int position = 2;
            for (const Field& field : selection_.fields)
                days.values.push_back(read_number(query, position++, field.type));
        }
        return days;
    });
}

void DailyFields::store(std::int64_t row, std::size_t field, double value) {
    guarded([&] {
        auto& update = updates_.at(field);
        if (!update) {
            update = std::make_unique<SQLite::Statement>(
                database_.sql(), "UPDATE " + quoted_name(selection_.table) + " SET " +
                                     quoted_name(selection_.fields[field].name) + " = ? WHERE rowid = ?");
        }
        update->reset();
        bind_value(*update, 1, value);
        update->bind(2, row);
        update->exec();
        update->reset();
    });
}

void DailyFields::change(int zone, const Period& days, std::size_t field, MassEdit edit, double number) {
    guarded([&] {
        const Field& changed = selection_.fields.at(field);
        SQLite::Statement update{database_.sql(), "UPDATE " + quoted_name(selection_.table) + " SET " +
                                                      quoted_name(changed.name) + " = " +
                                                      changed_value(changed, edit) +
                                                      " WHERE Date >= ? AND Date < ? AND Zone = ?"};
        update.bind(1, number);
        update.bind(2, days.start);
        update.bind(3, days.end + 1);
        update.bind(4, zone);
        update.exec();
    });
}

void visit_days(BasinDatabase& database, std::string_view table, std::span<const Field> fields, int last_zone,
                const DailyVisitor& visit) {
    guarded([&] {
        std::string list = "Zone, Date";
        for (const Field& field : fields) list += ", " + quoted_name(field.name);
        SQLite::Statement query{database.sql(), "SELECT " + list + " FROM " +
                                                    quoted_name(database.existing_table(table)) +
                                                    " WHERE Zone >= 1 AND Zone <= ? AND Date IS NOT NULL"
                                                    " ORDER BY Zone, Date, rowid"};
        query.bind(1, last_zone);
        std::vector<double> values(fields.size());
        while (query.executeStep()) {
            std::int16_t zone = 0;
            DayCount day = 0;
            read_value(query, 0, zone);
            read_value(query, 1, day);
            for (std::size_t field = 0; field < fields.size(); ++field)
                values[field] = read_number(query, static_cast<int>(field) + 2, fields[field].type);
            visit(zone, day, values);
        }
    });
}

}  // namespace nivora
