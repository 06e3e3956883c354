#include "windows/prep/frmDataCheck.h"

#include "base/durable_file.h"
#include "prep/daily_editor.h"
#include "session/data_check_setting.h"
#include "store/database.h"
#include "widgets/controls.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"
#include "widgets/text_table_model.h"
#include "widgets/window_keys.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

namespace nivora {
namespace {

constexpr int k_help_topic = 75;
constexpr int k_kind_line = 1;
constexpr int k_zone_line = 2;
constexpr int k_list_line = 3;
constexpr int k_first_button_line = 4;
constexpr int k_told_line = 9;
constexpr int k_status_line = 10;

std::vector<TextColumn> finding_columns() {
    return {{.header = QStringLiteral("What")},
            {.header = QStringLiteral("Zone")},
            {.header = QStringLiteral("Field")},
            {.header = QStringLiteral("First day")},
            {.header = QStringLiteral("Last day")},
            {.header = QStringLiteral("Days"), .kind = CellFormat::Kind::Number},
            {.header = QStringLiteral("Finding")}};
}

QString zone_text(const BasinState& basin, int zone) {
    const auto index = static_cast<std::size_t>(zone - 1);
    const bool named = index < basin.zones.size() && !basin.zones[index].id.empty();
    return named ? to_qt(basin.zones[index].id) : QString::number(zone);
}

/// The daily editor's word for the field of a finding.
std::string editor_word(const DataFinding& finding) {
    if (finding.field().empty()) return {};
    return daily_columns(DataView::PhysicalData, {std::string{finding.field()}}).front().header;
}

/// Why the daily editor can't show a finding.
std::string no_such_zone_text(const DataFinding& finding, int zones) {
    return "The rows of zone " + std::to_string(finding.zone) + " can't be shown: the basin has " +
           std::to_string(zones) + (zones == 1 ? " zone" : " zones") +
           ", and the daily editor shows these alone.";
}

}  // namespace

frmDataCheck::frmDataCheck(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmDataCheck", WindowNumber::frmDataCheck, parent),
      kinds_(new QComboBox(this)),
      zones_(new QComboBox(this)),
      told_(make_label(QStringLiteral("lblTold"), {}, k_told_line, this)),
      rows_(new TextTableModel(finding_columns(), this)),
      list_(new GridView(rows_, context.session.dialogs, this)) {
    setWindowTitle(QStringLiteral("Check data"));
    list_->setObjectName(QStringLiteral("grdFindings"));
    list_->setAccessibleName(QStringLiteral("Findings"));
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    set_help(list_, k_list_line);
    list_->installEventFilter(this);
    connect(list_, &QAbstractItemView::doubleClicked, this,
            [this](const QModelIndex& at) { go_to(at.row()); });
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(make_head());
    told_->setTextFormat(Qt::PlainText);
    told_->setWordWrap(true);
    layout->addWidget(told_);
    layout->addWidget(list_, 1);
    set_content(content, make_buttons());
    explain_status_bar(k_status_line);
    set_first_focus(list_);
    close_on_escape();
    resize(900, 560);
}

QWidget* frmDataCheck::make_head() {
    auto* frame = new QWidget(this);
    auto* layout = new QHBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](const char* caption, QComboBox* box, const char* name, int line) {
        auto* label = make_label(QString::fromUtf8(name) + QStringLiteral("Caption"),
                                 QString::fromUtf8(caption), line, frame);
        label->setBuddy(box);
        box->setObjectName(QString::fromUtf8(name));
        set_help(box, line);
        layout->addWidget(label);
        layout->addWidget(box);
        connect(box, &QComboBox::currentIndexChanged, this, [this] { fill(); });
    };
    const QSignalBlocker quiet(kinds_);
    kinds_->addItem(QStringLiteral("All"));
    for (const DataFault fault : k_data_faults) kinds_->addItem(QString::fromUtf8(data_fault_text(fault)));
    add("&What", kinds_, "cboKind", k_kind_line);
    add("&Zone", zones_, "cboZone", k_zone_line);
    layout->addStretch(1);
    return frame;
}

QWidget* frmDataCheck::make_buttons() {
    const ButtonRow row = make_button_row({"&Go to", "Look &again", "&Copy with headers", "&Help", "&Done"},
                                          k_first_button_line, this);
    go_ = row.buttons[0];
    copy_ = row.buttons[2];
    connect(go_, &QPushButton::clicked, this, [this] { go_to(list_->currentIndex().row()); });
    connect(row.buttons[1], &QPushButton::clicked, this, &frmDataCheck::look);
    connect(copy_, &QPushButton::clicked, this, &frmDataCheck::copy);
    connect(row.buttons[3], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    connect(row.buttons[4], &QPushButton::clicked, this, &QWidget::close);
    add_key(*this, Qt::Key_F1, *row.buttons[3]);
    set_default_button(go_);
    return row.frame;
}

/// Enter in the list goes to the finding; a grid would go to the next row.
bool frmDataCheck::eventFilter(QObject* watched, QEvent* event) {
    if (watched == list_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            go_->click();
            return true;
        }
    }
    return NivoraWindow::eventFilter(watched, event);
}

void frmDataCheck::look() {
    const BasinState& basin = session().basin;
    const int row = list_->currentIndex().row();
    check_ = {};
    basin_file_ = path_text(basin.Basin_File);
    fault_.clear();
    try {
        BasinDatabase database{basin.Work_File, Access::ReadOnly};
        check_ = check_daily_data(database, data_check_setting(basin));
    } catch (const StoreError& error) {
        fault_ = to_qt(error.what());
    }
    fill_zones();
    fill();
    // Who repairs one finding after another goes on where he was.
    if (row > 0 && rows_->rowCount() > 0)
        list_->setCurrentIndex(rows_->index(std::min(row, rows_->rowCount() - 1), 0));
    show_basin_file();
}

void frmDataCheck::refresh() {
    if (path_text(session().basin.Basin_File) != basin_file_) look();
}

/// The chosen zone stays if the basin still has it.
void frmDataCheck::fill_zones() {
    const QSignalBlocker quiet(zones_);
    const int chosen = std::max(0, zones_->currentIndex());
    zones_->clear();
    zones_->addItem(QStringLiteral("All"));
    for (int zone = 1; zone <= session().basin.ZoneCount; ++zone)
        zones_->addItem(zone_text(session().basin, zone));
    zones_->setCurrentIndex(chosen < zones_->count() ? chosen : 0);
}

void frmDataCheck::fill() {
    const int kind = kinds_->currentIndex() - 1;
    const int zone = zones_->currentIndex();
    shown_.clear();
    chosen_ = 0;
    std::vector<QStringList> texts;
    for (std::size_t i = 0; i < check_.findings.size(); ++i) {
        const DataFinding& finding = check_.findings[i];
        if (kind >= 0 && finding.fault != k_data_faults.at(static_cast<std::size_t>(kind))) continue;
        if (zone > 0 && finding.zone != zone) continue;
        if (++chosen_ > k_most_findings) continue;
        shown_.push_back(i);
        texts.push_back({QString::fromUtf8(data_fault_text(finding.fault)),
                         zone_text(session().basin, finding.zone), to_qt(editor_word(finding)),
                         to_qt(long_date_text(finding.first)), to_qt(long_date_text(finding.last)),
                         QString::number(finding.days()), to_qt(finding_text(finding))});
    }
    rows_->show(std::move(texts));
    list_->fit_columns();
    if (!shown_.empty()) list_->setCurrentIndex(rows_->index(0, 0));
    go_->setEnabled(!shown_.empty());
    copy_->setEnabled(!shown_.empty());
    told_->setText(summary());
}

QString frmDataCheck::summary() const {
    if (!fault_.isEmpty()) return fault_;
    if (check_.findings.empty() && check_.days == 0)
        return QStringLiteral("The basin has no daily variables.");
    if (check_.findings.empty()) {
        return QStringLiteral("Nothing was found in %1 days of %2 zones.")
            .arg(check_.days)
            .arg(context().session.basin.ZoneCount);
    }
    QString text =
        QStringLiteral("%1 in %2 days")
            .arg(check_.findings.size() == 1 ? QStringLiteral("1 finding")
                                             : QStringLiteral("%1 findings").arg(check_.findings.size()))
            .arg(check_.days);
    if (chosen_ < check_.findings.size()) text += QStringLiteral(", %1 of this choice").arg(chosen_);
    text += QLatin1Char('.');
    if (chosen_ > shown_.size()) text += QStringLiteral(" The first %1 are listed.").arg(shown_.size());
    return text;
}

void frmDataCheck::show_missing(const DailyPlace& place) {
    look();
    {
        const QSignalBlocker quiet_kinds(kinds_);
        const QSignalBlocker quiet_zones(zones_);
        const auto kind = std::find(k_data_faults.begin(), k_data_faults.end(), DataFault::Missing);
        kinds_->setCurrentIndex(1 + static_cast<int>(kind - k_data_faults.begin()));
        zones_->setCurrentIndex(place.zone);
    }
    fill();
    for (int row = 0; row < rows_->rowCount(); ++row) {
        if (!covers(shown(row), place)) continue;
        list_->setCurrentIndex(rows_->index(row, 0));
        return;
    }
}

/// Copies the selected findings, all of them if none or one is selected.
void frmDataCheck::copy() {
    if (list_->selectionModel()->selectedRows().size() < 2) list_->selectAll();
    list_->copy_with_headers();
}

void frmDataCheck::go_to(int row) {
    if (row < 0 || row >= static_cast<int>(shown_.size())) return;
    // A copy, since the list is made anew before the call returns.
    const DataFinding finding = shown(row);
    // The number of zones may have changed since the look.
    if (finding.zone < 1 || finding.zone > session().basin.ZoneCount) {
        session().dialogs.message({.text = no_such_zone_text(finding, session().basin.ZoneCount)});
        return;
    }
    emit wanted(finding);
}

}  // namespace nivora
