#include "prep/table_export.h"

#include "base/number_text.h"
#include "prep/daily_units.h"
#include "store/table_io.h"

namespace nivora {
namespace {

std::string csv_value(TableReader& row, int position, FieldType type) {
    if (row.is_null(position)) return {};
    switch (type) {
        case FieldType::Integer:
        case FieldType::Long: {
            std::int32_t value = 0;
            row.read(position, value);
            return std::to_string(value);
        }
        case FieldType::Single: {
            float value = 0.0F;
            row.read(position, value);
            return shortest_text(value);
        }
        case FieldType::Double: {
            double value = 0.0;
            row.read(position, value);
            return shortest_text(value);
        }
        case FieldType::Date: {
            double date = 0.0;
            row.read(position, date);
            return iso_moment_text(date);
        }
        case FieldType::Text: break;
    }
    std::string text;
    row.read(position, text);
    return csv_text(text);
}

/// A unit that can stand behind a field's name: nothing for descriptions such as "a fraction, 0 to 1".
std::string short_unit(const Field& field, Units units) {
    if (field.type != FieldType::Single && field.type != FieldType::Double) return {};
    const std::string unit = daily_unit(field.name, units);
    const bool described = unit.find_first_of(",;") != std::string::npos || unit.rfind("no ", 0) == 0;
    return described ? std::string{} : unit;
}

/// A field's name, with its unit in the way in which a load of the file understands it.
std::string header_of(const Field& field, std::optional<Units> units) {
    const std::string unit = units ? short_unit(field, *units) : std::string{};
    return csv_text(unit.empty() ? field.name : field.name + " (" + unit + ")");
}

}  // namespace

std::string csv_text(const std::string& text) {
    const bool plain = !text.empty() && text.find_first_of(",\"\r\n") == std::string::npos &&
                       text.front() != ' ' && text.back() != ' ';
    if (plain) return text;
    std::string quoted = "\"";
    for (const char character : text) {
        quoted.push_back(character);
        if (character == '"') quoted.push_back('"');
    }
    return quoted + "\"";
}

void write_csv(BasinDatabase& database, const std::string& table, std::optional<Units> units,
               const std::function<void(std::string_view piece)>& write) {
    const auto fields = database.table_fields(table);
    std::string line;
    for (const Field& field : fields) line += (line.empty() ? "" : ",") + header_of(field, units);
    write(line += '\n');
    TableReader reader{database, {table, fields}};
    while (reader.next()) {
        line.clear();
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (i > 0) line += ',';
            line += csv_value(reader, static_cast<int>(i), fields[i].type);
        }
        write(line += '\n');
    }
}

}  // namespace nivora
