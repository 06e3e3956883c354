#include "engine/zone_inputs.h"

#include "engine/step_columns.h"
#include "engine/zone_row.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace nivora {
namespace {

/// The inputs of the run in the units of the model.
struct ZoneInputOptions {
    const BasinInputs& given;
    double degree_base = 0.0;
    std::vector<float> lapse_steps;  // by zone, in the unit of the lapse rate; index 0 is not used
};

/// Values of zone 1 that the other zones of the day use.
struct BasinValues {
    float temperature = 0.0F;
    float lapse = 0.0F;
    float precipitation = 0.0F;
    float critical = 0.0F;
    float snow_coefficient = 0.0F;
    float rain_coefficient = 0.0F;
};

enum class Phase { Variables, Parameters };

float steps_of(const ZoneInputOptions& options, std::int16_t zone) {
    const auto index = static_cast<std::size_t>(zone);
    if (zone < 0 || index >= options.lapse_steps.size()) throw subscript_fault();
    return options.lapse_steps[index];
}

/// The mean temperature of a zone. A Max/Min simulation uses zone 1's mean in every zone, whatever the
/// distribution option is.
float mean_temperature(const ZoneInputOptions& options, const StepColumns& columns, std::size_t row,
                       bool first, BasinValues& basin) {
    const float given = columns.average_temperature[row];
    if (options.given.temperature_max_min) {
        if (!first) return basin.temperature;
        const float mean =
            mean_of<CheckedSteps>(columns.maximum_temperature[row], columns.minimum_temperature[row]);
        basin.temperature = mean;
        return mean;
    }
    if (first) {
        basin.temperature = required(given);
        return given;
    }
    return options.given.temperature_basinwide ? basin.temperature : given;
}

float degree_days_of(const ZoneInputOptions& options, float average, float lapse, std::int16_t zone) {
    if (options.given.temperature_basinwide) {
        return required(
            carried_degree_days<CheckedSteps>(options.degree_base, average, steps_of(options, zone), lapse));
    }
    return own_degree_days<CheckedSteps>(options.degree_base, average);
}

void keep_basin_values(const StepColumns& columns, std::size_t row, BasinValues& basin) {
    basin.precipitation = required(columns.precipitation[row]);
    basin.critical = required(columns.critical_temperature[row]);
    basin.snow_coefficient = required(columns.snow_coefficient[row]);
    basin.rain_coefficient = required(columns.rain_coefficient[row]);
    static_cast<void>(required(columns.recession_x[row]));
    static_cast<void>(required(columns.recession_y[row]));
}

/// Intended: x and y are never copied to other zones, whatever their option is. The runoff stages read them
/// from the first zone's row, which has the same effect.
void spread_basin_values(const ZoneInputOptions& options, const BasinValues& basin,
                         const StepColumns& columns, std::size_t row) {
    if (options.given.precipitation_basinwide) columns.precipitation[row] = basin.precipitation;
    if (options.given.critical_temperature_basinwide) columns.critical_temperature[row] = basin.critical;
    if (options.given.runoff_coefficients_basinwide) {
        columns.snow_coefficient[row] = basin.snow_coefficient;
        columns.rain_coefficient[row] = basin.rain_coefficient;
    }
}

/// Computes all values of a row before it writes any, so that a faulty row stays unchanged.
void work_row(const ZoneInputOptions& options, const StepColumns& columns, std::int16_t zone, std::size_t row,
              BasinValues& basin, Phase& phase) {
    const bool first = zone == 1;
    phase = Phase::Variables;
    const float average = mean_temperature(options, columns, row, first, basin);

    phase = Phase::Parameters;
    if (first) basin.lapse = required(columns.lapse_rate[row]);
    const float lapse = options.given.lapse_rate_basinwide ? basin.lapse : columns.lapse_rate[row];
    const float degree_days = degree_days_of(options, average, lapse, zone);
    if (first) {
        keep_basin_values(columns, row, basin);
    } else {
        spread_basin_values(options, basin, columns, row);
    }
    columns.average_temperature[row] = average;
    columns.lapse_rate[row] = lapse;
    columns.degree_days[row] = degree_days;
}

/// A table with all zones and days, worked zone by zone. Zone 1's rows are the first ones of each column.
class FullTable {
public:
    FullTable(const ZoneInputOptions& options, const StepColumns& columns, std::size_t days)
        : options_(options), columns_(columns), days_(days), rows_(columns.degree_days.size()) {}

    /// Whether no row can fail, so that the order of the rows doesn't matter.
    [[nodiscard]] bool is_safe() const {
        const BasinInputs& given = options_.given;
        const auto within = [](Column column, std::size_t rows) {
            return all_within(column.data(), rows, k_largest_input);
        };
        const auto present = [this](const auto& column) {
            return std::none_of(column.begin(), column.begin() + static_cast<std::ptrdiff_t>(days_),
                                [](auto value) { return is_missing(value); });
        };
        const bool temperatures =
            given.temperature_max_min
                ? within(columns_.maximum_temperature, days_) && within(columns_.minimum_temperature, days_)
                : within(columns_.average_temperature, given.temperature_basinwide ? days_ : rows_);
        return temperatures && within(columns_.lapse_rate, given.lapse_rate_basinwide ? days_ : rows_) &&
               options_.lapse_steps.size() > rows_ / days_ &&
               all_within(options_.lapse_steps.data(), options_.lapse_steps.size(), k_largest_lapse_step) &&
               present(columns_.precipitation) && present(columns_.critical_temperature) &&
               present(columns_.snow_coefficient) && present(columns_.rain_coefficient) &&
               present(columns_.recession_x) && present(columns_.recession_y);
    }

    void work() const {
        if (options_.given.temperature_max_min) {
            pass_mean(columns_.maximum_temperature.data(), columns_.minimum_temperature.data(), days_,
                      columns_.average_temperature.data());
        }
        for (std::size_t zone = 1; zone <= rows_ / days_; ++zone) {
            if (zone > 1) spread(zone);
            degree_days(zone);
        }
    }

private:
    [[nodiscard]] std::size_t first_row(std::size_t zone) const { return (zone - 1) * days_; }

    void spread(std::size_t zone) const {
        const BasinInputs& given = options_.given;
        const auto copy = [&](bool basinwide, FieldColumn column) {
            if (basinwide) std::copy_n(column.data(), days_, column.data() + first_row(zone));
        };
        copy(given.temperature_max_min || given.temperature_basinwide, columns_.average_temperature);
        copy(given.lapse_rate_basinwide, columns_.lapse_rate);
        copy(given.precipitation_basinwide, columns_.precipitation);
        copy(given.critical_temperature_basinwide, columns_.critical_temperature);
        copy(given.runoff_coefficients_basinwide, columns_.snow_coefficient);
        copy(given.runoff_coefficients_basinwide, columns_.rain_coefficient);
    }

    void degree_days(std::size_t zone) const {
        pass_degree_days({.temperature = columns_.average_temperature.data() + first_row(zone),
                          .lapse_rate = columns_.lapse_rate.data() + first_row(zone),
                          .lapse_steps = options_.lapse_steps[zone],
                          .degree_base = options_.degree_base,
                          .carried = options_.given.temperature_basinwide},
                         days_, columns_.degree_days.data() + first_row(zone));
    }

    const ZoneInputOptions& options_;
    const StepColumns& columns_;
    std::size_t days_;
    std::size_t rows_;
};

/// Works a table that is full and has no value that could fail; false, with nothing changed, for any other.
bool work_full_table(const ZoneInputOptions& options, const StepColumns& columns, std::size_t days) {
    if (days == 0) return false;
    const FullTable table{options, columns, days};
    if (!table.is_safe()) return false;
    table.work();
    return true;
}

/// The first missing value that a row needs, by its name in the daily tables; empty if none is missing.
std::string missing_field(const ZoneInputOptions& options, const StepColumns& columns, std::size_t row,
                          bool first) {
    const auto missing = [row](const auto& column) { return is_missing(column[row]); };
    if (options.given.temperature_max_min) {
        if (first && missing(columns.maximum_temperature)) return "Tmax";
        if (first && missing(columns.minimum_temperature)) return "Tmin";
    } else if ((first || !options.given.temperature_basinwide) && missing(columns.average_temperature)) {
        return "Tavg";
    }
    if ((first || !options.given.lapse_rate_basinwide) && missing(columns.lapse_rate)) return "LapseRate";
    if (!first) return {};
    if (missing(columns.precipitation)) return "Precip";
    if (missing(columns.critical_temperature)) return "Tcrit";
    if (missing(columns.snow_coefficient)) return "CS";
    if (missing(columns.rain_coefficient)) return "Cr";
    if (missing(columns.recession_x)) return "Xcoeff";
    return missing(columns.recession_y) ? "Ycoeff" : std::string{};
}

/// @param field the missing value of the row; empty if none is missing
Message fault_message(const Fault& fault, Phase phase, const SimResults& results,
                      std::optional<std::size_t> row, const std::string& field) {
    Message message{.text = fault.what(), .title = {}, .icon = Icon::Stop};
    if (fault.number() == k_fault_null && row) {
        const bool variables = phase == Phase::Variables;
        message.title = variables ? "Missing data in basin variable table."
                                  : "Missing data in simulation parameter Table.";
        message.text = (variables ? "Null value(s) in basin variable table on "
                                  : "Null value(s) in simulation parameter table on ") +
                       long_date_text(results.Date[*row]) + ", in Zone " + std::to_string(results.Zone[*row]);
        if (!field.empty()) message.text += "\nThe missing value is that of " + field + ".";
    } else if (fault.number() == k_fault_no_record) {
        message.text = "Temperature data is missing for the date range specified.";
    }
    if (message.title.empty()) message.title = "Error during temperature lapse processing phase";
    return message;
}

}  // namespace

UnitSystem unit_system(std::optional<Units> units) {
    return units == Units::English ? UnitSystem{1000.0F, 32.0F} : UnitSystem{100.0F, 0.0F};
}

std::vector<float> lapse_steps(const BasinInputs& inputs, const UnitSystem& units) {
    const float reference = to_single(inputs.reference_elevation);
    std::vector<float> steps(inputs.elevations.size(), 0.0F);
    for (std::size_t zone = 1; zone < steps.size(); ++zone)
        steps[zone] = to_single(as_double(reference) - inputs.elevations[zone]) / units.lapse_unit;
    return steps;
}

std::optional<float> zone_degree_days(const UnitSystem& units, float station_temperature,
                                      float elevation_difference, float lapse_rate) {
    const float degree_days =
        carried_degree_days<CheckedSteps>(as_double(units.degree_base), station_temperature,
                                          elevation_difference / units.lapse_unit, lapse_rate);
    if (is_missing(degree_days)) return std::nullopt;
    return degree_days;
}

bool Zone_Inputs(SimResults& results, const RunRows& rows, const BasinInputs& inputs, RunState& run,
                 Dialogs& dialogs) {
    Phase phase = Phase::Variables;
    std::optional<std::size_t> at;
    const UnitSystem units = unit_system(inputs.units);
    const StepColumns columns = step_columns(results, run.ClimateStep);
    ZoneInputOptions options{.given = inputs, .degree_base = as_double(units.degree_base), .lapse_steps = {}};
    try {
        options.lapse_steps = lapse_steps(inputs, units);
        run.LapseUnit = units.lapse_unit;
        if (rows.by_day.empty()) throw no_record_fault();
        if (work_full_table(options, columns, rows.days_of_full_table)) return true;
        BasinValues basin_values;
        for (const std::size_t row : rows.by_day) {
            at = row;
            work_row(options, columns, results.Zone[row], row, basin_values, phase);
        }
        return true;
    } catch (const Fault& fault) {
        const std::string field = at ? missing_field(options, columns, *at, results.Zone[*at] == 1) : "";
        dialogs.message(fault_message(fault, phase, results, at, field));
        return false;
    }
}

}  // namespace nivora
