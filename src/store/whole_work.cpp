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
    SQLite::Database& sql = database.sql();
    guarded([&] {
        sql.exec("SAVEPOINT whole_work");
        try {
            work();
            sql.exec("RELEASE whole_work");
        } catch (...) {
            take_back(sql);
            throw;
        }
    });
}

}  // namespace nivora
