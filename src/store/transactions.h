// Writing to a basin file that is done entirely or not at all.
#pragma once

#include "store/database.h"

#include <functional>

namespace nivora {

/// Runs work, within a transaction of the caller or in one of its own, and rolls back what it wrote if it
/// throws. @throws StoreError, and whatever the work throws
void atomically(BasinDatabase& database, const std::function<void()>& work);

/// The same for work that may also give up: if it returns false, what it wrote is rolled back.
/// @return what the work returned
bool atomically_if(BasinDatabase& database, const std::function<bool()>& work);

/// A transaction from here to commit(); without that it is rolled back at its end. It may stay open between
/// user actions, such as that of an editor from its opening to Done. Nothing else can write into the file
/// meanwhile. There is no other transaction within it, but there may be atomic work.
class HeldTransaction {
public:
    /// @throws StoreError, Busy if another program holds the file, Statement within another transaction
    explicit HeldTransaction(BasinDatabase& database);
    HeldTransaction(const HeldTransaction&) = delete;
    HeldTransaction& operator=(const HeldTransaction&) = delete;
    ~HeldTransaction();

    /// Whether it was neither committed nor rolled back.
    [[nodiscard]] bool is_open() const { return open_; }

    /// After a fault it is still open. @throws StoreError
    void commit();
    void roll_back();

private:
    BasinDatabase& database_;
    bool open_ = true;
};

}  // namespace nivora
