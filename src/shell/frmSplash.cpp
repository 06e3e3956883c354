#include "shell/frmSplash.h"

#include "widgets/accessible_elements.h"
#include "widgets/content_area.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

namespace nivora {
namespace {

constexpr int k_first_steps_topic = 1;
constexpr int k_width = 560;

/// Snow-covered ridges above a stream.
class Picture : public QWidget {
public:
    explicit Picture(QWidget* parent) : QWidget(parent) {
        setMinimumSize(420, 150);
        setAccessibleName(QStringLiteral("Picture of a snow-covered mountain basin"));
        set_accessible_role(*this, QAccessible::Graphic);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QLinearGradient sky(0, 0, 0, height());
        sky.setColorAt(0, QColor(86, 140, 190));
        sky.setColorAt(1, QColor(214, 232, 242));
        painter.fillRect(rect(), sky);
        ridge(painter, 0.30, QColor(120, 140, 160),
              {0.0, 0.55, 0.2, 0.25, 0.42, 0.6, 0.65, 0.2, 0.85, 0.5, 1.0, 0.35});
        ridge(painter, 0.0, QColor(236, 243, 248),
              {0.0, 0.8, 0.18, 0.5, 0.34, 0.75, 0.52, 0.42, 0.74, 0.78, 1.0, 0.6});
        QPainterPath stream(at(0.46, 1.0));
        stream.cubicTo(at(0.5, 0.88), at(0.42, 0.8), at(0.49, 0.68));
        stream.cubicTo(at(0.48, 0.82), at(0.56, 0.88), at(0.54, 1.0));
        painter.fillPath(stream, QColor(58, 120, 176));
    }

private:
    [[nodiscard]] QPointF at(double x, double y) const { return {x * width(), y * height()}; }

    void ridge(QPainter& painter, double, const QColor& colour, const std::vector<double>& points) {
        QPainterPath path(at(0.0, 1.0));
        for (std::size_t i = 0; i + 1 < points.size(); i += 2) path.lineTo(at(points[i], points[i + 1]));
        path.lineTo(at(1.0, 1.0));
        painter.fillPath(path, colour);
    }
};

}  // namespace

const char* disclaimer_text() {
    return "Although Nivora has been tested by its developers, NO warranty, expressed or implied, is made as "
           "to the accuracy and functioning of the program and related program material nor shall the fact "
           "of distribution constitute any such warranty,  and NO responsibility is assumed by the "
           "developers in connection therewith.";
}

frmSplash::frmSplash(Session& session, bool at_start, QWidget* parent)
    : QDialog(parent),
      session_(session),
      skip_(new QCheckBox(QStringLiteral("Check here to skip this introduction in the future"), this)) {
    setObjectName(QStringLiteral("frmSplash"));
    setWindowTitle(QStringLiteral("Welcome to NVR for Windows"));
    skip_->setObjectName(QStringLiteral("Check1"));
    skip_->setChecked(!session.settings.show_splash);
    connect(skip_, &QCheckBox::toggled, this, [this](bool on) { session_.settings.show_splash = !on; });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new ContentArea(
                          make_welcome(), [this] { return room_for_welcome(); }, this),
                      1);
    layout->addWidget(skip_);
    make_buttons(layout, at_start);
    setFixedWidth(std::min(k_width, screen()->availableGeometry().width()));
    adjustSize();
    const QPoint centre = screen()->availableGeometry().center();
    if (parent == nullptr)
        move(centre - rect().center() - QPoint(0, style()->pixelMetric(QStyle::PM_TitleBarHeight) / 2));
}

/// The largest size for the text, so that the check box and the buttons below it stay on the screen.
QSize frmSplash::room_for_welcome() const {
    const QSize screen_size = screen()->availableGeometry().size();
    const int title_bar = style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const int foot = 3 * (fontMetrics().lineSpacing() + 2 * layout()->spacing());
    const QMargins margins = layout()->contentsMargins();
    return {std::min(k_width, screen_size.width()) - margins.left() - margins.right(),
            screen_size.height() - title_bar - foot - margins.top() - margins.bottom()};
}

QWidget* frmSplash::make_welcome() {
    auto* welcome = new QWidget(this);
    auto* layout = new QVBoxLayout(welcome);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* title = new QLabel(QStringLiteral("Hollin Flow Model for Windows "), welcome);
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.8);
    font.setBold(true);
    title->setFont(font);
    title->setAlignment(Qt::AlignCenter);
    auto* version = new QLabel(QStringLiteral("Version 1.00.06"), welcome);
    version->setAlignment(Qt::AlignCenter);
    auto* frame = new QGroupBox(QStringLiteral("Disclaimer"), welcome);
    auto* frame_layout = new QVBoxLayout(frame);
    auto* disclaimer = new QLabel(QString::fromUtf8(disclaimer_text()), frame);
    disclaimer->setWordWrap(true);
    disclaimer->setMinimumHeight(disclaimer->heightForWidth(k_width - 60));
    frame_layout->addWidget(disclaimer);
    layout->addWidget(title);
    layout->addWidget(version);
    layout->addWidget(new Picture(welcome), 1);
    layout->addWidget(frame);
    return welcome;
}

void frmSplash::make_buttons(QBoxLayout* layout, bool at_start) {
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    const std::array<QString, 3> captions{
        QStringLiteral("&Start"), QStringLiteral("&New User?"),
        at_start ? QStringLiteral("&Exit program") : QStringLiteral("Return to NVR")};
    for (int i = 0; i < 3; ++i) {
        auto* button = new QPushButton(captions.at(static_cast<std::size_t>(i)), this);
        button->setObjectName(QStringLiteral("Command1(%1)").arg(i));
        button->setDefault(i == 0);
        row->addWidget(button);
        connect(button, &QPushButton::clicked, this, [this, i, at_start] {
            if (i == 1) return session_.desktop.show_help_topic(k_first_steps_topic);
            leaves_ = i == 2 && at_start;
            accept();
        });
    }
    layout->addLayout(row);
}

void frmSplash::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F1) return session_.desktop.show_help_topic(k_first_steps_topic);
    QDialog::keyPressEvent(event);
}

}  // namespace nivora
