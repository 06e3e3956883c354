#include "studies/flow_evaluator.h"

#include "base/fault.h"

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

Column* single_column(FlowColumns& columns, StudyVariable variable) {
    switch (variable) {
        case StudyVariable::AverageTemperature: return &columns.average_temperature;
        case StudyVariable::MaximumTemperature: return &columns.maximum_temperature;
        case StudyVariable::MinimumTemperature: return &columns.minimum_temperature;
        case StudyVariable::Precipitation: return &columns.precipitation;
        case StudyVariable::SnowCoveredArea: return &columns.cover;
        case StudyVariable::CriticalTemperature: return &columns.critical_temperature;
        case StudyVariable::LagTime: return &columns.lag_hours;
        case StudyVariable::LapseRate: return &columns.lapse_rate;
        case StudyVariable::DegreeDayFactor: return &columns.degree_day_factor;
        case StudyVariable::SnowCoefficient: return &columns.snow_coefficient;
        case StudyVariable::RainCoefficient: return &columns.rain_coefficient;
        case StudyVariable::RainContributingArea: return &columns.rain_switch;
        case StudyVariable::RecessionX:
        case StudyVariable::RecessionY: break;
    }
    return nullptr;
}

}  // namespace

FlowEvaluator::FlowEvaluator(std::shared_ptr<const StudyBasin> basin, std::vector<FreeRange> ranges)
    : basin_(std::move(basin)),
      ranges_(std::move(ranges)),
      days_(basin_->rows.days_of_full_table),
      columns_(flow_columns(basin_->table)),
      stages_(basin_) {
    if (days_ == 0) return;
    quick_.emplace(basin_->inputs, basin_->run, days_);
    for (const FreeRange& range : ranges_) add_column(range.variable);
    for (Changed& changed : changed_) point_to(changed);
}

void FlowEvaluator::add_column(StudyVariable variable) {
    const bool known = std::any_of(changed_.begin(), changed_.end(),
                                   [&](const Changed& changed) { return changed.variable == variable; });
    const VariableUse use = variable_use(variable, basin_->inputs);
    const bool fixed = basin_->run.NoSnow && variable == StudyVariable::SnowCoveredArea;
    if (known || fixed || use == VariableUse::None) return;
    Changed changed{.variable = variable,
                    .rows = use == VariableUse::FirstZone ? days_ : basin_->table.size(),
                    .single = {},
                    .twofold = {}};
    if (study_column(variable).twofold != nullptr) {
        changed.twofold.resize(changed.rows);
    } else {
        changed.single.resize(changed.rows);
    }
    changed_.push_back(std::move(changed));
}

void FlowEvaluator::point_to(Changed& changed) {
    if (Column* column = single_column(columns_, changed.variable)) {
        *column = changed.single;
    } else if (changed.variable == StudyVariable::RecessionX) {
        columns_.recession_x = changed.twofold;
    } else {
        columns_.recession_y = changed.twofold;
    }
}

void FlowEvaluator::change_rows(Changed& changed, const Adjustment& adjustment) {
    std::size_t first = 0;
    std::size_t behind = days_;
    if (adjustment.days) {
        const auto position = [&](DayCount date) {
            return static_cast<std::size_t>(
                std::clamp<DayCount>(date - basin_->run.RunStart, 0, static_cast<DayCount>(days_)));
        };
        first = position(adjustment.days->start);
        behind = position(adjustment.days->end + 1);
    }
    for (std::size_t zone = 1; zone <= changed.rows / days_; ++zone) {
        if (!adjustment.zones.at(zone)) continue;
        const std::size_t row = (zone - 1) * days_ + first;
        if (changed.twofold.empty()) {
            adjust_values(std::span{changed.single}.subspan(row, behind - first), adjustment);
        } else {
            adjust_values(std::span{changed.twofold}.subspan(row, behind - first), adjustment);
        }
    }
}

/// @return false where a value is beyond what its field can hold
bool FlowEvaluator::change_columns(std::span<const double> numbers) {
    for (Changed& changed : changed_) {
        const auto [single, twofold] = study_column(changed.variable);
        if (twofold != nullptr) {
            std::copy_n((basin_->table.*twofold).begin(), changed.rows, changed.twofold.begin());
        } else {
            std::copy_n((basin_->table.*single).begin(), changed.rows, changed.single.begin());
        }
    }
    try {
        for (std::size_t i = 0; i < ranges_.size(); ++i) {
            const Adjustment adjustment = ranges_[i].at(numbers[i]);
            for (Changed& changed : changed_) {
                if (changed.variable == adjustment.variable) change_rows(changed, adjustment);
            }
        }
    } catch (const Fault&) {
        return false;
    }
    return true;
}

std::span<const double> FlowEvaluator::flow_of_stages(std::span<const double> numbers) {
    std::vector<Adjustment> adjustments;
    adjustments.reserve(ranges_.size());
    for (std::size_t i = 0; i < ranges_.size(); ++i) adjustments.push_back(ranges_[i].at(numbers[i]));
    evaluation_ = stages_.evaluate(adjustments);
    if (!evaluation_.is_sound()) return {};
    return evaluation_.computed;
}

std::span<const double> FlowEvaluator::flow(std::span<const double> numbers) {
    if (quick_ && change_columns(numbers) && quick_->compute(columns_)) return quick_->computed();
    return flow_of_stages(numbers);
}

}  // namespace nivora
