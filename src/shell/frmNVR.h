// The main window: the definition of the open basin, its zones and its simulations.
#pragma once

#include "engine/run_driver.h"
#include "prep/data_menu.h"
#include "session/basin_life.h"
#include "session/main_window_rules.h"
#include "shell/main_menu.h"
#include "widgets/nivora_window.h"

#include <array>
#include <memory>

class QComboBox;
class QGridLayout;
class QGroupBox;
class QLineEdit;
class QPushButton;

namespace nivora {

class frmCtrlClim;
class EditTarget;
class GridModel;
class GridView;
class Results;
class SimulationModel;
class ZoneModel;
class frmNVRHelp;

class frmNVR : public NivoraWindow, public Desktop {
    Q_OBJECT

public:
    explicit frmNVR(const WindowContext& context);
    ~frmNVR() override;

    /// The file work of the start, and what follows from it.
    void start();

    void commit_edits() override;
    bool refuses_typed_box() override;
    void go_to_field(const UnstorableField& field) override;
    void refresh_main_window() override;
    void show_help_topic(int topic) override;
    void show_results() override;
    void close_results() override;
    void refresh_results();
    void open_daily_editor() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void quick_help_changed(bool on) override;

private:
    QGroupBox* make_definition();
    QGroupBox* make_simulations();
    void make_boxes(QGridLayout* grid);
    void make_units(QGridLayout* grid);
    GridView* make_grid(const char* name, GridModel* model);
    void connect_boxes();
    void connect_grids();

    void show_simulations();
    void fill_boxes();
    void fill_labels();
    void box_changed(std::size_t box);
    void box_left(std::size_t box);
    void zones_left();
    void units_left();
    void move_on_from(std::size_t box);
    void show_area();
    void row_selected();
    void add_simulation();
    void delete_simulation();
    void cell_left(int row, int column);
    void simulation_edited();

    void do_command(Command command);
    void open_run_menu();
    void ask_about_zones();
    [[nodiscard]] bool zones_can_run();
    void show_run_problem(const RunMenuProblem& problem);
    void run_simulation(int index);
    void run_forecast(int index);
    void run(int index);
    void toggle_snow();
    void show_time_lag();
    void show_reports();
    void show_definition();
    void show_added(bool defined, std::optional<std::size_t> row_before);
    void import_file();
    template <typename Choose>
    void follow(Choose choose);
    void choose_data(DataEntry entry);
    void choose_variables(int index);
    void show_scenarios();
    void show_climate_run();
    void show_long_term_averages();
    void populate();
    void show_system_information();
    void mark_edited();

    BasinLife life_;
    MainMenu* menu_;
    ZoneModel* zones_;
    SimulationModel* simulations_;
    std::array<QLineEdit*, 6> boxes_{};
    std::array<QLabel*, 9> labels_{};
    QComboBox* units_;
    QLabel* units_label_;
    QLabel* zones_label_;
    QLabel* area_label_;
    QLabel* simulation_label_;
    QLabel* procedure_;
    EditTarget* edit_target_;
    GridView* zone_grid_;
    GridView* simulation_grid_;
    std::array<QPushButton*, 3> buttons_{};
    std::unique_ptr<Results> results_;
    std::unique_ptr<frmCtrlClim> climate_;
    std::unique_ptr<frmNVRHelp> help_;
    std::string confirmed_zones_;           ///< the question about zones that was answered with Yes
    std::optional<std::size_t> typed_box_;  ///< the box whose text changed and that was not left since
    bool filling_ = false;
    bool telling_ = false;
    bool leaving_ = false;
};

}  // namespace nivora
