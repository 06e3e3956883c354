#include "windows/plots/frmColorDef.h"

#include "widgets/colours.h"
#include "widgets/qt_text.h"
#include "windows/plots/colour_field.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace nivora {
namespace {

constexpr int k_first_field_help = 1;
constexpr int k_sample_help = 3;
constexpr int k_first_button_help = 4;
constexpr int k_sample_margin = 6;
constexpr int k_least_width = 360;

}  // namespace

frmColorDef::frmColorDef(const WindowContext& context, Colours& colours, QWidget* parent)
    : QDialog(parent),
      session_(context.session),
      colours_(colours),
      texts_(Load_QuickHelp(context.program_folder, "frmColorDef")),
      chosen_(strip_colours(context.session.settings, *style())),
      sample_(new QLabel(
          QStringLiteral("The quickhelp text for Tarnlog-7 will appear as demonstrated in this box."),
          this)) {
    setObjectName(QStringLiteral("frmColorDef"));
    setWindowTitle(QStringLiteral("QuickHelp Color Definition"));
    sample_->setObjectName(QStringLiteral("lblSample"));
    sample_->setWordWrap(true);
    sample_->setFrameShape(QFrame::StyledPanel);
    sample_->setMargin(k_sample_margin);
    sample_->setAutoFillBackground(true);
    sample_->setBackgroundRole(QPalette::Base);
    sample_->setForegroundRole(QPalette::Text);
    explain(sample_, k_sample_help);
    auto* layout = new QVBoxLayout(this);
    auto* fields = new QHBoxLayout;
    for (int index = 0; index < 2; ++index) fields->addWidget(make_field(index));
    layout->addLayout(fields);
    layout->addWidget(sample_, 1);
    layout->addWidget(make_buttons());
    setMinimumWidth(k_least_width);  // for its title
    show_colours();
}

QWidget* frmColorDef::make_field(int index) {
    auto* frame = new QWidget(this);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    const QString caption =
        index == 0 ? QStringLiteral("Foreground Color:") : QStringLiteral("Background Color:");
    layout->addWidget(new QLabel(caption, frame));
    auto* field = new ColourField(QStringLiteral("Picture2(%1)").arg(index), frame);
    field->setAccessibleName(caption);
    explain(field, k_first_field_help + index);
    layout->addWidget(field);
    connect(field, &QAbstractButton::clicked, this, [this, index] { choose(index); });
    fields_.at(static_cast<std::size_t>(index)) = field;
    return frame;
}

QWidget* frmColorDef::make_buttons() {
    auto* frame = new QWidget(this);
    auto* layout = new QHBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch(1);
    int index = 0;
    for (const QString& caption : {QStringLiteral("Accept"), QStringLiteral("Cancel")}) {
        auto* button = new QPushButton(caption, frame);
        button->setObjectName(QStringLiteral("Command1(%1)").arg(index));
        button->setDefault(index == 0);
        explain(button, k_first_button_help + index);
        layout->addWidget(button);
        const bool accepts = index == 0;
        connect(button, &QPushButton::clicked, this, [this, accepts] {
            if (accepts) {
                session_.settings.quick_help_fore = chosen_.fore;
                session_.settings.quick_help_back = chosen_.back;
            }
            done(accepts ? Accepted : Rejected);
        });
        ++index;
    }
    return frame;
}

void frmColorDef::show_colours() {
    fields_[0]->show_fill({.colour = chosen_.fore});
    fields_[1]->show_fill({.colour = chosen_.back});
    sample_->setPalette(strip_palette(chosen_, *style()));
}

void frmColorDef::choose(int index) {
    std::int32_t& colour = index == 0 ? chosen_.fore : chosen_.back;
    const std::int32_t answer = colours_.Choose_Color(this, colour);
    if (answer == Colours::k_cancelled) return;
    colour = answer;
    show_colours();
}

/// Without its file of texts an element has no tool tip.
void frmColorDef::explain(QWidget* element, int line) {
    if (static_cast<std::size_t>(line) < texts_.lines.size()) element->setToolTip(to_qt(texts_.line(line)));
}

}  // namespace nivora
