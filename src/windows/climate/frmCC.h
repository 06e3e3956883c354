// The scenarios of the current simulation.
#pragma once

#include "climate/scenario_definitions.h"
#include "climate/scenario_history.h"
#include "widgets/nivora_window.h"

#include <vector>

class QComboBox;
class QGroupBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace nivora {

class GridView;
class ScenarioModel;

/// Creates, edits and deletes scenarios. Rows, comments and winter end dates wait for Done; New and Delete
/// act at once.
class frmCC : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmCC(const WindowContext& context, QWidget* parent = nullptr);
    ~frmCC() override;

    /// Reads the sheet and the scenarios, and asks for a first one if there is none. @return false if the
    /// sheet or the basin can't be read, which was shown
    [[nodiscard]] bool open();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* make_head();
    QWidget* make_side();
    void make_menus();
    void make_grid();
    void add_undo();
    void reverse(bool redo);

    void read_scenarios(const std::string& shown);
    void show_scenario(int at);
    void store_comments();
    [[nodiscard]] std::optional<Message> store_winter_end();
    void show_winter_end();
    bool winter_end_left();
    [[nodiscard]] bool commit_winter_end();
    void add_scenario();
    void remove_scenario();
    void view_variables();
    void print();
    void done();
    void mark_changed();
    [[nodiscard]] Scenario* current();
    [[nodiscard]] bool store_all();
    [[nodiscard]] bool may_discard();

    ScenarioSheet sheet_;
    std::vector<Scenario> scenarios_;
    ScenarioModel* rows_ = nullptr;
    GridView* grid_ = nullptr;
    QWidget* grid_place_ = nullptr;
    QComboBox* chooser_ = nullptr;
    QLineEdit* winter_end_ = nullptr;
    QPlainTextEdit* comments_ = nullptr;
    std::vector<QPushButton*> actions_;  ///< at the right: New, Delete, Print, View Variables
    std::vector<QPushButton*> foot_;     ///< Done, Cancel, Help
    ScenarioHistory history_;
    bool filling_ = false;
    bool showing_problem_ = false;
    bool edited_ = false;  ///< a date or a comment, or rows that can't be taken back any more
    bool finished_ = false;
};

}  // namespace nivora
