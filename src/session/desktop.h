// The few calls that rules and windows make upward.
#pragma once

#include <functional>
#include <utility>

namespace nivora {

struct BasinState;
struct UnstorableField;

/// A function that may be left out. If it is not set, a call does nothing
/// and returns the default value of its result.
template <typename Signature>
class UpwardCall;

template <typename Result, typename... Arguments>
class UpwardCall<Result(Arguments...)> {
public:
    UpwardCall() = default;
    UpwardCall& operator=(std::function<Result(Arguments...)> function) {
        function_ = std::move(function);
        return *this;
    }

    Result operator()(Arguments... arguments) const {
        return function_ ? function_(std::forward<Arguments>(arguments)...) : Result();
    }

private:
    std::function<Result(Arguments...)> function_;
};

/// What the desktop program does for the layers below it. The shell sets these functions once the main window
/// exists; in headless programs they stay unset, and tests set those that they watch.
struct Desktop {
    /// Stores the cell or box that is being edited in the basin's state.
    UpwardCall<void()> commit_edits;
    /// Puts the text of the cell that is being edited into a copy of the basin's state, as if the cell were
    /// left.
    UpwardCall<void(BasinState& copy)> put_typed_cell;
    /// Checks the box that is being typed in as if it were left.
    /// @return whether its text was refused, after a message
    UpwardCall<bool()> refuses_typed_box;
    /// Puts the cursor into a box or cell of the main window that a save refused.
    UpwardCall<void(const UnstorableField& field)> go_to_field;
    /// Shows the basin's state, the settings and what is enabled, after any of them changed.
    UpwardCall<void()> refresh_main_window;
    /// Keeps the unsaved changes for a crash. Returns when they are on the disk, or can't be written.
    UpwardCall<void()> keep_unsaved;
    /// Shows a topic of the manual window.
    UpwardCall<void(int topic)> show_help_topic;
    /// Opens the daily editor on what the session has prepared.
    UpwardCall<void()> open_daily_editor;
    /// Closes what shows a basin that is about to be replaced, such as the statistics of its last run.
    UpwardCall<void()> leave_basin;
    /// Closes the plots: the basin has another file or other simulations now.
    UpwardCall<void()> close_plots;
};

}  // namespace nivora
