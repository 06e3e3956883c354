#include "shell/frmAbout.h"

#include "shell/frmSplash.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace nivora {

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About the Hollin Flow Model for Windows"));
    auto* layout = new QVBoxLayout(this);
    const auto line = [&](const QString& text) {
        auto* label = new QLabel(text, this);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextBrowserInteraction);
        label->setOpenExternalLinks(true);
        layout->addWidget(label);
        return label;
    };
    QLabel* title = line(QStringLiteral("Hollin Flow Model for Windows "));
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    title->setFont(font);
    line(QStringLiteral("32-bit Window Based Application"));
    line(QStringLiteral("Version ") + QStringLiteral(NIVORA_VERSION));
    line(QStringLiteral(
        "Simulates and forecasts the daily streamflow of mountain basins in which melting snow is a major "
        "source of runoff, and evaluates how a changed climate would alter the seasonal snow cover and the "
        "runoff."));
    line(QStringLiteral("Contact: <a href=\"mailto:nivora@example.org\">nivora@example.org</a>"));
    line(QString::fromUtf8(disclaimer_text()));
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* close_button = buttons->addButton(QStringLiteral("Close"), QDialogButtonBox::AcceptRole);
    close_button->setObjectName(QStringLiteral("Command1"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
    setFixedWidth(480);
}

}  // namespace nivora
