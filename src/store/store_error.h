// The errors of the store.
#pragma once

#include <stdexcept>
#include <string>

namespace nivora {

enum class StoreFault {
    Missing,       ///< there is no such file or table
    Exists,        ///< there is such a file or table already
    NotADatabase,  ///< the file is of another kind
    Foreign,       ///< a database that belongs to another program
    Newer,         ///< a basin of a later version of this program
    Damaged,
    Busy,      ///< another program, or another window, holds what is needed
    ReadOnly,  ///< the file may not be written
    Full,      ///< the disk has no room
    Value,     ///< a value that its field can't hold
    Statement  ///< anything else that the database engine refused
};

/// One refusal of the store: its kind, and a text that a user can act on.
class StoreError : public std::runtime_error {
public:
    StoreError(StoreFault fault, const std::string& text) : std::runtime_error(text), fault_(fault) {}

    [[nodiscard]] StoreFault fault() const { return fault_; }

private:
    StoreFault fault_;
};

}  // namespace nivora
