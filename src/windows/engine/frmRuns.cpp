#include "windows/engine/frmRuns.h"

#include "session/listed_runs.h"
#include "widgets/controls.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"
#include "widgets/text_table_model.h"
#include "widgets/window_keys.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QItemSelection>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <set>
#include <utility>

namespace nivora {
namespace {

constexpr int k_help_topic = 74;
constexpr int k_widest_column = 180;
constexpr int k_all_line = 1;
constexpr int k_list_line = 2;
constexpr int k_compared_line = 3;
constexpr int k_first_button_line = 4;
constexpr int k_told_line = 7;
constexpr int k_status_line = 8;
constexpr int k_first_figure = 6;  // of the columns of the list
constexpr int k_last_figure = 9;

std::vector<TextColumn> run_columns() {
    std::vector<TextColumn> columns;
    int index = 0;
    for (const std::string& header : listed_headers()) {
        const bool figure = index >= k_first_figure && index <= k_last_figure;
        columns.push_back(
            {.header = to_qt(header), .kind = figure ? CellFormat::Kind::Number : CellFormat::Kind::Text});
        ++index;
    }
    return columns;
}

GridView* make_table(const char* name, const char* caption, TextTableModel* model, Dialogs& user, int line,
                     QWidget* parent) {
    auto* table = new GridView(model, user, parent);
    table->setObjectName(QString::fromUtf8(name));
    table->setAccessibleName(QString::fromUtf8(caption));
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    NivoraWindow::set_help(table, line);
    return table;
}

}  // namespace

frmRuns::frmRuns(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmRuns", WindowNumber::frmRuns, parent),
      all_basins_(new QCheckBox(QStringLiteral("Runs of &all basins"), this)),
      told_(make_label(QStringLiteral("lblTold"), {}, k_told_line, this)),
      runs_(new TextTableModel(run_columns(), this)),
      list_(make_table("grdRuns", "Runs", runs_, context.session.dialogs, k_list_line, this)),
      compared_(make_label(QStringLiteral("lblCompared"), {}, k_compared_line, this)),
      items_(new TextTableModel({{.header = QStringLiteral("Quantity")},
                                 {.header = QStringLiteral("First")},
                                 {.header = QStringLiteral("Second")},
                                 {.header = QStringLiteral("Difference")}},
                                this)),
      comparison_(
          make_table("grdCompared", "Comparison", items_, context.session.dialogs, k_compared_line, this)) {
    setWindowTitle(QStringLiteral("Runs"));
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    auto* parts = new QSplitter(Qt::Vertical, content);
    parts->setChildrenCollapsible(false);
    parts->addWidget(make_list());
    parts->addWidget(make_comparison());
    parts->setStretchFactor(0, 2);
    parts->setStretchFactor(1, 3);
    layout->addWidget(parts);
    set_content(content, make_buttons());
    explain_status_bar(k_status_line);
    set_first_focus(list_);
    close_on_escape();
    resize(900, 640);
}

QWidget* frmRuns::make_list() {
    auto* frame = new QWidget(this);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    all_basins_->setObjectName(QStringLiteral("chkAllBasins"));
    set_help(all_basins_, k_all_line);
    told_->setTextFormat(Qt::PlainText);
    told_->setWordWrap(true);
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    list_->setMinimumHeight(120);
    layout->addWidget(all_basins_);
    layout->addWidget(told_);
    layout->addWidget(list_, 1);
    connect(all_basins_, &QCheckBox::toggled, this, &frmRuns::fill);
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &frmRuns::show_comparison);
    return frame;
}

QWidget* frmRuns::make_comparison() {
    auto* frame = new QWidget(this);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    compared_->setTextFormat(Qt::PlainText);
    compared_->setWordWrap(true);
    comparison_->setMinimumHeight(120);
    layout->addWidget(compared_);
    layout->addWidget(comparison_, 1);
    return frame;
}

QWidget* frmRuns::make_buttons() {
    const ButtonRow row =
        make_button_row({"&Copy with headers", "&Help", "&Done"}, k_first_button_line, this);
    copy_ = row.buttons[0];
    connect(row.buttons[0], &QPushButton::clicked, this, &frmRuns::copy);
    connect(row.buttons[1], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    connect(row.buttons[2], &QPushButton::clicked, this, &QWidget::close);
    add_key(*this, Qt::Key_F1, *row.buttons[1]);
    set_default_button(row.buttons[2]);
    return row.frame;
}

std::vector<ListedRun> frmRuns::wanted() const {
    const Session& from = context().session;
    std::vector<ListedRun> runs =
        all_basins_->isChecked() ? from.runs.runs() : from.runs.runs_of(open_basin_name(from.basin));
    std::reverse(runs.begin(), runs.end());
    return runs;
}

std::vector<QStringList> frmRuns::texts_of(const std::vector<ListedRun>& runs) const {
    std::vector<QStringList> rows;
    for (const ListedRun& run : runs) {
        QStringList& texts = rows.emplace_back();
        for (const std::string& text : listed_texts(run, context().session.basin)) texts << to_qt(text);
    }
    return rows;
}

void frmRuns::refresh() {
    if (texts_of(wanted()) != texts_) fill();
}

void frmRuns::fill() {
    const bool all = all_basins_->isChecked();
    shown_ = wanted();
    texts_ = texts_of(shown_);
    runs_->show(texts_);
    list_->setColumnHidden(runs_->columnCount() - 1, !all);
    list_->fit_columns();
    QString told = to_qt(session().runs.fault());
    if (shown_.empty()) {
        if (!told.isEmpty()) told += QLatin1Char('\n');
        told += all ? QStringLiteral("No run is listed yet.")
                    : QStringLiteral(
                          "No run of this basin is listed. A basin that was moved or saved under "
                          "another name has its earlier runs under the former one.");
    }
    told_->setText(told);
    told_->setVisible(!told.isEmpty());
    copy_->setEnabled(!shown_.empty());
    show_comparison();
    show_basin_file();
}

/// Nothing lies between two runs that are next to each other; of a larger selection the ends count.
void frmRuns::show_comparison() {
    const QItemSelection selection = list_->selectionModel()->selection();
    const int first = selection.isEmpty() ? 0 : selection.first().top();
    const int last = selection.isEmpty() ? 0 : selection.first().bottom();
    if (first == last) {
        compared_->setText(
            QStringLiteral("Select two runs to compare them: click one, then the other with "
                           "Shift. The first and the last of the selected runs count."));
        items_->show({});
        return;
    }
    // The older run comes first.
    const auto items = compare_runs(shown_.at(static_cast<std::size_t>(last)),
                                    shown_.at(static_cast<std::size_t>(first)), session().basin);
    std::vector<QStringList> rows;
    std::set<std::pair<int, int>> differing;
    for (const ComparedItem& item : items) {
        if (item.differs) {
            for (const int column : {1, 2, 3}) differing.emplace(static_cast<int>(rows.size()), column);
        }
        rows.push_back({to_qt(item.name), to_qt(item.first), to_qt(item.second), to_qt(item.difference)});
    }
    items_->show(std::move(rows));
    items_->highlight(std::move(differing));
    comparison_->fit_columns();
    // A long path must not push the difference out of view.
    for (const int column : {1, 2})
        comparison_->setColumnWidth(column, std::min(comparison_->columnWidth(column), k_widest_column));
    compared_->setText(QStringLiteral("Rows %1 and %2. What differs is marked; the difference is that of the "
                                      "second run from the first.")
                           .arg(last + 1)
                           .arg(first + 1));
}

/// Copies the selected runs, all of them if none or one is selected.
void frmRuns::copy() {
    if (list_->selectionModel()->selectedRows().size() < 2) list_->selectAll();
    list_->copy_with_headers();
}

}  // namespace nivora
