#include "engine/results_summary.h"

#include "store/basin_marks.h"

#include <fmt/format.h>

namespace nivora {
namespace {

std::string moment_text(double moment) {
    return short_date_text(whole_day(moment)) + " " + time_text(moment);
}

}  // namespace

std::array<std::string, 6> statistics_names(Units units) {
    const std::string letter = unit_words(units).length_letter;
    const std::string volume = " (10^6 " + letter + "³)";
    const std::string discharge = " (" + letter + "³/s)";
    return {"Measured Runoff Volume" + volume, "Average Measured Runoff" + discharge,
            "Computed Runoff Volume" + volume, "Average Computed Runoff" + discharge,
            "Volume Difference (%)",           "Coefficient of Determination (R²)"};
}

std::array<std::string, 6> statistics_labels(Units units) {
    std::array<std::string, 6> labels = statistics_names(units);
    for (const std::size_t discharge : {1U, 3U}) labels.at(discharge) += ": ";
    // Intended: two blanks before this unit.
    labels[3].insert(labels[3].find(" ("), " ");
    labels[4] += ": ";
    labels[5] += ":";
    return labels;
}

std::array<std::optional<float>, 6> statistics_values(const RunState& run) {
    std::array<std::optional<float>, 6> values;
    if (run.statistics == StatisticsReach::Nothing) return values;
    values[0] = run.MeasuredVolume;
    values[1] = run.AvgMeasuredQ;
    values[2] = run.ComputedVolume;
    values[3] = run.AvgComputedQ;
    if (run.statistics == StatisticsReach::Volumes) return values;
    values[4] = run.VolumeDifference;
    values[5] = run.CoefficientR2;
    return values;
}

std::string statistics_caption(const RunState& run) {
    std::string caption = "Statistics, " + run.RunTitle;
    if (run.RunKind < k_melt_season_simulation) {
        caption += " (updating every " + std::to_string(run.UpdateInterval) + " days)";
    }
    if (run.NoSnow) caption += "  {no snow}";
    return caption;
}

std::string results_status(const BasinState& basin, const RunState& run) {
    if (!basin.results_time)
        return "Results of an earlier session; run the simulation to be sure that they are up to date";
    const std::string time = moment_text(*basin.results_time);
    if (run.LastRunSimulation.empty()) return fmt::format("The run of {} did not reach its end", time);
    const std::string whose = fmt::format("Results of '{}', run of {}", run.LastRunSimulation, time);
    if (inputs_changed_since_run(basin)) return whose + "; inputs have changed since, run it again";
    return basin.Output_Valid ? whose : whose + "; its climate evaluation was not completed";
}

std::string statistics_status(const BasinState& basin, double shown, const std::string& period) {
    if (basin.results_time != shown)
        return fmt::format("Out of date: statistics of the run of {}; the results are of another run",
                           moment_text(shown));
    if (inputs_changed_since_run(basin))
        return fmt::format("Out of date: inputs have changed since the run of {}", moment_text(shown));
    return period;
}

std::string period_summary(const RunState& run) {
    const DayCount days = run.RunEnd - run.RunStart + 1;
    std::string text = fmt::format("{} to {}, {} {}", long_date_text(run.RunStart),
                                   long_date_text(run.RunEnd), days, days == 1 ? "day" : "days");
    for (const RunNote& note : run.notes) text += "; " + note_summary(note);
    return text;
}

}  // namespace nivora
