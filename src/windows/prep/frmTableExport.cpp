#include "windows/prep/frmTableExport.h"

#include "base/durable_file.h"
#include "widgets/busy_pointer.h"
#include "widgets/controls.h"
#include "widgets/qt_text.h"
#include "widgets/window_keys.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFont>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace nivora {
namespace {

constexpr int k_help_topic = 77;
constexpr int k_first_button_line = 3;
constexpr int k_status_line = 7;

}  // namespace

frmTableExport::frmTableExport(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmTableExport", WindowNumber::frmTableExport, parent),
      tables_(writable_tables(context.session.basin)),
      table_(new QComboBox(this)),
      units_(new QCheckBox(QStringLiteral("&Units behind the names of the columns"), this)),
      told_(make_label(QStringLiteral("lblTold"), {}, 6, this)) {
    setWindowTitle(QStringLiteral("Export a table"));
    for (const ChosenTable& each : tables_) table_->addItem(to_qt(each.caption));
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    auto* form = new QFormLayout;
    auto* label = make_label(QStringLiteral("cboTableCaption"), QStringLiteral("&Table"), 1, this);
    label->setBuddy(table_);
    // An underlined letter ends kerning, so that the label is drawn wider than its hint would say.
    QFont font;
    font.setKerning(false);
    label->setFont(font);
    table_->setObjectName(QStringLiteral("cboTable"));
    set_help(table_, 1);
    form->addRow(label, table_);
    layout->addLayout(form);
    units_->setObjectName(QStringLiteral("chkUnits"));
    units_->setChecked(true);
    set_help(units_, 2);
    layout->addWidget(units_);
    told_->setTextFormat(Qt::PlainText);
    told_->setWordWrap(true);
    layout->addWidget(told_, 1);
    const ButtonRow row = make_button_row({"&Export ...", "&Help", "&Done"}, k_first_button_line, this);
    set_content(content, row.frame);
    explain_status_bar(k_status_line);
    set_first_focus(table_);
    set_default_button(row.buttons[0]);
    close_on_escape();
    connect(row.buttons[0], &QPushButton::clicked, this, &frmTableExport::write);
    connect(row.buttons[1], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    connect(row.buttons[2], &QPushButton::clicked, this, &QWidget::close);
    add_key(*this, Qt::Key_F1, *row.buttons[1]);
    resize(480, 240);
}

void frmTableExport::write() {
    const ChosenTable& chosen = tables_.at(static_cast<std::size_t>(std::max(0, table_->currentIndex())));
    const auto file = session().file_names.GetTableToWrite(session().basin, chosen.name);
    if (!file) return;
    try {
        const BusyPointer busy;
        write_table(session().basin, chosen.name, units_->isChecked(), *file);
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what(), "Export a table");
        return;
    } catch (const FileError& error) {
        session().dialogs.stop(error.what(), "Export a table");
        return;
    }
    told_->setText(QStringLiteral("Written: ") + to_qt(path_text(*file)));
}

}  // namespace nivora
