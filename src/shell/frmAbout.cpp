#include "shell/frmAbout.h"

#include "base/build_details.h"
#include "base/version.h"
#include "shell/frmSplash.h"
#include "widgets/content_area.h"
#include "widgets/readable_palette.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

namespace nivora {
namespace {

constexpr int k_width = 480;

/// Commit, compiler, libraries and licences, for a report of a fault.
QWidget* make_details(QWidget* parent) {
    auto* details = new QPlainTextEdit(QString::fromStdString(version_details()).trimmed(), parent);
    details->setObjectName(QStringLiteral("details"));
    details->setAccessibleName(QStringLiteral("What the program is made from"));
    details->setReadOnly(true);
    details->setTabChangesFocus(true);
    details->setLineWrapMode(QPlainTextEdit::NoWrap);
    details->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    details->setFixedHeight(9 * details->fontMetrics().lineSpacing());
    return details;
}

}  // namespace

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About the Hollin Flow Model for Windows"));
    auto* about = new QWidget(this);
    auto* layout = new QVBoxLayout(about);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto line = [&](const QString& text) {
        auto* label = new QLabel(text, about);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextBrowserInteraction);
        label->setOpenExternalLinks(true);
        make_links_readable(*label, QPalette::Window);
        layout->addWidget(label);
        return label;
    };
    QLabel* title = line(QStringLiteral("Hollin Flow Model for Windows "));
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    title->setFont(font);
    line(QStringLiteral("32-bit Window Based Application"));
    line(QStringLiteral("Version ") + QString::fromUtf8(k_version));
    line(QStringLiteral(
        "Simulates and forecasts the daily streamflow of mountain basins in which melting snow is a major "
        "source of runoff, and evaluates how a changed climate would alter the seasonal snow cover and the "
        "runoff."));
    line(QStringLiteral("Contact: <a href=\"mailto:nivora@example.org\">nivora@example.org</a>"));
    line(QString::fromUtf8(disclaimer_text()));
    layout->addWidget(make_details(about));
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* close_button = buttons->addButton(QStringLiteral("Close"), QDialogButtonBox::AcceptRole);
    close_button->setObjectName(QStringLiteral("Command1"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto* around = new QVBoxLayout(this);
    const auto room = [this] { return screen()->availableGeometry().size() * 3 / 4; };
    around->addWidget(new ContentArea(about, room, this), 1);
    around->addWidget(buttons);
    setFixedWidth(std::min(k_width, screen()->availableGeometry().width()));
    resize(sizeHint());
}

}  // namespace nivora
