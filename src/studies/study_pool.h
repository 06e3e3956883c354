// A fixed number of threads that work through numbered pieces of a study.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

namespace nivora {

/// The most threads of a study; more than a machine has cores only wait for each other.
inline constexpr unsigned k_most_threads = 1024;

/// The number of cores, at least 1.
[[nodiscard]] unsigned usual_threads();

/// Threads that live as long as the pool. The calling thread works, too.
class StudyPool {
public:
    /// @param threads 1 to `k_most_threads`
    explicit StudyPool(unsigned threads);
    ~StudyPool();
    StudyPool(const StudyPool&) = delete;
    StudyPool& operator=(const StudyPool&) = delete;

    [[nodiscard]] unsigned threads() const;

    /// Calls work(thread, index) once for each index below the count, and returns when all are done. Which
    /// thread, from 0, takes which index is left to chance: a result must depend on the index alone, and go
    /// to a place of its own. After an exception no new index is taken; the exception of the lowest index is
    /// thrown.
    void work(std::size_t count, const std::function<void(unsigned thread, std::size_t index)>& work);

private:
    class Threads;
    std::unique_ptr<Threads> threads_;
};

}  // namespace nivora
