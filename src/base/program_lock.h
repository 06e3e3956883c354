// The lock by which one copy of the program knows of another.
#pragma once

#include <filesystem>

namespace nivora {

/// Holds a file for the life of the program. The system lets go of it when the program ends, however it ends,
/// so that what a program that was killed or a machine that lost its power left behind hinders nobody.
class ProgramLock {
public:
    /// @param file is made where it is missing, and stays: were it removed, two programs could each hold a
    /// file of this name. Where the place knows no locks, the lock counts as held: the program runs rather
    /// than not.
    explicit ProgramLock(const std::filesystem::path& file);
    ProgramLock(const ProgramLock&) = delete;
    ProgramLock& operator=(const ProgramLock&) = delete;
    ~ProgramLock();

    /// Whether this program has the lock; false where another one that runs has it.
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
