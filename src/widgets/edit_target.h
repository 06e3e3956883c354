// What Cut, Copy and Paste of a window's Edit menu work on: the box or grid that has the focus.
#pragma once

#include <QPointer>
#include <QWidget>

namespace nivora {

class GridView;

/// Follows the focus within one window. An open menu, another window or a message does not change the target.
class EditTarget : public QObject {
    Q_OBJECT

public:
    explicit EditTarget(QWidget* window);
    ~EditTarget() override;

    // Each beeps if neither a box nor a grid has the focus.
    void cut();
    void copy();
    void paste();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Act { Cut, Copy, Paste };
    void focus_moved(QWidget* now);
    void act(Act what);

    QWidget* window_;
    QPointer<QWidget> box_;    ///< a line or a text box, including the editor of a cell
    QPointer<GridView> grid_;  ///< the grid around the focus
    int selected_from_ = -1;   ///< what was selected in the line when the menu bar took the focus
    int selected_length_ = 0;
};

}  // namespace nivora
