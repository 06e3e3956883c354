#include "store/transactions.h"

namespace nivora {
namespace {

/// The library's own savepoint rolls back without a release, which would leave its transaction open.
void roll_back(SQLite::Database& sql) {
    try {
        sql.exec("ROLLBACK TO atomic_work");
        sql.exec("RELEASE atomic_work");
    } catch (const SQLite::Exception&) {
        // A full disk has already ended the transaction; the original error is passed on.
    }
}

}  // namespace

void atomically(BasinDatabase& database, const std::function<void()>& work) {
    atomically_if(database, [&] {
        work();
        return true;
    });
}

bool atomically_if(BasinDatabase& database, const std::function<bool()>& work) {
    SQLite::Database& sql = database.sql();
    return guarded([&] {
        sql.exec("SAVEPOINT atomic_work");
        bool done = false;
        try {
            done = work();
            if (done) sql.exec("RELEASE atomic_work");
        } catch (...) {
            roll_back(sql);
            throw;
        }
        if (!done) roll_back(sql);
        return done;
    });
}

HeldTransaction::HeldTransaction(BasinDatabase& database) : database_(database) {
    database_.execute("BEGIN IMMEDIATE");
}

HeldTransaction::~HeldTransaction() { roll_back(); }

void HeldTransaction::commit() {
    database_.execute("COMMIT");
    open_ = false;
}

void HeldTransaction::roll_back() {
    if (!open_) return;
    open_ = false;
    try {
        database_.execute("ROLLBACK");
    } catch (const StoreError&) {
        // A full disk has ended the transaction already.
    }
}

}  // namespace nivora
