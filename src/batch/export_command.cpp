#include "base/durable_file.h"
#include "base/number_text.h"
#include "base/output_file.h"
#include "batch/commands.h"
#include "batch/output_guard.h"
#include "store/basin_opening.h"
#include "store/table_io.h"

#include <fmt/format.h>

namespace nivora {
namespace {

/// A text as CSV: in quotation marks if necessary, and if it is empty, to distinguish it from
/// a missing value.
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

/// Writes a table row by row, so that its size does not matter.
void write_csv(BasinDatabase& database, const std::string& table, OutputFile& file) {
    const auto fields = database.table_fields(table);
    std::string line;
    for (const Field& field : fields) line += (line.empty() ? "" : ",") + csv_text(field.name);
    file.write(line += '\n');
    TableReader reader{database, {table, fields}};
    while (reader.next()) {
        line.clear();
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (i > 0) line += ',';
            line += csv_value(reader, static_cast<int>(i), fields[i].type);
        }
        file.write(line += '\n');
    }
}

}  // namespace

int export_command(const ExportCommand& command, BatchDialogs& dialogs) {
    try {
        refuse_basin_as_output(command.csv, command.basin);
        const OpenBasin basin = open_to_read(command.basin, command.wait, Check::All);
        const std::string table = basin.database().existing_table(command.table);
        OutputFile file{command.csv, {command.basin}};
        write_csv(basin.database(), table, file);
        file.finish();
        return k_done;
    } catch (const StoreError& error) {
        dialogs.report_problem("Export failed", error.what());
    } catch (const FileError& error) {
        dialogs.report_problem("Export failed", error.what());
    }
    return k_failed;
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
    return k_failed;
}

}  // namespace nivora
