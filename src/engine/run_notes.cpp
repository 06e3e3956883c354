#include "engine/run_notes.h"

#include "base/number_text.h"
#include "engine/run_state.h"
#include "engine/sim_results.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace nivora {
namespace {

std::string day_word(DayCount days) { return days == 1 ? "1 day" : fmt::format("{} days", days); }

/// The affected days: a span if there is no gap between them.
std::string dates_text(const RunNote& note) {
    if (note.first == note.last) return long_date_text(note.first);
    const char* form = note.days == note.last - note.first + 1 ? "{} to {}" : "the first {}, the last {}";
    return fmt::format(fmt::runtime(form), long_date_text(note.first), long_date_text(note.last));
}

std::string without_rows_text(const RunNote& note) {
    const char* effect =
        note.all_zones ? "The run skips these days and continues with the next one."
                       : "Where only some zones have a day, zones and days no longer match from then on: "
                         "do not use the results.";
    return fmt::format(
        "{} of {} from {} to {} {} no rows in {}: {}. {} To add the missing days, choose Data, Variables, "
        "Current simulation and Data, Parameters, and fill them in.",
        note.days, day_word(note.period_days()), long_date_text(note.start), long_date_text(note.end),
        note.days == 1 ? "has" : "have", zones_text(note.zones), dates_text(note), effect);
}

std::string below_zero_text(const RunNote& note, Units units) {
    return fmt::format(
        "The computed discharge is below 0 on {} of {} ({}); the lowest value is {} {} on {}. A discharge "
        "cannot be negative: check the time lag, the runoff coefficients and the precipitation of these "
        "days.",
        note.days, day_word(note.period_days()), dates_text(note), single_text(note.value),
        unit_words(units).discharge, long_date_text(note.value_day));
}

std::string stopped_text(const RunNote& note) {
    return fmt::format(
        "The computation of snow and melt stopped in zone {} on {}. From there on, {} have no rain and no "
        "melt of new snow: do not use the computed discharge. Repair the values of that day and of the "
        "days after it, and run again.",
        note.zones.front(), long_date_text(note.first),
        note.zones.size() == 1 ? "the days of this zone" : "the days of " + zones_text(note.zones));
}

std::string no_store_text(const RunNote& note, Units units) {
    constexpr const char* k_advice =
        "The gain of the zone and the cover that step 5 computes from it are meaningless. Start the "
        "simulation before the first snowfall, and compare CDC with CDCclimWAMA.";
    const std::string zones = zones_text(note.zones);
    const std::string start = long_date_text(note.start);
    const std::string end = long_date_text(note.end);
    if (note.negligible) {
        return fmt::format(
            "In {}, nothing of the winter from {} to {} is left in the snow under the present climate "
            "(P - i = 0), although there is snow in the summer. {}",
            zones, start, end, k_advice);
    }
    return fmt::format(
        "In {}, more water left the snow in the winter from {} to {} than fell, under the present climate "
        "(P - i = {} {}): it is snow from before the start of the simulation, or the melt is too strong, or "
        "too "
        "little snow fell, for the snow cover given. {}",
        zones, start, end, single_text(note.value), unit_words(units).depth, k_advice);
}

std::string held_text(const RunNote& note) {
    return fmt::format(
        "In {}, the last day with snow and the first day without snow move to the same day of the changed "
        "climate, {}. The first of them counts, so the cover stays at {} until {}, although the snow is "
        "gone. Compare CDC with CDCclimWAMA before you use the summer of this zone.",
        zones_text(note.zones), long_date_text(note.first), single_text(note.value),
        long_date_text(note.last));
}

/// The computed discharge of a step.
std::span<const double> computed_discharge(const SimResults& results, int climate_step) {
    return climate_step == 3 ? results.DailyQPresent : results.DailyQ;
}

}  // namespace

const char* note_name(NoteKind kind) {
    switch (kind) {
        case NoteKind::DaysWithoutRows: return "DaysWithoutRows";
        case NoteKind::RunoffBelowZero: return "RunoffBelowZero";
        case NoteKind::SnowMeltStopped: return "SnowMeltStopped";
        case NoteKind::NoWinterStore: return "NoWinterStore";
        case NoteKind::CoverHeld: break;
    }
    return "CoverHeld";
}

std::string note_text(const RunNote& note, Units units) {
    const std::string step = note.step > 0 ? fmt::format("Step {}: ", note.step) : std::string{};
    switch (note.kind) {
        case NoteKind::DaysWithoutRows: return step + without_rows_text(note);
        case NoteKind::RunoffBelowZero: return step + below_zero_text(note, units);
        case NoteKind::SnowMeltStopped: return step + stopped_text(note);
        case NoteKind::NoWinterStore: return step + no_store_text(note, units);
        case NoteKind::CoverHeld: break;
    }
    return step + held_text(note);
}

std::string note_summary(const RunNote& note) {
    switch (note.kind) {
        case NoteKind::DaysWithoutRows:
            return fmt::format("{} of {} without rows in {}", note.days, day_word(note.period_days()),
                               zones_text(note.zones));
        case NoteKind::RunoffBelowZero:
            return fmt::format("discharge below 0 on {} of {}", note.days, day_word(note.period_days()));
        case NoteKind::SnowMeltStopped:
            return fmt::format("no snow and melt in {} from {} on", zones_text(note.zones),
                               long_date_text(note.first));
        case NoteKind::NoWinterStore: return "no winter store in " + zones_text(note.zones);
        case NoteKind::CoverHeld: break;
    }
    return "cover held in " + zones_text(note.zones);
}

std::string zones_text(const std::vector<int>& zones) {
    if (zones.empty()) return "no zone";
    if (zones.size() == 1) return fmt::format("zone {}", zones.front());
    const bool in_a_row = zones.back() - zones.front() + 1 == static_cast<int>(zones.size());
    if (in_a_row && zones.size() > 2) return fmt::format("zones {} to {}", zones.front(), zones.back());
    std::string text = fmt::format("zones {}", zones.front());
    for (std::size_t i = 1; i + 1 < zones.size(); ++i) text += fmt::format(", {}", zones[i]);
    return text + fmt::format(" and {}", zones.back());
}

std::vector<RunNote> days_without_rows(const SimResults& results, int zones, DayCount start, DayCount end) {
    if (end < start || zones < 1) return {};
    const auto days = static_cast<std::size_t>(end - start + 1);
    std::vector<std::vector<bool>> present(static_cast<std::size_t>(zones), std::vector<bool>(days, false));
    for (std::size_t row = 0; row < results.size(); ++row) {
        const int zone = results.Zone[row];
        const DayCount date = results.Date[row];
        if (zone < 1 || zone > zones || date < start || date > end) continue;
        present[static_cast<std::size_t>(zone - 1)][static_cast<std::size_t>(date - start)] = true;
    }
    std::vector<RunNote> notes;
    std::map<std::vector<bool>, std::size_t> note_of;
    for (int zone = 1; zone <= zones; ++zone) {
        const std::vector<bool>& of_zone = present[static_cast<std::size_t>(zone - 1)];
        const auto first = std::find(of_zone.begin(), of_zone.end(), false);
        if (first == of_zone.end()) continue;
        const auto [known, added] = note_of.try_emplace(of_zone, notes.size());
        if (added) {
            const auto last = std::find(of_zone.rbegin(), of_zone.rend(), false);
            RunNote& note = notes.emplace_back();
            note.start = start;
            note.end = end;
            note.first = start + (first - of_zone.begin());
            note.last = end - (last - of_zone.rbegin());
            note.days = std::count(of_zone.begin(), of_zone.end(), false);
        }
        notes[known->second].zones.push_back(zone);
    }
    for (RunNote& note : notes) note.all_zones = note.zones.size() == static_cast<std::size_t>(zones);
    return notes;
}

std::optional<RunNote> runoff_below_zero(const SimResults& results, const RunRows& rows,
                                         const RunState& run) {
    const std::span<const double> discharge = computed_discharge(results, run.ClimateStep);
    RunNote note{.kind = NoteKind::RunoffBelowZero, .step = run.ClimateStep, .zones = {}};
    note.start = run.RunStart;
    note.end = run.RunEnd;
    double lowest = 0.0;
    for (const std::uint32_t row : rows.by_day) {
        if (!(discharge[row] < 0.0)) continue;
        const DayCount date = results.Date[row];
        if (note.days == 0) note.first = date;
        if (note.days == 0 || date != note.last) ++note.days;
        note.last = date;
        if (!(discharge[row] < lowest)) continue;
        lowest = discharge[row];
        note.value_day = date;
    }
    if (note.days == 0) return std::nullopt;
    note.value = static_cast<float>(lowest);
    return note;
}

RunNote snow_melt_stopped(const SimResults& results, std::size_t row, int zones, const RunState& run) {
    RunNote note{.kind = NoteKind::SnowMeltStopped,
                 .step = run.ClimateStep,
                 .zones = {},
                 .start = run.RunStart,
                 .end = run.RunEnd,
                 .first = results.Date[row],
                 .last = run.RunEnd,
                 .days = run.RunEnd - results.Date[row] + 1};
    for (int zone = results.Zone[row]; zone <= zones; ++zone) note.zones.push_back(zone);
    if (note.zones.empty()) note.zones.push_back(results.Zone[row]);
    return note;
}

void forget_notes(RunState& run, int step) {
    std::erase_if(run.notes, [step](const RunNote& note) { return note.step == step; });
}

}  // namespace nivora
