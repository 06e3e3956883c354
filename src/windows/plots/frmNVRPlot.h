// The plots.
#pragma once

#include "plots/plot_screen.h"
#include "widgets/nivora_window.h"
#include "windows/plots/tool_pictures.h"

#include <array>
#include <functional>

class QLabel;
class QMenu;

namespace nivora {

class Colours;
class PlotCanvas;
class PlotToolbar;
struct ShownPlot;

/// Shows one plot of the current simulation at a time. The basin's file is open only while a plot is made.
class frmNVRPlot : public NivoraWindow {
    Q_OBJECT

public:
    /// @param screen what is shown; grid lines and data points stay in it when the window is closed
    frmNVRPlot(const WindowContext& context, Colours& colours, PlotScreen& screen, QWidget* parent = nullptr);

    /// Brings the lists up to date and shows the window. Where nothing was picked yet, the hydrograph is if
    /// it can be.
    void open();
    /// Brings the lists up to date after the basin has changed; the picture stays.
    void renew();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void make_menus();
    void make_status_bar();
    void make_keys();
    QAction* add_key(const QKeySequence& key, int help, void (frmNVRPlot::*act)());

    // Commands
    void press(ToolPicture tool);
    void pick(int number);
    void pick_zone(int zone);
    void redraw();
    void renew_picture();
    void zoom_in();
    void zoom_out();
    void save();
    void copy();
    void print();
    void show_help();
    void escape();
    void choose_line(int line, QPoint at);
    void edit_lines();
    [[nodiscard]] ShownPlot shown_plot() const;

    /// Makes a plot from the basin's file. @return false after a message if the file can't be read
    bool build(const std::function<ScreenAnswer(BasinDatabase& database, const PlotSources& sources)>& make);
    void give(const ScreenAnswer& answer);
    void store_melt();
    void show_place(const BoxTexts& texts);

    PlotScreen& screen_;
    Colours& colours_;
    PlotToolbar* tools_;
    PlotCanvas* canvas_;
    QLabel* x_place_ = nullptr;
    QLabel* y_place_ = nullptr;
    QMenu* line_menu_ = nullptr;
    int edited_line_ = 1;
    // Intended: two menus store here what nothing reads.
    std::int32_t current_colour_ = 0;
    int current_style_ = 0;
};

}  // namespace nivora
