#include "engine/snow_melt.h"

#include "base/number_text.h"
#include "engine/snow_row.h"
#include "engine/snow_table.h"
#include "engine/step_columns.h"

#include <span>
#include <string>
#include <vector>

namespace nivora {
namespace {

constexpr int k_season_months = 6;

/// The state of a zone from day to day.
struct ZoneSnow {
    int zone = 0;
    bool winter = false;
    float store = 0.0F;
    float sum_at = 0.0F;
    float depletion_base = k_curve_not_started;
    float new_melt_sum = 0.0F;
    float previous_sum_at = 0.0F;
};

/// The fields of a row while it is worked on; they reach the table together.
struct SnowRow {
    float degree_days = 0.0F;
    float precipitation = 0.0F;
    float cover = 0.0F;
    float at = 0.0F;
    float sum_at = 0.0F;
    float rain = 0.0F;
    float snow_on_store = 0.0F;
    float new_melt = 0.0F;
    float runoff_melt = 0.0F;
    bool on_curve = false;  ///< whether the two curves get a value on this day
    float curve_including = 0.0F;
    float curve_excluding = 0.0F;
};

/// The stage and the values that its steps share.
class SnowStage {
public:
    SnowStage(SimResults& results, const BasinInputs& inputs, RunState& run)
        : results_(results),
          run_(run),
          ending_stores_(run.EndingStores.at(static_cast<std::size_t>(run.ClimateStep))),
          columns_(step_columns(results, run.ClimateStep)),
          season_start_(inputs.melt_season_start),
          starts_in_winter_(!in_melt_season(civil_date(run.RunStart).month, season_start_)),
          keeps_store_(run.NoSnow && run.ClimateStep == 0),
          draws_curves_(run.ClimateStep == 0 || run.ClimateStep == 3) {
        ending_stores_.assign(inputs.zones, k_missing);
    }

    void work(const RunRows& run_rows) {
        if (work_full_table(run_rows.days_of_full_table)) return;
        const RowOrder& rows = run_rows.by_zone;
        for (std::size_t first = 0; first < rows.size();) {
            std::size_t behind = first + 1;
            while (behind < rows.size() && results_.Zone[rows[behind]] == results_.Zone[rows[first]])
                ++behind;
            work_zone(std::span{rows}.subspan(first, behind - first));
            first = behind;
        }
    }

    /// For the user: the missing values of the last row; empty if none is missing.
    [[nodiscard]] std::string missing_values() const {
        std::string fields;
        const auto add = [&](const char* field, float value) {
            if (is_missing(value)) fields += (fields.empty() ? "" : ", ") + std::string{field};
        };
        add("ZoneDD", columns_.degree_days[row_]);
        add("AN", columns_.degree_day_factor[row_]);
        add("Precip", columns_.precipitation[row_]);
        add("SCA", columns_.cover[row_]);
        add("Tcrit", columns_.critical_temperature[row_]);
        add("RCA", columns_.rain_switch[row_]);
        if (fields.empty()) return {};
        return "\nIn zone " + std::to_string(results_.Zone[row_]) + " on " +
               long_date_text(results_.Date[row_]) + " these values are missing: " + fields + ".";
    }

    /// The last row that was processed.
    [[nodiscard]] std::size_t row() const { return row_; }

private:
    /// The zone's values are local, so that the compiler can keep them in registers.
    void work_zone(std::span<const std::uint32_t> rows) {
        ZoneSnow snow{.zone = results_.Zone[rows.front()], .winter = starts_in_winter_};
        for (const std::size_t row : rows) {
            row_ = row;
            store_row(row, work_row(row, snow));
        }
        keep_store(snow);
    }

    /// Works a full table without wild values; false, with nothing changed, for any other.
    bool work_full_table(std::size_t days) {
        if (days == 0) return false;
        const std::size_t zones = results_.size() / days;
        if (run_.ClimateStep > 0 && zones > k_climate_zones) return false;
        if (!is_plain_snow(columns_) || !is_plain_sum(zones)) return false;
        SnowTableShape shape{.days = days, .keeps_store = keeps_store_, .draws_curves = draws_curves_};
        if (starts_in_winter_) {
            while (shape.winter_days < days && month_of(results_.Date[shape.winter_days]) != season_start_)
                ++shape.winter_days;
        }
        if (starts_in_winter_ && shape.winter_days < days)
            run_.MeltSeasonStart = results_.Date[shape.winter_days] - 1;
        if (run_.ClimateStep == 1 || run_.ClimateStep == 2) add_winter_precipitation(zones, days);
        std::vector<float> stores(zones);
        work_snow_of_zones(columns_, shape, stores);
        for (std::size_t zone = 1; zone <= zones; ++zone)
            keep_store({.zone = static_cast<int>(zone), .store = stores[zone - 1]});
        return true;
    }

    /// Whether no zone's winter precipitation can overflow.
    [[nodiscard]] bool is_plain_sum(std::size_t zones) const {
        if (run_.ClimateStep != 1 && run_.ClimateStep != 2) return true;
        constexpr float k_far_below_overflow = 1.0e30F;
        for (std::size_t zone = 1; zone <= zones; ++zone) {
            const float sum = run_.WinterPrecip[zone][static_cast<std::size_t>(run_.ClimateStep)];
            if (!(std::abs(sum) < k_far_below_overflow)) return false;
        }
        return true;
    }

    /// Of the zones of a full table.
    void add_winter_precipitation(std::size_t zones, std::size_t days) {
        for (std::size_t zone = 1; zone <= zones; ++zone) {
            const ZoneSnow snow{.zone = static_cast<int>(zone)};
            for (std::size_t row = (zone - 1) * days; row < zone * days; ++row)
                add_winter_precipitation(columns_.precipitation[row], snow);
        }
    }

    void keep_store(const ZoneSnow& snow) {
        run_.SnowStore = snow.store;
        const auto index = static_cast<std::size_t>(snow.zone - 1);
        if (snow.zone > 0 && index < ending_stores_.size()) ending_stores_[index] = snow.store;
        if (run_.ClimateStep == 3) winter_precipitation(snow, 3) = snow.store;
        if (run_.ClimateStep == 5) winter_precipitation(snow, 4) = snow.store;
    }

    SnowRow work_row(std::size_t row, ZoneSnow& snow) {
        SnowRow fields;
        fields.precipitation = columns_.precipitation[row];
        fields.cover = columns_.cover[row];
        if (snow.winter && month_of(results_.Date[row]) == season_start_)
            end_winter(results_.Date[row], snow);
        if (run_.ClimateStep == 1 || run_.ClimateStep == 2)
            add_winter_precipitation(fields.precipitation, snow);
        add_potential_melt(row, fields, snow);
        rain_or_snow(columns_.critical_temperature[row], fields, snow);
        fields.snow_on_store = snow.store;
        if (snow.winter && is_full_cover(fields.cover)) empty_store(snow);
        melt_store(fields, snow);
        if (columns_.rain_switch[row] == 0.0F) {
            fields.rain = rain_beside_snow<CheckedSteps>(fields.rain, fields.cover);
        }
        if (draws_curves_) depletion_curves(fields, snow);
        snow.previous_sum_at = fields.sum_at;
        return fields;
    }

    /// In no-snow mode only the winter's snow can melt, so a plain run keeps it.
    void empty_store(ZoneSnow& snow) const {
        if (!keeps_store_) snow.store = 0.0F;
    }

    /// The month of a date. Days are in order, so most dates are in the same month as the previous one.
    int month_of(DayCount date) {
        if (date < month_start_ || date >= next_month_start_) {
            const CivilDate civil = civil_date(date);
            month_ = civil.month;
            month_start_ = date - (civil.day - 1);
            next_month_start_ = *day_count({civil.year + civil.month / 12, civil.month % 12 + 1, 1});
        }
        return month_;
    }

    void end_winter(DayCount date, ZoneSnow& snow) {
        empty_store(snow);
        snow.winter = false;
        run_.MeltSeasonStart = date - 1;
    }

    float& winter_precipitation(const ZoneSnow& snow, std::size_t item) {
        if (snow.zone < 1 || snow.zone > k_climate_zones) throw subscript_fault();
        return run_.WinterPrecip[static_cast<std::size_t>(snow.zone)][item];
    }

    void add_winter_precipitation(float precipitation, const ZoneSnow& snow) {
        float& sum = winter_precipitation(snow, static_cast<std::size_t>(run_.ClimateStep));
        sum = sum_of<CheckedSteps>(sum, precipitation);
    }

    void add_potential_melt(std::size_t row, SnowRow& fields, ZoneSnow& snow) const {
        fields.degree_days = columns_.degree_days[row];
        fields.at = potential_melt<CheckedSteps>(fields.degree_days, columns_.degree_day_factor[row]);
        snow.sum_at = sum_of<CheckedSteps>(snow.sum_at, fields.at);
        fields.sum_at = snow.sum_at;
    }

    static void rain_or_snow(float critical_temperature, SnowRow& fields, ZoneSnow& snow) {
        if (!is_wet(fields.precipitation)) return;
        if (fields.degree_days >= critical_temperature) {
            fields.rain = fields.precipitation;
            return;
        }
        const double fallen = new_snow(fields.precipitation, fields.cover, snow.winter);
        snow.store = filled_store<CheckedSteps>(snow.store, fallen);
    }

    static void melt_store(SnowRow& fields, ZoneSnow& snow) {
        if (snow.store == 0.0F || fields.degree_days <= 0.0F) return;
        const float melt = melt_of_store(fields.at, snow.store);
        fields.runoff_melt = runoff_of_melt<CheckedSteps>(melt, fields.cover, snow.winter);
        fields.new_melt = melt;
        snow.store = melted_store<CheckedSteps>(snow.store, melt);
    }

    void store_row(std::size_t row, const SnowRow& fields) {
        columns_.sum_at[row] = fields.sum_at;
        columns_.at[row] = fields.at;
        columns_.rain[row] = fields.rain;
        columns_.snow_on_store[row] = fields.snow_on_store;
        columns_.new_melt[row] = fields.new_melt;
        columns_.runoff_melt[row] = fields.runoff_melt;
        if (!fields.on_curve) return;
        columns_.curve_including[row] = fields.curve_including;
        columns_.curve_excluding[row] = fields.curve_excluding;
    }

    /// The curve runs from the first day with snow cover to the first day without.
    /// Intended: snow cover that returns later is written with the base value of a finished curve.
    static void depletion_curves(SnowRow& fields, ZoneSnow& snow) {
        const bool begun = snow.depletion_base > k_curve_not_started;
        if (!(fields.cover > 0.0F || (fields.cover == 0.0F && begun))) return;
        if (snow.depletion_base == k_curve_not_started) snow.depletion_base = snow.previous_sum_at;
        snow.new_melt_sum = sum_of<CheckedSteps>(snow.new_melt_sum, fields.new_melt);
        fields.on_curve = true;
        fields.curve_including = curve_with_new_melt<CheckedSteps>(fields.sum_at, snow.depletion_base);
        fields.curve_excluding =
            curve_without_new_melt<CheckedSteps>(fields.sum_at, snow.new_melt_sum, snow.depletion_base);
        if (fields.cover == 0.0F) snow.depletion_base = k_curve_finished;
    }

    SimResults& results_;
    RunState& run_;
    std::vector<float>& ending_stores_;
    StepColumns columns_;
    int season_start_;
    bool starts_in_winter_;
    bool keeps_store_;
    bool draws_curves_;
    std::size_t row_ = 0;  ///< that is worked on
    int month_ = 0;
    DayCount month_start_ = 0;
    DayCount next_month_start_ = 0;
};

}  // namespace

int melt_season_start_month(std::string_view latitude_text) {
    return leading_number(latitude_text) < 0.0 ? 10 : 4;
}

bool in_melt_season(int month, int start_month) { return (month - start_month + 12) % 12 < k_season_months; }

std::optional<DayCount> winter_end(DayCount run_start, int start_month) {
    const CivilDate start = civil_date(run_start);
    if (in_melt_season(start.month, start_month)) return std::nullopt;
    const int year = start.month < start_month ? start.year : start.year + 1;
    const auto season_start = day_count({year, start_month, 1});
    if (!season_start) return std::nullopt;
    return *season_start - 1;
}

void Snow_Melt(SimResults& results, const RunRows& rows, const BasinInputs& inputs, RunState& run,
               Dialogs& dialogs) {
    SnowStage stage{results, inputs, run};
    try {
        stage.work(rows);
    } catch (const Fault& fault) {
        if (fault.number() == k_fault_null) {
            dialogs.stop("Null (blank) value in physical database or simulation parameter file.  Aborting!" +
                             stage.missing_values(),
                         "Missing value(s)");
        } else {
            dialogs.stop(std::to_string(fault.number()) + " " + fault.what());
        }
        run.notes.push_back(snow_melt_stopped(results, stage.row(), static_cast<int>(inputs.zones), run));
    }
}

}  // namespace nivora
