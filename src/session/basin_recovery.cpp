#include "session/basin_recovery.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "base/text.h"
#include "prep/daily_edits.h"
#include "store/basin_check.h"
#include "store/basin_copy.h"
#include "store/table_io.h"
#include "store/work_file_state.h"

#include <fmt/format.h>

#include <algorithm>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr const char* k_title = "Recover unsaved changes?";
constexpr std::size_t k_most_differences = 8;

using Next = RecoveryDecision::Next;

/// The state has the same boxes and grids as a file.
template <typename Row>
bool same_rows(const std::vector<Row>& rows, const std::vector<Row>& others) {
    RecoveryState one;
    RecoveryState other;
    if constexpr (std::is_same_v<Row, Zone>) {
        one.zones = rows, other.zones = others;
    } else {
        one.simulations = rows, other.simulations = others;
    }
    return recovery_lines(one) == recovery_lines(other);
}

/// A save leaves out the X and Y cells, and gives an empty cell of a zone the value zero.
std::vector<Simulation> as_saved(std::vector<Simulation> simulations) {
    for (Simulation& simulation : simulations) simulation.initial_x = simulation.initial_y = std::nullopt;
    return simulations;
}

std::vector<Zone> as_saved(std::vector<Zone> zones) {
    for (Zone& zone : zones) {
        zone.area = zone.area.value_or(0.0);
        zone.elevation = zone.elevation.value_or(0.0);
        for (Aspect& aspect : zone.aspects)
            aspect = {.share = aspect.share.value_or(0.0), .elevation = aspect.elevation.value_or(0.0)};
    }
    return zones;
}

/// A text of the user on one line of the question, shortened in its middle.
std::string shown(std::string_view text) {
    constexpr std::size_t k_longest = 200;  // bytes
    constexpr std::string_view k_gap = "…";
    const auto is_inside = [&](std::size_t at) {  // a character of several bytes
        return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
    };
    std::string line{text};
    if (text.size() > k_longest) {
        std::size_t end = k_longest / 2;
        while (end > 0 && is_inside(end)) --end;
        std::size_t begin = text.size() - k_longest / 2;
        while (begin < text.size() && is_inside(begin)) ++begin;
        line = std::string{text.substr(0, end)}.append(k_gap).append(text.substr(begin));
    }
    std::replace_if(
        line.begin(), line.end(), [](unsigned char c) { return c < 0x20U || c == 0x7FU; }, ' ');
    return line;
}

std::string number_of(std::size_t count, const char* one, const char* many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

void compare_boxes(const RecoveryState& state, const BasinState& saved, std::vector<std::string>& lines) {
    const bool same =
        state.basin_name == saved.basin_name && state.basin_description == saved.basin_description &&
        state.zones_text == saved.zones_text &&
        state.reference_elevation_text == saved.reference_elevation_text &&
        state.latitude_text == saved.latitude_text && state.longitude_text == saved.longitude_text;
    if (!same) lines.emplace_back("the boxes of the basin definition");
    if (!same_rows(as_saved(state.zones), as_saved(saved.zones))) lines.emplace_back("the zones");
    if (same_rows(as_saved(state.simulations), as_saved(saved.simulations))) return;
    lines.push_back(fmt::format("the simulations: {}, in the file {}", state.simulations.size(),
                                saved.simulations.size()));
}

/// The months that hold anything but zeros, which opening a basin adds.
std::vector<std::string> filled_months(BasinDatabase& database) {
    std::vector<std::string> months;
    if (!database.has_table(k_basin_averages)) return months;
    for (const MonthlyRow& row : read_table<MonthlyRow>(database, basin_averages_table())) {
        if (row.tmax == 0.0F && row.tmin == 0.0F && row.tavg == 0.0F && row.precip == 0.0F) continue;
        months.push_back(
            fmt::format("{} {} {} {} {} {}", row.zone, row.month, row.tmax, row.tmin, row.tavg, row.precip));
    }
    std::sort(months.begin(), months.end());
    return months;
}

/// The tables of the boxes, the grids and the monthly averages are compared as these.
bool has_own_comparison(const std::string& table) {
    return same_name(table, k_basin_averages) || same_name(table, k_zone_description) ||
           same_name(table, k_simulation_index) || same_name(table, k_basin_description);
}

void compare_tables(BasinDatabase& work, BasinDatabase& saved, std::vector<std::string>& lines) {
    if (filled_months(work) != filled_months(saved)) lines.emplace_back("the long-term monthly averages");
    const auto ours = table_contents(work);
    auto theirs = table_contents(saved);
    for (const auto& [table, content] : ours) {
        const auto found = theirs.find(table);
        if (has_own_comparison(table)) {
        } else if (found == theirs.end()) {
            lines.push_back(fmt::format("the table {}, which the file has not", table));
        } else if (content.rows != found->second.rows) {
            lines.push_back(fmt::format("the table {}: {} rows, in the file {}", table, content.rows,
                                        found->second.rows));
        } else if (!(content == found->second)) {
            lines.push_back(fmt::format("values in the table {}", table));
        }
        if (found != theirs.end()) theirs.erase(found);
    }
    for (const auto& [table, content] : theirs) {
        if (!has_own_comparison(table))
            lines.push_back(fmt::format("the table {}, which was deleted", table));
    }
}

bool edits_are_open(const RecoveryState& state, const fs::path& work_file) {
    return !state.daily_edits.empty() && change_counter(work_file) == state.change_counter;
}

/// "10/23/2026 7:53:41 AM"
std::string moment_text(double time) { return long_date_text(whole_day(time)) + " " + time_text(time); }

/// The lines about the basin's file.
std::string file_lines(const RecoveryState& state) {
    if (!state.basin_file) return "File: none; the basin was never saved\n";
    const fs::path file = path_from_utf8(*state.basin_file);
    std::string lines = "File: " + shown(*state.basin_file) + "\n";
    const auto content = file_content(file);
    if (!content) {
        lines += "This file is gone, or can't be read. A save of the recovered basin writes it anew.\n";
    } else if (state.known_content && *content != *state.known_content) {
        lines +=
            "This file was changed by another program since it was opened or saved here. Recover leaves it "
            "as "
            "it is; a save asks before it replaces those changes.\n";
    }
    return lines;
}

std::string difference_lines(const std::vector<std::string>& differences) {
    std::string lines;
    for (std::size_t i = 0; i < std::min(differences.size(), k_most_differences); ++i)
        lines += "   " + shown(differences[i]) + "\n";
    if (differences.size() > k_most_differences)
        lines += fmt::format("   and {} more\n", differences.size() - k_most_differences);
    return lines;
}

Choice question_about(const RecoveryState& state, const std::vector<std::string>& differences) {
    return {
        .text = fmt::format(
            "Nivora did not end properly. Unsaved changes of this basin were kept:\n\n"
            "Basin: {}\n{}State of: {}\n\n{}\n{}\n"
            "Recover opens the basin with these changes. They are still not saved.\n"
            "Save a copy writes the basin with these changes to another file, then Nivora starts as "
            "usual.\n"
            "Discard deletes these changes.\n"
            "To decide later, close this question: Nivora ends and asks again at its next start.",
            shown(state.basin_name), file_lines(state), moment_text(state.time),
            state.basin_file ? "Different from the file:" : "The basin has:", difference_lines(differences)),
        .title = k_title,
        .icon = Icon::Question,
        .buttons = {"&Recover", "&Save a copy", "&Discard"}};
}

bool discard_is_meant(Session& session, const RecoveryState& state) {
    return session.dialogs.message({.text = "Delete the unsaved changes of the basin '" +
                                            shown(state.basin_name) + "'? They can't be brought back.",
                                    .title = "Discard the changes?",
                                    .icon = Icon::Warning,
                                    .buttons = Buttons::YesNo,
                                    .default_answer = Answer::No}) == Answer::Yes;
}

/// A name in the folder that no file has: "recovery 2026-10-23 07-53-41" with an ending.
fs::path dated_name(const fs::path& folder) {
    std::string moment = iso_moment_text(local_now());
    std::replace(moment.begin(), moment.end(), 'T', ' ');
    std::replace(moment.begin(), moment.end(), ':', '-');
    for (int number = 1;; ++number) {
        const fs::path name =
            folder / ("recovery " + moment + (number == 1 ? "" : " " + std::to_string(number)));
        bool taken = false;
        for (const char* ending : {".state", ".mdb", ".mdb-journal"}) {
            fs::path file = name;
            std::error_code unknown;
            taken = taken || fs::exists(fs::symlink_status(file += ending, unknown));
        }
        if (!taken) return name;
    }
}

/// Gives a file a second name, or copies it on a disk that knows no second names.
/// @throws fs::filesystem_error
void copy_aside(const fs::path& file, const fs::path& name) {
    std::error_code unknown;
    fs::create_hard_link(file, name, unknown);
    if (unknown) fs::copy_file(file, name);
}

/// The state goes last, so that a crash in between is told at the next start. @throws fs::filesystem_error
fs::path move_aside(const fs::path& recovery_file, const fs::path& work_file) {
    const fs::path name = dated_name(recovery_file.parent_path());
    const auto with = [](fs::path path, const char* ending) { return path += ending; };
    if (fs::exists(work_file)) {
        // A file without the journal of its interrupted change is damaged: wherever a crash leaves the file,
        // its journal is beside it.
        const fs::path journal = with(work_file, "-journal");
        const bool interrupted = fs::exists(journal);
        if (interrupted) copy_aside(journal, with(name, ".mdb-journal"));
        fs::rename(work_file, with(name, ".mdb"));
        if (interrupted) fs::remove(journal);
    }
    fs::rename(recovery_file, with(name, ".state"));
    return with(name, ".mdb");
}

RecoveryDecision unusable(Session& session, const fs::path& recovery_file, const std::string& why) {
    const std::string begin =
        "Nivora did not end properly, and the unsaved changes of the last basin can't be recovered: " + why +
        "\n\n";
    constexpr const char* k_told = "The changes can't be recovered";
    try {
        const fs::path kept = move_aside(recovery_file, session.basin.Work_File);
        session.dialogs.message(
            {.text = begin + "What there is was kept, and nothing was deleted: the tables of the basin as " +
                     path_text(kept) + ", which you can try to open, and the boxes and grids, as text, as " +
                     path_text(fs::path{kept}.replace_extension(".state")) + ". Nivora now starts as usual.",
             .title = k_told,
             .icon = Icon::Warning});
        return {.next = Next::Start};
    } catch (const fs::filesystem_error& error) {
        session.dialogs.stop(begin + "The files can't be moved aside (" + error.code().message() +
                                 "), so that a start would overwrite them. Move the files " +
                                 path_text(recovery_file) + " and " + path_text(session.basin.Work_File) +
                                 " to another folder, then start Nivora again.",
                             k_told);
        return {.next = Next::End};
    }
}

/// A state that stays would not belong to the working file of the next basin. @return false after a message
bool discarded(Session& session, const fs::path& recovery_file) {
    std::error_code error;
    fs::remove(recovery_file, error);
    if (error)
        session.dialogs.stop("The file " + path_text(recovery_file) +
                             " can't be deleted: " + error.message() + ".");
    return !error;
}

/// A copy that goes to the basin's own file is a save.
bool may_replace_file_of(Dialogs& dialogs, const RecoveryState& state, const fs::path& copy) {
    if (!state.basin_file || !same_file(copy, path_from_utf8(*state.basin_file))) return true;
    return may_replace_changes(dialogs, copy, state.known_content,
                               "the question about your changes comes again.");
}

/// Asks until there is a decision.
RecoveryDecision ask(Session& session, const fs::path& recovery_file, RecoveryState state,
                     const std::vector<std::string>& differences) {
    for (;;) {
        const auto button = session.dialogs.choose(question_about(state, differences));
        if (!button) return {.next = Next::End};
        switch (static_cast<RecoveryAnswer>(*button)) {
            case RecoveryAnswer::Recover: return {.next = Next::Recover, .state = std::move(state)};
            case RecoveryAnswer::SaveCopy: {
                const auto name = session.file_names.GetFileName(
                    FileKind::SaveAs,
                    state.basin_file ? path_from_utf8(*state.basin_file) : session.basin.Basin_File);
                if (!name || !may_replace_file_of(session.dialogs, state, *name)) continue;
                return {.next = Next::SaveCopy, .state = std::move(state), .copy = *name};
            }
            case RecoveryAnswer::Discard:
                if (!discard_is_meant(session, state) || !discarded(session, recovery_file)) continue;
                return {.next = Next::Start};
        }
    }
}

}  // namespace

bool may_replace_changes(Dialogs& dialogs, const fs::path& file, const std::optional<FileContent>& known,
                         std::string_view advice) {
    const auto present = file_content(file);
    if (!present || !known || *present == *known) return true;
    return dialogs.message({.text = fmt::format("The file {} was changed by another program since it was "
                                                "opened or saved here.  Saving replaces those changes.  Save "
                                                "anyway?\n(With No the file stays as it is; {})",
                                                path_text(file), advice),
                            .title = "The file has changed",
                            .icon = Icon::Warning,
                            .buttons = Buttons::YesNo,
                            .default_answer = Answer::No}) == Answer::Yes;
}

std::vector<std::string> recovery_differences(const RecoveryState& state, const fs::path& work_file) {
    std::vector<std::string> lines;
    if (edits_are_open(state, work_file)) {
        const bool months = same_name(state.edited_table, k_basin_averages);
        lines.push_back(number_of(count_daily_edits(state.daily_edits), "change", "changes") +
                        (months
                             ? " in the monthly averages, which were open; Recover keeps them as Accept does"
                             : " in the daily editor, which was open; Recover keeps them as Done does"));
    }
    if (!state.basin_file) {
        lines.push_back(number_of(state.zones.size(), "zone", "zones"));
        lines.push_back(number_of(state.simulations.size(), "simulation", "simulations"));
        return lines;
    }
    BasinDatabase work{work_file, Access::ReadOnly};
    try {
        BasinDatabase saved{path_from_utf8(*state.basin_file), Access::ReadOnly};
        BasinState basin;
        read_basin(saved, basin);
        compare_boxes(state, basin, lines);
        compare_tables(work, saved, lines);
    } catch (const StoreError& error) {
        lines.push_back(std::string{"not known: "} + error.what());
    }
    return lines;
}

RecoveryDecision decide_recovery(Session& session, const fs::path& recovery_file) {
    std::optional<RecoveryState> state;
    try {
        state = read_recovery_file(recovery_file);
    } catch (const RecoveryError& error) {
        return unusable(session, recovery_file,
                        "the file " + path_text(recovery_file) + " " + error.what() + ".");
    }
    if (!state) return {.next = Next::Start};
    try {
        const fs::path& work_file = session.basin.Work_File;
        {
            // Takes back the change of the killed program, so that the file can be read.
            BasinDatabase work{work_file, Access::ReadWrite};
            static_cast<void>(has_only_damaged_results(work, work_file));
        }
        const auto differences = recovery_differences(*state, work_file);
        if (!differences.empty()) return ask(session, recovery_file, std::move(*state), differences);
        // The crash came after a save had written all of it.
        return {.next = discarded(session, recovery_file) ? Next::Start : Next::End};
    } catch (const StoreError& error) {
        const bool passes = error.fault() == StoreFault::Busy || error.fault() == StoreFault::ReadOnly ||
                            error.fault() == StoreFault::Full;
        if (!passes) return unusable(session, recovery_file, error.what());
        session.dialogs.stop(
            error.what() + std::string{" It holds unsaved changes of the last basin, which are kept. "
                                       "Nivora ends, and asks about them at its next start."},
            "The basin was not recovered");
        return {.next = Next::End};
    }
}

bool complete_work_file(const RecoveryState& state, const fs::path& work_file) {
    bool current = change_counter(work_file) == state.change_counter;
    if (edits_are_open(state, work_file)) {
        BasinDatabase work{work_file, Access::ReadWrite};
        apply_daily_edits(work, state.edited_table, state.daily_edits);
        current = false;
    }
    bool damaged = false;
    {
        BasinDatabase work{work_file, Access::ReadOnly};
        damaged = has_only_damaged_results(work, work_file);
    }
    if (damaged) static_cast<void>(copy_into_work_file(work_file, work_file));
    return current && !damaged;
}

void take_boxes_and_grids(const RecoveryState& state, BasinState& basin, BasinDatabase& work, bool current) {
    basin.basin_name = state.basin_name;
    basin.basin_description = state.basin_description;
    basin.reference_elevation_text = state.reference_elevation_text;
    basin.latitude_text = state.latitude_text;
    basin.longitude_text = state.longitude_text;
    if (current || basin.zones.empty() || !state.zones.empty()) {
        basin.zones_text = state.zones_text;
        basin.ZoneCount = state.ZoneCount;
        basin.zones = state.zones;
    }
    basin.basin_area_text = basin_area_text(basin.zones);
    basin.simulations = state.simulations;
    if (!current)
        std::erase_if(basin.simulations, [&](const Simulation& row) { return !work.has_table(row.name); });
    basin.current_row.reset();
}

}  // namespace nivora
