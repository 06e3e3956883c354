// Changes that can be taken back and made again, in the order in which they were made.
#pragma once

#include <cstddef>
#include <deque>
#include <utility>

namespace nivora {

/// How much memory the steps of one window may take: ten million cells, with what was before and after.
inline constexpr std::size_t k_undo_bytes = 256U << 20U;

/// Keeps steps, not what they change: whoever owns them applies a step, then tells that it is undone or
/// redone. Memory bounds them, not their number: the oldest go first, the newest always stays.
///
/// @tparam Step any value with a member function `bytes()`, the memory that it takes
template <typename Step>
class UndoSteps {
public:
    explicit UndoSteps(std::size_t limit = k_undo_bytes) : limit_(limit) {}

    /// A change was made: what was undone before can't be redone any more.
    void add(Step step) {
        forget_undone();
        bytes_ += step.bytes();
        steps_.push_back(std::move(step));
        ++done_;
        while (bytes_ > limit_ && steps_.size() > 1) {
            bytes_ -= steps_.front().bytes();
            steps_.pop_front();
            --done_;
            complete_ = false;
        }
    }

    /// The newest change that is made, to be changed itself by one that belongs to it; null if there is none.
    [[nodiscard]] Step* to_undo() { return done_ == 0 ? nullptr : &steps_[done_ - 1]; }
    [[nodiscard]] const Step* to_undo() const { return done_ == 0 ? nullptr : &steps_[done_ - 1]; }
    /// The oldest change that is taken back; null if there is none.
    [[nodiscard]] Step* to_redo() { return done_ == steps_.size() ? nullptr : &steps_[done_]; }
    [[nodiscard]] const Step* to_redo() const { return done_ == steps_.size() ? nullptr : &steps_[done_]; }

    void undone() { --done_; }
    void redone() { ++done_; }

    /// Forgets the newest change, which came to nothing, and what was undone.
    void drop_newest() {
        forget_undone();
        bytes_ -= steps_.back().bytes();
        steps_.pop_back();
        --done_;
    }

    void clear() {
        steps_.clear();
        done_ = 0;
        bytes_ = 0;
        complete_ = true;
    }

    /// Whether everything is taken back that was changed since the steps began.
    [[nodiscard]] bool at_beginning() const { return complete_ && done_ == 0; }

private:
    void forget_undone() {
        while (steps_.size() > done_) {
            bytes_ -= steps_.back().bytes();
            steps_.pop_back();
        }
    }

    std::deque<Step> steps_;
    std::size_t done_ = 0;  ///< how many of the steps are made, not undone
    std::size_t bytes_ = 0;
    std::size_t limit_;
    bool complete_ = true;  ///< no step was forgotten to save memory
};

}  // namespace nivora
