#include "prep/daily_editor.h"

#include "base/entry_refusal.h"
#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "base/undo_steps.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>

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
        return as_double(rounded) + 0.0;
    }
    if (value != std::floor(value) || !to_integer16(value)) return std::nullopt;
    return value + 0.0;
}

bool same_value(double a, double b) { return a == b || (is_missing(a) && is_missing(b)); }

/// What the store reads for a view: its columns after the date.
DailySelection selection(DataView view, const DailyQuery& query, const std::vector<DailyColumn>& columns) {
    DailySelection selected{.table = query.table,
                            .fields = {},
                            .period = query.period,
                            .with_variables = view == DataView::Scenario};
    for (std::size_t column = 1; column < columns.size(); ++column)
        selected.fields.push_back({columns[column].field, columns[column].type});
    return selected;
}

}  // namespace

std::optional<double> kept_daily_value(const DailyColumn& column, double value) {
    if (outside_limits(column, value)) return std::nullopt;
    return kept_value(column.type, value);
}

std::string daily_refusal(const DailyColumn& column, double value) {
    if (outside_limits(column, value)) return limits_refusal(*column.low, *column.high);
    if (kept_value(column.type, value)) return {};
    const bool fraction = column.type == FieldType::Integer && value != std::floor(value);
    return fraction ? "a whole number is needed" : k_number_too_large;
}

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

/// Changed cells of one zone.
struct DailyEditor::Step {
    struct Cell {
        std::uint32_t row = 0;
        std::uint32_t column = 0;
        double before = k_missing;
        double after = k_missing;
    };

    int zone = 1;
    std::vector<Cell> cells;

    [[nodiscard]] std::size_t bytes() const { return sizeof(Step) + cells.capacity() * sizeof(Cell); }

    void add(std::size_t row, std::size_t column, double before, double after) {
        cells.push_back({static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(column), before, after});
    }

    [[nodiscard]] DailyBlock block() const {
        DailyBlock block{zone, cells.front().row, cells.front().column, 0, 0};
        for (const Cell& cell : cells) {
            block.first_row = std::min<std::size_t>(block.first_row, cell.row);
            block.first_column = std::min<std::size_t>(block.first_column, cell.column);
            block.last_row = std::max<std::size_t>(block.last_row, cell.row);
            block.last_column = std::max<std::size_t>(block.last_column, cell.column);
        }
        return block;
    }
};

struct DailyEditor::Content {
    Content(const std::filesystem::path& work_file, DataView shown, const DailyQuery& query,
            DailyEdits* noted)
        : database{work_file, Access::ReadWrite},
          view{shown},
          columns{daily_columns(view, query.fields)},
          fields{database, selection(view, query, columns)},
          days{fields.read(zone)},
          unsaved{noted} {
        if (unsaved != nullptr) unsaved->begin(query.table);
    }
    Content(const Content&) = delete;
    Content& operator=(const Content&) = delete;
    ~Content() { end_notes(); }

    void end_notes() {
        if (unsaved != nullptr) unsaved->end();
        unsaved = nullptr;
    }

    [[nodiscard]] std::size_t cell(std::size_t row, std::size_t column) const {
        return row * (columns.size() - 1) + column - 1;
    }

    BasinDatabase database;
    HeldTransaction transaction{database};
    DataView view;
    std::vector<DailyColumn> columns;
    DailyFields fields;  ///< those of the columns after the date
    int zone = 1;
    ZoneDays days;
    DailyEdits* unsaved = nullptr;  ///< null once nothing is unsaved any more
    UndoSteps<Step> steps;
    std::optional<Step> open_step;  ///< the changes that are made together
    /// The values of each zone that was changed, from before its first change.
    std::map<int, std::vector<double>> opened;

    void note_step(Step step) {
        if (step.cells.empty()) return;
        step.cells.shrink_to_fit();
        steps.add(std::move(step));
    }
    /// Stores a value that the field can hold.
    void put(std::size_t row, std::size_t column, double value) {
        opened.try_emplace(zone, days.values);
        fields.store(days.rows[row], column - 1, value);
        days.values.at(cell(row, column)) = value;
    }
    void note_value(std::size_t row, std::size_t column, double value) {
        if (unsaved != nullptr) unsaved->add_value(columns[column].field, days.rows[row], value);
    }
};

DailyEditor::DailyEditor(const std::filesystem::path& work_file, DataView view, const DailyQuery& query,
                         DailyEdits* unsaved)
    : content_(std::make_unique<Content>(work_file, view, query, unsaved)) {}

DailyEditor::~DailyEditor() = default;  // closing a file rolls back its open transaction

const std::vector<DailyColumn>& DailyEditor::columns() const { return content_->columns; }

std::size_t DailyEditor::rows() const { return content_->days.rows.size(); }

DayCount DailyEditor::date(std::size_t row) const { return content_->days.dates.at(row); }

double DailyEditor::value(std::size_t row, std::size_t column) const {
    if (column == 0) return static_cast<double>(date(row));
    return content_->days.values.at(content_->cell(row, column));
}

std::string DailyEditor::refusal(std::size_t column, double value) const {
    return daily_refusal(content_->columns.at(column), value);
}

bool DailyEditor::set_value(std::size_t row, std::size_t column, double value) {
    Content& content = *content_;
    if (!content.transaction.is_open() || content.view == DataView::Scenario || column == 0) return false;
    const DailyColumn& shown = content.columns.at(column);
    const auto kept = kept_daily_value(shown, value);
    if (!kept) return false;
    const double held = content.days.values.at(content.cell(row, column));
    if (same_value(held, *kept)) return true;
    content.put(row, column, *kept);
    content.note_value(row, column, *kept);
    if (content.open_step) {
        content.open_step->add(row, column, held, *kept);
    } else {
        Step step{.zone = content.zone, .cells = {}};
        step.add(row, column, held, *kept);
        content.note_step(std::move(step));
    }
    return true;
}

void DailyEditor::begin_step() {
    end_step();
    content_->open_step = Step{.zone = content_->zone, .cells = {}};
}

void DailyEditor::end_step() {
    if (!content_->open_step) return;
    content_->note_step(std::move(*content_->open_step));
    content_->open_step.reset();
}

bool DailyEditor::can_undo() const { return content_->steps.to_undo() != nullptr; }

bool DailyEditor::can_redo() const { return content_->steps.to_redo() != nullptr; }

std::optional<DailyBlock> DailyEditor::undo() {
    end_step();
    const auto block = reverse(content_->steps.to_undo(), false);
    if (block) content_->steps.undone();
    return block;
}

std::optional<DailyBlock> DailyEditor::redo() {
    end_step();
    const auto block = reverse(content_->steps.to_redo(), true);
    if (block) content_->steps.redone();
    return block;
}

std::optional<DailyBlock> DailyEditor::reverse(Step* step, bool redo) {
    Content& content = *content_;
    if (step == nullptr || !content.transaction.is_open()) return std::nullopt;
    if (step->zone != content.zone) show_zone(step->zone);
    const ZoneDays before = content.days;
    // A cell may have been changed twice: backwards its oldest value comes last.
    const auto each = [&](const auto& act) {
        if (redo) {
            for (const Step::Cell& cell : step->cells) act(cell, cell.after);
        } else {
            for (auto cell = step->cells.rbegin(); cell != step->cells.rend(); ++cell)
                act(*cell, cell->before);
        }
    };
    try {
        atomically(content.database, [&] {
            each([&](const Step::Cell& cell, double value) { content.put(cell.row, cell.column, value); });
        });
    } catch (...) {
        content.days = before;
        throw;
    }
    each([&](const Step::Cell& cell, double value) { content.note_value(cell.row, cell.column, value); });
    return step->block();
}

void DailyEditor::note_typed(std::size_t row, std::size_t column, const std::optional<double>& value) {
    Content& content = *content_;
    if (content.unsaved == nullptr) return;
    content.unsaved->type_nothing();
    if (!value || column == 0 || content.view == DataView::Scenario) return;
    const DailyColumn& shown = content.columns.at(column);
    if (const auto kept = kept_daily_value(shown, *value))
        content.unsaved->type_value(shown.field, content.days.rows.at(row), *kept);
}

int DailyEditor::zone() const { return content_->zone; }

void DailyEditor::show_zone(int zone) {
    content_->days = content_->fields.read(zone);
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
        content.fields.change(content.zone, dates, column - 1, edit, *exact_factor);
        days = content.fields.read(content.zone);  // throws if a field can't hold its value
    });
    Step step{.zone = content.zone, .cells = {}};
    for (std::size_t row = 0; row < days.rows.size(); ++row) {
        const std::size_t at = content.cell(row, column);
        if (!same_value(content.days.values[at], days.values[at]))
            step.add(row, column, content.days.values[at], days.values[at]);
    }
    content.opened.try_emplace(content.zone, std::move(content.days.values));
    content.days = std::move(days);
    end_step();
    content.note_step(std::move(step));
    if (content.unsaved != nullptr)
        content.unsaved->add_mass_edit(content.columns[column].field, content.zone, dates, edit,
                                       *exact_factor);
}

bool DailyEditor::differs(std::size_t row, std::size_t column) const {
    const auto before = content_->opened.find(content_->zone);
    if (column == 0 || before == content_->opened.end()) return false;
    const std::size_t at = content_->cell(row, column);
    return !same_value(before->second.at(at), content_->days.values.at(at));
}

std::vector<int> DailyEditor::changed_zones() const {
    std::vector<int> zones;
    for (const auto& [zone, before] : content_->opened) {
        const auto now = zone == content_->zone ? content_->days : content_->fields.read(zone);
        if (!std::equal(before.begin(), before.end(), now.values.begin(), now.values.end(), same_value))
            zones.push_back(zone);
    }
    return zones;
}

std::map<DayCount, double> DailyEditor::computed_flow() {
    std::map<DayCount, double> flow;
    if (!content_->database.has_table(k_sim_results)) return flow;
    const std::vector<Field> fields{{"DailyQ", FieldType::Double}};
    visit_days(content_->database, k_sim_results, fields, 1,
               [&](int, DayCount day, std::span<const double> values) { flow[day] = values.front(); });
    return flow;
}

bool DailyEditor::changed() const {
    return !content_->steps.at_beginning() || (content_->open_step && !content_->open_step->cells.empty());
}

void DailyEditor::commit() {
    content_->transaction.commit();
    content_->end_notes();
}

void DailyEditor::roll_back() {
    content_->transaction.roll_back();
    content_->end_notes();
}

}  // namespace nivora
