#include "bench/own_calls.h"

#include "engine/sim_results.h"
#include "store/schema.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <limits>
#include <string>

namespace {

std::atomic<int>& flushes() {
    static std::atomic<int> count{0};
    return count;
}

}  // namespace

// The program's own functions come before those of the C library, also for calls from other libraries.
extern "C" int fsync(int file) {
    ++flushes();
    return static_cast<int>(syscall(SYS_fsync, file));
}
extern "C" int fdatasync(int file) {
    ++flushes();
    return static_cast<int>(syscall(SYS_fdatasync, file));
}

namespace nivora {
namespace {

class Engine {
public:
    explicit Engine(const std::filesystem::path& file) {
        sqlite3_open_v2(file.c_str(), &handle_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    ~Engine() { sqlite3_close(handle_); }

    void execute(const std::string& sql) {
        if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
            fmt::print("the floor failed: {}\n", sqlite3_errmsg(handle_));
    }
    sqlite3_stmt* prepare(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(handle_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
            fmt::print("the floor failed: {}\n", sqlite3_errmsg(handle_));
        return statement;
    }

private:
    sqlite3* handle_ = nullptr;
};

}  // namespace

int flushes_of_this_process() { return flushes(); }

std::vector<double> stored_results(const std::filesystem::path& file) {
    Engine engine{file};
    sqlite3_stmt* read = engine.prepare("SELECT * FROM SimResults ORDER BY rowid");
    std::vector<double> results;
    while (sqlite3_step(read) == SQLITE_ROW) {
        for (int field = 0; field < sqlite3_column_count(read); ++field) {
            const bool missing = sqlite3_column_type(read, field) == SQLITE_NULL;
            results.push_back(missing ? std::numeric_limits<double>::quiet_NaN()
                                      : sqlite3_column_double(read, field));
        }
    }
    sqlite3_finalize(read);
    return results;
}

double replace_results_by_own_calls(const std::filesystem::path& file, const std::vector<double>& results) {
    Engine engine{file};
    // The system's library may be built to wipe what is removed. The old results would then go through the
    // journal before they are dropped, which has nothing to do with the run.
    engine.execute("PRAGMA secure_delete = OFF");
    engine.execute("BEGIN IMMEDIATE");
    // A run needs all of its inputs before it has a result.
    sqlite3_stmt* read = engine.prepare(
        "SELECT p.Zone, p.Date, Runoff, Tmax, Tmin, Tavg, Precip, SCA, NetRadiation, LapseRate, Tcrit, An, "
        "LagTime, Cs, Cr, RCA, Xcoeff, Ycoeff FROM \"last year\" AS q JOIN PhysicalData AS p "
        "ON p.Zone = q.Zone AND p.Date = q.Date ORDER BY q.Zone, q.Date");
    double sum = 0.0;
    while (sqlite3_step(read) == SQLITE_ROW) {
        for (int field = 0; field < sqlite3_column_count(read); ++field)
            sum += sqlite3_column_double(read, field);
    }
    sqlite3_finalize(read);
    engine.execute("DROP TABLE IF EXISTS SimResults");
    std::string fields;
    std::string places;
    for (const Field& field : sim_results_table().fields) {
        fields += (fields.empty() ? "" : ", ") + field.name + " REAL";
        places += places.empty() ? "?" : ", ?";
    }
    engine.execute("CREATE TABLE SimResults (" + fields + ")");
    sqlite3_stmt* write = engine.prepare("INSERT INTO SimResults VALUES (" + places + ")");
    const int count = sqlite3_bind_parameter_count(write);
    int place = 0;
    for (const double value : results) {
        sqlite3_bind_double(write, ++place, value);  // NaN becomes a Null
        if (place < count) continue;
        sqlite3_step(write);
        sqlite3_reset(write);
        place = 0;
    }
    sqlite3_finalize(write);
    engine.execute("COMMIT");
    return sum;
}

}  // namespace nivora
