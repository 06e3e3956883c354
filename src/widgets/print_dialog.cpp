#include "widgets/print_dialog.h"

#include "widgets/desktop_printers.h"
#include "widgets/qt_text.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

namespace nivora {
namespace {

constexpr int k_target_role = Qt::UserRole;

void add_target(QComboBox& box, const QString& text, PrintTarget target) {
    box.addItem(text, static_cast<int>(target));
}

/// A note that no printer exists, or that the last one is gone; otherwise empty.
QString note_on(const QStringList& printers, const std::string& kept) {
    if (printers.isEmpty())
        return QStringLiteral("The system has no printer. A PDF file can be printed elsewhere.");
    if (!kept.empty() && kept_printer(printers, kept) < 0)
        return QStringLiteral("The printer \"%1\" that was used before is not there any more.")
            .arg(to_qt(kept));
    return {};
}

}  // namespace

PrintDialog::PrintDialog(const QStringList& printers, const PrintOffer& offer, QWidget* parent)
    : QDialog(parent),
      target_(new QComboBox(this)),
      options_(new QPushButton(this)),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Cancel, this)) {
    setObjectName(QStringLiteral("PrintDialog"));
    setWindowTitle(QStringLiteral("Print"));
    target_->setObjectName(QStringLiteral("cboPrintTo"));
    for (const QString& name : printers) add_target(*target_, name, PrintTarget::Printer);
    if (!printers.isEmpty()) target_->insertSeparator(target_->count());
    add_target(*target_, QStringLiteral("PDF file"), PrintTarget::Pdf);
    if (offer.text) add_target(*target_, QStringLiteral("Text file"), PrintTarget::Text);
    const int kept = kept_printer(printers, offer.page.printer);
    int first = kept < 0 ? 0 : kept;
    const bool text_alone = offer.target == PrintTarget::Text && !offer.text;
    const PrintTarget target = text_alone ? PrintTarget::Pdf : offer.target;
    if (target != PrintTarget::Printer) first = target_->findData(static_cast<int>(target), k_target_role);
    target_->setCurrentIndex(first);

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Print &to:"), target_);
    auto* note = new QLabel(note_on(printers, offer.page.printer), this);
    note->setObjectName(QStringLiteral("lblPrinters"));
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    note->setVisible(!note->text().isEmpty());
    auto* print = buttons_->addButton(QStringLiteral("&Print"), QDialogButtonBox::AcceptRole);
    print->setObjectName(QStringLiteral("cmdPrint"));
    print->setDefault(true);
    options_->setText(QStringLiteral("&Options..."));
    options_->setObjectName(QStringLiteral("cmdOptions"));
    options_->setAutoDefault(false);
    options_->setToolTip(QStringLiteral("Copies and all other options of the printer"));
    buttons_->addButton(options_, QDialogButtonBox::ActionRole);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(note);
    layout->addStretch(1);
    layout->addWidget(buttons_);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(options_, &QPushButton::clicked, this, &PrintDialog::options_wanted);
    connect(target_, &QComboBox::currentIndexChanged, this, &PrintDialog::target_chosen);
    target_chosen();
    constexpr int k_width = 420;
    resize(k_width, sizeHint().height());
}

PrintTarget PrintDialog::target() const {
    return static_cast<PrintTarget>(target_->currentData(k_target_role).toInt());
}

QString PrintDialog::printer() const {
    return target() == PrintTarget::Printer ? target_->currentText() : QString{};
}

/// Each system has its own order of buttons, which is known once they have their places: Tab goes along it.
void PrintDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    QList<QAbstractButton*> order = buttons_->buttons();
    std::sort(order.begin(), order.end(),
              [](const auto* one, const auto* other) { return one->x() < other->x(); });
    buttons_->setFocusProxy(nullptr);  // it would lead from the button before it back to the default button
    QWidget* before = target_;
    for (QAbstractButton* button : order) {
        setTabOrder(before, button);
        before = button;
    }
}

void PrintDialog::target_chosen() { options_->setEnabled(target() == PrintTarget::Printer); }

}  // namespace nivora
