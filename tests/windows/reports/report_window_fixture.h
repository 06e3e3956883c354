// The sample basin with a run, for the windows of reports.
#pragma once

#include "session/report_file.h"
#include "tests/shell/main_window_fixture.h"
#include "widgets/qt_text.h"
#include "windows/reports/frmFileDisp.h"
#include "windows/reports/frmPrint.h"

#include <gmock/gmock.h>

namespace nivora {

class ReportWindowTest : public MainWindowTest {
protected:
    static constexpr const char* k_first = "ellervane-1996";
    static constexpr const char* k_second = "ellervane-1997-98";

    ReportWindowTest() {
        open_sample();
        select_simulation_named(k_first);
    }

    void select_simulation_named(const char* name) {
        const auto row = find_simulation(session_.basin, name);
        ASSERT_TRUE(row) << name;
        find<QTableView>("DBGrid1")->selectRow(static_cast<int>(*row));
        settle();
        ASSERT_EQ(session_.basin.Current_Sim_Name, name);
    }
    void run() {
        choose("mnuRunSimVar(1)");
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == QStringLiteral("Results")) top->close();
        }
        ASSERT_EQ(session_.run.LastRunSimulation, session_.basin.Current_Sim_Name);
    }
    [[nodiscard]] WindowContext context() { return {session_, quick_help_, program_.path(), printing_}; }

    template <typename Element>
    static Element* in(const QWidget& window, const QString& name) {
        auto* element = window.findChild<Element*>(name);
        EXPECT_NE(element, nullptr) << from_qt(name);
        return element;
    }
    static QPushButton* button(const QWidget& window, int index) {
        return in<QPushButton>(window, QStringLiteral("Command1(%1)").arg(index));
    }
    static std::string label(const QWidget& window, const char* name) {
        return from_qt(in<QLabel>(window, QString::fromUtf8(name))->text());
    }

    [[nodiscard]] std::filesystem::path report_path() const { return program_ / "NVRrpts.out"; }
    [[nodiscard]] std::string report_file() const { return file_bytes(report_path()); }
    /// Whether a line of the file begins with the title of a report.
    [[nodiscard]] bool reports(const char* title) const {
        return report_file().find(std::string{"\r\n"} + title) != std::string::npos;
    }
    static bool is_open(const char* name) {
        for (const QWidget* top : QApplication::topLevelWidgets()) {
            if (top->isVisible() && top->objectName() == QString::fromUtf8(name)) return true;
        }
        return false;
    }
};

}  // namespace nivora
