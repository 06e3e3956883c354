#include "windows/prep/frmTableImport.h"

#include "base/durable_file.h"
#include "prep/table_sample.h"
#include "widgets/controls.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"
#include "widgets/readable_palette.h"
#include "widgets/text_table_model.h"
#include "widgets/undo_keys.h"
#include "widgets/window_keys.h"
#include "windows/prep/import_columns_model.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFont>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

namespace nivora {
namespace {

constexpr int k_help_topic = 76;
constexpr int k_first_button_line = 14;
constexpr int k_status_line = 18;
constexpr std::size_t k_sample_rows = 8;
// The grids share the height that is left, whatever they would like to have.
constexpr int k_columns_height = 130;
constexpr int k_refusals_height = 100;
constexpr std::array<std::optional<char>, 4> k_offered_separators{std::nullopt, ',', ';', '\t'};

/// An underlined letter ends kerning, so that a label with it is drawn wider than its hint says.
QFont font_without_kerning() {
    QFont font;
    font.setKerning(false);
    return font;
}

/// The bytes of a file, told to a progress box, which may end the reading.
ByteSource watched(ByteSource source, std::uintmax_t size, QProgressDialog& progress) {
    return [source = std::move(source), size, done = std::uintmax_t{0},
            &progress](std::span<char> room) mutable -> std::size_t {
        const std::size_t read = source(room);
        done += read;
        constexpr int k_parts = 1000;
        if (size > 0) progress.setValue(static_cast<int>(done * k_parts / std::max(size, done)));
        if (progress.wasCanceled()) throw FileError("The reading was cancelled.");
        return read;
    };
}

}  // namespace

frmTableImport::frmTableImport(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmTableImport", WindowNumber::frmTableImport, parent),
      tables_(loadable_tables(context.session.basin)),
      file_name_(make_label(QStringLiteral("lblFile"), QStringLiteral("No file is chosen."), 2, this)),
      table_(new QComboBox(this)),
      form_(new QComboBox(this)),
      field_(new QComboBox(this)),
      zone_(new QComboBox(this)),
      separator_(new QComboBox(this)),
      decimal_(new QComboBox(this)),
      dates_(new QComboBox(this)),
      missing_(new QLineEdit(this)),
      any_order_(new QCheckBox(QStringLiteral("The days may stand in any &order"), this)),
      columns_(new ImportColumnsModel(this)),
      grid_(new GridView(columns_, context.session.dialogs, this)),
      told_(make_label(QStringLiteral("lblTold"), {}, 13, this)),
      refusals_(new TextTableModel({{.header = QStringLiteral("Line"), .kind = CellFormat::Kind::Number},
                                    {.header = QStringLiteral("Why it is refused")}},
                                   this)),
      refused_(new GridView(refusals_, context.session.dialogs, this)) {
    setWindowTitle(QStringLiteral("Import a table"));
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(make_file_row());
    layout->addWidget(make_form());
    grid_->setObjectName(QStringLiteral("grdColumns"));
    grid_->setAccessibleName(QStringLiteral("Columns of the file"));
    grid_->setMinimumHeight(k_columns_height);
    grid_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    set_help(grid_, 12);
    layout->addWidget(grid_, 3);
    told_->setTextFormat(Qt::PlainText);
    told_->setWordWrap(true);
    layout->addWidget(told_);
    refused_->setObjectName(QStringLiteral("grdRefused"));
    refused_->setAccessibleName(QStringLiteral("Refused lines"));
    refused_->setMinimumHeight(k_refusals_height);
    refused_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    refused_->hide();
    set_help(refused_, 19);
    layout->addWidget(refused_, 2);
    set_content(content, make_buttons());
    explain_status_bar(k_status_line);
    close_on_escape();
    add_undo();
    form_changed();
    resize(820, 640);
}

QWidget* frmTableImport::make_file_row() {
    auto* frame = new QWidget(this);
    auto* layout = new QHBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* choose = new QPushButton(QStringLiteral("Choose &file ..."), frame);
    choose->setObjectName(QStringLiteral("cmdFile"));
    choose->setAutoDefault(false);
    set_help(choose, 1);
    file_name_->setTextFormat(Qt::PlainText);
    layout->addWidget(choose);
    layout->addWidget(file_name_, 1);
    connect(choose, &QPushButton::clicked, this, &frmTableImport::choose_file);
    set_first_focus(choose);
    return frame;
}

template <typename Widget>
Widget* frmTableImport::add_row(QFormLayout& form, const char* caption, Widget* widget, const char* name,
                                int line) {
    auto* label = make_label(QString::fromUtf8(name) + QStringLiteral("Caption"), QString::fromUtf8(caption),
                             line, this);
    label->setBuddy(widget);
    label->setFont(font_without_kerning());
    widget->setObjectName(QString::fromUtf8(name));
    set_help(widget, line);
    form.addRow(label, widget);
    return widget;
}

QWidget* frmTableImport::make_form() {
    auto* frame = new QWidget(this);
    auto* sides = new QHBoxLayout(frame);
    sides->setContentsMargins(0, 0, 0, 0);
    auto* left = new QFormLayout;
    auto* right = new QFormLayout;
    sides->addLayout(left, 1);
    sides->addLayout(right, 1);
    for (const ChosenTable& each : tables_) table_->addItem(to_qt(each.caption));
    form_->addItems({QStringLiteral("a column for each field"), QStringLiteral("a column for each zone")});
    separator_->addItems({QStringLiteral("automatic"), QStringLiteral("comma"), QStringLiteral("semicolon"),
                          QStringLiteral("tab")});
    decimal_->addItems({QStringLiteral("point"), QStringLiteral("comma")});
    dates_->setEditable(true);
    dates_->addItems({QStringLiteral("YYYY-MM-DD"), QStringLiteral("DD.MM.YYYY"),
                      QStringLiteral("MM/DD/YYYY"), QStringLiteral("DD/MM/YYYY"),
                      QStringLiteral("YYYYMMDD")});
    zone_->addItem(QStringLiteral("in a column"));
    for (int zone = 1; zone <= session().basin.ZoneCount; ++zone)
        zone_->addItem(QString::fromStdString(zone_letter(zone)));
    missing_->setPlaceholderText(QStringLiteral("such as NA, -9999"));
    add_row(*left, "&Table", table_, "cboTable", 3);
    add_row(*left, "The file &has", form_, "cboForm", 4);
    add_row(*left, "Fi&eld", field_, "cboField", 5);
    add_row(*left, "&Zone of all rows", zone_, "cboZone", 6);
    add_row(*right, "&Separator", separator_, "cboSeparator", 7);
    add_row(*right, "Decimal si&gn", decimal_, "cboDecimal", 8);
    add_row(*right, "&Dates", dates_, "cboDates", 9);
    add_row(*right, "&Missing values", missing_, "txtMissing", 10);
    any_order_->setObjectName(QStringLiteral("chkAnyOrder"));
    set_help(any_order_, 11);
    right->addRow(any_order_);
    for (QComboBox* box : {field_, zone_}) make_list_readable(*box);
    for (QComboBox* box : {table_, form_, separator_})
        connect(box, &QComboBox::currentIndexChanged, this, &frmTableImport::form_changed);
    return frame;
}

QWidget* frmTableImport::make_buttons() {
    const ButtonRow row = make_button_row({"Chec&k", "&Import", "He&lp", "Do&ne"}, k_first_button_line, this);
    check_ = row.buttons[0];
    import_ = row.buttons[1];
    for (QPushButton* button : row.buttons) button->setAutoDefault(false);
    connect(check_, &QPushButton::clicked, this, &frmTableImport::check);
    connect(import_, &QPushButton::clicked, this, &frmTableImport::load_file);
    connect(row.buttons[2], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    connect(row.buttons[3], &QPushButton::clicked, this, &QWidget::close);
    add_key(*this, Qt::Key_F1, *row.buttons[2]);
    return row.frame;
}

void frmTableImport::add_undo() {
    auto* keys = new UndoKeys(*this, {.can_undo = [this] { return columns_->can_undo(); },
                                      .can_redo = [this] { return columns_->can_redo(); },
                                      .undo = [this] { reverse(&ImportColumnsModel::undo); },
                                      .redo = [this] { reverse(&ImportColumnsModel::redo); }});
    keys->watch(*grid_);
}

/// Undoes or redoes a choice of what a column is, or of its unit.
void frmTableImport::reverse(std::optional<int> (ImportColumnsModel::*act)()) {
    grid_->commit_editor();
    const auto row = (columns_->*act)();
    if (!row) return QApplication::beep();
    grid_->go_to(columns_->index(*row, 1));
}

bool frmTableImport::is_wide() const { return form_->currentIndex() == 1; }

std::string frmTableImport::table() const {
    const int at = table_->currentIndex();
    return at < 0 ? std::string{} : tables_[static_cast<std::size_t>(at)].name;
}

void frmTableImport::choose_file() {
    if (const auto file = session().file_names.GetTableToRead()) show_file(*file);
}

void frmTableImport::show_file(const std::filesystem::path& file) {
    if (const std::string reason = unreadable_table(session().basin, file); !reason.empty()) {
        session().dialogs.stop(reason, "Import a table");
        return;
    }
    file_ = file;
    file_name_->setText(to_qt(path_text(file)));
    show_sample();
}

/// Another table, form or separator: the columns are read anew.
void frmTableImport::form_changed() {
    const QString field = field_->currentText();
    {
        const QSignalBlocker quiet(field_);
        field_->clear();
        try {
            BasinDatabase database{session().basin.Work_File, Access::ReadOnly};
            for (const std::string& name : loaded_fields(database, table())) field_->addItem(to_qt(name));
        } catch (const TableFault&) {
            // The next reading of the file says what is wrong.
        } catch (const StoreError&) {
        }
        field_->setCurrentIndex(std::max(0, field_->findText(field)));
    }
    field_->setEnabled(is_wide());
    zone_->setEnabled(!is_wide());
    show_sample();
}

void frmTableImport::show_sample() {
    refusals_->show({});
    refused_->hide();
    TableSample sample;
    ColumnMeanings meanings;
    QString fault;
    try {
        if (!file_.empty()) {
            const auto separator = static_cast<std::size_t>(std::max(0, separator_->currentIndex()));
            sample = read_sample(bytes_of_file(file_), k_offered_separators.at(separator), k_sample_rows);
            BasinDatabase database{session().basin.Work_File, Access::ReadOnly};
            meanings = column_meanings(database, table(), is_wide());
            fault = to_qt(sample.fault);
        }
    } catch (const TableFault& error) {
        fault = QStringLiteral("This can't be loaded: ") + to_qt(error.what()) + QLatin1Char('.');
    } catch (const StoreError& error) {
        fault = to_qt(error.what());
    } catch (const FileError& error) {
        fault = to_qt(error.what());
    }
    const bool usable = !sample.headers.empty() && fault.isEmpty();
    columns_->show(usable ? std::move(sample) : TableSample{}, std::move(meanings));
    grid_->fit_columns();
    check_->setEnabled(usable);
    import_->setEnabled(usable);
    tell(usable ? QStringLiteral("Say what each column is. 'Check' tells what an import would do.") : fault);
}

TableLoad frmTableImport::wanted() const {
    TableLoad load{
        .table = table(),
        .wide_field = is_wide() ? from_qt(field_->currentText()) : std::string{},
        .zone = !is_wide() && zone_->currentIndex() > 0 ? from_qt(zone_->currentText()) : std::string{},
        .form = {.separator = k_offered_separators.at(
                     static_cast<std::size_t>(std::max(0, separator_->currentIndex()))),
                 .decimal = decimal_->currentIndex() == 1 ? DecimalSign::Comma : DecimalSign::Point},
        .table_units = units_of_table(context().session.basin, table()),
        .any_order = any_order_->isChecked()};
    for (const QString& mark : missing_->text().split(QLatin1Char(','), Qt::SkipEmptyParts))
        load.form.missing.push_back(from_qt(mark.trimmed()));
    state_columns(load, columns_->choices());
    return load;
}

void frmTableImport::tell(const QString& text) { told_->setText(text); }

void frmTableImport::show_result(const LoadResult& result, bool kept) {
    std::vector<QStringList> rows;
    rows.reserve(result.refusals.size());
    for (const RefusedRow& row : result.refusals)
        rows.push_back({QString::number(row.line), to_qt(row.reason)});
    refusals_->show(std::move(rows));
    refused_->fit_columns();
    refused_->setVisible(result.refused > 0);
    const QString counts = QStringLiteral("%1 new, %2 changed, %3 equal, %4 refused")
                               .arg(result.added)
                               .arg(result.changed)
                               .arg(result.equal)
                               .arg(result.refused);
    if (result.refused > 0) {
        QString text =
            QStringLiteral("Nothing is imported while rows are refused: ") + counts + QLatin1Char('.');
        if (result.refused > static_cast<std::int64_t>(result.refusals.size()))
            text += QStringLiteral(" The first %1 are listed.").arg(result.refusals.size());
        return tell(text);
    }
    tell((kept ? QStringLiteral("Imported: ") : QStringLiteral("An import would give: ")) + counts +
         QLatin1Char('.'));
}

void frmTableImport::load_file() {
    const auto seen = check();
    if (!seen || seen->refused > 0) return;
    if (!seen->writes()) return tell(QStringLiteral("Nothing to import: the table has all of these values."));
    if (!results_may_be_lost(session())) return;
    const auto done = run(true);
    if (!done) return;
    if (done->writes()) {
        loaded_ = true;
        table_was_loaded(session());
        // Rows that the line below calls imported survive a crash from here on.
        session().desktop.keep_unsaved();
    }
    show_result(*done, true);
}

std::optional<LoadResult> frmTableImport::check() {
    const auto seen = run(false);
    if (seen) show_result(*seen, false);
    return seen;
}

/// Loads the file, or only says what a load would do. @return nothing if the file as a whole can't be loaded
std::optional<LoadResult> frmTableImport::run(bool keep) {
    grid_->commit_editor();
    TableLoad load = wanted();
    const auto pattern = DatePattern::read(from_qt(dates_->currentText().trimmed()));
    if (!pattern) {
        session().dialogs.stop("'" + from_qt(dates_->currentText()) +
                                   "' is not a pattern of dates such as DD.MM.YYYY, MM/DD/YYYY or YYYYMMDD.",
                               "Import a table");
        dates_->setFocus();
        return std::nullopt;
    }
    load.form.dates = *pattern;
    QString fault;
    try {
        std::error_code unknown;
        const std::uintmax_t size = std::filesystem::file_size(file_, unknown);
        QProgressDialog progress(QStringLiteral("Reading the file"), QStringLiteral("Cancel"), 0, 1000, this);
        progress.setWindowTitle(QStringLiteral("Import a table"));
        progress.setWindowModality(Qt::WindowModal);
        progress.setMinimumDuration(500);
        BasinDatabase database{session().basin.Work_File, Access::ReadWrite};
        return load_table(database, watched(bytes_of_file(file_), unknown ? 0 : size, progress), load, keep);
    } catch (const TableFault& error) {
        fault = to_qt(error.what()) + QLatin1Char('.');
        if (error.line() > 0) fault = QStringLiteral("Line %1: ").arg(error.line()) + fault;
    } catch (const CsvError& error) {
        fault = QStringLiteral("Line %1: %2.").arg(error.line()).arg(to_qt(error.what()));
    } catch (const StoreError& error) {
        fault = to_qt(error.what());
    } catch (const FileError& error) {
        fault = to_qt(error.what());
    }
    refusals_->show({});
    refused_->hide();
    tell(fault + QStringLiteral(" Nothing is imported."));
    return std::nullopt;
}

}  // namespace nivora
