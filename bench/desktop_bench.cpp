// What a user waits for: the start of the desktop program, a run from the menu to the statistics, the opening
// and the saving of a large basin. Each is measured several times in a process of its own; the median counts.
// Opening and saving take turns with what no program could leave out, a copy that is flushed and renamed.

#include "base/durable_file.h"
#include "base/scripted_dialogs.h"
#include "bench/bench_basin.h"
#include "bench/own_calls.h"
#include "bench/turns.h"
#include "shell/frmNVR.h"
#include "store/basin_check.h"
#include "widgets/desktop_printers.h"
#include "widgets/printing.h"

#include <fmt/format.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <vector>

namespace {

using namespace nivora;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

double seconds_since(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// A copy of the program folder, settings that hide the welcome window, and basins.
struct Folders {
    Folders() : root(fs::temp_directory_path() / fmt::format("nivora-bench-{}", getpid())) {
        fs::create_directories(root / "program");
        fs::create_directories(root / "settings/Ambrel-Hollin/Nivora");
        for (const char* name : {"nivora", "null.mdb", "NIVORAHelp.txt", "quickhelp.txt"}) {
            fs::copy_file(fs::path{NIVORA_PROGRAM_FOLDER} / name, root / "program" / name);
        }
        std::ofstream{root / "settings/Ambrel-Hollin/Nivora/Version 1.0.ini"}
            << "[Startup]\nSplashScreen%3A=0\n";
        fs::copy_file(fs::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb", root / "sample.mdb");
    }
    Folders(const Folders&) = delete;
    Folders& operator=(const Folders&) = delete;
    ~Folders() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }

    fs::path root;
};

std::string first_line(const fs::path& file) {
    std::ifstream in{file};
    std::string line;
    std::getline(in, line);
    return line;
}

/// Whether the program's main thread waits for input, that is, sleeps in the system call
/// poll (7) or ppoll (271), as the event loop does when it has nothing to do. At the
/// start all file work is done before the loop.
bool waits_for_input(pid_t program) {
    const std::string call = first_line(fmt::format("/proc/{}/syscall", program));
    return call.starts_with("7 ") || call.starts_with("271 ");
}

std::int64_t processor_ticks(pid_t program) {
    std::istringstream fields{first_line(fmt::format("/proc/{}/stat", program))};
    std::string field;
    std::int64_t ticks = 0;
    for (int number = 1; fields >> field && number <= 15; ++number) {
        if (number >= 14) ticks += std::atoll(field.c_str());
    }
    return ticks;
}

/// The seconds from the start of a process until it has made a file, late in its start, and waits for input.
/// @param argument of the process; null for none
double start_once(const fs::path& program, const char* argument, const fs::path& made,
                  std::int64_t& busy_afterwards) {
    fs::remove(made);
    const auto begin = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        execl(program.c_str(), program.c_str(), argument, nullptr);
        _exit(127);
    }
    double ready = 0.0;
    for (int samples = 0; samples < 4 && seconds_since(begin) < 20.0;) {
        const bool waits = waits_for_input(child) && fs::exists(made);
        if (waits && samples++ == 0) ready = seconds_since(begin);
        if (!waits) samples = 0;
        std::this_thread::sleep_for(std::chrono::microseconds{500});
    }
    // A program that is ready stays idle while nobody types. If it does not, it was
    // not ready yet, and the figure is too small.
    const std::int64_t before = processor_ticks(child);
    std::this_thread::sleep_for(std::chrono::milliseconds{300});
    busy_afterwards = std::max(busy_afterwards, processor_ticks(child) - before);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    return ready;
}

double start_of_ours(const Folders& folders, std::int64_t& busy_afterwards) {
    return start_once(folders.root / "program/nivora", nullptr, folders.root / "program/new.mdb",
                      busy_afterwards);
}

double start_of_bare_window(const Folders& folders) {
    const fs::path made = folders.root / "bare_window_is_ready";
    std::int64_t busy = 0;
    return start_once(NIVORA_BARE_WINDOW, made.c_str(), made, busy);
}

/// The main window, within this process.
struct MainWindow {
    explicit MainWindow(const Folders& folders)
        : window({session, quick_help, folders.root / "program", printing}) {
        window.answer(desktop);
        window.start();
        QApplication::processEvents();
    }

    void choose(const char* action) { window.findChild<QAction*>(QString::fromUtf8(action))->trigger(); }

    ScriptedDialogs dialogs;
    Desktop desktop;
    Session session{dialogs, desktop};
    QuickHelp quick_help;
    DesktopPrinters printers;
    Printing printing{session, printers};
    frmNVR window;
};

/// Records when the statistics were first painted, and closes them.
class StatisticsWatch : public QObject {
public:
    explicit StatisticsWatch(Clock::time_point begin) : begin_(begin) { qApp->installEventFilter(this); }

    [[nodiscard]] double shown_after() const { return shown_after_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && watched->objectName() == QStringLiteral("Results") && !seen_) {
            seen_ = true;
            QTimer::singleShot(0, this, [this, watched] {
                shown_after_ = seconds_since(begin_);
                qobject_cast<QWidget*>(watched)->close();
            });
        }
        return false;
    }

private:
    Clock::time_point begin_;
    bool seen_ = false;
    double shown_after_ = 0.0;
};

/// The seconds from the menu entry of a run to its painted statistics.
double run_once(const Folders& folders, const fs::path& basin) {
    MainWindow desktop{folders};
    desktop.dialogs.then_file(basin);
    desktop.choose("mnuFileItem(1)");
    QApplication::processEvents();
    desktop.dialogs.then(Answer::Ok);  // a made-up basin begins with another runoff than was measured
    const auto begin = Clock::now();
    const StatisticsWatch watch{begin};
    desktop.choose("mnuRunSimVar(1)");
    while (watch.shown_after() <= 0.0 && seconds_since(begin) < 20.0) QApplication::processEvents();
    return watch.shown_after();
}

double open_once(const Folders& folders, const fs::path& basin) {
    MainWindow desktop{folders};
    desktop.dialogs.then_file(basin);
    const auto begin = Clock::now();
    desktop.choose("mnuFileItem(1)");
    QApplication::processEvents();
    return desktop.session.basin.simulations.empty() ? 0.0 : seconds_since(begin);
}

double save_once(const Folders& folders, const fs::path& basin) {
    MainWindow desktop{folders};
    desktop.dialogs.then_file(basin);
    desktop.choose("mnuFileItem(1)");
    QApplication::processEvents();
    const auto before = fs::last_write_time(basin);
    const auto begin = Clock::now();
    desktop.choose("mnuFileItem(4)");
    QApplication::processEvents();
    const double taken = seconds_since(begin);
    return fs::last_write_time(basin) == before ? 0.0 : taken;
}

void flush(const fs::path& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ::fsync(file);
    ::close(file);
}

/// Copies a file in blocks, flushes the copy, renames it and flushes the folder.
double copy_once(const fs::path& from, const fs::path& target) {
    const auto begin = Clock::now();
    const fs::path part = target.string() + ".part";
    {
        std::ifstream in{from, std::ios::binary};
        std::ofstream out{part, std::ios::binary | std::ios::trunc};
        std::vector<char> block(1U << 20U);
        while (in) {
            in.read(block.data(), static_cast<std::streamsize>(block.size()));
            out.write(block.data(), in.gcount());
        }
    }
    flush(part);
    fs::rename(part, target);
    flush(target.parent_path());
    return seconds_since(begin);
}

double check_once(const fs::path& basin) {
    BasinDatabase database{basin, Access::ReadOnly};
    const auto begin = Clock::now();
    return structure_damage(database).empty() ? seconds_since(begin) : 0.0;
}

/// The peak memory of this process in MB.
double most_memory() {
    std::ifstream status{"/proc/self/status"};
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) return std::atof(line.c_str() + 6) / 1024.0;
    }
    return 0.0;
}

/// The seconds and the peak memory in MB of work that was done in a process of its own.
struct Taken {
    double seconds = 0.0;
    double memory = 0.0;
};
template <typename Work>
Taken in_own_process(Work work) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) return {};
    const pid_t child = fork();
    if (child == 0) {
        int count = 0;
        QApplication application(count, nullptr);
        Taken taken{.seconds = work()};
        taken.memory = most_memory();
        const bool told = write(ends[1], &taken, sizeof taken) == static_cast<ssize_t>(sizeof taken);
        _exit(told ? 0 : 1);
    }
    close(ends[1]);
    Taken taken;
    const bool told = read(ends[0], &taken, sizeof taken) == static_cast<ssize_t>(sizeof taken);
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return told ? taken : Taken{};
}

template <typename Work>
double median(int times, Work work) {
    std::vector<double> figures;
    for (int i = 0; i < times; ++i) figures.push_back(work());
    std::sort(figures.begin(), figures.end());
    if (figures.front() <= 0.0) return 0.0;  // one of them failed
    return figures.at(figures.size() / 2);
}

/// The start in turns with that of a window with a menu, texts and tables that does nothing.
void compare_with_bare_window(const Folders& folders) {
    constexpr int k_turns = 15;
    std::int64_t busy = 0;
    tell_turns("start, beside a window with menu, texts and tables",
               take_turns(
                   k_turns, [&] { return start_of_ours(folders, busy); },
                   [&] { return start_of_bare_window(folders); }),
               1.2);
}

/// Opening and saving in turns with a bare copy, which no program could leave out.
void compare_with_copies(const Folders& folders, const fs::path& large) {
    constexpr int k_turns = 9;
    const fs::path copy = folders.root / "copy.mdb";
    tell_turns("opening 50 years, beside copy, flush, rename and check",
               take_turns(
                   k_turns, [&] { return in_own_process([&] { return open_once(folders, large); }).seconds; },
                   [&] { return copy_once(large, copy) + check_once(large); }),
               1.2);
    tell_turns("saving 50 years, beside copy, flush and rename",
               take_turns(
                   k_turns, [&] { return in_own_process([&] { return save_once(folders, large); }).seconds; },
                   [&] { return copy_once(large, copy); }),
               1.4);
}

/// The run of a year in turns with the engine's own calls for the same rows, in another copy of the basin.
/// @return the most memory in MB that a process took to open the basin and run it
double compare_with_own_calls(const Folders& folders, const fs::path& large) {
    constexpr int k_turns = 9;
    // Both replace results that are there.
    const fs::path floor = folders.root / "floor.mdb";
    in_own_process([&] { return run_once(folders, large); });
    fs::copy_file(folders.root / "program/new.mdb", floor);
    const std::vector<double> results = stored_results(floor);
    fs::copy_file(floor, folders.root / "run.mdb");
    double memory = 0.0;
    const auto ours = [&] {
        const Taken taken = in_own_process([&] { return run_once(folders, folders.root / "run.mdb"); });
        memory = std::max(memory, taken.memory);
        return taken.seconds;
    };
    tell_turns("run to painted statistics, 16 x 366 of 50 years",
               take_turns(k_turns, ours,
                          [&] { return seconds_of([&] { replace_results_by_own_calls(floor, results); }); }),
               std::nullopt);
    return memory;
}

bool tell(const char* what, double figure, double goal, const char* unit) {
    const bool reached = figure > 0.0 && figure <= goal;
    fmt::print("{:62} {:9.3f} {:2}   goal {:7.3f}   {}\n", what, figure, unit, goal,
               reached ? "reached" : "MISSED");
    std::fflush(stdout);
    return reached;
}

}  // namespace

int main() {
    const Folders folders;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("QT_LOGGING_RULES", "*=false",
           1);  // the offscreen platform repeats warnings about what it lacks
    setenv("XDG_CONFIG_HOME", (folders.root / "settings").c_str(), 1);
    std::int64_t busy = 0;
    bool good = tell("start of the program until it waits for input",
                     median(9, [&] { return start_of_ours(folders, busy); }), 0.5, "s");
    fmt::print("{:62} {:9} ms\n", "  processor time in the 0.3 s after that, at most",
               busy * 1000 / sysconf(_SC_CLK_TCK));
    compare_with_bare_window(folders);
    good &= tell(
        "year round run of the sample, menu to painted statistics",
        median(
            9,
            [&] {
                return in_own_process([&] { return run_once(folders, folders.root / "sample.mdb"); }).seconds;
            }),
        0.15, "s");
    const fs::path large = folders.root / "large.mdb";
    pid_t writer = fork();  // in a process of its own, so that its memory does not count in the measurements
    if (writer == 0) {
        write_bench_basin(large, 16, 50);
        _exit(0);
    }
    waitpid(writer, nullptr, 0);
    fmt::print("{:62} {:9.1f} MB\n", "  basin of 50 years and 16 zones, size of the file",
               static_cast<double>(fs::file_size(large)) / 1e6);
    double memory = 0.0;
    good &= tell("opening that basin",
                 median(5,
                        [&] {
                            const Taken taken = in_own_process([&] { return open_once(folders, large); });
                            memory = std::max(memory, taken.memory);
                            return taken.seconds;
                        }),
                 0.5, "s");
    compare_with_copies(folders, large);
    good &= tell("memory of the program that opened it, at most", memory, 200.0, "MB");
    good &= tell("memory of the program that opened it and ran it, at most",
                 compare_with_own_calls(folders, large), 45.0, "MB");
    fmt::print("{:62} {:9.1f} MB\n", "  of a program that shows an empty window, for comparison",
               in_own_process([] {
                   QWidget window;
                   window.show();
                   QApplication::processEvents();
                   return 0.0;
               }).memory);
    fmt::print("{}\n", good ? "All goals are reached." : "Not all goals are reached.");
    return EXIT_SUCCESS;
}
