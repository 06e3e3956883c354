#include "shell/window_keeper.h"

#include "shell/frmAbout.h"
#include "shell/frmNVRHelp.h"
#include "shell/frmSplash.h"
#include "windows/climate/frmCC.h"
#include "windows/climate/frmCtrlClim.h"
#include "windows/engine/Results.h"
#include "windows/engine/frmRuns.h"
#include "windows/engine/frmTimeLagDist.h"
#include "windows/plots/frmColorDef.h"
#include "windows/plots/frmNVRPlot.h"
#include "windows/prep/SimOptions.h"
#include "windows/prep/frmData.h"
#include "windows/prep/frmDataCheck.h"
#include "windows/prep/frmLongTermAvg.h"
#include "windows/prep/frmParameterChange.h"
#include "windows/prep/frmPopulate.h"
#include "windows/prep/frmTableExport.h"
#include "windows/prep/frmTableImport.h"
#include "windows/reports/frmPrint.h"

#include <QApplication>

namespace nivora {
namespace {

/// Also a window that the user has minimized.
void bring_to_front(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace

WindowKeeper::WindowKeeper(const WindowContext& context) : context_(context) {}

WindowKeeper::~WindowKeeper() = default;

void WindowKeeper::show_results() {
    if (!results_) results_ = std::make_unique<Results>(context_, nullptr);
    results_->fill();
    bring_to_front(*results_);
}

void WindowKeeper::close_results() {
    if (results_) results_->close();
}

void WindowKeeper::simulation_was_renamed(const std::string& former, const std::string& name) {
    if (results_) results_->simulation_was_renamed(former, name);
    close_plots();
}

void WindowKeeper::show_plots() {
    if (!plots_) plots_ = std::make_unique<frmNVRPlot>(context_, colours_, plot_screen_, nullptr);
    plots_->open();
    bring_to_front(*plots_);
}

void WindowKeeper::refresh() {
    if (results_) results_->refresh_status();
    if (plots_ && plots_->isVisible()) plots_->renew();
    if (runs_ && runs_->isVisible()) runs_->refresh();
    if (data_check_ && data_check_->isVisible()) data_check_->refresh();
}

void WindowKeeper::close_plots() {
    if (plots_) plots_->close();
}

/// The help stays usable beside the window that opened it:
/// a modal window blocks all others except those that it opened.
void WindowKeeper::show_help_topic(int topic) {
    if (!help_) help_ = std::make_unique<frmNVRHelp>(context_, nullptr);
    help_->show_topic(topic);
    QWidget* caller = QApplication::activeModalWidget();
    if (help_->caller() != caller) {
        help_->hide();
        help_->set_caller(caller);
    }
    bring_to_front(*help_);
}

void WindowKeeper::show_runs() {
    if (!runs_) runs_ = std::make_unique<frmRuns>(context_, nullptr);
    runs_->fill();
    bring_to_front(*runs_);
}

void WindowKeeper::show_climate_run() {
    climate_run_ = std::make_unique<frmCtrlClim>(context_, nullptr);
    QObject::connect(climate_run_.get(), &frmCtrlClim::left, climate_run_.get(), [this] {
        close_results();
        close_plots();
    });
    if (climate_run_->open()) climate_run_->show();
}

bool WindowKeeper::may_leave_climate_run() {
    const bool goes_on = climate_run_ && climate_run_->isVisible() && climate_run_->goes_on();
    return !goes_on || climate_run_->close();
}

void WindowKeeper::close_all() {
    if (climate_run_ && climate_run_->isVisible()) climate_run_->close();
    close_results();
    close_plots();
    if (help_) help_->close();
    if (runs_) runs_->close();
    if (data_check_) data_check_->close();
}

WindowKeeper::DefinitionEnd WindowKeeper::define_simulation() {
    SimOptions window(context_, nullptr);
    if (!window.open()) return DefinitionEnd::NotOpened;
    window.show_modal();
    return window.accepted() ? DefinitionEnd::Accepted : DefinitionEnd::Cancelled;
}

void WindowKeeper::make_data_check(const std::function<void(const DataFinding&)>& wanted) {
    if (data_check_) return;
    data_check_ = std::make_unique<frmDataCheck>(context_, nullptr);
    QObject::connect(data_check_.get(), &frmDataCheck::wanted, data_check_.get(), wanted);
}

void WindowKeeper::show_data_check(const std::function<void(const DataFinding&)>& wanted) {
    make_data_check(wanted);
    data_check_->look();
    bring_to_front(*data_check_);
}

void WindowKeeper::show_missing_values(const DailyPlace& place,
                                       const std::function<void(const DataFinding&)>& wanted) {
    make_data_check(wanted);
    data_check_->show_missing(place);
    bring_to_front(*data_check_);
}

void WindowKeeper::look_at_data_again() {
    if (data_check_ && data_check_->isVisible()) data_check_->look();
}

bool WindowKeeper::import_table() {
    frmTableImport window(context_, nullptr);
    window.show_modal();
    return window.loaded();
}

void WindowKeeper::export_table() {
    frmTableExport window(context_, nullptr);
    window.show_modal();
}

bool WindowKeeper::edit_daily_data(const std::optional<DailyPlace>& place) {
    frmData window(context_, nullptr);
    if (!window.open()) return false;
    if (place) window.go_to(*place);
    window.show_modal();
    return true;
}

bool WindowKeeper::edit_monthly_averages() {
    frmLongTermAvg window(context_, nullptr);
    if (!window.open()) return false;
    window.show_modal();
    return true;
}

void WindowKeeper::edit_scenarios() {
    frmCC window(context_, nullptr);
    if (window.open()) window.show_modal();
}

void WindowKeeper::change_parameter() {
    frmParameterChange window(context_, nullptr);
    if (window.open()) window.show_modal();
}

void WindowKeeper::edit_time_lag() { frmTimeLagDist(context_, nullptr).show_modal(); }

void WindowKeeper::choose_reports() { frmPrint(context_, nullptr).show_modal(); }

void WindowKeeper::ask_for_period() { frmPopulate(context_, nullptr).show_modal(); }

void WindowKeeper::choose_quick_help_colours(QWidget& window) {
    // A click acts in that window although QuickHelp is on, whose pointer would say that it explains.
    QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    frmColorDef(context_, colours_, &window).exec();
    QGuiApplication::restoreOverrideCursor();
    emit context_.quick_help.colours_changed();
}

void WindowKeeper::show_welcome(QWidget& main_window) {
    frmSplash(context_.session, false, &main_window).exec();
}

void WindowKeeper::show_about(QWidget& main_window) { frmAbout(&main_window).exec(); }

}  // namespace nivora
