// The daily editor.
#pragma once

#include "prep/daily_editor.h"
#include "prep/daily_place.h"
#include "widgets/nivora_window.h"

#include <memory>
#include <optional>
#include <vector>

class QGroupBox;
class QSpinBox;

namespace nivora {

class DailyColumns;
class DailyModel;
class GridView;

/// Shows what `PrepState::query` prepared, one zone at a time. All changes wait for Done.
class frmData : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmData(const WindowContext& context, QWidget* parent = nullptr);
    ~frmData() override;

    /// Opens the table. @return false if there is nothing to show; a message has said so
    [[nodiscard]] bool open();
    /// Puts the cursor on a cell; on the nearest later day if the zone has no row of this one.
    void go_to(const DailyPlace& place);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* make_head();
    void make_menus();
    void show_zone(int zone);
    [[nodiscard]] bool read_zone(int zone);
    void offer_computed_flow();
    void reveal(const DailyBlock& block);
    void show_store_error();
    void mass_edit(MassEdit edit);
    void add_undo();
    void reverse(std::optional<DailyBlock> (DailyEditor::*act)());
    void done();
    void cancel();
    void print();
    void help();
    [[nodiscard]] bool results_may_go();
    [[nodiscard]] bool may_discard();

    std::unique_ptr<DailyEditor> editor_;
    std::vector<Zone> zone_grid_before_;
    DailyModel* days_;
    GridView* grid_;
    DailyColumns* columns_ = nullptr;
    QGroupBox* zone_frame_ = nullptr;
    QSpinBox* zone_ = nullptr;
    bool finished_ = false;
};

/// The caption above the grid: what is shown, of which simulation, in which units.
[[nodiscard]] std::string daily_caption(const PrepState& prep, const BasinState& basin);

/// The title of the window; it says if the values can't be changed because a climate run is under way.
[[nodiscard]] std::string daily_title(const PrepState& prep, int climate_step);

}  // namespace nivora
