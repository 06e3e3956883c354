// Writing to a basin file that is done as a whole or not at all, within a transaction of the caller or
// without one.
#pragma once

#include "store/database.h"

#include <functional>

namespace nivora {

/// Runs work and takes back what it wrote where it throws. Without a transaction of the caller it is one.
/// @throws StoreError, and whatever the work throws
void as_a_whole(BasinDatabase& database, const std::function<void()>& work);

/// The same for work that may also give up: where it returns false, what it wrote is taken back.
/// @return what the work returned
bool as_a_whole_if(BasinDatabase& database, const std::function<bool()>& work);

}  // namespace nivora
