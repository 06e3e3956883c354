#include "base/durable_file.h"
#include "base/number_text.h"
#include "batch/commands.h"
#include "store/table_io.h"

#include <fmt/format.h>

namespace nivora {
namespace {

namespace fs = std::filesystem;

/// A text in the form of CSV: in quote marks where it has to be, and where it is empty, which a missing value
/// is not.
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

std::string csv_value(SQLite::Statement& row, int position, FieldType type) {
    if (is_null(row, position)) return {};
    switch (type) {
        case FieldType::Integer:
        case FieldType::Long: {
            std::int32_t value = 0;
            read_value(row, position, value);
            return std::to_string(value);
        }
        case FieldType::Single: {
            float value = 0.0F;
            read_value(row, position, value);
            return shortest_text(value);
        }
        case FieldType::Double: {
            double value = 0.0;
            read_value(row, position, value);
            return shortest_text(value);
        }
        case FieldType::Date: {
            double date = 0.0;
            read_value(row, position, date);
            return iso_moment_text(date);
        }
        case FieldType::Text: break;
    }
    std::string text;
    read_value(row, position, text);
    return csv_text(text);
}

std::string csv_of(BasinDatabase& database, const std::string& table) {
    const auto fields = database.table_fields(table);
    const std::string name = database.stored_name(table).value_or(table);
    return guarded([&] {
        std::string csv;
        for (const Field& field : fields) csv += (csv.empty() ? "" : ",") + csv_text(field.name);
        csv += '\n';
        SQLite::Statement query{database.sql(), "SELECT * FROM " + quoted_name(name) + " ORDER BY rowid"};
        while (query.executeStep()) {
            for (std::size_t i = 0; i < fields.size(); ++i) {
                if (i > 0) csv += ',';
                csv += csv_value(query, static_cast<int>(i), fields[i].type);
            }
            csv += '\n';
        }
        return csv;
    });
}

/// The basin itself is no place for its table.
void refuse_basin(const fs::path& csv, const fs::path& basin) {
    if (!fs::exists(csv) || !fs::equivalent(csv, basin)) return;
    throw FileError(fmt::format("The file '{}' can't be written: it is the basin.", path_text(csv)));
}

}  // namespace

int export_command(const std::filesystem::path& basin, const std::string& table,
                   const std::filesystem::path& csv, BatchDialogs& dialogs) {
    try {
        BasinDatabase database{basin, Access::ReadOnly};
        const std::string content = csv_of(database, table);
        refuse_basin(csv, basin);
        write_whole_file(csv, content);
        return k_done;
    } catch (const StoreError& error) {
        dialogs.report_problem("Export failed", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("Export failed", error.what());
    }
    return k_said_no;
}

int template_command(const std::filesystem::path& file, BatchDialogs& dialogs) {
    try {
        BasinDatabase::create_template(file);
        return k_done;
    } catch (const StoreError& error) {
        dialogs.report_problem("The template was not written", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("The template was not written", error.what());
    }
    return k_said_no;
}

}  // namespace nivora
