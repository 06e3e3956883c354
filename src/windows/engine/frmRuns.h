// The list of the last runs, and two of them side by side.
#pragma once

#include "session/run_list.h"
#include "widgets/nivora_window.h"

#include <QStringList>
#include <vector>

class QCheckBox;
class QLabel;
class QPushButton;

namespace nivora {

class GridView;
class TextTableModel;

/// Stays open beside the main window. The newest run comes first; the first and the last of the selected runs
/// are compared.
class frmRuns : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmRuns(const WindowContext& context, QWidget* parent = nullptr);

    /// Shows the runs of the open basin, or of all basins, as they are now.
    void fill();
    /// The same if something of it has changed; selection and scroll position stay otherwise.
    void refresh();

private:
    /// The runs to show, newest first.
    [[nodiscard]] std::vector<ListedRun> wanted() const;
    [[nodiscard]] std::vector<QStringList> texts_of(const std::vector<ListedRun>& runs) const;
    QWidget* make_list();
    QWidget* make_comparison();
    QWidget* make_buttons();
    void show_comparison();
    void copy();

    std::vector<ListedRun> shown_;  ///< newest first
    std::vector<QStringList> texts_;
    QCheckBox* all_basins_;
    QLabel* told_;
    TextTableModel* runs_;
    GridView* list_;
    QLabel* compared_;
    TextTableModel* items_;
    GridView* comparison_;
    QPushButton* copy_ = nullptr;
};

}  // namespace nivora
