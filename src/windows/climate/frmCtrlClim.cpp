#include "windows/climate/frmCtrlClim.h"

#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "climate/winter_report.h"
#include "engine/results_summary.h"
#include "prep/simulation_names.h"
#include "session/availability.h"
#include "session/listed_runs.h"
#include "session/main_window_rules.h"
#include "store/basin_marks.h"
#include "store/table_io.h"
#include "widgets/busy_pointer.h"
#include "widgets/controls.h"
#include "widgets/grid_view.h"
#include "widgets/printing.h"
#include "widgets/qt_text.h"
#include "widgets/readable_palette.h"
#include "widgets/value_grid_model.h"
#include "widgets/window_keys.h"
#include "windows/climate/evaluation_print.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace nivora {
namespace {

constexpr int k_help_topic = 5;
constexpr int k_statistics_help = 14;
constexpr int k_notes_help = 30;
constexpr int k_notes_topic = 51;
constexpr int k_notes_lines = 4;
constexpr int k_done = 0;
constexpr int k_abort = 1;
constexpr int k_print = 3;
constexpr int k_message_row = 3;
/// The height of the statistics grid is divided into parts;
/// each step with a column adds one, the first step more.
constexpr int k_height_parts = 9;
constexpr int k_growth_of_step_1 = 3;

constexpr std::array<const char*, k_climate_steps> k_captions{
    "Step1:   Winter, Present Climate", "Step 2:  Winter, Changed Climate",
    "Step 3:  Summer, Present Climate", "Step 4:  Summer, Changed Climate ",
    "Step 5:  Derive CDCclimWA",        "Step 6:  Summer, Changed Climate"};

/// The column of the statistics grid that a step fills, from 0; 0 for a step without one.
int statistics_column(int step) {
    if (step == k_climate_steps) return 4;
    return step <= 3 ? step : 0;
}

QString figure(std::optional<float> value) { return value ? to_qt(single_text(*value)) : QString{}; }

}  // namespace

frmCtrlClim::frmCtrlClim(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmCtrlClim", WindowNumber::frmCtrlClim, parent) {
    setWindowTitle(QStringLiteral("Run a Climate Change "));
    auto* content = new QWidget(this);
    auto* grid = new QGridLayout(content);
    grid->addWidget(make_scenario(), 0, 0, 1, 2);
    grid->addWidget(make_steps(), 1, 0);
    grid->addWidget(make_summary(), 1, 1);
    grid->addWidget(make_statistics(), 2, 0, 1, 2, Qt::AlignLeft | Qt::AlignTop);
    fix_statistics_height(*grid, 2);
    grid->addWidget(make_notes(), 3, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(2, 1);
    make_buttons(content);
    set_content(content, buttons_.front()->parentWidget());
    explain_status_bar(27);
    set_help_tip(QStringLiteral("Show 'QuickHelp'"));
    resize(820, 620);
}

QWidget* frmCtrlClim::make_scenario() {
    auto* frame = new QGroupBox(QStringLiteral("Scenario Definition(s) for ") +
                                    to_qt(doubled_ampersands(session().basin.Current_Sim_Name)),
                                this);
    frame->setObjectName(QStringLiteral("Frame1"));
    set_help(frame, 29);
    auto* layout = new QVBoxLayout(frame);
    scenario_ = new QComboBox(frame);
    scenario_->setObjectName(QStringLiteral("CmboScenario"));
    scenario_->setAccessibleName(QStringLiteral("Scenario"));
    make_list_readable(*scenario_);
    scenario_->setPlaceholderText(QStringLiteral(" "));
    set_help(scenario_, 8);
    reuse_ = new QCheckBox(QStringLiteral("Use the climate changes defined in Results"), frame);
    reuse_->setObjectName(QStringLiteral("Check2"));
    reuse_->setToolTip(
        QStringLiteral("To reuse the modified climate from the most recent climate simulation, check here "
                       "(normally only when you've edited SimResults manually "
                       "to change a few daily values in a scenario)."));
    set_help(reuse_, 7);
    layout->addWidget(scenario_);
    layout->addWidget(reuse_);
    connect(scenario_, &QComboBox::currentIndexChanged, this, [this] { scenario_chosen(); });
    return frame;
}

QWidget* frmCtrlClim::make_steps() {
    auto* frame = new QGroupBox(this);
    set_help(frame, 28);
    auto* layout = new QVBoxLayout(frame);
    for (int i = 0; i < k_climate_steps; ++i) {
        const auto index = static_cast<std::size_t>(i);
        auto* box = new QCheckBox(QString::fromUtf8(k_captions.at(index)), frame);
        box->setObjectName(QStringLiteral("Check1(%1)").arg(i));
        box->setEnabled(false);
        set_help(box, 1 + i);
        layout->addWidget(box);
        steps_.at(index) = box;
        connect(box, &QCheckBox::toggled, this, [this, i] { step_clicked(i); });
    }
    steps_[2]->setToolTip(QStringLiteral("This step computes MDC's for summer, needed to derive CDCliims"));
    layout->addStretch(1);
    return frame;
}

QWidget* frmCtrlClim::make_summary() {
    summary_ =
        new ValueGridModel({QStringLiteral("Winter"), QStringLiteral("Summer"), QStringLiteral("Year")},
                           {QStringLiteral("Measured"), QStringLiteral("Computed"),
                            QStringLiteral("Climate affected"), QString{}},
                           this);
    summary_grid_ = new GridView(summary_, session().dialogs, this);
    summary_grid_->setObjectName(QStringLiteral("vaSpread1"));
    summary_grid_->setAccessibleName(QStringLiteral("Seasonal Summary of Runoff"));
    summary_grid_->setProperty(k_help_rows, 9);
    set_help(summary_grid_, 9);
    summary_grid_->setSpan(k_message_row, 0, 1, 3);
    summary_->set_text(k_message_row, 0, QStringLiteral("Seasonal Summary of Runoff"));
    summary_grid_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    summary_grid_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(summary_grid_, &QAbstractItemView::clicked, this,
            [this](const QModelIndex& cell) { highlight_sources(cell.row(), cell.column()); });
    return summary_grid_;
}

QWidget* frmCtrlClim::make_statistics() {
    const QString blank;
    statistics_ =
        new ValueGridModel({QStringLiteral("Statistics"), QStringLiteral("Step 1"), QStringLiteral("Step 2"),
                            QStringLiteral("Step 3"), QStringLiteral("Step 6")},
                           {blank, blank, blank, blank, blank, blank, blank, blank}, this);
    constexpr std::array k_label_rows{0, 1, 3, 4, 6, 7};  // a pair each, with an empty line between
    const auto labels = statistics_labels(session().basin.Units_Code);
    for (std::size_t label = 0; label < labels.size(); ++label)
        statistics_->set_text(k_label_rows.at(label), 0, to_qt(labels.at(label)));
    statistics_grid_ = new GridView(statistics_, session().dialogs, this);
    statistics_grid_->setObjectName(QStringLiteral("SpdStat"));
    statistics_grid_->setAccessibleName(QStringLiteral("Statistics"));
    set_help(statistics_grid_, k_statistics_help);
    statistics_grid_->setProperty(k_help_rows,
                                  QVariantList{15, 16, k_statistics_help, 17, 18, k_statistics_help, 19, 20});
    statistics_grid_->verticalHeader()->hide();
    statistics_grid_->fit_columns();
    for (int column = 1; column < statistics_->columnCount(); ++column) {
        statistics_grid_->setColumnHidden(column, true);
        statistics_grid_->setColumnWidth(column, 110);
    }
    connect(statistics_grid_->horizontalHeader(), &QHeaderView::sectionResized, this,
            [this] { fit_statistics_width(); });
    statistics_grid_->hide();
    return statistics_grid_;
}

/// The notes of the steps, with a link to the help that says what to do. Visible once there is a note.
QWidget* frmCtrlClim::make_notes() {
    notes_ = new QTextBrowser(this);
    notes_->setObjectName(QStringLiteral("txtNotes"));
    notes_->setAccessibleName(QStringLiteral("Notes"));
    notes_->setOpenLinks(false);
    notes_->setFixedHeight(notes_->fontMetrics().lineSpacing() * k_notes_lines + 4 * notes_->frameWidth() +
                           8);
    set_help(notes_, k_notes_help);
    notes_->hide();
    connect(notes_, &QTextBrowser::anchorClicked, this,
            [this] { session().desktop.show_help_topic(k_notes_topic); });
    return notes_;
}

/// Sets the height before step 1 so that all rows are visible once that step has enlarged the grid; the
/// window reserves room for the growth in later steps.
void frmCtrlClim::fix_statistics_height(QGridLayout& layout, int row) {
    const int needed = statistics_grid_->horizontalHeader()->sizeHint().height() +
                       statistics_grid_->verticalHeader()->length() + 2 * statistics_grid_->frameWidth();
    constexpr int parts_after_step_1 = k_height_parts + k_growth_of_step_1;
    const int part = (needed + parts_after_step_1 - 1) / parts_after_step_1;
    statistics_grid_->setFixedHeight(part * k_height_parts);
    layout.setRowMinimumHeight(row, part * (parts_after_step_1 + statistics_->columnCount() - 2));
}

void frmCtrlClim::make_buttons(QWidget* content) {
    buttons_ = make_button_row({"&Done", "&Abort", "&Help", "&Print"}, 21, content).buttons;
    for (QPushButton* button : buttons_) button->setAutoDefault(false);
    buttons_[k_abort]->setEnabled(false);
    buttons_[k_print]->setEnabled(false);
    connect(buttons_[k_print], &QPushButton::clicked, this, [this] { print(); });
    set_default_button(buttons_[k_done]);
    close_on_escape();
    connect(buttons_[k_done], &QPushButton::clicked, this, [this] { done(); });
    connect(buttons_[k_abort], &QPushButton::clicked, this, [this] {
        aborted_ = true;
        close();
    });
    connect(buttons_[2], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    add_key(*this, Qt::Key_F1, *buttons_[2]);
}

void frmCtrlClim::done() {
    // The results stay in the table that the next run replaces; keeping them under a name is not offered.
    constexpr Answer name_the_results = Answer::No;
    if (name_the_results == Answer::Yes) name_results();
    close();
}

void frmCtrlClim::name_results() {
    try {
        BasinDatabase database{session().basin.Work_File, Access::ReadWrite};
        if (Name_Results_Table(database, session().dialogs)) mark_basin_changed(session().basin);
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
    }
}

void frmCtrlClim::print() {
    const auto sheets = printed_evaluation(session(), *statistics_grid_, evaluated_, local_now());
    context().printing.print_sheets(this, sheets);
}

ClimateContext frmCtrlClim::climate_context() {
    return {.run = {session().basin, session().run, session().dialogs},
            .climate = session().climate,
            .report_file = context().writable_folder() / k_winter_report_name,
            .now = local_now()};
}

bool frmCtrlClim::open() {
    begin_climate(climate_context());
    updating_ = true;
    try {
        BasinDatabase database{session().basin.Work_File, Access::ReadOnly};
        for (const ScenarioIndexRow& row :
             read_table<ScenarioIndexRow>(database, template_table(k_scenario_index))) {
            if (same_name(row.simulation, session().basin.Current_Sim_Name))
                scenario_->addItem(to_qt(row.scenario));
        }
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
        return false;
    }
    // A single scenario needs no choice; the placeholder is not a scenario.
    const bool one = scenario_->count() == 1 && !same_name(from_qt(scenario_->itemText(0)), k_no_scenario);
    scenario_->setCurrentIndex(one ? 0 : -1);
    updating_ = false;
    scenario_chosen();
    evaluation_was_opened(session());
    session().desktop.refresh_main_window();
    return true;
}

void frmCtrlClim::scenario_chosen() {
    if (updating_) return;
    session().climate.scenario = from_qt(scenario_->currentText());
    // The entry "None" says that there is no scenario.
    const std::string& chosen = session().climate.scenario;
    steps_[0]->setEnabled(!chosen.empty() && !same_name(chosen, k_no_scenario));
}

void frmCtrlClim::allow_choice(bool allowed) {
    scenario_->setEnabled(allowed);
    reuse_->setEnabled(allowed);
}

void frmCtrlClim::set_caption(int step) {
    evaluation_step_is_shown(session(), climate_step_caption(step));
    session().desktop.refresh_main_window();
}

void frmCtrlClim::step_clicked(int index) {
    if (updating_) return;
    run_step(index + 1);
}

void frmCtrlClim::run_step(int step) {
    if (step == 1) start_first_step();
    if (step == 4) evaluation_left_results_behind(session());
    if (step > 1) set_caption(step);
    StepOutcome outcome = StepOutcome::Suspended;
    {
        std::optional<BusyPointer> busy;
        if (step == 4 || step == 5) busy.emplace();
        ClimateContext context = climate_context();
        context.reached = [&](StepStage stage) {
            if (stage == StepStage::DatesChecked) busy.emplace();
            if (stage == StepStage::ModelStarts) set_caption(step);
        };
        outcome = run_climate_step(context, step);
    }
    if (step == 1) note_start(outcome);
    const bool ran = outcome == StepOutcome::Done || outcome == StepOutcome::Suspended;
    if (ran) show_figures(step);
    if (ran && step == k_climate_steps) finished();
    set_boxes(step, outcome);
    end_climate_step(climate_context(), step, outcome);
    if (step == k_climate_steps && outcome == StepOutcome::Done) list_evaluation(session());
    if (!ran) allow_another_start();
    session().desktop.refresh_main_window();
}

void frmCtrlClim::start_first_step() {
    allow_choice(false);
    buttons_[k_abort]->setEnabled(true);
    buttons_[k_done]->setEnabled(false);
    session().climate.reuse_results = reuse_->isChecked();
}

void frmCtrlClim::set_boxes(int step, StepOutcome outcome) {
    QCheckBox* box = steps_.at(static_cast<std::size_t>(step - 1));
    updating_ = true;
    if (outcome == StepOutcome::Done) {
        box->setEnabled(false);
        if (step < k_climate_steps) steps_.at(static_cast<std::size_t>(step))->setEnabled(true);
    } else {
        box->setEnabled(true);
        box->setChecked(false);
    }
    updating_ = false;
}

void frmCtrlClim::note_start(StepOutcome outcome) {
    if (outcome == StepOutcome::Refused) return;
    begun_ = true;
    if (!session().climate.reuse_results) rebuilt_ = true;
    evaluated_.reset();
    try {
        evaluated_ = evaluated_scenario(session(), local_now());
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
    }
}

/// After a step 1 without a completed run. Rebuilt results hold no manual changes, so there is nothing in
/// them to reuse; an evaluation that had begun before can only be aborted.
void frmCtrlClim::allow_another_start() {
    scenario_->setEnabled(true);
    reuse_->setEnabled(!rebuilt_);
    buttons_[k_done]->setEnabled(!begun_);
    buttons_[k_abort]->setEnabled(begun_);
    set_caption(0);
}

/// After step 6, even if it was cancelled: the results can be read, and Done closes the window.
void frmCtrlClim::finished() {
    buttons_[k_done]->setEnabled(true);
    buttons_[k_print]->setEnabled(true);
    buttons_[k_abort]->setEnabled(false);
    evaluation_was_finished(session());
    set_caption(k_climate_steps + 1);
    summary_->set_text(k_message_row, 0,
                       QStringLiteral("(click a cell to see corresponding value(s) in the Statistics grid)"));
}

void frmCtrlClim::show_summary() {
    const ClimateState& climate = session().climate;
    for (int row = 0; row < k_message_row; ++row) {
        for (int column = 0; column < 3; ++column) {
            const auto value =
                climate.summary(static_cast<SummaryRow>(row), static_cast<SummarySeason>(column));
            summary_->set_text(row, column,
                               value ? to_qt(format_number(as_double(*value), "0.00")) : QString{});
        }
    }
}

void frmCtrlClim::show_figures(int step) {
    show_statistics(step);
    show_summary();
    show_notes();
}

void frmCtrlClim::show_notes() {
    const auto& notes = session().run.notes;
    QString text =
        QStringLiteral("<a href=\"help\">%1: what to do</a>")
            .arg(notes.size() == 1 ? QStringLiteral("1 note") : QStringLiteral("%1 notes").arg(notes.size()));
    for (const RunNote& note : notes) {
        text += QStringLiteral("<br>") + to_qt(note_text(note, session().basin.Units_Code)).toHtmlEscaped();
    }
    notes_->setHtml(text);
    notes_->setVisible(!notes.empty());
}

/// Shows the column of a step that ran for the first time, and enlarges the grid for it.
void frmCtrlClim::grow_statistics(int step) {
    const int column = statistics_column(step);
    if (!statistics_grid_->isColumnHidden(column)) return;
    statistics_grid_->setColumnHidden(column, false);
    if (step == 1) row_height_ = statistics_grid_->height() / k_height_parts;
    const int parts = step == 1 ? k_growth_of_step_1 : 1;
    statistics_grid_->setFixedHeight(statistics_grid_->height() + parts * row_height_);
    fit_statistics_width();
}

void frmCtrlClim::fit_statistics_width() {
    statistics_grid_->setFixedWidth(statistics_grid_->horizontalHeader()->length() +
                                    2 * statistics_grid_->frameWidth());
}

void frmCtrlClim::show_statistics(int step) {
    statistics_grid_->show();
    const int column = statistics_column(step);
    if (column == 0) return;
    grow_statistics(step);
    const auto& of_step = session().climate.statistics.at(static_cast<std::size_t>(step));
    using Figures = std::array<std::optional<float>, 6>;
    const Figures figures =
        of_step ? Figures{of_step->measured_volume,  of_step->average_measured,  of_step->computed_volume,
                          of_step->average_computed, of_step->volume_difference, of_step->r2}
                : Figures{};
    constexpr std::array<int, 6> k_rows{0, 1, 3, 4, 6, 7};
    for (std::size_t i = 0; i < figures.size(); ++i)
        statistics_->set_text(k_rows.at(i), column, figure(figures.at(i)));
}

/// Highlights the sources of a figure of the summary.
void frmCtrlClim::highlight_sources(int row, int column) {
    if (session().run.ClimateStep != k_climate_steps || row >= k_message_row) return;
    summary_->highlight({{row, column}});
    const bool changed = static_cast<SummaryRow>(row) == SummaryRow::ClimateAffected;
    const int source = static_cast<SummaryRow>(row) == SummaryRow::Measured ? 0 : 3;
    const int winter = changed ? 2 : 1;
    const int summer = changed ? 4 : 3;
    std::set<std::pair<int, int>> cells;
    const auto season = static_cast<SummarySeason>(column);
    if (season != SummarySeason::Summer) cells.emplace(source, winter);
    if (season != SummarySeason::Winter) cells.emplace(source, summer);
    statistics_->highlight(std::move(cells));
}

// While it is under way no daily data can be edited.
bool frmCtrlClim::goes_on() const {
    const int step = context().session.run.ClimateStep;
    return begun_ && step > 0 && step < k_climate_steps;
}

/// Between two steps the close control ends the evaluation like Abort, but asks first.
bool frmCtrlClim::may_end() {
    if (aborted_ || !goes_on()) return true;
    aborted_ =
        session().dialogs.message(
            {.text = "The evaluation is not complete. If the window is closed the evaluation is aborted, and "
                     "its results do not count as valid.  Close it?",
             .title = from_qt(windowTitle()),
             .icon = Icon::Question,
             .buttons = Buttons::YesNo,
             .default_answer = Answer::No}) == Answer::Yes;
    return aborted_;
}

void frmCtrlClim::closeEvent(QCloseEvent* event) {
    if (!context().quick_help.is_on() && !may_end()) {
        event->ignore();
        return;
    }
    NivoraWindow::closeEvent(event);
    if (!event->isAccepted()) return;
    end_climate(climate_context(), aborted_);
    evaluation_was_closed(session(), climate_step_caption(0));
    session().desktop.refresh_main_window();
    emit left();
}

}  // namespace nivora
