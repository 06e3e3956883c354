#include "tools/soak/recovery_kills.h"

#include "base/durable_file.h"
#include "engine/run_driver.h"
#include "prep/daily_editor.h"
#include "prep/monthly_averages.h"
#include "session/basin_life.h"
#include "session/main_window_rules.h"
#include "store/basin_marks.h"
#include "tests/support/temporary_folder.h"

#include <SQLiteCpp/Database.h>
#include <fmt/format.h>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <ctime>
#include <exception>
#include <new>
#include <span>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr int k_rounds = 4;

/// Shared by the process that works and the one that kills it.
struct Ledger {
    // What the basin may hold when the program is killed now.
    std::atomic<bool> open{false};  ///< the sample is open, and the work has begun
    std::atomic<int> text_before{0};
    std::atomic<int> text_after{0};
    std::atomic<int> value_before{0};
    std::atomic<int> value_after{0};
    std::atomic<int> month_before{0};
    std::atomic<int> month_after{0};
    std::atomic<int> keeps{0};
    std::atomic<double> keep_sum{0.0};
    std::atomic<double> keep_longest{0.0};
    std::atomic<double> work_longest{0.0};
    std::atomic<int> slow_keeps{0};
};

/// Agrees to everything; a start recovers, unless it is to leave the question.
class Agreeing : public Dialogs {
public:
    Answer message(const Message& message) override {
        told += message.title + ": " + message.text + "; ";
        return go_on_answer(message.buttons);
    }
    std::optional<std::size_t> choose(const Choice& choice) override {
        ++asked;
        told += choice.title + "; ";
        return 0;
    }
    std::optional<std::string> input(const InputBox& box) override { return box.proposed; }
    std::optional<FileAnswer> file(const FileQuestion& /*question*/) override { return FileAnswer{path, 0}; }

    fs::path path;
    int asked = 0;
    std::string told;
};

/// One start of the program.
struct Program {
    explicit Program(const fs::path& folder) : life(session, folder) {}

    Agreeing dialogs;
    Desktop desktop;
    Session session{dialogs, desktop};
    BasinLife life;
};

double value_in(const fs::path& file) {
    SQLite::Database basin{path_text(file), SQLite::OPEN_READONLY};
    return basin.execAndGet("SELECT NetRadiation FROM PhysicalData WHERE Zone = 1 ORDER BY Date LIMIT 1")
        .getDouble();
}

int month_in(const fs::path& file) {
    BasinDatabase basin{file, Access::ReadOnly};
    return static_cast<int>(read_stored_year(basin, 1)[0].values[0]);
}

std::string text_in(const fs::path& file) {
    SQLite::Database basin{path_text(file), SQLite::OPEN_READONLY};
    return basin.execAndGet("SELECT BasinDescription FROM BasinDescription").getString();
}

int text_number(const std::string& text) {
    constexpr std::string_view k_begin = "text ";
    return text.starts_with(k_begin) ? std::stoi(text.substr(k_begin.size())) : 0;
}

template <typename Task>
double microseconds_of(Task&& task) {
    const auto begin = std::chrono::steady_clock::now();
    task();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin).count();
}

/// The time for which the processor was this thread's.
double processor_microseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

/// The work of a user, told in the ledger.
class Work {
public:
    Work(Program& program, Ledger& ledger) : program_(program), ledger_(ledger) {}

    void open(const fs::path& file) {
        program_.life.start();
        program_.dialogs.path = file;
        program_.life.open();
        choose_simulation_row(program_.session, 0);
        ledger_.open = true;
    }

    void round(int number) {
        const int first = number * 3 + 1;
        type(first);
        edit(true);
        edit_months(true);
        run();
        edit(false);
        edit_months(false);
        type(first + 1);
        save_at_once(first + 2);
    }

    /// Another basin takes the working file, then this one again. Nothing is unsaved.
    void look_at(const fs::path& other, const fs::path& file) {
        for (const fs::path& opened : {other, file}) {
            program_.dialogs.path = opened;
            program_.life.open();
            program_.life.keep_recovery();
        }
    }

private:
    void keep() {
        constexpr double k_slow = 5000.0;
        const double begun = processor_microseconds();
        const double time = microseconds_of([&] { program_.life.keep_recovery(); });
        ledger_.work_longest = std::max(ledger_.work_longest.load(), processor_microseconds() - begun);
        if (time > k_slow) ledger_.slow_keeps = ledger_.slow_keeps + 1;
        ledger_.keep_longest = std::max(ledger_.keep_longest.load(), time);
        ledger_.keep_sum = ledger_.keep_sum + time;
        ledger_.keeps = ledger_.keeps + 1;
        program_.life.finish_recovery();
    }

    void type(int number) {
        BasinState& basin = program_.session.basin;
        ledger_.text_after = number;
        basin.basin_description = fmt::format("text {}", number);
        mark_basin_changed(basin);
        keep();
        ledger_.text_before = number;
    }

    /// Types and saves before the timer has handed the text over.
    void save_at_once(int number) {
        BasinState& basin = program_.session.basin;
        ledger_.text_after = number;
        basin.basin_description = fmt::format("text {}", number);
        mark_basin_changed(basin);
        program_.life.save();
        ledger_.text_before = number;
    }

    /// Changes a monthly average, and accepts or cancels.
    void edit_months(bool accepted) {
        Session& session = program_.session;
        const int old = ledger_.month_before;
        {
            MonthlyAverages months{session.basin.Work_File, session.basin.ZoneCount,
                                   &session.prep.daily_edits};
            ledger_.month_after = old + 1;
            months.set_value(1, 1, 0, static_cast<float>(old + 1));
            keep();
            ledger_.month_before = accepted ? old + 1 : old;
            if (accepted) {
                months.commit();
                mark_output_invalid(session.basin);
                mark_input_changed(session.basin);
            }
        }
        keep();
        if (!accepted) ledger_.month_after = old;
    }

    /// Adds 1 to a value, takes that back and does it again, so that a change that is made twice shows.
    void edit(bool done) {
        Session& session = program_.session;
        DailyEditor editor{session.basin.Work_File,
                           DataView::PhysicalData,
                           {.table = "PhysicalData", .fields = {"Date", "NetRadiation"}, .period = {}},
                           &session.prep.daily_edits};
        const int old = ledger_.value_before;
        ledger_.value_after = old + 1;
        editor.mass_edit(MassEdit::Add, 1, 0, 0, 1.0F);
        keep();
        ledger_.value_before = old;
        editor.undo();
        keep();
        editor.redo();
        keep();
        ledger_.value_before = old + 1;
        if (done) {
            editor.commit();
            mark_output_invalid(session.basin);
            mark_input_changed(session.basin);
            keep();
            return;
        }
        ledger_.value_before = old;
        editor.roll_back();
        keep();
        ledger_.value_after = old;
    }

    void run() {
        Session& session = program_.session;
        const RunContext context{session.basin, session.run, session.dialogs};
        const RunChoice choice{.forecast = false, .index = 1};
        choose_and_run(context, choice, [&] { return start_run(context, choice.index); });
        keep();
    }

    Program& program_;
    Ledger& ledger_;
};

class Ground {
public:
    Ground(const fs::path& template_file, const fs::path& sample)
        : program_(folder_ / "program"),
          user_file_(folder_ / "user.mdb"),
          old_(folder_ / "old.mdb"),
          other_(folder_ / "other.mdb") {
        fs::create_directory(program_);
        fs::copy_file(template_file, program_ / "null.mdb");
        fs::copy_file(sample, old_);
        fs::copy_file(sample, other_);
        {
            BasinDatabase basin{old_, Access::ReadWrite};
            Ensure_Monthly_Table(basin);
            basin.execute("UPDATE PhysicalData SET NetRadiation = 0");
            basin.execute("UPDATE BasinAverages SET TMaxN = 0");
        }
        void* shared =
            mmap(nullptr, sizeof(Ledger), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (shared == MAP_FAILED) throw std::bad_alloc();
        ledger_ = new (shared) Ledger;
    }
    Ground(const Ground&) = delete;
    Ground& operator=(const Ground&) = delete;
    ~Ground() { munmap(ledger_, sizeof(Ledger)); }

    void prepare() {
        for (const auto& entry : fs::directory_iterator{program_}) {
            if (entry.path().filename() != "null.mdb") fs::remove(entry.path());
        }
        fs::copy_file(old_, user_file_, fs::copy_options::overwrite_existing);
        new (ledger_) Ledger;
    }

    /// Works in a child that is killed after some microseconds of work. @return whether it was killed
    bool work(double microseconds) {
        return killed_child(
            [&] {
                Program program{program_};
                Work work{program, *ledger_};
                work.open(user_file_);
                for (int round = 0; round < k_rounds; ++round) {
                    work.round(round);
                    work.look_at(other_, user_file_);
                }
            },
            [&] { return ledger_->open.load(); }, microseconds);
    }

    /// Starts the program, which recovers, in a child that is killed.
    bool recover(double microseconds) {
        return killed_child(
            [&] {
                Program program{program_};
                program.life.start();
                program.life.keep_recovery();
                program.life.finish_recovery();
            },
            [] { return true; }, microseconds);
    }

    /// Starts the program a last time and looks. @return what is wrong; empty if nothing is
    std::string look(RecoveryNumbers& figures) {
        Program program{program_};
        if (!program.life.start()) return "the program ended at its start: " + program.dialogs.told;
        for (const auto& entry : fs::directory_iterator{program_}) {
            if (entry.path().extension() == ".part") return "left behind: " + path_text(entry.path());
        }
        const BasinState& basin = program.session.basin;
        const bool recovered = program.dialogs.asked > 0;
        (recovered ? figures.asked : figures.not_asked) += 1;
        const fs::path& file = recovered ? basin.Work_File : user_file_;
        const int saved_text = text_number(text_in(user_file_));
        const int text = recovered ? text_number(basin.basin_description) : saved_text;
        const auto value = static_cast<int>(value_in(file));
        const int month = month_in(file);
        if (recovered && basin.Basin_File != user_file_) return "recovered under another name";
        if (text < saved_text)
            return fmt::format("text {} is older than the text {} of the file", text, saved_text);
        if (month < ledger_->month_before || month > ledger_->month_after.load())
            return fmt::format("month {} and not {} to {}", month, ledger_->month_before.load(),
                               ledger_->month_after.load());
        if (text < ledger_->text_before || text > ledger_->text_after.load())
            return fmt::format("text {} and not {} to {}", text, ledger_->text_before.load(),
                               ledger_->text_after.load());
        if (value < ledger_->value_before || value > ledger_->value_after.load())
            return fmt::format("value {} and not {} to {}", value, ledger_->value_before.load(),
                               ledger_->value_after.load());
        if (recovered && basin.Output_Valid) {
            ++figures.valid_results;
            return check_results(program.session);
        }
        return {};
    }

    [[nodiscard]] const Ledger& ledger() const { return *ledger_; }

private:
    /// Results that count have a row for each zone and day, and the figures of their run.
    static std::string check_results(Session& session) {
        SQLite::Database work{path_text(session.basin.Work_File), SQLite::OPEN_READONLY};
        const auto rows = work.execAndGet("SELECT count(*) FROM SimResults").getInt64();
        const auto days = session.run.RunEnd - session.run.RunStart + 1;
        if (rows != days * session.basin.ZoneCount) return fmt::format("valid results of {} rows", rows);
        if (session.run.LastRunSimulation != session.basin.simulations.front().name)
            return "valid results of no simulation";
        return {};
    }

    template <typename Task, typename Ready>
    static bool killed_child(Task&& task, Ready&& ready, double microseconds) {
        const pid_t child = fork();
        if (child == 0) {
            task();
            _exit(0);
        }
        int status = 0;
        auto begin = std::chrono::steady_clock::now();
        bool counting = false;
        for (;;) {
            if (waitpid(child, &status, WNOHANG) == child) return false;
            const auto now = std::chrono::steady_clock::now();
            if (!counting && ready()) {
                counting = true;
                begin = now;
            }
            if (counting && std::chrono::duration<double, std::micro>(now - begin).count() >= microseconds)
                break;
            usleep(20);
        }
        kill(child, SIGKILL);
        waitpid(child, &status, 0);
        return !WIFEXITED(status);
    }

    TemporaryFolder folder_;
    fs::path program_;
    fs::path user_file_;
    fs::path old_;
    fs::path other_;
    Ledger* ledger_;
};

/// What one of several processes has found. Shared by that process and the one that adds up.
struct Part {
    RecoveryNumbers numbers;
    bool complete = false;
    std::array<char, 600> first_wrong{};
};

/// The kills of one process: every `parts`-th one.
void kill_part(const std::string& template_file, const std::string& sample, int kills, int first, int parts,
               Part& part) {
    constexpr double k_never = 1.0e9;
    constexpr int k_recovery_points = 30;
    RecoveryNumbers& numbers = part.numbers;
    Ground ground{template_file, sample};
    ground.prepare();
    const double work_time = microseconds_of([&] { ground.work(k_never); });
    // A start that recovers takes less time than the work: measured once after a kill half-way.
    ground.prepare();
    ground.work(work_time / 2);
    const double recovery_time = microseconds_of([&] { ground.recover(k_never); });
    for (int i = first; i < kills; i += parts) {
        ground.prepare();
        ground.work(work_time * i / kills);
        ++numbers.kills;
        // After every third kill the recovery is killed, too, and half of those twice.
        const int turn = i / parts;
        const double point = recovery_time * (turn % k_recovery_points) / k_recovery_points;
        for (int crash = 0; turn % 3 == 0 && crash < 1 + turn % 2; ++crash) {
            if (ground.recover(point)) ++numbers.recovery_kills;
        }
        const Ledger& ledger = ground.ledger();
        numbers.keeps += ledger.keeps;
        numbers.slow_keeps += ledger.slow_keeps;
        numbers.longest_work = std::max(numbers.longest_work, ledger.work_longest.load());
        numbers.keep_sum += ledger.keep_sum;
        numbers.longest_keep = std::max(numbers.longest_keep, ledger.keep_longest.load());
        std::string wrong;
        try {
            wrong = ground.look(numbers);
        } catch (const std::exception& error) {
            wrong = error.what();
        }
        if (wrong.empty() || numbers.wrong++ > 0) continue;
        const std::string text = fmt::format("kill {} of {}: {}", i, kills, wrong);
        text.copy(part.first_wrong.data(), part.first_wrong.size() - 1);
    }
    part.complete = true;
}

void add(RecoveryNumbers& sum, const RecoveryNumbers& part) {
    sum.kills += part.kills;
    sum.recovery_kills += part.recovery_kills;
    sum.asked += part.asked;
    sum.not_asked += part.not_asked;
    sum.valid_results += part.valid_results;
    sum.wrong += part.wrong;
    sum.keeps += part.keeps;
    sum.slow_keeps += part.slow_keeps;
    sum.keep_sum += part.keep_sum;
    sum.longest_keep = std::max(sum.longest_keep, part.longest_keep);
    sum.longest_work = std::max(sum.longest_work, part.longest_work);
}

}  // namespace

RecoveryFigures kill_and_recover(const std::string& template_file, const std::string& sample, int kills,
                                 int jobs) {
    const auto count = static_cast<std::size_t>(jobs);
    void* shared =
        mmap(nullptr, count * sizeof(Part), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) throw std::bad_alloc();
    const std::span<Part> parts{static_cast<Part*>(shared), count};
    for (int job = 0; job < jobs; ++job) {
        Part* part = new (&parts[static_cast<std::size_t>(job)]) Part;
        if (fork() != 0) continue;
        kill_part(template_file, sample, kills, job, jobs, *part);
        _exit(0);
    }
    while (wait(nullptr) > 0) {
    }
    RecoveryFigures figures;
    for (const Part& part : parts) {
        add(figures, part.numbers);
        if (!part.complete) ++figures.wrong;
        if (!figures.first_wrong.empty()) continue;
        figures.first_wrong = part.complete || part.numbers.wrong > 0 ? part.first_wrong.data()
                                                                      : "a process of the soak ended early";
    }
    munmap(shared, count * sizeof(Part));
    return figures;
}

}  // namespace nivora
