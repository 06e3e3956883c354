#include "studies/study_pool.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace nivora {

unsigned usual_threads() { return std::clamp(std::thread::hardware_concurrency(), 1U, k_most_threads); }

class StudyPool::Threads {
public:
    explicit Threads(unsigned threads) : count_(std::clamp(threads, 1U, k_most_threads)) {
        try {
            for (unsigned thread = 1; thread < count_; ++thread)
                others_.emplace_back([this, thread] { wait_for_work(thread); });
        } catch (const std::system_error&) {
            // The system gives no more threads. Those that there are do all the work, with the same results.
        }
        count_ = static_cast<unsigned>(others_.size()) + 1;
    }

    ~Threads() {
        {
            const std::lock_guard lock{mutex_};
            ends_ = true;
        }
        begin_.notify_all();
        for (std::thread& thread : others_) thread.join();
    }

    Threads(const Threads&) = delete;
    Threads& operator=(const Threads&) = delete;

    [[nodiscard]] unsigned count() const { return count_; }

    void work(std::size_t count, const std::function<void(unsigned, std::size_t)>& task) {
        {
            const std::lock_guard lock{mutex_};
            task_ = &task;
            end_ = count;
            next_ = 0;
            fault_ = nullptr;
            fault_index_ = count;
            busy_ = count_ - 1;
            ++round_;
        }
        begin_.notify_all();
        take_pieces(0);
        std::unique_lock lock{mutex_};
        done_.wait(lock, [this] { return busy_ == 0; });
        if (fault_) std::rethrow_exception(fault_);
    }

private:
    void wait_for_work(unsigned thread) {
        std::uint64_t seen = 0;
        for (;;) {
            {
                std::unique_lock lock{mutex_};
                begin_.wait(lock, [&] { return ends_ || round_ != seen; });
                if (ends_) return;
                seen = round_;
            }
            take_pieces(thread);
            const std::lock_guard lock{mutex_};
            if (--busy_ == 0) done_.notify_one();
        }
    }

    void take_pieces(unsigned thread) {
        for (;;) {
            const std::size_t index = next_.fetch_add(1, std::memory_order_relaxed);
            if (index >= end_) return;
            try {
                (*task_)(thread, index);
            } catch (...) {
                keep_fault(index);
            }
        }
    }

    /// Indexes are taken in order, so that every lower one was taken before and its fault is kept, too.
    void keep_fault(std::size_t index) {
        const std::lock_guard lock{mutex_};
        if (index < fault_index_) {
            fault_index_ = index;
            fault_ = std::current_exception();
        }
        next_ = end_;
    }

    unsigned count_;
    std::vector<std::thread> others_;
    std::mutex mutex_;
    std::condition_variable begin_;
    std::condition_variable done_;
    bool ends_ = false;
    std::uint64_t round_ = 0;
    unsigned busy_ = 0;
    const std::function<void(unsigned, std::size_t)>* task_ = nullptr;
    std::size_t end_ = 0;
    std::atomic<std::size_t> next_{0};
    std::exception_ptr fault_;
    std::size_t fault_index_ = 0;
};

StudyPool::StudyPool(unsigned threads) : threads_(std::make_unique<Threads>(threads)) {}

StudyPool::~StudyPool() = default;

unsigned StudyPool::threads() const { return threads_->count(); }

void StudyPool::work(std::size_t count, const std::function<void(unsigned thread, std::size_t index)>& work) {
    threads_->work(count, work);
}

}  // namespace nivora
