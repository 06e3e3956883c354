#include "windows/plots/frmLineAtt.h"

#include "widgets/accessible_elements.h"
#include "widgets/colours.h"
#include "widgets/controls.h"
#include "widgets/window_keys.h"
#include "windows/plots/colour_field.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolButton>

namespace nivora {
namespace {

constexpr int k_help_topic = 13;
constexpr int k_line_help = 1;
constexpr int k_style_help = 2;
constexpr int k_width_help = 3;
constexpr int k_colour_help = 4;
constexpr int k_picker_help = 5;
constexpr int k_fill_help = 6;
constexpr int k_sample_help = 7;
constexpr int k_first_button_help = 8;

/// The line of a spin box can be named only from inside its class.
class NumberBox : public QSpinBox {
public:
    NumberBox(int number, const QString& caption, int help, QWidget* parent) : QSpinBox(parent) {
        setObjectName(QStringLiteral("UpDown%1").arg(number));
        lineEdit()->setObjectName(QStringLiteral("Label%1").arg(number + 2));
        setAccessibleName(caption);
        lineEdit()->setAccessibleName(caption);
        NivoraWindow::set_help(this, help);
    }
};

QComboBox* make_list(int number, std::initializer_list<const char*> entries, int help, QWidget* parent) {
    auto* list = new QComboBox(parent);
    list->setObjectName(QStringLiteral("Combo%1").arg(number));
    for (const char* entry : entries) list->addItem(QString::fromUtf8(entry));
    NivoraWindow::set_help(list, help);
    return list;
}

/// Four colours, as a picture for the button that chooses one.
QIcon four_colours() {
    constexpr int k_side = 64;  // Qt makes it smaller, for a screen of any density
    constexpr int k_half = k_side / 2;
    QPixmap picture(k_side, k_side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.fillRect(0, 0, k_half - 2, k_half - 2, QColor(200, 60, 50));
    painter.fillRect(k_half + 2, 0, k_half - 2, k_half - 2, QColor(60, 150, 70));
    painter.fillRect(0, k_half + 2, k_half - 2, k_half - 2, QColor(50, 100, 190));
    painter.fillRect(k_half + 2, k_half + 2, k_half - 2, k_half - 2, QColor(230, 180, 50));
    return picture;
}

QLabel* make_caption(const QString& text, int help, QWidget* parent) {
    auto* caption = new QLabel(text, parent);
    NivoraWindow::set_help(caption, help);
    return caption;
}

}  // namespace

frmLineAtt::frmLineAtt(const WindowContext& context, Colours& colours, const LineQuestion& question,
                       QWidget* parent)
    : NivoraWindow(context, "frmLineAtt", WindowNumber::frmLineAtt, parent),
      edit_(context.session.settings.lines, question.edited_line, question.curves),
      colours_(colours),
      fills_(question.fills) {
    setWindowTitle(QStringLiteral("Line Attributes"));
    auto* content = new QWidget(this);
    auto* rows = new QFormLayout(content);
    rows->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    make_line_controls(*rows);
    make_colour_controls(*rows);
    make_fill_control(*rows);
    sample_ = new LineSample(QStringLiteral("Picture1"), content);
    sample_->setAccessibleName(QStringLiteral("Sample of the line"));
    set_accessible_role(*sample_, QAccessible::Graphic);
    set_help(sample_, k_sample_help);
    rows->addRow(sample_);
    set_content(content, make_buttons());
    connect_controls();
    close_on_escape();
    show_line();
    adjustSize();
}

void frmLineAtt::make_line_controls(QFormLayout& rows) {
    QWidget* content = rows.parentWidget();
    const QString line = QStringLiteral("Line Number:");
    line_ = new NumberBox(1, line, k_line_help, content);
    line_->setRange(1, edit_.curves());
    line_->setKeyboardTracking(false);  // a number of two digits shows one line, not two
    rows.addRow(make_caption(line, k_line_help, content), line_);
    const QString style = QStringLiteral("Line Style:");
    style_ = make_list(1, {"Solid", "Dash", "Dot", "Dash-Dot", "Dash-Dot-Dot"}, k_style_help, content);
    style_->setAccessibleName(style);
    rows.addRow(make_caption(style, k_style_help, content), style_);
    const QString width = QStringLiteral("Line Width:");
    width_ = new NumberBox(2, width, k_width_help, content);
    width_->setRange(1, k_widest_line);
    rows.addRow(make_caption(width, k_width_help, content), width_);
}

void frmLineAtt::make_colour_controls(QFormLayout& rows) {
    QWidget* content = rows.parentWidget();
    const QString caption = QStringLiteral("Color:");
    colour_ = new ColourField(QStringLiteral("Picture2"), content);
    colour_->setAccessibleName(caption);
    colour_->setToolTip(QStringLiteral("Current line color.  Click to change."));
    set_help(colour_, k_colour_help);
    auto* picker = new QToolButton(content);
    picker->setObjectName(QStringLiteral("Image1"));
    picker->setIcon(four_colours());
    picker->setAccessibleName(QStringLiteral("Click to change colors"));
    picker->setToolTip(QStringLiteral("Click to change colors"));
    set_help(picker, k_picker_help);
    auto* both = new QHBoxLayout;
    both->addWidget(colour_, 1);
    both->addWidget(picker);
    rows.addRow(make_caption(caption, k_colour_help, content), both);
    for (QAbstractButton* button :
         {static_cast<QAbstractButton*>(colour_), static_cast<QAbstractButton*>(picker)})
        connect(button, &QAbstractButton::clicked, this, &frmLineAtt::choose_colour);
}

void frmLineAtt::make_fill_control(QFormLayout& rows) {
    QWidget* content = rows.parentWidget();
    fill_ = make_list(2,
                      {"Solid", "Transparent", "HorizontalLine", "VerticalLine", "UpwardDiagonal",
                       "DownwardDiagonal", "Cross", "DiagonalCross"},
                      k_fill_help, content);
    QLabel* caption =
        make_label(QStringLiteral("Label2"), QStringLiteral("&Fill Style:"), k_fill_help, content);
    caption->setBuddy(fill_);
    rows.addRow(caption, fill_);
    rows.setRowVisible(fill_, fills_);
}

QWidget* frmLineAtt::make_buttons() {
    const ButtonRow row = make_button_row({"&Done", "&Cancel", "&Help"}, k_first_button_help, this);
    connect(row.buttons[0], &QPushButton::clicked, this, &frmLineAtt::finish);
    connect(row.buttons[1], &QPushButton::clicked, this, &QWidget::close);
    connect(row.buttons[2], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    add_key(*this, Qt::Key_F1, *row.buttons[2]);
    set_default_button(row.buttons[0]);
    return row.frame;
}

void frmLineAtt::connect_controls() {
    connect(line_, &QSpinBox::valueChanged, this, [this](int line) {
        edit_.go_to(line);
        show_line();
    });
    connect(style_, &QComboBox::currentIndexChanged, this, [this](int style) {
        edit_.set_style(style);
        show_samples();
    });
    connect(width_, &QSpinBox::valueChanged, this, [this](int width) {
        edit_.set_width(width);
        show_samples();
    });
    connect(fill_, &QComboBox::currentIndexChanged, this, [this](int fill) {
        edit_.set_fill(fill);
        show_samples();
    });
}

void frmLineAtt::show_line() {
    const LineAttribute line = edit_.shown();
    const QSignalBlocker quiet_line(line_);
    const QSignalBlocker quiet_style(style_);
    const QSignalBlocker quiet_width(width_);
    const QSignalBlocker quiet_fill(fill_);
    line_->setValue(edit_.line());
    style_->setCurrentIndex(line.style);
    width_->setValue(line.width);
    fill_->setCurrentIndex(line.fill);
    show_samples();
}

void frmLineAtt::show_samples() {
    style_->setEnabled(edit_.has_style());
    sample_->show_pen(edit_.pen());
    const LineAttribute& line = edit_.shown();
    colour_->show_fill({.colour = line.colour, .style = fills_ ? line.fill : k_solid_fill});
}

void frmLineAtt::choose_colour() {
    const std::int32_t colour = colours_.Choose_Color(this, edit_.shown().colour);
    if (colour == Colours::k_cancelled) return;
    edit_.set_colour(colour);
    show_samples();
}

void frmLineAtt::finish() {
    line_->interpretText();
    width_->interpretText();
    session().settings.lines = edit_.lines();
    edited_line_ = edit_.line();
    close();
}

}  // namespace nivora
