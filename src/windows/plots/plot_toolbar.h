// The toolbar of the plot window: its buttons, both lists, and the boxes of the largest x and y.
#pragma once

#include "plots/plot_boxes.h"
#include "plots/plot_lists.h"
#include "windows/plots/tool_pictures.h"

#include <QWidget>
#include <map>
#include <string>
#include <vector>

class QComboBox;
class QHBoxLayout;
class QLineEdit;
class QToolButton;

namespace nivora {

/// Tells what the user wants; what it shows is set from outside.
class PlotToolbar : public QWidget {
    Q_OBJECT

public:
    explicit PlotToolbar(QWidget* parent);

    void show_plots(const std::vector<PlotListEntry>& entries, std::optional<PlotNumber> picked);
    /// @param zone the entry that is shown, from 1
    void show_zones(const ZoneListState& zones, int zone);
    void show_tools(const PlotTools& tools);
    /// Fills the boxes and hides the Redraw button.
    void show_boxes(const BoxTexts& texts);
    void show_data_points(bool shown);

    [[nodiscard]] BoxTexts boxes() const;
    [[nodiscard]] QLineEdit* box(BoxRefusal::Box which) const;
    /// Whether a box was edited since it was filled.
    [[nodiscard]] bool is_edited() const;

    /// The least room that it needs: a toolbar hides what it can't give the size of its hint.
    [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }

signals:
    /// A button was pressed; `ShowData` also where it hides the points.
    void pressed(nivora::ToolPicture tool);
    void plot_chosen(int number);
    /// @param zone from 1
    void zone_chosen(int zone);

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QToolButton* add_button(QHBoxLayout& row, ToolPicture tool, const char* name, const char* tip, int help);
    QComboBox* add_list(QHBoxLayout& row, const char* name, const char* tip, int characters, int help);
    QLineEdit* add_box(QHBoxLayout& row, const char* name, const char* caption, const char* tip, int help);
    void show_pictures();
    void show_redraw(bool shown);

    std::map<ToolPicture, QToolButton*> buttons_;
    QComboBox* plots_ = nullptr;
    QComboBox* zones_ = nullptr;
    QLineEdit* x_maximum_ = nullptr;
    QLineEdit* y_maximum_ = nullptr;
    bool data_points_ = false;
    bool edited_ = false;
};

}  // namespace nivora
