// The main window: the definition of the open basin, its zones and its simulations.
#pragma once

#include "engine/run_driver.h"
#include "prep/data_menu.h"
#include "session/basin_life.h"
#include "session/definition_rules.h"
#include "shell/interruptions.h"
#include "shell/main_menu.h"
#include "shell/window_keeper.h"
#include "widgets/nivora_window.h"
#include "widgets/undo_keys.h"

#include <optional>

class QLabel;
class QTimer;

namespace nivora {

class BasinPanel;
class EditTarget;
class SimulationsPanel;

/// Menus, commands and the life of the program. Its content is two panels.
class frmNVR : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmNVR(const WindowContext& context);
    ~frmNVR() override;

    /// Sets the upward calls, which this window answers as long as it exists.
    void answer(Desktop& desktop);
    /// The file work of the start, and what follows from it. @return false if the program is to end
    bool start();

    /// Whether a file that was named outside of the program can be opened now: no window waits for an answer,
    /// and Open can be chosen.
    [[nodiscard]] bool can_open_file() const;
    /// Opens a basin as a choice among the recent files does, with the question about unsaved changes. Does
    /// nothing if no file can be opened now.
    void open_file(const std::filesystem::path& file);
    /// Raises the window, or the one that waits for an answer.
    void come_to_front();

protected:
    void closeEvent(QCloseEvent* event) override;
    void quick_help_changed(bool on) override;

private:
    void add_keys();
    void connect_menu();
    void connect_panels();

    // What is shown
    void commit_edits();
    void keep_recovery();
    void put_typed_cell(BasinState& copy);
    void go_to_field(const DefinitionField& field);
    [[nodiscard]] Undoing undoing();
    void undo();
    void redo();
    void show_reversed(const std::optional<DefinitionField>& field);
    void refresh_main_window();
    void show_labels();

    // Commands
    void do_command(Command command);
    void new_basin();
    void open_basin();
    void open_recent(std::size_t entry);
    void open_run_menu();
    [[nodiscard]] bool may_run();
    void run_again();
    [[nodiscard]] bool zones_are_usual();
    [[nodiscard]] bool zones_can_run();
    void run(const RunChoice& choice);
    void toggle_snow();
    void add_simulation();
    void delete_simulation();
    void duplicate_simulation();
    void rename_simulation();
    void change_parameter();
    void show_definition();
    void import_file();
    void follow(DataOutcome outcome);
    void choose_data(DataEntry entry);
    void choose_variables(int index);
    void show_climate_run();
    void check_data();
    void go_to(const DataFinding& finding);
    void offer_missing_values(const MissingInput& missing);
    void import_table();
    void open_daily_editor(const std::optional<DailyPlace>& place);
    void show_long_term_averages();
    void show_plots();
    void show_reports();
    void show_system_information();

    BasinLife life_;
    WindowKeeper windows_;
    Desktop* answered_ = nullptr;
    Interruptions interruptions_;
    UnusualZoneQuestion zone_question_;
    MainMenu* menu_;
    std::optional<RunChoice> last_choice_;  ///< what F5 repeats
    QLabel* procedure_;
    QLabel* not_kept_;  ///< shown while unsaved changes can't be kept for a crash
    QTimer* recovery_;  ///< keeps the unsaved changes from time to time
    EditTarget* edit_target_;
    BasinPanel* basin_;
    SimulationsPanel* simulations_;
};

}  // namespace nivora
