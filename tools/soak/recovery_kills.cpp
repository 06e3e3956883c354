#include "tools/soak/recovery_kills.h"

#include "base/durable_file.h"
#include "engine/run_driver.h"
#include "prep/daily_editor.h"
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
#include <atomic>
#include <chrono>
#include <csignal>
#include <ctime>
#include <new>

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
        type(number * 2 + 1);
        edit(true);
        run();
        edit(false);
        type(number * 2 + 2);
        program_.life.save();
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

    /// Adds 1 to a value, so that a change that is made twice shows.
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
        : program_(folder_ / "program"), user_file_(folder_ / "user.mdb"), old_(folder_ / "old.mdb") {
        fs::create_directory(program_);
        fs::copy_file(template_file, program_ / "null.mdb");
        fs::copy_file(sample, old_);
        {
            SQLite::Database basin{path_text(old_), SQLite::OPEN_READWRITE};
            basin.exec("UPDATE PhysicalData SET NetRadiation = 0");
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
                for (int round = 0; round < k_rounds; ++round) work.round(round);
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
    std::string look(RecoveryFigures& figures) {
        Program program{program_};
        if (!program.life.start()) return "the program ended at its start: " + program.dialogs.told;
        const BasinState& basin = program.session.basin;
        const bool recovered = program.dialogs.asked > 0;
        (recovered ? figures.asked : figures.not_asked) += 1;
        int text = 0;
        int value = 0;
        if (recovered) {
            text = text_number(basin.basin_description);
            value = static_cast<int>(value_in(basin.Work_File));
            if (basin.Basin_File != user_file_) return "recovered under another name";
        } else {
            SQLite::Database saved{path_text(user_file_), SQLite::OPEN_READONLY};
            text = text_number(saved.execAndGet("SELECT BasinDescription FROM BasinDescription").getString());
            value = static_cast<int>(value_in(user_file_));
        }
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
    Ledger* ledger_;
};

}  // namespace

RecoveryFigures kill_and_recover(const std::string& template_file, const std::string& sample, int kills) {
    constexpr double k_never = 1.0e9;
    RecoveryFigures figures;
    Ground ground{template_file, sample};
    ground.prepare();
    const double work_time = microseconds_of([&] { ground.work(k_never); });
    // A start that recovers takes less time than the work: measured once after a kill half-way.
    ground.prepare();
    ground.work(work_time / 2);
    const double recovery_time = microseconds_of([&] { ground.recover(k_never); });
    double keep_sum = 0.0;
    for (int i = 0; i < kills; ++i) {
        ground.prepare();
        ground.work(work_time * i / kills);
        ++figures.kills;
        const double point = recovery_time * (i % 30) / 30;
        if (i % 3 == 0 && ground.recover(point)) ++figures.recovery_kills;
        figures.keeps += ground.ledger().keeps;
        figures.slow_keeps += ground.ledger().slow_keeps;
        figures.longest_work = std::max(figures.longest_work, ground.ledger().work_longest.load());
        keep_sum += ground.ledger().keep_sum;
        figures.longest_keep = std::max(figures.longest_keep, ground.ledger().keep_longest.load());
        const std::string wrong = ground.look(figures);
        if (!wrong.empty() && figures.wrong++ == 0)
            figures.first_wrong = fmt::format("kill {} of {}: {}", i, kills, wrong);
    }
    figures.mean_keep = keep_sum / std::max(1, figures.keeps);
    return figures;
}

}  // namespace nivora
