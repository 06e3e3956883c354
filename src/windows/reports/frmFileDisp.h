// The reports on the screen.
#pragma once

#include "session/report_file.h"
#include "widgets/nivora_window.h"

#include <vector>

class QLabel;
class QMenu;
class QPlainTextEdit;

namespace nivora {

/// Shows the text of a report file, makes other reports in its place, copies and prints it.
class frmFileDisp : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmFileDisp(const WindowContext& context, QWidget* parent = nullptr);

    /// Shows a report file under a title.
    void show_report_file(ReportFile file, const std::string& title);

private:
    void make_menus();
    void make_print_menu();
    void make_report_menu();
    QMenu* add_menu(const QString& name, const QString& caption, int help);
    QAction* add_entry(QMenu* menu, const QString& name, const QString& caption, int help);
    void resize_to_reports();
    void produce(const std::vector<Report>& reports);
    [[nodiscard]] QString shown_text() const;
    void copy();

    QLabel* title_;
    QPlainTextEdit* text_;
    ReportFile file_;  ///< the file that is shown
};

}  // namespace nivora
