// The few calls that rules and windows make upward.
#pragma once

namespace nivora {

struct UnstorableField;

/// What the desktop program does for those below it. Headless programs and tests use the form that does
/// nothing.
class Desktop {
public:
    Desktop() = default;
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    virtual ~Desktop() = default;

    /// Takes the cell or box that is being edited into the basin's state.
    virtual void commit_edits() {}
    /// Checks the box that is being typed in as if it were left. True where its text was refused, which the
    /// user was told.
    virtual bool refuses_typed_box() { return false; }
    /// Puts the cursor into a box or cell of the main window that a save refused.
    virtual void go_to_field(const UnstorableField& field) { static_cast<void>(field); }
    /// Shows the basin's state, the settings and what is enabled, after any of them changed.
    virtual void refresh_main_window() {}
    /// Shows a topic of the manual window.
    virtual void show_help_topic(int topic) { static_cast<void>(topic); }
    /// Opens the daily editor on what the session has prepared.
    virtual void open_daily_editor() {}
    /// Shows the statistics of the last run.
    virtual void show_results() {}
    /// Closes the statistics of a basin that goes.
    virtual void close_results() {}
};

}  // namespace nivora
