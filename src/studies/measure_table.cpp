#include "studies/measure_table.h"

#include "base/number_text.h"

#include <fmt/format.h>

#include <algorithm>

namespace nivora {
namespace {

constexpr const char* k_constant = "the measured discharge is constant";
constexpr const char* k_overflow = "a sum is too large for a Single";

std::optional<double> known(double value) { return is_missing(value) ? std::nullopt : std::optional{value}; }

bool is_constant(const std::vector<double>& values) {
    return std::all_of(values.begin(), values.end(), [&](double value) { return value == values.front(); });
}

std::int64_t days_of_zero(const std::vector<double>& values) {
    return std::count(values.begin(), values.end(), 0.0);
}

/// The rows of one comparison.
class Rows {
public:
    Rows(const ComparedDays& days, Units units) : days_(days), units_(units) {
        constant_ = is_constant(days.measured);
    }

    [[nodiscard]] std::vector<MeasureRow> made() {
        efficiencies();
        kling_gupta_rows();
        errors();
        return std::move(rows_);
    }

private:
    /// Adds a row; `reason` is why it has no value, if it has none.
    void add(MeasureRow row, const std::string& reason) {
        if (!row.value) row.remark = reason;
        rows_.push_back(std::move(row));
    }

    void efficiencies() {
        const auto r2 = run_determination(days_.measured, days_.computed);
        add({.key = "R2",
             .name = "R², as the statistics of a run",
             .formula = "F1",
             .best = 1.0,
             .value = r2 ? std::optional{as_double(*r2)} : std::nullopt},
            constant_ ? k_constant : k_overflow);
        add({.key = "NSE",
             .name = "NSE",
             .formula = "F2",
             .best = 1.0,
             .value = nash_sutcliffe(days_.measured, days_.computed)},
            constant_ ? k_constant : k_overflow);
        add({.key = "NSElog",
             .name = "NSE of logarithms",
             .formula = "F3",
             .best = 1.0,
             .value = logarithmic_nash_sutcliffe(days_.measured, days_.computed),
             .remark = logarithm_treatment()},
            logarithm_reason());
    }

    [[nodiscard]] std::string logarithm_treatment() const {
        return fmt::format("ln(Q + {} {}), 1/100 of mean; zeros: {} measured, {} computed",
                           seven_digit_text(logarithm_offset(days_.measured)), unit_words(units_).discharge,
                           days_of_zero(days_.measured), days_of_zero(days_.computed));
    }

    [[nodiscard]] std::string logarithm_reason() const {
        const double offset = logarithm_offset(days_.measured);
        const auto without = [&](const std::vector<double>& values) {
            return std::count_if(values.begin(), values.end(),
                                 [&](double value) { return !(value + offset > 0.0); });
        };
        const auto measured = without(days_.measured);
        const auto computed = without(days_.computed);
        if (measured == 0 && computed == 0) return k_constant;
        return fmt::format(
            "no logarithm: a discharge of 0 or less, with a hundredth of the mean measured added, on {} "
            "measured and {} computed days",
            measured, computed);
    }

    /// A form of the Kling-Gupta efficiency with its parts.
    struct Form {
        const char* key;
        const char* name;
        const char* formula;
        const char* part_keys[3];
        const char* variability;
    };

    void add_form(const Form& form, const std::optional<KlingGupta>& result) {
        const std::string reason =
            constant_ ? k_constant
                      : (is_constant(days_.computed) ? "the computed discharge is constant" : "a mean is 0");
        const auto part = [&](const char* key, const char* name, double KlingGupta::*member) {
            add({.key = key,
                 .name = name,
                 .formula = form.formula,
                 .best = 1.0,
                 .value = result ? std::optional{(*result).*member} : std::nullopt},
                reason);
        };
        part(form.key, form.name, &KlingGupta::efficiency);
        part(form.part_keys[0], "  correlation", &KlingGupta::correlation);
        part(form.part_keys[1], form.variability, &KlingGupta::variability);
        part(form.part_keys[2], "  ratio of means", &KlingGupta::bias);
    }

    void kling_gupta_rows() {
        add_form({.key = "KGE",
                  .name = "KGE (2009)",
                  .formula = "F4",
                  .part_keys = {"KGE_r", "KGE_alpha", "KGE_beta"},
                  .variability = "  ratio of standard deviations"},
                 kling_gupta(days_.measured, days_.computed));
        add_form({.key = "KGEmodified",
                  .name = "KGE, modified (2012)",
                  .formula = "F5",
                  .part_keys = {"KGEmodified_r", "KGEmodified_gamma", "KGEmodified_beta"},
                  .variability = "  ratio of variation"},
                 modified_kling_gupta(days_.measured, days_.computed));
    }

    void errors() {
        add({.key = "RMSE",
             .name = "RMSE",
             .formula = "F6",
             .unit = MeasureUnit::Discharge,
             .value = root_mean_square_error(days_.measured, days_.computed)},
            {});
        add({.key = "MAE",
             .name = "MAE",
             .formula = "F7",
             .unit = MeasureUnit::Discharge,
             .value = mean_absolute_error(days_.measured, days_.computed)},
            {});
        const auto dv = run_volume_difference(days_.measured, days_.computed);
        add({.key = "VolumeDifference",
             .name = "Volume difference, as in a run",
             .formula = "F8",
             .unit = MeasureUnit::Percent,
             .value = dv ? std::optional{as_double(*dv)} : std::nullopt,
             .remark = "measured - computed; positive = too little"},
            "the measured volume is 0");
        highest_day_rows();
        low_flow_row();
        centre_row();
    }

    void highest_day_rows() {
        const HighestDay highest = highest_day(days_.dates, days_.measured, days_.computed);
        add({.key = "HighestDaySize",
             .name = "Highest day, size",
             .formula = "F10",
             .unit = MeasureUnit::Percent,
             .value = known(highest.size_error),
             .remark = fmt::format("measured {}, computed {} {}; positive = too much",
                                   seven_digit_text(highest.measured), seven_digit_text(highest.computed),
                                   unit_words(units_).discharge)},
            "the highest measured discharge is 0");
        add({.key = "HighestDayDate",
             .name = "Highest day, date",
             .formula = "F10",
             .unit = MeasureUnit::Days,
             .value = highest.days_late,
             .remark =
                 fmt::format("measured {}, computed {}; positive = late",
                             iso_date_text(highest.measured_date), iso_date_text(highest.computed_date))},
            {});
    }

    void low_flow_row() {
        const LowFlow low = low_flow(days_.measured, days_.computed);
        add({.key = "LowFlowVolume",
             .name = "Low-flow volume",
             .formula = "F11",
             .unit = MeasureUnit::Percent,
             .value = known(low.volume_error),
             .remark = fmt::format("{} days with measured at or below {} {}; positive = too much", low.days,
                                   seven_digit_text(low.limit), unit_words(units_).discharge)},
            "the measured discharge is 0 on all low-flow days");
    }

    void centre_row() {
        const auto measured = centre_of_mass(days_.dates, days_.measured);
        const auto computed = centre_of_mass(days_.dates, days_.computed);
        MeasureRow row{.key = "CentreOfMass",
                       .name = "Centre of mass, date",
                       .formula = "F12",
                       .unit = MeasureUnit::Days};
        if (measured && computed) {
            row.value = *computed - *measured;
            row.remark =
                fmt::format("measured {}, computed {}; positive = late", iso_date_text(whole_day(*measured)),
                            iso_date_text(whole_day(*computed)));
        }
        add(std::move(row), measured ? "no computed volume" : "no measured volume");
    }

    const ComparedDays& days_;
    Units units_;
    bool constant_ = false;
    std::vector<MeasureRow> rows_;
};

}  // namespace

std::vector<MeasureRow> measure_table(const ComparedDays& days, Units units) {
    return Rows{days, units}.made();
}

std::string measure_unit_text(MeasureUnit unit, Units units) {
    switch (unit) {
        case MeasureUnit::None: return {};
        case MeasureUnit::Discharge: return unit_words(units).discharge;
        case MeasureUnit::Percent: return "%";
        case MeasureUnit::Days: return "days";
    }
    return {};
}

}  // namespace nivora
