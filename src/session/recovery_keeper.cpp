#include "session/recovery_keeper.h"

#include "base/calendar.h"
#include "base/durable_file.h"

#include <exception>
#include <system_error>
#include <utility>

namespace nivora {

RecoveryKeeper::RecoveryKeeper(std::filesystem::path file) : file_(std::move(file)) {}

RecoveryKeeper::~RecoveryKeeper() {
    {
        const std::lock_guard lock{mutex_};
        ends_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
}

void RecoveryKeeper::keep(const RecoveryState& state, const DailyEdits& edits) {
    std::string lines = recovery_lines(state);
    const bool other_editing = forget_edits_ || edits.editing() != editing_;
    if (other_editing) edits_taken_ = 0;
    {
        std::unique_lock lock{mutex_};
        const bool same = !other_editing && lines == lines_ && edits.lines().size() == edits_taken_ &&
                          edits.typed() == typed_;
        if (same && !failed_) return;
        Order order{.time = local_now(),
                    .lines = lines,
                    .table = edits.table(),
                    .new_edits = edits.lines().substr(edits_taken_),
                    .typed = edits.typed(),
                    .first_edits = other_editing};
        if (waiting_ && !other_editing) {
            // The second thread has not taken the edits of the order before.
            order.new_edits.insert(0, waiting_->new_edits);
            order.first_edits = waiting_->first_edits;
        }
        waiting_ = std::move(order);
        failed_ = false;
        start_thread();
        if (!thread_.joinable()) write_waiting(lock);
    }
    changed_.notify_all();
    lines_ = std::move(lines);
    editing_ = edits.editing();
    edits_taken_ = edits.lines().size();
    typed_ = edits.typed();
    forget_edits_ = false;
    removed_ = false;
}

bool RecoveryKeeper::remove() {
    if (removed_) return true;
    {
        std::unique_lock lock{mutex_};
        waiting_.reset();
        changed_.wait(lock, [this] { return !writing_; });
        failed_ = false;
        fault_.clear();
    }
    std::error_code error;  // another program may have the file open for a moment; the next call tries again
    std::filesystem::remove(file_, error);
    lines_.clear();
    forget_edits_ = true;
    removed_ = !error;
    return removed_;
}

void RecoveryKeeper::finish() {
    std::unique_lock lock{mutex_};
    changed_.wait(lock, [this] { return !writing_ && !waiting_; });
}

std::string RecoveryKeeper::fault() {
    const std::lock_guard lock{mutex_};
    return fault_;
}

void RecoveryKeeper::start_thread() {
    if (thread_.joinable()) return;
    try {
        thread_ = std::thread{[this] { work(); }};
    } catch (const std::system_error&) {
        // The system has no thread left: the program's thread writes this state, and the next call tries
        // again.
    }
}

void RecoveryKeeper::work() {
    std::unique_lock lock{mutex_};
    for (;;) {
        changed_.wait(lock, [this] { return waiting_ || ends_; });
        if (!waiting_) return;
        write_waiting(lock);
        changed_.notify_all();
    }
}

void RecoveryKeeper::write_waiting(std::unique_lock<std::mutex>& lock) {
    Order order = std::move(*waiting_);
    waiting_.reset();
    writing_ = true;
    lock.unlock();
    std::string fault;
    bool written = false;
    try {
        write(std::move(order));
        written = true;
    } catch (const std::exception& error) {
        // In a folder that can't be written, or on a full disk, the program works on without a recovery
        // state. The next call tries again.
        fault = error.what();
    }
    lock.lock();
    writing_ = false;
    failed_ = !written;
    fault_ = std::move(fault);
}

void RecoveryKeeper::write(Order order) {
    if (order.first_edits) edits_.clear();
    edits_ += order.new_edits;
    const std::size_t stored = edits_.size();
    edits_ += order.typed;
    const std::string text = recovery_text(order.time, order.lines, order.table, edits_);
    edits_.resize(stored);
    write_whole_file(file_, text);
}

}  // namespace nivora
