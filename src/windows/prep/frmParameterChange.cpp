#include "windows/prep/frmParameterChange.h"

#include "base/entry_refusal.h"
#include "base/number_text.h"
#include "base/text.h"
#include "prep/daily_units.h"
#include "widgets/controls.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"
#include "widgets/text_table_model.h"
#include "widgets/window_keys.h"

#include <fmt/format.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <cmath>

namespace nivora {
namespace {

constexpr int k_help_topic = 73;
constexpr const char* k_title = "Change a parameter";
constexpr int k_zones_in_a_row = 8;
constexpr int k_months_in_a_row = 6;

constexpr std::array<const char*, 12> k_months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                               "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

enum HelpLine {
    k_parameter_line = 1,
    k_action_line,
    k_number_line,
    k_zones_line,
    k_months_line,
    k_dates_line,
    k_summary_line,
    k_rows_line,
    k_first_button_line,
    k_status_line = 12
};

std::string value_text(double value, int decimals) {
    if (std::isnan(value)) return {};
    return format_number(value, "0." + std::string(static_cast<std::size_t>(decimals), '0'));
}

std::string range_text(const std::optional<ValueRange>& range) {
    if (!range) return "no values";
    return seven_digit_text(range->low) + " to " + seven_digit_text(range->high);
}

}  // namespace

frmParameterChange::frmParameterChange(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmParameterChange", WindowNumber::frmParameterChange, parent),
      parameter_(new QComboBox(this)),
      action_(new QComboBox(this)),
      number_(new QLineEdit(this)),
      unit_(make_label(QStringLiteral("lblUnit"), {}, k_number_line, this)),
      summary_(make_label(QStringLiteral("lblSummary"), {}, k_summary_line, this)),
      rows_(new TextTableModel({{.header = QStringLiteral("Zone")},
                                {.header = QStringLiteral("Date"), .kind = CellFormat::Kind::Date},
                                {.header = QStringLiteral("Before"), .kind = CellFormat::Kind::Number},
                                {.header = QStringLiteral("After"), .kind = CellFormat::Kind::Number}},
                               this)) {
    setWindowTitle(QString::fromUtf8(k_title));
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(make_action());
    layout->addWidget(make_zones());
    layout->addWidget(make_days());
    layout->addWidget(make_preview(), 1);
    set_content(content, make_buttons());
    explain_status_bar(k_status_line);
    set_first_focus(parameter_);
    close_on_escape();
    resize(600, 760);
}

QWidget* frmParameterChange::make_action() {
    auto* frame = new QWidget(this);
    auto* grid = new QGridLayout(frame);
    grid->setContentsMargins(0, 0, 0, 0);
    parameter_->setObjectName(QStringLiteral("cboParameter"));
    action_->setObjectName(QStringLiteral("cboAction"));
    number_->setObjectName(QStringLiteral("txtNumber"));
    for (const DailyColumn& column : parameter_columns()) {
        parameter_->addItem(to_qt(parameter_name(column.field) + " (" + column.header + ")"),
                            to_qt(column.field));
    }
    action_->addItems({QStringLiteral("Set to"), QStringLiteral("Add"), QStringLiteral("Multiply by")});
    const auto add = [&](int row, const char* caption, QWidget* element, int line) {
        set_help(element, line);
        auto* label = make_label(QStringLiteral("lbl") + element->objectName(), QString::fromUtf8(caption),
                                 line, frame);
        label->setBuddy(element);
        grid->addWidget(label, row, 0);
        grid->addWidget(element, row, 1);
    };
    add(0, "&Parameter:", parameter_, k_parameter_line);
    add(1, "Ac&tion:", action_, k_action_line);
    add(2, "&Number:", number_, k_number_line);
    grid->addWidget(unit_, 2, 2);
    grid->setColumnStretch(2, 1);
    connect(parameter_, &QComboBox::currentIndexChanged, this, [this] { show_unit(); });
    connect(action_, &QComboBox::currentIndexChanged, this, [this] { show_unit(); });
    connect(number_, &QLineEdit::textChanged, this, [this] { preview(); });
    return frame;
}

QWidget* frmParameterChange::make_zones() {
    auto* frame = new QGroupBox(QStringLiteral("Zones"), this);
    frame->setObjectName(QStringLiteral("fraZones"));
    set_help(frame, k_zones_line);
    auto* grid = new QGridLayout(frame);
    all_zones_ = new QCheckBox(QStringLiteral("All &zones"), frame);
    all_zones_->setObjectName(QStringLiteral("chkAllZones"));
    all_zones_->setChecked(true);
    grid->addWidget(all_zones_, 0, 0, 1, k_zones_in_a_row);
    for (int zone = 0; zone < session().basin.ZoneCount; ++zone) {
        auto* box = new QCheckBox(to_qt(zone_letter(zone + 1)), frame);
        box->setObjectName(QStringLiteral("chkZone(%1)").arg(zone + 1));
        box->setAccessibleName(QStringLiteral("Zone ") + box->text());
        box->setChecked(true);
        box->setEnabled(false);
        connect(box, &QCheckBox::toggled, this, [this] { preview(); });
        grid->addWidget(box, 1 + zone / k_zones_in_a_row, zone % k_zones_in_a_row);
        zones_.push_back(box);
    }
    connect(all_zones_, &QCheckBox::toggled, this, &frmParameterChange::choose_all_zones);
    return frame;
}

QWidget* frmParameterChange::make_days() {
    auto* frame = new QGroupBox(QStringLiteral("Days"), this);
    frame->setObjectName(QStringLiteral("fraDays"));
    auto* layout = new QVBoxLayout(frame);
    by_month_ = new QRadioButton(QStringLiteral("&Months of the simulation:"), frame);
    by_month_->setObjectName(QStringLiteral("optMonths"));
    by_month_->setChecked(true);
    set_help(by_month_, k_months_line);
    by_date_ = new QRadioButton(QStringLiteral("&Dates, first and last (mm/dd/yyyy):"), frame);
    by_date_->setObjectName(QStringLiteral("optDates"));
    set_help(by_date_, k_dates_line);
    auto* months = new QWidget(frame);
    auto* grid = new QGridLayout(months);
    grid->setContentsMargins(20, 0, 0, 0);
    for (int month = 0; month < 12; ++month) {
        const auto index = static_cast<std::size_t>(month);
        auto* box = new QCheckBox(QString::fromUtf8(k_months.at(index)), months);
        box->setObjectName(QStringLiteral("chkMonth(%1)").arg(month + 1));
        box->setChecked(true);
        set_help(box, k_months_line);
        connect(box, &QCheckBox::toggled, this, [this] { preview(); });
        grid->addWidget(box, month / k_months_in_a_row, month % k_months_in_a_row);
        months_.at(index) = box;
    }
    auto* dates = new QWidget(frame);
    auto* row = new QHBoxLayout(dates);
    row->setContentsMargins(20, 0, 0, 0);
    for (int end = 0; end < 2; ++end) {
        auto* box = make_date_box(QStringLiteral("mtxtDate(%1)").arg(end), k_dates_line, dates);
        box->setAccessibleName(end == 0 ? QStringLiteral("First date") : QStringLiteral("Last date"));
        box->setEnabled(false);
        connect(box, &QLineEdit::textChanged, this, [this] { preview(); });
        row->addWidget(box);
        dates_.at(static_cast<std::size_t>(end)) = box;
    }
    row->addStretch(1);
    connect(by_date_, &QRadioButton::toggled, this, [this](bool dated) {
        for (QCheckBox* box : months_) box->setEnabled(!dated);
        for (QLineEdit* box : dates_) box->setEnabled(dated);
        preview();
    });
    layout->addWidget(by_month_);
    layout->addWidget(months);
    layout->addWidget(by_date_);
    layout->addWidget(dates);
    return frame;
}

QWidget* frmParameterChange::make_preview() {
    auto* frame = new QGroupBox(QStringLiteral("Preview"), this);
    frame->setObjectName(QStringLiteral("fraPreview"));
    auto* layout = new QVBoxLayout(frame);
    summary_->setWordWrap(true);
    summary_->setTextFormat(Qt::PlainText);
    summary_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Its lines come and go with the choice; the table below must not jump.
    summary_->setMinimumHeight(4 * summary_->fontMetrics().lineSpacing());
    summary_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    grid_ = new GridView(rows_, session().dialogs, frame);
    grid_->setObjectName(QStringLiteral("grdPreview"));
    grid_->setAccessibleName(QStringLiteral("Preview"));
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setMinimumHeight(110);
    // It takes the room that is left. Beside a text that wraps, its preferred height would count as its
    // minimum, and the window would scroll.
    grid_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    set_help(grid_, k_rows_line);
    layout->addWidget(summary_);
    layout->addWidget(grid_, 1);
    return frame;
}

QWidget* frmParameterChange::make_buttons() {
    const ButtonRow row = make_button_row({"&Apply", "&Cancel", "&Help"}, k_first_button_line, this);
    apply_ = row.buttons[0];
    connect(row.buttons[0], &QPushButton::clicked, this, &frmParameterChange::apply);
    connect(row.buttons[1], &QPushButton::clicked, this, &QWidget::close);
    connect(row.buttons[2], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    add_key(*this, Qt::Key_F1, *row.buttons[2]);
    set_default_button(row.buttons[0]);
    return row.frame;
}

bool frmParameterChange::open() {
    const BasinState& basin = session().basin;
    const Simulation* simulation = basin.current_simulation();
    if (simulation == nullptr || !simulation->start || !simulation->end) {
        session().dialogs.stop("Please check the start/end dates for this simulation!");
        return false;
    }
    period_ = {*simulation->start, *simulation->end};
    try {
        BasinDatabase database{basin.Work_File, Access::ReadOnly};
        if (!database.has_table(simulation->name) || count_days(database, simulation->name, period_) == 0) {
            session().dialogs.stop(
                "The parameter table of the simulation '" + simulation->name +
                    "' has no day of its period. Choose Data, Parameters: it adds the days.",
                k_title);
            return false;
        }
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what(), k_title);
        return false;
    }
    setWindowTitle(to_qt(k_title + (" of " + simulation->name)));
    dates_[0]->setText(to_qt(long_date_text(period_.start)));
    dates_[1]->setText(to_qt(long_date_text(period_.end)));
    show_basin_file();
    show_unit();
    return true;
}

void frmParameterChange::choose_all_zones(bool all) {
    for (QCheckBox* box : zones_) {
        if (all) box->setChecked(true);
        box->setEnabled(!all);
    }
    preview();
}

/// A factor has no unit.
void frmParameterChange::show_unit() {
    const std::string unit =
        daily_unit(from_qt(parameter_->currentData().toString()), session().basin.Units_Code);
    unit_->setText(action_->currentIndex() == 2 ? QString{} : to_qt(unit));
    preview();
}

std::optional<Period> frmParameterChange::chosen_days() {
    if (by_month_->isChecked()) return period_;
    const auto first = read_date(from_qt(dates_[0]->text()));
    const auto last = read_date(from_qt(dates_[1]->text()));
    if (!first || !last) {
        show_reason(QStringLiteral("Enter two dates as mm/dd/yyyy."));
        return std::nullopt;
    }
    if (*first < period_.start || *last > period_.end || *last < *first) {
        show_reason(to_qt("The dates must lie in the simulation, " + long_date_text(period_.start) + " to " +
                          long_date_text(period_.end) + ", the first one first."));
        return std::nullopt;
    }
    return Period{*first, *last};
}

std::optional<ParameterChange> frmParameterChange::chosen() {
    ParameterChange change;
    change.field = from_qt(parameter_->currentData().toString());
    change.action = static_cast<ParameterAction>(action_->currentIndex());
    const std::string text = from_qt(number_->text());
    const auto number = exact_number(text);
    if (!number) {
        const std::string refused = number_refusal(text);
        show_reason(refused.empty() ? QStringLiteral("Enter a number.") : to_qt("Number: " + refused + "."));
        return std::nullopt;
    }
    change.number = *number;
    for (std::size_t zone = 0; zone < zones_.size(); ++zone) {
        if (zones_[zone]->isChecked()) change.zones.push_back(static_cast<int>(zone) + 1);
    }
    if (change.zones.empty()) return show_reason(QStringLiteral("Choose a zone.")), std::nullopt;
    const auto days = chosen_days();
    if (!days) return std::nullopt;
    change.days = *days;
    if (!by_month_->isChecked()) return change;
    for (std::size_t month = 0; month < months_.size(); ++month) {
        if (months_.at(month)->isChecked()) change.months.push_back(static_cast<int>(month) + 1);
    }
    if (change.months.empty()) return show_reason(QStringLiteral("Choose a month.")), std::nullopt;
    return change;
}

void frmParameterChange::show_reason(const QString& text) {
    summary_->setText(text);
    rows_->show({});
    apply_->setEnabled(false);
}

void frmParameterChange::preview() {
    if (period_ == Period{}) return;  // it is not open yet
    const auto change = chosen();
    if (!change) return;
    try {
        BasinDatabase database{session().basin.Work_File, Access::ReadOnly};
        show_preview(preview_parameter_change(database, session().basin.Current_Sim_Name, *change));
    } catch (const StoreError& error) {
        show_reason(to_qt(error.what()));
    }
}

int frmParameterChange::decimals() const {
    for (const DailyColumn& column : parameter_columns()) {
        if (same_name(column.field, from_qt(parameter_->currentData().toString())))
            return column.type == FieldType::Integer ? 0 : std::max(column.decimals, 4);
    }
    return 4;
}

void frmParameterChange::show_preview(const ParameterPreview& shown) {
    std::string text = fmt::format("Rows: {}, of which {} change", shown.rows, shown.changed);
    if (shown.missing > 0) text += fmt::format("; {} have no value and stay so", shown.missing);
    text += fmt::format(".\nBefore: {}. After: {}.", range_text(shown.before), range_text(shown.after));
    if (shown.refused > 0)
        text += fmt::format("\nRefused: {} of the values. {}", shown.refused, shown.refusal);
    if (shown.rows > static_cast<std::int64_t>(shown.first.size()))
        text += fmt::format("\nThe table shows the first {} rows.", shown.first.size());
    summary_->setText(to_qt(text));
    std::vector<QStringList> rows;
    for (const ChangedValue& value : shown.first) {
        const auto number = [&](double of) {
            std::string cell = value_text(of, decimals());
            if (!cell.empty() && cell.back() == '.') cell.pop_back();
            return to_qt(cell);
        };
        rows.push_back({to_qt(zone_letter(value.zone)), to_qt(long_date_text(value.date)),
                        number(value.before), number(value.after)});
    }
    rows_->show(std::move(rows));
    grid_->fit_columns();
    apply_->setEnabled(shown.refused == 0 && shown.changed > 0);
}

void frmParameterChange::apply() {
    const auto change = chosen();
    if (!change) return;
    try {
        BasinState& basin = session().basin;
        BasinDatabase database{basin.Work_File, Access::ReadWrite};
        const auto made = make_parameter_change(basin, database, basin.Current_Sim_Name, *change);
        if (made.refused > 0) return show_preview(made);
        if (made.changed > 0) session().run.ClimateStep = 0;
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what(), k_title);
        return;
    }
    close();
}

}  // namespace nivora
