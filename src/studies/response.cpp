#include "studies/response.h"

#include "base/fault.h"
#include "climate/climate_run.h"
#include "climate/scenario_codes.h"
#include "studies/kept_messages.h"
#include "studies/measures.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

constexpr std::int16_t k_both_extremes = 0;
constexpr std::int16_t k_average = 1;
constexpr std::int16_t k_precipitation = 2;
constexpr std::int16_t k_all_zones = 0;
constexpr int k_winter_changed = 2;

constexpr int k_winter_present = 1;

/// Takes the discharge of the rows that zone 1 has up to the end of the winter, or after it.
void take_flow(std::vector<double>& flow, const std::vector<double>& column, const StudyBasin& study,
               bool (*belongs)(DayCount day, DayCount winter_end), DayCount winter_end) {
    for (std::size_t day = 0; day < study.flow_rows.size(); ++day) {
        if (belongs(study.measured.dates[day], winter_end)) flow[day] = column[study.flow_rows[day]];
    }
}

bool in_winter(DayCount day, DayCount winter_end) { return day <= winter_end; }
bool in_summer(DayCount day, DayCount winter_end) { return day > winter_end; }

ScenarioRow row_of(const StudyBasin& study, std::int16_t variable, EditAction action, float factor) {
    return {.variable = variable,
            .start = study.run.RunStart,
            .end = study.run.RunEnd,
            .action = static_cast<std::int16_t>(action),
            .factor = factor,
            .zones = k_all_zones};
}

}  // namespace

std::vector<ScenarioRow> scenario_rows(const StudyBasin& study, const ClimateChange& change) {
    const std::int16_t temperature = study.inputs.temperature_max_min ? k_both_extremes : k_average;
    return {row_of(study, temperature, EditAction::Add, change.degrees),
            row_of(study, k_precipitation, EditAction::Multiply, change.precipitation)};
}

std::string winter_end_problem(const StudyBasin& study, DayCount winter_end) {
    const DayCount start = study.run.RunStart;
    const DayCount end = study.run.RunEnd;
    if (winter_end >= start && winter_end < end) return {};
    return fmt::format(
        "The winter must end on a day from {} to {}, so that the simulation has a summer; {} is none.",
        iso_date_text(start), iso_date_text(end - 1), iso_date_text(winter_end));
}

ResponseEvaluator::ResponseEvaluator(std::shared_ptr<const StudyBasin> study, DayCount winter_end)
    : study_(std::move(study)), winter_end_(winter_end) {}

ClimateResponse ResponseEvaluator::evaluate(const ClimateChange& change) {
    ClimateResponse response{.change = change};
    table_ = study_->table;
    BasinState basin = study_->basin;
    RunState run = study_->run;
    KeptMessages dialogs;
    const ClimateContext context{.run = {basin, run, dialogs}, .climate = response.state, .report_file = {}};
    ClimateFlows flows;
    flows.present.assign(study_->flow_rows.size(), as_double(k_missing));
    flows.changed = flows.present;
    const auto keep = [&](int step, const SimResults& results) {
        // The next step overwrites the winter of the present climate.
        if (step == k_winter_present)
            take_flow(flows.present, results.DailyQ, *study_, in_winter, winter_end_);
        if (step == k_winter_changed)
            take_flow(flows.changed, results.DailyQ, *study_, in_winter, winter_end_);
        if (step != k_climate_steps) return;
        take_flow(flows.present, results.DailyQPresent, *study_, in_summer, winter_end_);
        take_flow(flows.changed, results.DailyQ, *study_, in_summer, winter_end_);
    };
    try {
        const MemoryScenario scenario{
            .name = "response", .rows = scenario_rows(*study_, change), .winter_end = winter_end_};
        response.done = run_climate_steps_in_memory(table_, context, scenario, keep);
    } catch (const Fault& fault) {
        dialogs.stop(fault.what());
    }
    response.notes = std::move(run.notes);
    if (response.done) {
        response.flows = std::move(flows);
        const int zones = static_cast<int>(study_->inputs.zones);
        response.snow_present = last_snow(table_, table_.SCA, winter_end_, zones);
        response.snow_changed = last_snow(table_, table_.SCAclimWAMA, winter_end_, zones);
    } else if (!dialogs.messages.empty()) {
        response.problem = dialogs.messages.back().text;
    }
    return response;
}

std::vector<ClimateChange> all_pairs(std::span<const float> degrees, std::span<const float> precipitation) {
    std::vector<ClimateChange> pairs;
    pairs.reserve(degrees.size() * precipitation.size());
    for (const float added : degrees)
        for (const float factor : precipitation) pairs.push_back({added, factor});
    return pairs;
}

void evaluate_all(const std::shared_ptr<const StudyBasin>& study, DayCount winter_end,
                  std::span<const ClimateChange> changes, StudyPool& pool,
                  const std::function<void(std::size_t index, ClimateResponse response)>& take,
                  const std::function<bool()>& stops) {
    // Enough for all threads, and soon done after Ctrl-C.
    const std::size_t at_once = std::size_t{pool.threads()} * 8;
    std::vector<ResponseEvaluator> evaluators(pool.threads(), ResponseEvaluator{study, winter_end});
    std::vector<ClimateResponse> responses;
    for (std::size_t first = 0; first < changes.size() && !stops(); first += at_once) {
        responses.assign(std::min(at_once, changes.size() - first), {});
        pool.work(responses.size(), [&](unsigned thread, std::size_t index) {
            responses[index] = evaluators[thread].evaluate(changes[first + index]);
        });
        for (std::size_t index = 0; index < responses.size(); ++index)
            take(first + index, std::move(responses[index]));
    }
}

LastSnow last_snow(const SimResults& table, Column cover, DayCount winter_end, int zones) {
    constexpr float k_least_cover = 0.01F;
    LastSnow last(static_cast<std::size_t>(zones));
    std::vector<bool> bare(last.size(), false);
    for (std::size_t row = 0; row < table.Date.size(); ++row) {
        const int zone = table.Zone[row];
        if (zone < 1 || zone > zones || table.Date[row] <= winter_end || is_missing(cover[row])) continue;
        const std::size_t index = static_cast<std::size_t>(zone) - 1;
        if (bare[index]) continue;
        if (cover[row] > k_least_cover)
            last[index] = table.Date[row];
        else
            bare[index] = true;
    }
    for (std::size_t zone = 0; zone < last.size(); ++zone) {
        if (!bare[zone]) last[zone].reset();
    }
    return last;
}

FlowFigures flow_figures(std::span<const DayCount> dates, std::span<const double> flow) {
    std::vector<DayCount> known_dates;
    std::vector<double> known;
    for (std::size_t day = 0; day < flow.size(); ++day) {
        if (is_missing(flow[day])) continue;
        known_dates.push_back(dates[day]);
        known.push_back(flow[day]);
    }
    FlowFigures figures;
    if (known.empty()) return figures;
    const HighestDay highest = highest_day(known_dates, known, known);
    figures.centre_of_mass = centre_of_mass(known_dates, known);
    double sum = 0.0;
    for (const double each : known) sum += each;
    double passed = 0.0;
    for (std::size_t day = 0; day < known.size() && sum > 0.0 && !figures.median_day; ++day) {
        passed += known[day];
        if (2.0 * passed >= sum) figures.median_day = known_dates[day];
    }
    figures.highest_day = highest.computed_date;
    figures.highest = highest.computed;
    return figures;
}

}  // namespace nivora
