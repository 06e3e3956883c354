#include "prep/simulation_grid.h"

#include "base/entry_refusal.h"
#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "store/basin_marks.h"
#include "store/run_period.h"
#include "store/table_io.h"

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

constexpr std::size_t k_mask_size = 10;  // "mm/dd/yyyy"
constexpr CivilDate k_emptied_start{1980, 1, 1};
constexpr CivilDate k_emptied_end{1980, 12, 31};

bool is_blank(std::string_view text) { return trimmed(text).empty(); }

bool has_run_period(const Simulation& simulation) {
    if (!simulation.start || !simulation.end) return false;
    return is_run_period(*simulation.start, *simulation.end);
}

bool parse_integer(std::optional<std::int16_t>& cell, std::string_view text) {
    if (is_blank(text)) return cell.reset(), true;
    const auto number = exact_number(text);
    if (!number || *number != std::floor(*number)) return false;
    const auto integer = to_integer16(*number);
    if (integer) cell = integer;
    return integer.has_value();
}

bool parse_single(std::optional<float>& cell, std::string_view text) {
    if (is_blank(text)) return cell.reset(), true;
    const auto number = exact_number(text);
    if (!number || std::isinf(static_cast<float>(*number))) return false;
    cell = static_cast<float>(*number);
    return true;
}

bool parse_double(std::optional<double>& cell, std::string_view text) {
    if (is_blank(text)) return cell.reset(), true;
    const auto number = exact_number(text);
    if (number) cell = number;
    return number.has_value();
}

bool parse_date(std::optional<DayCount>& cell, std::string_view text, const CivilDate& emptied) {
    const auto date = is_blank(text) ? day_count(emptied) : read_date(text);
    if (date) cell = date;
    return date.has_value();
}

/// The number of a list's item; nothing for a text that is neither an item nor the number of one.
std::optional<std::int16_t> list_number(int column, std::string_view text) {
    const auto items = simulation_list(column);
    for (std::size_t item = 0; item < items.size(); ++item) {
        if (same_name(items[item], trimmed(text)) || exact_number(text) == static_cast<double>(item))
            return static_cast<std::int16_t>(item);
    }
    return std::nullopt;
}

template <typename Choice>
bool parse_choice(std::optional<Choice>& cell, int column, std::string_view text) {
    if (is_blank(text)) return cell.reset(), true;
    const auto number = list_number(column, text);
    if (number) cell = static_cast<Choice>(*number);
    return number.has_value();
}

bool set_comments(std::optional<std::string>& cell, std::string_view text) {
    cell.reset();
    if (!text.empty()) cell = std::string{text};
    return true;
}

bool set_cell(Simulation& row, int column, std::string_view text) {
    switch (column) {
        case 2: return parse_integer(row.run_number, text);
        case 3: return parse_date(row.start, text, k_emptied_start);
        case 4: return parse_date(row.end, text, k_emptied_end);
        case 5: return parse_choice(row.units, column, text);
        case 6: return parse_choice(row.temperature_values, column, text);
        case 7: return parse_choice(row.temperature, column, text);
        case 8: return parse_choice(row.precipitation, column, text);
        case 9: return parse_choice(row.lapse_rate, column, text);
        case 10: return parse_choice(row.runoff_coefficients, column, text);
        case 11: return parse_choice(row.critical_temperature, column, text);
        case 12: return parse_choice(row.recession, column, text);
        case 13: return parse_single(row.initial_runoff, text);
        case 14: return parse_single(row.precipitation_threshold, text);
        case 15: return parse_double(row.initial_x, text);
        case 16: return parse_double(row.initial_y, text);
        case 17: return set_comments(row.comments, text);
        default: return false;
    }
}

bool same_cell(const Simulation& a, const Simulation& b, int column) {
    return a.value(column) == b.value(column) && a.text(column) == b.text(column);
}

/// Copies an edited date to the current simulation. A date that makes no valid period is not copied, so that
/// leaving the cell can restore the old date; the first row is checked neither there nor here.
void copy_date_to_current(BasinState& basin, std::size_t row, int column, bool emptied) {
    if (basin.current_row != row) return;
    const Simulation& simulation = basin.simulations[row];
    if (row > 0 && !emptied && !has_run_period(simulation)) return;
    if (column == 3) basin.Current_Start = simulation.start;
    if (column == 4) basin.Current_End = simulation.end;
}

}  // namespace

std::string Date_Size(std::string text) {
    constexpr std::size_t k_first_slash = 2;
    constexpr std::size_t k_second_slash = 5;
    if (text.size() >= k_mask_size || text.find('/') == std::string::npos) return text;
    if (text.find('/') != k_first_slash) text.insert(0, "0");
    if (text.find('/', k_first_slash + 1) != k_second_slash && text.size() > k_first_slash + 1)
        text.insert(k_first_slash + 1, "0");
    return text;
}

std::vector<std::string> simulation_list(int column) {
    if (column == 5) return {"Metric", "English"};
    if (column == 6) return {"Average", "Max/Min"};
    if (column >= 7 && column <= 12) return {"Basinwide", "By Zone"};
    return {};
}

bool edit_simulation_cell(const PrepContext& context, std::size_t row, int column, std::string_view text) {
    BasinState& basin = context.basin;
    Simulation& simulation = basin.simulations.at(row);
    const Simulation before = simulation;
    if (!set_cell(simulation, column, text)) return false;
    if (column == 3 || column == 4) copy_date_to_current(basin, row, column, is_blank(text));
    if (same_cell(before, simulation, column)) return true;
    // Intended: an emptied cell counts as Metric, too.
    if (column == 5) basin.Units_Code = simulation.units == Units::English ? Units::English : Units::Metric;
    mark_input_changed(basin);
    return true;
}

std::string simulation_cell_refusal(int column, std::string_view text) {
    switch (column) {
        case 1: return "a simulation keeps its name, which is also that of its parameter table";
        case 2: return integer_refusal(text);
        case 3:
        case 4: return date_refusal(text);
        case 13:
        case 14: return single_refusal(text);
        case 15:
        case 16: return number_refusal(text);
        case 17: return {};
        default:
            return list_number(column, text) ? std::string{} : item_refusal(text, simulation_list(column));
    }
}

std::optional<Message> max_min_problem(const Simulation& simulation) {
    if (simulation.temperature_values != 1 || simulation.temperature != Distribution::ByZone)
        return std::nullopt;
    return Message{.text = "Max/min temperatures cannot currently be entered for each zone",
                   .title = "Max/min temperature problem"};
}

std::optional<Message> left_simulation_cell_problem(const BasinState& basin, std::size_t row, int column) {
    const Simulation& simulation = basin.simulations.at(row);
    // Intended: the first row is not checked.
    if ((column == 3 || column == 4) && row > 0) {
        if (!simulation.start || !simulation.end || has_run_period(simulation)) return std::nullopt;
        return Message{.text = "Date range error!  ", .icon = Icon::Stop};
    }
    // Intended: only leaving column 7 checks this. Max/Min chosen in column 6 afterwards is not
    // noticed until then.
    return column == 7 ? max_min_problem(simulation) : std::nullopt;
}

void repair_simulation_cell(BasinState& basin, std::size_t row, int column) {
    Simulation& simulation = basin.simulations.at(row);
    if (column == 3 && basin.Current_Start) simulation.start = basin.Current_Start;
    if (column == 4 && basin.Current_End) simulation.end = basin.Current_End;
    if (column == 7) simulation.temperature = Distribution::Basinwide;
    mark_input_changed(basin);
}

Message delete_simulation_question(const BasinState& basin, std::size_t row) {
    return {.text = "Are you sure you want to delete '" + basin.simulations.at(row).name + "'?",
            .title = "Delete a simulation",
            .buttons = Buttons::YesNo,
            .default_answer = Answer::No};
}

void Delete_Simulation(const PrepContext& context, BasinDatabase& database, std::size_t row) {
    BasinState& basin = context.basin;
    if (row >= basin.simulations.size()) return;
    const std::string name = basin.simulations[row].name;
    if (!is_fixed_table(name) && database.has_table(name) && !is_scenario(database, name))
        database.drop_table(name);
    basin.simulations.erase(basin.simulations.begin() + static_cast<std::ptrdiff_t>(row));
    basin.current_row.reset();
    if (!basin.simulations.empty()) basin.current_row = basin.simulations.size() - 1;
    basin.Current_Sim_Name = k_no_simulation;
    mark_input_changed(basin);
}

}  // namespace nivora
