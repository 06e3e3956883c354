// All windows that the main window opens.
#pragma once

#include "plots/plot_screen.h"
#include "prep/daily_place.h"
#include "widgets/colours.h"
#include "widgets/nivora_window.h"

#include <functional>
#include <memory>
#include <optional>

namespace nivora {

class Results;
class frmCtrlClim;
class frmNVRHelp;
class frmNVRPlot;
class frmRuns;
class frmDataCheck;
struct DataFinding;

/// Owns the windows beside the main window: opens, refreshes and closes them. A window that stays open is a
/// member and is closed by `close_all`; a modal one lives as long as the call that opens it.
class WindowKeeper {
public:
    explicit WindowKeeper(const WindowContext& context);
    ~WindowKeeper();
    WindowKeeper(const WindowKeeper&) = delete;
    WindowKeeper& operator=(const WindowKeeper&) = delete;

    // Windows that stay open beside the main window

    /// Shows the statistics of the last run.
    void show_results();
    void close_results();
    /// Shows the new name with the statistics of the simulation, and closes its plots.
    void simulation_was_renamed(const std::string& former, const std::string& name);

    /// Shows the plots of the current simulation.
    void show_plots();
    void close_plots();

    void show_help_topic(int topic);

    /// Shows the list of the last runs.
    void show_runs();
    /// Looks through the daily variables and shows what was found.
    /// @param wanted called where the user wants to see a finding in the daily editor
    void show_data_check(const std::function<void(const DataFinding&)>& wanted);
    /// The same with the missing values of a zone, the cursor on those of the place.
    void show_missing_values(const DailyPlace& place, const std::function<void(const DataFinding&)>& wanted);

    /// Brings open windows up to date after the basin or its results have changed: whether statistics are out
    /// of date, which plots can be chosen.
    void refresh();

    /// Opens an evaluation of a changed climate, in place of an earlier one.
    void show_climate_run();
    /// Closes an evaluation that is not complete. @return false if the user wants to continue it
    [[nodiscard]] bool may_leave_climate_run();

    /// Closes all open windows when the program ends.
    void close_all();

    // Modal windows: each call returns once its window is closed.

    enum class DefinitionEnd { NotOpened, Cancelled, Accepted };
    /// Opens the definition that the session has prepared.
    [[nodiscard]] DefinitionEnd define_simulation();
    void look_at_data_again();
    /// @return whether a table was loaded
    [[nodiscard]] bool import_table();
    void export_table();
    /// Opens the daily editor on what the session has prepared. @return false if it could not open
    /// @param place where the cursor goes; the first cell if not given
    [[nodiscard]] bool edit_daily_data(const std::optional<DailyPlace>& place);
    /// @return false if the window could not open
    [[nodiscard]] bool edit_monthly_averages();
    void edit_scenarios();
    void change_parameter();
    void edit_time_lag();
    /// Opens the choice of reports, which opens their display.
    void choose_reports();
    /// Asks for the period of a new record.
    void ask_for_period();
    /// Asks for the colours of the QuickHelp strip; all open strips take them.
    void choose_quick_help_colours(QWidget& window);
    void show_welcome(QWidget& main_window);
    void show_about(QWidget& main_window);

private:
    void make_data_check(const std::function<void(const DataFinding&)>& wanted);
    WindowContext context_;
    ColourDialog colours_;
    PlotScreen plot_screen_;  ///< its grid lines and data points outlive the window
    std::unique_ptr<Results> results_;
    std::unique_ptr<frmCtrlClim> climate_run_;
    std::unique_ptr<frmNVRHelp> help_;
    std::unique_ptr<frmNVRPlot> plots_;
    std::unique_ptr<frmRuns> runs_;
    std::unique_ptr<frmDataCheck> data_check_;
};

}  // namespace nivora
