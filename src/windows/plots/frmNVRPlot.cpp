#include "windows/plots/frmNVRPlot.h"

#include "base/text.h"
#include "climate/plotted_melt.h"
#include "plots/line_edit.h"
#include "reports/report_catalogue.h"
#include "reports/report_period.h"
#include "widgets/busy_pointer.h"
#include "widgets/qt_text.h"
#include "windows/plots/frmLineAtt.h"
#include "windows/plots/plot_canvas.h"
#include "windows/plots/plot_output.h"
#include "windows/plots/plot_panel.h"
#include "windows/plots/plot_toolbar.h"

#include <QAction>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <string>
#include <utility>

namespace nivora {
namespace {

constexpr int k_help_topic = 18;
constexpr int k_canvas_help = 1;
constexpr int k_save_help = 2;
constexpr int k_print_help = 3;
constexpr int k_copy_help = 4;
constexpr int k_zoom_help = 5;
constexpr int k_redraw_help = 19;
constexpr int k_help_help = 20;
constexpr int k_summary_help = 22;
constexpr int k_legend_help = 29;
constexpr int k_lines_help = 31;
constexpr int k_status_help = 34;
constexpr int k_x_help = 35;
constexpr int k_y_help = 36;
constexpr int k_done_help = 37;

/// The least size of the plot, in points; with it the window fits on a small screen.
constexpr QSize k_least_plot(480, 200);
constexpr int k_note_ms = 8000;

struct NamedColour {
    const char* name;
    std::int32_t colour;
};
constexpr std::array<NamedColour, 8> k_colours{{{"Black", 0},
                                                {"Blue", 0xFF0000},
                                                {"Cyan", 0xFFFF00},
                                                {"Green", 0x00FF00},
                                                {"Magneta", 0xFF00FF},
                                                {"Red", 0x0000FF},
                                                {"White", 0xFFFFFF},
                                                {"Yellow", 0x00FFFF}}};
constexpr std::array k_styles{"Solid",      "Transparent",      "Horizontal",
                              "Vertical",   "Upward diagional", "Downward Diagonal",
                              "Crosshatch", "Diagonal Cross"};

/// A menu that nothing opens.
QMenu* make_spare_menu(const QString& name, QWidget* parent) {
    auto* menu = new QMenu(parent);
    menu->setObjectName(name);
    return menu;
}

/// Why a plot was not copied, and what to do.
std::string why_not(PlotCopy copied) {
    if (copied == PlotCopy::NoRoom)
        return "The plot is not copied: there is no room for its picture.  Make the window smaller, then "
               "copy it again.";
    return "The plot is not copied: another program uses the clipboard.  Copy the plot again; if that does "
           "not help, close the other program.";
}

/// The largest number of a line that the legend names.
int lines_of(const Plot& plot) {
    int last = 1;
    for (const LegendRow& row : plot.legend) last = std::max(last, row.line);
    return last;
}

}  // namespace

frmNVRPlot::frmNVRPlot(const WindowContext& context, Colours& colours, PlotScreen& screen, QWidget* parent)
    : NivoraWindow(context, "frmNVRPlot", WindowNumber::frmNVRPlot, parent),
      screen_(screen),
      colours_(colours),
      tools_(new PlotToolbar(this)),
      canvas_(new PlotCanvas(screen, context.session.settings, this)) {
    setWindowTitle(QStringLiteral("Graphics"));
    set_help_tip(QStringLiteral("Show 'QuickHelp'"));
    auto* bar = findChild<QToolBar*>(QStringLiteral("Toolbar1"));
    bar->insertWidget(bar->actions().constFirst(), tools_);
    // Its word would take the room of a list on a small screen.
    findChild<QToolButton*>(QStringLiteral("btnHelp"))->setToolButtonStyle(Qt::ToolButtonIconOnly);
    bar->setMinimumWidth(bar->sizeHint().width());
    canvas_->setMinimumSize(k_least_plot);
    set_help(canvas_, k_canvas_help);
    set_help(canvas_->findChild<QWidget*>(QStringLiteral("Frame2")), k_legend_help);
    set_help(canvas_->findChild<QWidget*>(QStringLiteral("Frame3")), k_summary_help);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(canvas_);
    auto* foot = new QWidget(this);
    auto* row = new QHBoxLayout(foot);
    auto* done = new QPushButton(QStringLiteral("&Done"), foot);
    done->setObjectName(QStringLiteral("cmdPlot"));
    set_help(done, k_done_help);
    row->addStretch(1);
    row->addWidget(done);
    set_content(content, foot);
    setTabOrder(tools_->findChild<QWidget*>(QStringLiteral("Help")), canvas_);
    set_first_focus(findChild<QWidget*>(QStringLiteral("PlotList")));
    make_menus();
    make_status_bar();
    make_keys();
    connect(done, &QPushButton::clicked, this, &QWidget::close);
    connect(tools_, &PlotToolbar::pressed, this, &frmNVRPlot::press);
    connect(tools_, &PlotToolbar::plot_chosen, this, &frmNVRPlot::pick);
    connect(tools_, &PlotToolbar::zone_chosen, this, &frmNVRPlot::pick_zone);
    connect(canvas_, &PlotCanvas::answered, this, &frmNVRPlot::give);
    connect(canvas_, &PlotCanvas::pointed, this, &frmNVRPlot::show_place);
    connect(canvas_, &PlotCanvas::line_chosen, this, &frmNVRPlot::choose_line);
    tools_->show_data_points(screen_.data_points());
    resize(1100, 700);
}

void frmNVRPlot::make_menus() {
    line_menu_ = new QMenu(QStringLiteral("&EditLine"), this);
    line_menu_->setObjectName(QStringLiteral("mnuEd"));
    QAction* edit = line_menu_->addAction(QStringLiteral("&LineAttributes"));
    edit->setObjectName(QStringLiteral("mnuEdItm"));
    edit->setProperty(k_help_line, k_lines_help);
    connect(edit, &QAction::triggered, this, &frmNVRPlot::edit_lines);
    QMenu* colours = make_spare_menu(QStringLiteral("mnuSelItm"), this);
    for (const NamedColour& named : k_colours) {
        connect(colours->addAction(QString::fromUtf8(named.name)), &QAction::triggered, this,
                [this, &named] { current_colour_ = named.colour; });
    }
    QMenu* styles = make_spare_menu(QStringLiteral("mnuStyItm"), this);
    for (std::size_t style = 0; style < k_styles.size(); ++style) {
        connect(styles->addAction(QString::fromUtf8(k_styles.at(style))), &QAction::triggered, this,
                [this, style] { current_style_ = static_cast<int>(style); });
    }
}

void frmNVRPlot::make_status_bar() {
    explain_status_bar(k_status_help);
    const auto add = [this](const char* name, const QString& widest, int help) {
        auto* place = new QLabel(QStringLiteral(" "), this);
        place->setObjectName(QString::fromUtf8(name));
        place->setMinimumWidth(place->fontMetrics().horizontalAdvance(widest));
        set_help(place, help);
        statusBar()->addPermanentWidget(place);
        return place;
    };
    x_place_ = add("PositionX", QStringLiteral(" X: Sep 30, 2000 "), k_x_help);
    y_place_ = add("PositionY", QStringLiteral(" Y: -00000.00 "), k_y_help);
}

/// An action, other than a shortcut, is explained by QuickHelp while that is on.
QAction* frmNVRPlot::add_key(const QKeySequence& key, int help, void (frmNVRPlot::*act)()) {
    auto* action = new QAction(this);
    action->setShortcut(key);
    action->setProperty(k_help_line, help);
    connect(action, &QAction::triggered, this, act);
    addAction(action);
    return action;
}

void frmNVRPlot::make_keys() {
    add_key(QKeySequence(Qt::CTRL | Qt::Key_C), k_copy_help, &frmNVRPlot::copy);
    add_key(QKeySequence(Qt::CTRL | Qt::Key_P), k_print_help, &frmNVRPlot::print);
    add_key(QKeySequence(Qt::CTRL | Qt::Key_S), k_save_help, &frmNVRPlot::save);
    add_key(QKeySequence(Qt::Key_F5), k_redraw_help, &frmNVRPlot::renew_picture);
    add_key(QKeySequence(Qt::Key_F1), k_help_help, &frmNVRPlot::show_help);
    add_key(QKeySequence(Qt::Key_Escape), k_zoom_help, &frmNVRPlot::escape);
}

void frmNVRPlot::open() {
    renew();
    if (!isVisible()) {  // an earlier opening has left its texts
        tools_->show_boxes(screen_.boxes());
        tools_->show_data_points(screen_.data_points());
        show_place({" ", " "});
    }
    show();
    const PlotSources sources{session().basin, session().run,
                              may_choose_computed(session().basin, session().run)};
    if (!screen_.picked() && !plot_refusal(PlotNumber::Runoff, sources)) pick(number_of(PlotNumber::Runoff));
}

void frmNVRPlot::renew() {
    const BasinState& basin = session().basin;
    const RunState& run = session().run;
    show_basin_file();
    tools_->show_plots(plot_list({basin, run, may_choose_computed(basin, run)}), screen_.picked());
    tools_->show_zones(zone_list_state(screen_.picked(), basin), screen_.shown_zone(basin));
    std::optional<PlotNumber> standing;
    if (screen_.plot() != nullptr) standing = screen_.plot()->number;
    tools_->show_tools(plot_tools(standing));
}

bool frmNVRPlot::build(
    const std::function<ScreenAnswer(BasinDatabase& database, const PlotSources& sources)>& make) {
    ScreenAnswer answer;
    try {
        const BusyPointer busy;
        // The summary names the climate step of the results, which may be those of another simulation.
        RunState run = session().run;
        run.ClimateStep = reported_climate_step(session().basin, session().run);
        BasinDatabase database{session().basin.Work_File, Access::ReadOnly};
        answer = make(database, {session().basin, run, may_choose_computed(session().basin, session().run)});
    } catch (const StoreError& error) {
        session().dialogs.stop(std::string{"The plot can't be made.  "} + error.what(), "Plotting error");
        renew();
        return false;
    }
    renew();  // also where a pick was refused: the lists show what stands
    give(answer);
    return true;
}

void frmNVRPlot::pick(int number) {
    build([&](BasinDatabase& database, const PlotSources& sources) {
        return screen_.pick(static_cast<PlotNumber>(number), database, sources);
    });
}

void frmNVRPlot::pick_zone(int zone) {
    build([&](BasinDatabase& database, const PlotSources& sources) {
        return screen_.pick_zone(zone, database, sources);
    });
}

/// What was built can be shown as a whole also where the file can't be read.
void frmNVRPlot::zoom_out() {
    RunState run = session().run;
    run.ClimateStep = reported_climate_step(session().basin, session().run);
    const PlotSources sources{session().basin, run, may_choose_computed(session().basin, session().run)};
    ScreenAnswer answer;
    try {
        const BusyPointer busy;
        BasinDatabase database{session().basin.Work_File, Access::ReadOnly};
        answer = screen_.zoom_out(&database, sources);
    } catch (const StoreError&) {
        answer = screen_.zoom_out(nullptr, sources);
    }
    give(answer);
}

/// Shows what a command has changed.
void frmNVRPlot::give(const ScreenAnswer& answer) {
    if (answer.draw) canvas_->redraw();
    if (answer.fill_boxes) tools_->show_boxes(screen_.boxes());
    if (answer.store_melt) store_melt();
    if (answer.after_zoom)
        statusBar()->showMessage(QStringLiteral("The new maximum shows after Zoom Out."), k_note_ms);
    if (!answer.message) return;
    const ScreenMessage& told = *answer.message;
    Message message{.text = told.text, .icon = told.information ? Icon::Information : Icon::None};
    if (!told.title.empty()) message.title = told.title;
    if (!answer.wrong_box) {
        session().dialogs.message(message);
        return;
    }
    QLineEdit* box = tools_->box(*answer.wrong_box);
    refuse(box, message);
    box->setFocus();
    box->selectAll();
}

/// The plot stands also where its columns can't be kept.
void frmNVRPlot::store_melt() {
    std::string problem;
    try {
        BasinDatabase database{session().basin.Work_File, Access::ReadWrite};
        return store_plotted_melt(database, screen_.plot()->zone.value_or(1),
                                  report_period(session().basin, session().run).covered());
    } catch (const StoreError& error) {
        problem = error.what();
    } catch (const Fault& fault) {
        problem = fault.what();
    }
    session().dialogs.message(
        {.text = "AZMexcl, AZMexclWA and AZMwork of this plot are not stored in the results.  " + problem,
         .icon = Icon::Information});
}

void frmNVRPlot::press(ToolPicture tool) {
    switch (tool) {
        case ToolPicture::SaveAs: return save();
        case ToolPicture::Print: return print();
        case ToolPicture::Copy: return copy();
        case ToolPicture::ZoomIn: return zoom_in();
        case ToolPicture::ZoomOut: return zoom_out();
        case ToolPicture::LineAttributes: return edit_lines();
        case ToolPicture::GridLines: return give(screen_.next_grid());
        case ToolPicture::ShowData:
        case ToolPicture::HideData:
            give(screen_.toggle_data_points());
            return tools_->show_data_points(screen_.data_points());
        case ToolPicture::Redraw: return redraw();
        case ToolPicture::Help: return show_help();
    }
}

void frmNVRPlot::show_help() { session().desktop.show_help_topic(k_help_topic); }

void frmNVRPlot::redraw() { give(screen_.redraw(tools_->boxes())); }

void frmNVRPlot::renew_picture() {
    if (tools_->is_edited()) return redraw();
    give(screen_.after_resize());
}

void frmNVRPlot::zoom_in() {
    screen_.zoom_in();
    canvas_->show_pointer();
    canvas_->setFocus();
}

void frmNVRPlot::escape() { canvas_->escape(); }

void frmNVRPlot::save() {
    if (screen_.plot() == nullptr) return;
    const auto form = save_plot(context(), this, shown_plot());
    if (!form || !is_picture(*form) || screen_.plot() == nullptr) return;
    // Intended: a saved picture of plot 19 makes it anew, which ends its zoom; all other plots stay.
    if (screen_.plot()->number == PlotNumber::CoverComparison) give(screen_.after_resize());
}

void frmNVRPlot::copy() {
    if (screen_.plot() == nullptr) return;
    const PlotCopy copied = copy_plot(shown_plot());
    if (copied != PlotCopy::Copied) session().dialogs.stop(why_not(copied));
    give(screen_.after_resize());
}

void frmNVRPlot::print() {
    if (screen_.plot() == nullptr) return;
    if (print_plot(context(), this, shown_plot())) give(screen_.after_resize());
}

/// The plot as it looks now.
ShownPlot frmNVRPlot::shown_plot() const {
    return {*screen_.plot(), canvas_->draw_options(), canvas_->picture_size(), canvas_->shows_summary()};
}

void frmNVRPlot::choose_line(int line, QPoint at) {
    edited_line_ = line;
    line_menu_->popup(at);
}

void frmNVRPlot::edit_lines() {
    const Plot* plot = screen_.plot();
    frmLineAtt window(context(), colours_,
                      {.edited_line = edited_line_,
                       .curves = plot != nullptr ? lines_of(*plot) : 1,
                       .fills = plot != nullptr && has_filled_bands(plot->number)},
                      this);
    window.show_modal();
    edited_line_ = window.EditedLine();
    if (edited_line_ == k_no_edited_line) return;
    give(screen_.after_resize());
}

void frmNVRPlot::show_place(const BoxTexts& texts) {
    x_place_->setText(to_qt(texts.x));
    y_place_->setText(to_qt(texts.y));
}

/// The values of the plot are freed; the next opening begins without a pick.
void frmNVRPlot::hideEvent(QHideEvent* event) {
    NivoraWindow::hideEvent(event);
    if (event->spontaneous()) return;
    screen_.forget_pick();
    edited_line_ = 1;
    canvas_->redraw();
}

}  // namespace nivora
