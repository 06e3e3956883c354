#include "batch/load_command.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "base/text.h"
#include "batch/commands.h"
#include "store/basin_opening.h"

#include <fmt/format.h>

#include <map>
#include <ostream>
#include <utility>

namespace nivora {

struct LoadTexts {
    std::string basin;
    std::string table;
    std::string csv;
    std::string field;
    std::vector<std::string> columns;
    std::string zone;
    std::vector<std::string> from;
    std::string separator;
    std::string decimal = "point";
    std::string date_pattern;
    std::vector<std::string> missing;
    bool any_order = false;
    bool dry_run = false;
};

namespace {

constexpr const char* k_failed_title = "Load failed";

const std::map<std::string, char>& separators() {
    static const std::map<std::string, char> k_by_name{{"comma", ','}, {"semicolon", ';'}, {"tab", '\t'}};
    return k_by_name;
}

/// The two texts around the first equals sign; nothing if one of them is empty.
std::optional<std::pair<std::string, std::string>> split_pair(std::string_view text) {
    const std::size_t sign = text.find('=');
    if (sign == std::string_view::npos) return std::nullopt;
    const std::string_view left = trimmed(text.substr(0, sign));
    const std::string_view right = trimmed(text.substr(sign + 1));
    if (left.empty() || right.empty()) return std::nullopt;
    return std::pair{std::string{left}, std::string{right}};
}

std::string column_pair(const std::string& text) {
    return split_pair(text) ? std::string{} : "'" + text + "' is not a column such as Precip=rain";
}

std::string date_pattern(const std::string& text) {
    if (DatePattern::read(text)) return {};
    return "'" + text + "' is not a pattern such as DD.MM.YYYY, MM/DD/YYYY or YYYYMMDD";
}

StatedUnit stated_unit(const std::string& text) {
    if (const auto pair = split_pair(text)) return {.field = pair->first, .unit = pair->second};
    return {.field = {}, .unit = text};
}

/// The file of a command must not be the basin: to close it would drop the locks of the basin.
void refuse_basin_as_input(const LoadCommand& command) {
    if (!same_file(command.csv, command.basin)) return;
    throw FileError(
        fmt::format("The file '{}' can't be loaded: it is the basin itself.", path_text(command.csv)));
}

void report_refusals(const LoadCommand& command, const LoadResult& result, BatchDialogs& dialogs) {
    const std::string file = path_text(command.csv.filename());
    for (const RefusedRow& row : result.refusals)
        dialogs.report_problem(fmt::format("{}, line {}", file, row.line), row.reason + ".");
    const std::int64_t others = result.refused - static_cast<std::int64_t>(result.refusals.size());
    dialogs.report_problem(
        k_failed_title, fmt::format("{} rows are refused{}. The basin is unchanged.", result.refused,
                                    others > 0 ? fmt::format(", of which {} are not listed", others) : ""));
}

std::string summary(const LoadCommand& command, const LoadResult& result) {
    const char* verb = result.refused > 0 ? "Not loaded" : command.dry_run ? "Would load" : "Loaded";
    return fmt::format("{} {} into {} of {}: {} new, {} changed, {} equal, {} refused.\n", verb,
                       path_text(command.csv), command.load.table, path_text(command.basin), result.added,
                       result.changed, result.equal, result.refused);
}

/// The words for a fault of the file.
std::string fault_text(const LoadCommand& command, std::size_t line, const char* reason) {
    const std::string file = path_text(command.csv);
    return line == 0 ? fmt::format("The file '{}': {}.", file, reason)
                     : fmt::format("The file '{}', line {}: {}.", file, line, reason);
}

}  // namespace

LoadOptions::LoadOptions(CLI::App& app)
    : texts_(std::make_unique<LoadTexts>()),
      command_(app.add_subcommand(
          "load",
          "Load a table from CSV, wholly or not at all: new days are added, values of others changed")) {
    LoadTexts& texts = *texts_;
    command_->add_option("BASIN.mdb", texts.basin, "Basin file")->required();
    command_
        ->add_option("TABLE", texts.table,
                     "PhysicalData, BasinAverages, or a simulation's name for its parameters")
        ->required();
    command_->add_option("--csv", texts.csv, "File to read, also a pipe; its first row names the columns")
        ->required();
    CLI::Option* const field = command_->add_option(
        "--field", texts.field, "The file has this field in a column for each zone, beside Date (or Month)");
    command_
        ->add_option(
            "--columns", texts.columns,
            "Headers of the columns to read, as FIELD=HEADER, or as ZONE=HEADER with --field, joined by "
            "commas; Zone, Date and Month may be named as well. All columns by their own headers if not "
            "given")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::Validator(column_pair, "FIELD=HEADER"));
    command_->add_option("--zone", texts.zone, "The zone of all rows of a file without a column Zone")
        ->excludes(field);
    command_
        ->add_option("--from", texts.from,
                     "Unit of the only field, such as mm, or of fields as FIELD=UNIT joined by commas; the "
                     "basin's own, or the one in brackets behind a header, if not given")
        ->delimiter(',')
        ->allow_extra_args(false);
    command_->add_option("--separator", texts.separator, "comma, semicolon or tab; found out if not given")
        ->check(CLI::IsMember({"comma", "semicolon", "tab"}));
    command_->add_option("--decimal", texts.decimal, "Decimal sign: point or comma")
        ->check(CLI::IsMember({"point", "comma"}))
        ->capture_default_str();
    command_
        ->add_option("--date-pattern", texts.date_pattern,
                     "How days are written, such as DD.MM.YYYY or M/D/YYYY; YYYY-MM-DD if not given")
        ->check(CLI::Validator(date_pattern, "PATTERN"));
    command_
        ->add_option("--missing", texts.missing,
                     "Texts that stand for a missing value beside an empty cell, such as NA,-9999")
        ->delimiter(',')
        ->allow_extra_args(false);
    command_->add_flag("--any-order", texts.any_order, "The days of a zone may stand in any order");
    command_->add_flag("--dry-run", texts.dry_run, "Only print what a load would do");
}

LoadOptions::~LoadOptions() = default;

LoadCommand LoadOptions::command(std::chrono::milliseconds wait) const {
    const LoadTexts& texts = *texts_;
    LoadCommand command{.basin = path_from_utf8(texts.basin),
                        .csv = path_from_utf8(texts.csv),
                        .load = {.table = texts.table, .wide_field = texts.field, .zone = texts.zone},
                        .dry_run = texts.dry_run,
                        .wait = wait};
    TableLoad& load = command.load;
    load.any_order = texts.any_order;
    for (const std::string& text : texts.columns) {
        const auto pair = split_pair(text);
        if (pair) load.columns.push_back({.meaning = pair->first, .header = pair->second});
    }
    for (const std::string& text : texts.from) load.units.push_back(stated_unit(text));
    if (!texts.separator.empty()) load.form.separator = separators().at(texts.separator);
    load.form.decimal = texts.decimal == "comma" ? DecimalSign::Comma : DecimalSign::Point;
    if (!texts.date_pattern.empty())
        load.form.dates = DatePattern::read(texts.date_pattern).value_or(DatePattern{});
    load.form.missing = texts.missing;
    return command;
}

int load_command(const LoadCommand& command, BatchDialogs& dialogs, std::ostream& out) {
    try {
        refuse_basin_as_input(command);
        const ByteSource source = bytes_of_file(command.csv);
        // The averages get their rows before they are compared, also if that is rolled back afterwards.
        const bool reads_only = command.dry_run && !same_name(command.load.table, k_basin_averages);
        const OpenBasin basin = reads_only ? open_to_read(command.basin, command.wait, Check::All)
                                           : open_to_write(command.basin, command.wait);
        const LoadResult result = load_table(basin.database(), source, command.load, !command.dry_run);
        out << summary(command, result);
        if (result.refused == 0) return k_done;
        report_refusals(command, result, dialogs);
    } catch (const TableFault& fault) {
        dialogs.report_problem(k_failed_title, fault_text(command, fault.line(), fault.what()));
    } catch (const CsvError& error) {
        dialogs.report_problem(k_failed_title, fault_text(command, error.line(), error.what()));
    } catch (const StoreError& error) {
        dialogs.report_problem(k_failed_title, error.what());
    } catch (const FileError& error) {
        dialogs.report_problem(k_failed_title, error.what());
    }
    return k_failed;
}

}  // namespace nivora
