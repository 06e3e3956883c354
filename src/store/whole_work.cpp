#include "store/whole_work.h"

namespace nivora {
namespace {

/// The library's own savepoint rolls back without an end, which would leave its transaction open.
void take_back(SQLite::Database& sql) {
    try {
        sql.exec("ROLLBACK TO whole_work");
        sql.exec("RELEASE whole_work");
    } catch (const SQLite::Exception&) {
        // A full disk has ended the transaction already, and the fault that led here goes on.
    }
}

}  // namespace

void as_a_whole(BasinDatabase& database, const std::function<void()>& work) {
    as_a_whole_if(database, [&] {
        work();
        return true;
    });
}

bool as_a_whole_if(BasinDatabase& database, const std::function<bool()>& work) {
    SQLite::Database& sql = database.sql();
    return guarded([&] {
        sql.exec("SAVEPOINT whole_work");
        bool done = false;
        try {
            done = work();
            if (done) sql.exec("RELEASE whole_work");
        } catch (...) {
            take_back(sql);
            throw;
        }
        if (!done) take_back(sql);
        return done;
    });
}

}  // namespace nivora
