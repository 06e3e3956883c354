#include "prep/table_sample.h"

#include "base/text.h"
#include "prep/table_columns.h"
#include "store/rows.h"

#include <fmt/format.h>

#include <algorithm>

namespace nivora {
namespace {

std::vector<std::string> texts_of(std::span<const std::string_view> cells) {
    std::vector<std::string> texts;
    texts.reserve(cells.size());
    for (const std::string_view cell : cells) texts.push_back(to_utf8(cell));
    return texts;
}

/// A header without the unit in brackets at its end.
std::string_view plain_name(std::string_view header) {
    const std::string_view name = trimmed(header);
    const char last = name.empty() ? '\0' : name.back();
    if (last != ')' && last != ']') return name;
    const std::size_t opened = name.find(last == ')' ? '(' : '[');
    return opened == std::string_view::npos || opened == 0 ? name : trimmed(name.substr(0, opened));
}

}  // namespace

TableSample read_sample(const ByteSource& source, std::optional<char> separator, std::size_t rows) {
    TableSample sample;
    try {
        CsvReader reader{source, separator};
        if (!reader.next()) {
            sample.fault = "The file is empty.";
            return sample;
        }
        sample.separator = reader.separator();
        sample.headers = texts_of(reader.cells());
        while (sample.rows.size() < rows && reader.next()) sample.rows.push_back(texts_of(reader.cells()));
    } catch (const CsvError& error) {
        sample.fault = fmt::format("Line {}: {}.", error.line(), error.what());
    }
    return sample;
}

ColumnMeanings column_meanings(BasinDatabase& database, const std::string& table, bool wide) {
    const LoadTarget target = load_target(database, table);
    ColumnMeanings meanings;
    meanings.keys.emplace_back(target.monthly ? "Month" : "Date");
    if (!wide) {
        meanings.keys.insert(meanings.keys.begin(), "Zone");
        for (const Field& field : target.fields) meanings.values.push_back(field.name);
        return meanings;
    }
    for (int zone = 1; zone <= target.zones; ++zone) meanings.values.push_back(zone_letter(zone));
    return meanings;
}

std::vector<std::string> loaded_fields(BasinDatabase& database, const std::string& table) {
    std::vector<std::string> names;
    for (const Field& field : load_target(database, table).fields) names.push_back(field.name);
    return names;
}

std::vector<ColumnChoice> guessed_columns(const TableSample& sample, const ColumnMeanings& meanings) {
    std::vector<std::string> all = meanings.keys;
    all.insert(all.end(), meanings.values.begin(), meanings.values.end());
    std::vector<ColumnChoice> choices;
    choices.reserve(sample.headers.size());
    for (const std::string& header : sample.headers) {
        ColumnChoice choice{.header = header, .meaning = {}, .unit = {}};
        const auto named = std::find_if(all.begin(), all.end(), [&](const std::string& meaning) {
            return same_name(meaning, plain_name(header));
        });
        // A second column of one meaning is left to the user.
        if (named != all.end()) {
            choice.meaning = *named;
            all.erase(named);
        }
        choices.push_back(std::move(choice));
    }
    return choices;
}

void state_columns(TableLoad& load, const std::vector<ColumnChoice>& choices) {
    load.columns.clear();
    load.units.clear();
    const bool wide = !load.wide_field.empty();
    for (const ColumnChoice& choice : choices) {
        if (choice.meaning.empty()) continue;
        load.columns.push_back({.meaning = choice.meaning, .header = choice.header});
        const std::string unit{trimmed(choice.unit)};
        if (unit.empty()) continue;
        const std::string field = wide ? load.wide_field : choice.meaning;
        const bool stated = std::any_of(load.units.begin(), load.units.end(), [&](const StatedUnit& each) {
            return same_name(each.field, field) && same_name(each.unit, unit);
        });
        if (!stated) load.units.push_back({.field = field, .unit = unit});
    }
}

}  // namespace nivora
