#include "windows/engine/Results.h"

#include "base/number_text.h"
#include "base/text.h"
#include "engine/results_summary.h"
#include "reports/print_texts.h"
#include "widgets/controls.h"
#include "widgets/grid_sheet.h"
#include "widgets/grid_view.h"
#include "widgets/printing.h"
#include "widgets/qt_text.h"
#include "widgets/value_grid_model.h"
#include "widgets/window_keys.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace nivora {
namespace {

constexpr int k_help_topic = 8;
constexpr int k_rows = 6;
constexpr int k_notes_help = 18;

QLabel* named_label(const char* name, int help_line, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(QString::fromUtf8(name));
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    NivoraWindow::set_help(label, help_line);
    return label;
}

GridView* make_table(ValueGridModel* figures, Dialogs& user, QWidget* parent) {
    auto* table = new GridView(figures, user, parent);
    table->setObjectName(QStringLiteral("SpdStat"));
    table->setAccessibleName(QStringLiteral("Statistics"));
    table->verticalHeader()->hide();
    table->horizontalHeader()->hide();
    table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    table->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    table->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    NivoraWindow::set_help(table, 17);
    table->setProperty(k_help_rows, 0);
    // All six rows are visible; a window that grows gives its room to the comments.
    table->setFixedHeight(table->verticalHeader()->defaultSectionSize() * k_rows + 2 * table->frameWidth());
    table->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    return table;
}

}  // namespace

Results::Results(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "Results", WindowNumber::Results, parent),
      basin_name_(named_label("Lbl(7)", 7, this)),
      simulation_name_(named_label("Lbl(8)", 8, this)),
      run_date_(named_label("Lbl(9)", 9, this)),
      figures_(new ValueGridModel({QStringLiteral("Statistics"), QStringLiteral("Value")},
                                  QStringList(k_rows, QString{}), this)),
      statistics_(make_table(figures_, context.session.dialogs, this)),
      notes_(named_label("lblNotes", k_notes_help, this)),
      comments_(new QTextEdit(this)) {
    notes_->setWordWrap(true);
    comments_->setObjectName(QStringLiteral("RichTextBox1"));
    comments_->setAccessibleName(QStringLiteral("Comments"));
    comments_->setReadOnly(true);
    comments_->setMinimumHeight(comments_->fontMetrics().lineSpacing() * 3);
    // They fill the remaining room, and the window scrolls only if there is less than their minimum.
    comments_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    set_help(comments_, 10);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(make_labels());
    layout->addWidget(statistics_);
    layout->addWidget(notes_);
    layout->addWidget(comments_, 1);
    layout->addWidget(make_buttons());
    set_content(content);
    explain_status_bar(16);
    set_first_focus(statistics_);
    close_on_escape();
    resize(560, 460);
}

QWidget* Results::make_labels() {
    auto* frame = new QWidget(this);
    auto* form = new QFormLayout(frame);
    form->addRow(QStringLiteral("Basin Name:  "), basin_name_);
    form->addRow(QStringLiteral("Simulation:"), simulation_name_);
    form->addRow(QStringLiteral("Run Date:"), run_date_);
    int line = 7;
    for (QLabel* value : {basin_name_, simulation_name_, run_date_})
        set_help(form->labelForField(value), line++);
    return frame;
}

QWidget* Results::make_buttons() {
    auto* frame = new QWidget(this);
    auto* layout = new QHBoxLayout(frame);
    layout->addStretch(1);
    int index = 0;
    for (const char* caption : {"&Print", "&Help", "&Done"}) {
        auto* button = new QPushButton(QString::fromUtf8(caption), frame);
        button->setObjectName(QStringLiteral("Command1(%1)").arg(index));
        set_help(button, 11 + index);
        layout->addWidget(button);
        if (index == 0) connect(button, &QPushButton::clicked, this, &Results::print);
        if (index == 1)
            connect(button, &QPushButton::clicked, this,
                    [this] { session().desktop.show_help_topic(k_help_topic); });
        if (index == 0) add_key(*this, QKeySequence(Qt::CTRL | Qt::Key_P), *button);
        if (index == 1) add_key(*this, Qt::Key_F1, *button);
        if (index == 2) {
            connect(button, &QPushButton::clicked, this, &QWidget::close);
            set_default_button(button);
        }
        ++index;
    }
    return frame;
}

void Results::fill() {
    const RunState& run = session().run;
    const BasinState& basin = session().basin;
    setWindowTitle(to_qt(statistics_caption(run)));
    basin_name_->setText(to_qt(basin.basin_name));
    simulation_name_->setText(to_qt(basin.Current_Sim_Name));
    shown_ = basin.results_time.value_or(local_now());
    run_date_->setText(to_qt(short_date_text(whole_day(shown_)) + " " + time_text(shown_)));
    const Simulation* simulation = basin.current_simulation();
    comments_->setPlainText(simulation != nullptr ? to_qt(simulation->text(17)) : QString{});
    const auto labels = statistics_labels(basin.Units_Code);
    const auto values = statistics_values(run);
    for (int row = 0; row < k_rows; ++row) {
        const auto index = static_cast<std::size_t>(row);
        figures_->set_text(row, 0, to_qt(labels.at(index)));
        const auto& value = values.at(index);
        figures_->set_text(row, 1, value ? to_qt(single_text(*value)) : QString{});
    }
    QStringList notes;
    for (const RunNote& note : run.notes)
        notes << QStringLiteral("Note: ") + to_qt(note_text(note, basin.Units_Code));
    notes_->setText(notes.join(QLatin1Char('\n')));
    notes_->setVisible(!notes.isEmpty());
    period_ = period_summary(run);
    refresh_status();
    show_basin_file();
}

void Results::simulation_was_renamed(const std::string& former, const std::string& name) {
    if (same_name(from_qt(simulation_name_->text()), former)) simulation_name_->setText(to_qt(name));
}

/// The labels, then the statistics, then notes and comments, as the window shows them.
void Results::print() {
    const auto shown = [](const QString& text) { return mark_up_text(from_qt(text)); };
    PrintedSheet sheet = sheet_of(*statistics_);
    sheet.columns.at(1).align = PrintAlign::Right;
    sheet.header = grid_print_header(shown(windowTitle()), from_qt(basin_name_->text()), local_now());
    sheet.heading = "Simulation:   " + shown(simulation_name_->text()) +
                    "/nRun Date:   " + shown(run_date_->text()) + "/n" +
                    mark_up_text(statistics_status(session().basin, shown_, period_)) + "/n";
    if (!notes_->text().isEmpty()) sheet.legend += "/n" + shown(notes_->text()) + "/n";
    const QString comments = comments_->toPlainText();
    if (!comments.trimmed().isEmpty()) sheet.legend += "/n/fu1Comments/fu0/n" + shown(comments);
    sheet.footer = k_grid_print_footer;
    context().printing.print_sheets(this, std::span{&sheet, 1});
}

void Results::refresh_status() { show_status(to_qt(statistics_status(session().basin, shown_, period_))); }

}  // namespace nivora
