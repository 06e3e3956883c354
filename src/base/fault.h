// A fault that stops a piece of work: its number and the text that the user sees.
#pragma once

#include <stdexcept>
#include <string>

namespace nivora {

/// What went wrong inside a computation, as a number that code can test and a text that a message
/// box can show.
class Fault : public std::runtime_error {
public:
    Fault(int number, const std::string& text) : std::runtime_error(text), number_(number) {}

    [[nodiscard]] int number() const { return number_; }

private:
    int number_;
};

inline constexpr int k_fault_overflow = 6;
inline constexpr int k_fault_subscript = 9;
inline constexpr int k_fault_null = 94;
inline constexpr int k_fault_no_record = 3021;
inline constexpr int k_fault_table_in_use = 3211;
inline constexpr int k_fault_item_not_found = 3265;

/// A number too large for its variable or field.
[[nodiscard]] inline Fault overflow_fault() { return {k_fault_overflow, "Overflow"}; }

/// An index outside the bounds of a table.
[[nodiscard]] inline Fault subscript_fault() { return {k_fault_subscript, "Subscript out of range"}; }

/// A missing value where a number is needed.
[[nodiscard]] inline Fault null_fault() { return {k_fault_null, "Invalid use of Null"}; }

/// A step that needs a current row while there is none.
[[nodiscard]] inline Fault no_record_fault() { return {k_fault_no_record, "No current record."}; }

}  // namespace nivora
