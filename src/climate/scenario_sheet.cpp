// Reads the sheet beside the program that says what the columns of the scenario grid offer.
#include "base/durable_file.h"
#include "base/text.h"
#include "climate/scenario_definitions.h"

#include <fmt/format.h>

#include <array>
#include <sstream>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr const char* k_sheet_file = "climate_1.ss2";
constexpr const char* k_first_line = "Nivora sheet 1";
constexpr const char* k_title = "Error initializing the 'Climate Change Scenario Definition'window";
constexpr std::uintmax_t k_largest_sheet = 64U << 10U;
constexpr std::string_view k_byte_order_mark = "\xEF\xBB\xBF";

/// One column of the sheet.
struct SheetColumn {
    std::string header;
    std::string cells;                 ///< "list", "number", or "date" and its pattern
    std::vector<std::string> entries;  ///< of a list, by code
    std::vector<std::string> extra;    ///< further entries, which only some rows offer
};

/// What the grid needs for a column.
struct NeededColumn {
    std::string_view cells;
    std::size_t entries;
    std::size_t extra;
};
constexpr std::array<NeededColumn, 6> k_needed{{
    {"list", k_last_scenario_variable + 1, 0},
    {"date mm/dd/yyyy", 0, 0},
    {"date mm/dd/yyyy", 0, 0},
    {"list", 4, 1},
    {"number", 0, 0},
    {"list", k_most_zones + 1, 0},
}};

/// For the user: what is wrong with a sheet.
class SheetError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Adds one line to the columns: a keyword and, after a blank, its text.
void take_line(std::string_view line, int number, std::vector<SheetColumn>& columns) {
    const std::size_t blank = line.find(' ');
    const std::string_view keyword = line.substr(0, blank);
    const std::string text{blank == std::string_view::npos ? std::string_view{}
                                                           : trimmed(line.substr(blank))};
    if (text.empty()) throw SheetError(fmt::format("line {} ends behind its first word", number));
    if (keyword == "column") {
        columns.push_back({.header = text, .cells = {}, .entries = {}, .extra = {}});
        return;
    }
    if (columns.empty()) throw SheetError(fmt::format("line {} belongs to no column", number));
    if (keyword == "cells") {
        columns.back().cells = text;
    } else if (keyword == "entry") {
        columns.back().entries.push_back(text);
    } else if (keyword == "extra") {
        columns.back().extra.push_back(text);
    } else {
        throw SheetError(fmt::format("line {} begins with a word that has no meaning there", number));
    }
}

std::vector<SheetColumn> read_columns(std::string_view content) {
    if (content.substr(0, k_byte_order_mark.size()) == k_byte_order_mark)
        content.remove_prefix(k_byte_order_mark.size());
    if (!is_utf8(content)) throw SheetError("it is not UTF-8 text");
    std::vector<SheetColumn> columns;
    std::istringstream lines{std::string{content}};
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        const std::string_view shown = trimmed(line);
        if (++number == 1) {
            if (shown != k_first_line) throw SheetError(fmt::format("line 1 is not '{}'", k_first_line));
        } else if (!shown.empty() && shown.front() != '#') {
            take_line(shown, number, columns);
        }
    }
    return columns;
}

/// The word of a code, from 0, in a column of the grid.
std::string word_of_code(std::size_t column, int code) {
    switch (column) {
        case 0: return scenario_variable_text(code);
        case 3: return edit_action_text(code);
        default: return scenario_zone_text(code);
    }
}

/// A list with other words would offer values that no cell accepts.
void check_words(const SheetColumn& column, std::size_t number) {
    std::vector<std::string> words = column.entries;
    words.insert(words.end(), column.extra.begin(), column.extra.end());
    for (std::size_t code = 0; code < words.size(); ++code) {
        const std::string word = word_of_code(number, static_cast<int>(code));
        if (words[code] != word) {
            throw SheetError(fmt::format("column {}, '{}', has the entry '{}' where '{}' belongs", number + 1,
                                         column.header, words[code], word));
        }
    }
}

ScenarioSheet sheet_of(const std::vector<SheetColumn>& columns) {
    if (columns.size() != k_needed.size())
        throw SheetError(fmt::format("it has {} columns and not {}", columns.size(), k_needed.size()));
    ScenarioSheet sheet;
    for (std::size_t i = 0; i < k_needed.size(); ++i) {
        const bool fits = columns[i].cells == k_needed.at(i).cells &&
                          columns[i].entries.size() == k_needed.at(i).entries &&
                          columns[i].extra.size() == k_needed.at(i).extra;
        if (!fits)
            throw SheetError(
                fmt::format("column {}, '{}', is not what the grid needs there: cells {} with {} "
                            "entries and {} extra",
                            i + 1, columns[i].header, k_needed.at(i).cells, k_needed.at(i).entries,
                            k_needed.at(i).extra));
        check_words(columns[i], i);
        sheet.headers.push_back(columns[i].header);
    }
    sheet.variables = columns[0].entries;
    sheet.zones = columns[5].entries;
    return sheet;
}

}  // namespace

std::optional<ScenarioSheet> load_scenario_sheet(const fs::path& program_folder, Dialogs& dialogs) {
    const fs::path path = program_folder / k_sheet_file;
    std::error_code unknown;  // a file that cannot be looked up counts as missing
    if (!fs::exists(path, unknown)) {
        dialogs.stop(fmt::format("A required system file, '{}', could not be located!", k_sheet_file),
                     k_title);
        return std::nullopt;
    }
    std::string problem;
    try {
        return sheet_of(read_columns(read_whole_file(path, k_largest_sheet)));
    } catch (const SheetError& error) {
        problem = fmt::format("The file '{}': {}.", path_text(path), error.what());
    } catch (const FileError& error) {
        problem = error.what();
    }
    dialogs.stop(fmt::format("A required system file, '{}', could not be read!  {}", k_sheet_file, problem),
                 k_title);
    return std::nullopt;
}

}  // namespace nivora
