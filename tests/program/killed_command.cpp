#include "tests/program/killed_command.h"

#include "base/durable_file.h"
#include "store/basin_copy.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <bit>
#include <chrono>
#include <csignal>
#include <set>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr int k_zones = 16;
constexpr std::uintmax_t k_bytes_a_row = 48;  // approximately, in the file
constexpr const char* k_new_description = "as it is after the change";

Simulation any_simulation() {
    Simulation definition;
    definition.name = "run 1";
    definition.start = *day_count({1996, 1, 1});
    definition.end = *day_count({1996, 12, 31});
    definition.units = Units::Metric;
    return definition;
}

void write_basin(const fs::path& path, std::uintmax_t about_bytes) {
    BasinDatabase::create_template(path);
    BasinDatabase database{path, Access::ReadWrite};
    BasinDescription header = read_basin_description(database);
    header.name = "Kill ground";
    header.zones = std::int16_t{k_zones};
    header.units = Units::Metric;
    std::vector<Zone> zones;
    std::vector<PhysicalRow> rows;
    const auto days = static_cast<int>(about_bytes / k_bytes_a_row / k_zones) + 1;
    for (int zone = 1; zone <= k_zones; ++zone) {
        zones.push_back(
            {.id = std::to_string(zone), .area = 10.0 + zone, .elevation = 1000.0 + 100.0 * zone});
        for (int day = 0; day < days; ++day) {
            const auto value = static_cast<float>(day % 977) / 7.0F;
            rows.push_back({.zone = static_cast<std::int16_t>(zone),
                            .date = 20000 + day,
                            .runoff = value,
                            .tmax = value / 3.0F,
                            .tmin = -value,
                            .tavg = value / 9.0F,
                            .precip = value / 11.0F,
                            .sca = 0.5F,
                            .net_radiation = 0.0F});
        }
    }
    const Simulation definition = any_simulation();
    atomically_if(database, [&] {
        write_basin_description(database, header);
        add_rows<Zone>(database, template_table(k_zone_description), zones);
        add_rows<Simulation>(database, template_table(k_simulation_index), std::span{&definition, 1});
        add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
        return true;
    });
}

void copy_over(const fs::path& from, const fs::path& to) {
    fs::copy_file(from, to, fs::copy_options::overwrite_existing);
}

std::uint64_t mixed(std::uint64_t number, const std::string& text) {
    for (const char letter : text) {
        number = (number ^ static_cast<unsigned char>(letter)) * 0x100000001B3ULL;
    }
    return (number ^ text.size()) * 0x100000001B3ULL;
}

/// Numbers are added as bits: to convert millions of them to text would take longer than everything else.
std::uint64_t mixed(std::uint64_t number, const SQLite::Column& cell) {
    std::uint64_t bits = 0;
    if (cell.isInteger()) {
        bits = static_cast<std::uint64_t>(cell.getInt64());
    } else if (cell.isFloat()) {
        bits = std::bit_cast<std::uint64_t>(cell.getDouble());
    } else {
        return mixed(number, cell.isNull() ? std::string{"no value"} : cell.getString());
    }
    number = (number ^ bits) * 0x9E3779B97F4A7C15ULL;
    return (number ^ (number >> 29U)) * 0xBF58476D1CE4E5B9ULL;
}

/// Lets the child run from system call to system call.
/// @return the calls that it made, without the one before which it was killed
std::int64_t follow(pid_t child, std::int64_t kill_before, bool& ended) {
    std::int64_t calls = 0;
    bool entering = true;
    int signal = 0;
    for (;;) {
        if (ptrace(PTRACE_SYSCALL, child, nullptr, signal) != 0) break;
        int status = 0;
        if (waitpid(child, &status, 0) != child || !WIFSTOPPED(status)) {
            ended = true;
            return calls;
        }
        signal = WSTOPSIG(status) == (SIGTRAP | 0x80) ? 0 : WSTOPSIG(status);
        if (signal != 0) continue;
        if (entering && calls == kill_before) break;
        if (entering) ++calls;
        entering = !entering;
    }
    kill(child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) == child && WIFSTOPPED(status)) {
    }
    ended = WIFEXITED(status);
    return calls;
}

}  // namespace

const char* command_name(FileCommand command) {
    switch (command) {
        case FileCommand::Save: return "Save";
        case FileCommand::SaveAs: return "Save As";
        case FileCommand::Open: break;
    }
    return "Open";
}

std::optional<std::uint64_t> rows_number(const fs::path& file, std::string& why) {
    try {
        SQLite::Database database{path_text(file), SQLite::OPEN_READWRITE};
        const std::string verdict = database.execAndGet("PRAGMA integrity_check").getString();
        if (verdict != "ok") {
            why = verdict;
            return std::nullopt;
        }
        std::uint64_t number = 0xCBF29CE484222325ULL;
        SQLite::Statement tables{database,
                                 "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name"};
        while (tables.executeStep()) {
            const std::string table = tables.getColumn(0).getString();
            number = mixed(number, table);
            SQLite::Statement rows{database, "SELECT * FROM \"" + table + "\" ORDER BY rowid"};
            while (rows.executeStep()) {
                for (int column = 0; column < rows.getColumnCount(); ++column) {
                    number = mixed(number, rows.getColumn(column));
                }
            }
        }
        return number;
    } catch (const SQLite::Exception& error) {
        why = error.what();
        return std::nullopt;
    }
}

KillGround::KillGround(std::uintmax_t about_bytes)
    : program_(folder_ / "program"),
      documents_(folder_ / "documents"),
      user_file_(documents_ / "user.mdb"),
      old_(folder_ / "old.mdb"),
      new_work_(folder_ / "new_work.mdb") {
    fs::create_directory(program_);
    fs::create_directory(documents_);
    BasinDatabase::create_template(program_ / "null.mdb");
    write_basin(old_, about_bytes);
    copy_over(old_, user_file_);
    life_ = std::make_unique<BasinLife>(session_, program_);
    life_->start();
    dialogs_.then_file(user_file_);
    life_->open();
    copy_over(program_ / "new.mdb", user_file_);  // with the monthly table that opening adds to an older file
    copy_over(user_file_, old_);
    dialogs_.then_file(user_file_);
    life_->open();  // so that the program knows this content of the file, and a save need not ask
    old_bytes_ = file_bytes(old_);
    {
        BasinDatabase database{program_ / "new.mdb", Access::ReadWrite};
        database.execute("UPDATE PhysicalData SET Runoff = Runoff + 1");
    }
    copy_over(program_ / "new.mdb", new_work_);
    session_.basin.basin_description = k_new_description;
    session_.basin.Basin_Changed = false;  // the commands must not ask first
    prepare(FileCommand::Save);
    kill_during(FileCommand::Save, KillPoint::Moment, 60'000'000);
    std::string why;
    const auto rows = rows_number(user_file_, why);
    const auto old_rows = rows_number(old_, why);
    if (!rows || !old_rows || *rows == *old_rows)
        throw std::runtime_error("a save that nobody kills does not save: " + why);
    new_rows_ = *rows;
}

fs::path KillGround::target(FileCommand command) const {
    return command == FileCommand::SaveAs ? documents_ / "another.mdb" : user_file_;
}

void KillGround::prepare(FileCommand command) {
    for (const fs::path& folder : {program_, documents_}) {
        for (const auto& entry : fs::directory_iterator{folder}) {
            if (entry.path().filename() != "null.mdb") fs::remove(entry.path());
        }
    }
    copy_over(old_, user_file_);
    if (target(command) != user_file_) copy_over(old_, target(command));
    copy_over(new_work_, program_ / "new.mdb");
}

void KillGround::do_command(FileCommand command) {
    switch (command) {
        case FileCommand::Save: return life_->save();
        case FileCommand::SaveAs:
            dialogs_.then_file(target(command)).then(Answer::Yes);
            return life_->save_as();
        case FileCommand::Open: dialogs_.then_file(user_file_); return life_->open();
    }
}

KilledRun KillGround::kill_during(FileCommand command, KillPoint kind, std::int64_t point) {
    KilledRun run;
    const bool followed = kind == KillPoint::SystemCall;
    const pid_t child = fork();
    if (child == 0) {
        if (followed && ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(3);
        raise(SIGSTOP);
        do_command(command);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, WUNTRACED);
    if (!WIFSTOPPED(status)) {
        run.possible = false;
        return run;
    }
    if (followed) {
        ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
        run.calls = follow(child, point, run.finished);
        return run;
    }
    kill(child, SIGCONT);
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds{point};
    while (std::chrono::steady_clock::now() < end) {
        if (waitpid(child, &status, WNOHANG) == child) {
            run.finished = true;
            return run;
        }
        if (end - std::chrono::steady_clock::now() > std::chrono::milliseconds{2}) usleep(200);
    }
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    run.finished = WIFEXITED(status);
    return run;
}

std::int64_t KillGround::calls_of(FileCommand command) {
    prepare(command);
    const KilledRun run = kill_during(command, KillPoint::SystemCall, -1);
    return run.possible && run.finished ? run.calls : 0;
}

std::int64_t KillGround::microseconds_of(FileCommand command) {
    prepare(command);
    const auto begin = std::chrono::steady_clock::now();
    kill_during(command, KillPoint::Moment, 60'000'000);
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - begin)
        .count();
}

Found KillGround::look(FileCommand command, std::string& why) const {
    const fs::path file = target(command);
    if (!fs::exists(file)) {
        why = "the file is gone";
        return Found::Broken;
    }
    if (file_bytes(file) == old_bytes_ && !fs::exists(path_text(file) + "-journal")) return Found::Old;
    const auto rows = rows_number(file, why);
    if (!rows) return Found::Broken;
    if (command != FileCommand::Open && *rows == new_rows_) return Found::New;
    why = "the file is whole, but neither the old nor the new one";
    return Found::Broken;
}

bool KillGround::working_file_is_whole(std::string& why) const {
    return rows_number(program_ / "new.mdb", why).has_value();
}

std::string KillGround::leftovers_after_next_start() const {
    ScriptedDialogs dialogs;
    Desktop desktop;
    Session session{dialogs, desktop};
    BasinLife life{session, program_};
    life.start();
    for (const auto& entry : {user_file_, documents_ / "another.mdb"}) {
        if (!fs::exists(entry)) continue;
        dialogs.then_file(entry);
        life.open();
    }
    std::string told;
    for (const auto& message : dialogs.messages()) told += "message: " + message.message.text + "; ";
    return told + leftovers();
}

std::string KillGround::leftovers() const {
    std::string leftovers;
    const std::set<std::string> known{"null.mdb", "new.mdb", "user.mdb", "another.mdb"};
    for (const fs::path& folder : {program_, documents_}) {
        for (const auto& entry : fs::directory_iterator{folder}) {
            const std::string name = path_text(entry.path().filename());
            if (!known.contains(name)) leftovers += name + "; ";
        }
    }
    return leftovers;
}

void KillGround::prepare_documents() const { copy_over(old_, user_file_); }

bool KillGround::save_is_told_to_fail() {
    const std::size_t before = dialogs_.messages().size();
    life_->save();
    return dialogs_.messages().size() > before;
}

}  // namespace nivora
