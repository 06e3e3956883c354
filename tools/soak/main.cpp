// Kills the commands of the File menu at very many points, with files of several sizes, saves on almost full
// disks, and kills a program at work and the recovery after it. Prints figures; fails if a user's file is
// broken, something is left behind, or a change that was kept is lost.
//
// nivora_soak [KILLS]               all of it
// nivora_soak recovery KILLS [JOBS] the recovery alone, by several processes at once

#include "tests/program/killed_command.h"
#include "tools/soak/recovery_kills.h"
#include "tools/soak/small_disk.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <string_view>

namespace {

using namespace nivora;

struct Figures {
    int kills = 0;
    int late = 0;  ///< the command completed before the kill
    int old_files = 0;
    int new_files = 0;
    int broken = 0;
    int leftovers = 0;
};

void note(KillGround& ground, FileCommand command, const KilledRun& run, std::int64_t point,
          Figures& figures) {
    ++figures.kills;
    if (run.finished) ++figures.late;
    std::string why;
    const Found found = ground.look(command, why);
    if (found == Found::Old) ++figures.old_files;
    if (found == Found::New) ++figures.new_files;
    if (found == Found::Broken && figures.broken++ == 0) {
        fmt::print("BROKEN: {} killed at {}: {}\n", command_name(command), point, why);
    }
    const std::string leftovers = ground.leftovers_after_next_start();
    if (!leftovers.empty() && figures.leftovers++ == 0) {
        fmt::print("LEFT BEHIND: {} killed at {}: {}\n", command_name(command), point, leftovers);
    }
}

Figures kill_often(KillGround& ground, FileCommand command, int kills) {
    Figures figures;
    const std::int64_t calls = ground.calls_of(command);
    const std::int64_t microseconds = ground.microseconds_of(command);
    for (int i = 0; i < kills; ++i) {
        // Half of the kills happen between system calls, half at a point in
        // time, possibly in the middle of a write.
        const bool at_call = calls > 0 && i % 2 == 0;
        const std::int64_t point = (at_call ? calls : microseconds) * i / kills;
        ground.prepare(command);
        note(ground, command,
             ground.kill_during(command, at_call ? KillPoint::SystemCall : KillPoint::Moment, point), point,
             figures);
    }
    return figures;
}

double seconds_since(std::chrono::steady_clock::time_point begin);

/// @return whether every recovery brought back what was kept
bool recover_often(int kills, int jobs) {
    const auto begin = std::chrono::steady_clock::now();
    const RecoveryFigures figures = kill_and_recover(
        NIVORA_PROGRAM_FOLDER "/null.mdb", NIVORA_PROGRAM_FOLDER "/samples/ellervane.mdb", kills, jobs);
    fmt::print(
        "recovery: {} kills of typing, edits, runs and saves, {} of the recovery; {} recovered ({} with "
        "valid "
        "results), {} had saved all, {} wrong, {:.1f} s\n",
        figures.kills, figures.recovery_kills, figures.asked, figures.valid_results, figures.not_asked,
        figures.wrong, seconds_since(begin));
    fmt::print(
        "{} states handed over in {:.0f} microseconds on average, {:.0f} at most ({:.0f} of the processor), "
        "{} "
        "in more than 5 ms\n",
        figures.keeps, figures.keep_sum / std::max(1, figures.keeps), figures.longest_keep,
        figures.longest_work, figures.slow_keeps);
    if (figures.wrong > 0) fmt::print("WRONG: {}\n", figures.first_wrong);
    return figures.wrong == 0 && figures.asked > 0;
}

double seconds_since(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 2 && std::string_view{argv[1]} == "recovery") {
        const int jobs = argc > 3 ? std::atoi(argv[3]) : 1;
        return recover_often(std::max(1, std::atoi(argv[2])), std::max(1, jobs)) ? EXIT_SUCCESS
                                                                                 : EXIT_FAILURE;
    }
    const int kills = argc > 1 ? std::atoi(argv[1]) : 1000;
    struct Size {
        const char* name;
        std::uintmax_t bytes;
        int share;  ///< of ten kills
    };
    bool good = recover_often(std::max(1, kills * 3 / 10), 1);
    constexpr std::array<Size, 3> k_sizes{
        {{"0.3 MB", 300'000, 5}, {"3 MB", 3'000'000, 4}, {"40 MB", 40'000'000, 1}}};
    int all = 0;
    fmt::print("{:8} {:8} {:>6} {:>6} {:>6} {:>7} {:>10} {:>5} {:>8}\n", "file", "command", "kills", "old",
               "new", "broken", "leftovers", "late", "seconds");
    for (const Size& size : k_sizes) {
        KillGround ground{size.bytes};
        for (const FileCommand command : {FileCommand::Save, FileCommand::SaveAs, FileCommand::Open}) {
            const auto begin = std::chrono::steady_clock::now();
            const Figures figures = kill_often(ground, command, std::max(1, kills * size.share / 30 + 1));
            all += figures.kills;
            good = good && figures.broken == 0 && figures.leftovers == 0;
            fmt::print("{:8} {:8} {:6} {:6} {:6} {:7} {:10} {:5} {:8.1f}\n", size.name, command_name(command),
                       figures.kills, figures.old_files, figures.new_files, figures.broken, figures.leftovers,
                       figures.late, seconds_since(begin));
            std::fflush(stdout);
        }
    }
    fmt::print("{} kills in all\n", all);
    const auto begin = std::chrono::steady_clock::now();
    const DiskFigures disk = save_on_small_disks(300'000, 150);
    if (!disk.stand_in.empty()) fmt::print("{}\n", disk.stand_in);
    fmt::print(
        "almost full disk: {} free sizes, {} saved, {} refused, told and the old file whole, {} wrong, "
        "{:.1f} s\n",
        disk.sizes, disk.saved, disk.told, disk.wrong, seconds_since(begin));
    if (disk.wrong > 0) fmt::print("WRONG: {}\n", disk.first_wrong);
    good = good && disk.wrong == 0 && disk.saved > 0 && disk.told > 0;
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
