// The lock by which one copy of the program detects another.
#pragma once

#include <filesystem>

namespace nivora {

/// Holds a file for the life of the program. The system releases it when the program ends in any way, so that
/// a killed program or a power failure leaves no lock behind.
class ProgramLock {
public:
    /// @param file created if missing, and never removed: otherwise two programs could each hold a file
    ///             of this name. On a file system without locks the lock counts as held, so that the
    ///             program can run.
    explicit ProgramLock(const std::filesystem::path& file);
    ProgramLock(const ProgramLock&) = delete;
    ProgramLock& operator=(const ProgramLock&) = delete;
    ~ProgramLock();

    /// Whether this program has the lock; false if another running program has it.
    [[nodiscard]] bool is_held() const { return held_; }

private:
#ifdef _WIN32
    void* file_;
#else
    int file_;
#endif
    bool held_;
};

}  // namespace nivora
