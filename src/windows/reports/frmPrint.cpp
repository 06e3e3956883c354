#include "windows/reports/frmPrint.h"

#include "base/calendar.h"
#include "widgets/busy_pointer.h"
#include "widgets/controls.h"
#include "widgets/qt_text.h"
#include "widgets/window_keys.h"
#include "windows/reports/frmFileDisp.h"
#include "windows/reports/report_printing.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <utility>

namespace nivora {
namespace {

constexpr int k_help_topic = 9;
constexpr int k_first_box_help = 1;
constexpr int k_first_destination_help = 13;
constexpr int k_destinations_help = 15;
constexpr int k_first_button_help = 16;
constexpr int k_list_help = 20;
constexpr int k_hint_help = 21;
constexpr int k_status_help = 24;
constexpr int k_spare_boxes = 3;

QCheckBox* make_box(int index, const QString& caption, QWidget* parent) {
    auto* box = new QCheckBox(caption, parent);
    box->setObjectName(QStringLiteral("Check1(%1)").arg(index));
    NivoraWindow::set_help(box, k_first_box_help + index);
    return box;
}

}  // namespace

frmPrint::frmPrint(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmPrint", WindowNumber::frmPrint, parent),
      choice_(context.session.basin, context.session.run) {
    setWindowTitle(QStringLiteral("Output Definition"));
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(make_boxes());
    layout->addWidget(make_destinations());
    layout->addStretch(1);
    const ButtonRow row = make_button_row({"&Close", "&Print", "&All", "&Help"}, k_first_button_help, this);
    make_buttons(row.buttons);
    set_content(content, row.frame);
    explain_status_bar(k_status_help);
    set_first_focus(boxes_.front());
    set_default_button(produce_);
    close_on_escape();
    show_choice();
    adjustSize();
}

QGroupBox* frmPrint::make_boxes() {
    auto* frame = new QGroupBox(QStringLiteral("Available Reports: "), this);
    frame->setObjectName(QStringLiteral("Frame1"));
    set_help(frame, k_list_help);
    auto* layout = new QVBoxLayout(frame);
    for (const Report report : k_all_reports) {
        const int index = static_cast<int>(report);
        QCheckBox* box = make_box(index, to_qt(choice_.caption(report)), frame);
        if (!choice_.is_enabled(report)) box->setToolTip(to_qt(report_condition(report)));
        layout->addWidget(box);
        boxes_.at(static_cast<std::size_t>(index)) = box;
        connect(box, &QCheckBox::toggled, this, [this, report](bool on) {
            choice_.tick(report, on);
            show_choice();
        });
    }
    for (int spare = k_reports; spare < k_reports + k_spare_boxes; ++spare)
        make_box(spare, QStringLiteral("unused"), frame)->hide();
    auto* hint = make_label(QStringLiteral("Label3"),
                            QStringLiteral("Select 1/more reports from this list.  Choose a print "
                                           "destination, then click 'Print' to produce the report(s)."),
                            k_hint_help, frame);
    hint->setWordWrap(true);
    layout->addSpacing(layout->spacing());
    layout->addWidget(hint);
    return frame;
}

QGroupBox* frmPrint::make_destinations() {
    auto* frame = new QGroupBox(QStringLiteral("Print To:  "), this);
    frame->setObjectName(QStringLiteral("Frame2"));
    set_help(frame, k_destinations_help);
    auto* layout = new QVBoxLayout(frame);
    int index = 0;
    for (const char* caption : {"Printer/File", "Report Viewer"}) {
        auto* button = new QRadioButton(QString::fromUtf8(caption), frame);
        button->setObjectName(QStringLiteral("Option1(%1)").arg(index));
        set_help(button, k_first_destination_help + index);
        layout->addWidget(button);
        destinations_.at(static_cast<std::size_t>(index)) = button;
        connect(button, &QRadioButton::toggled, this, [this] { show_choice(); });
        ++index;
    }
    const QSignalBlocker quiet(destinations_.front());
    destinations_.front()->setChecked(true);
    return frame;
}

void frmPrint::make_buttons(const std::vector<QPushButton*>& buttons) {
    produce_ = buttons[1];
    all_ = buttons[2];
    connect(buttons[0], &QPushButton::clicked, this, &QWidget::close);
    connect(produce_, &QPushButton::clicked, this, &frmPrint::produce);
    connect(all_, &QPushButton::clicked, this, [this] {
        choice_.tick_or_clear_all();
        show_choice();
    });
    connect(buttons[3], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    add_key(*this, Qt::Key_F1, *buttons[3]);
}

ReportDestination frmPrint::destination() const {
    return destinations_.back()->isChecked() ? ReportDestination::Viewer : ReportDestination::Printer;
}

void frmPrint::show_choice() {
    for (const Report report : k_all_reports) {
        QCheckBox* box = boxes_.at(static_cast<std::size_t>(report));
        const QSignalBlocker quiet(box);
        box->setEnabled(choice_.is_enabled(report));
        box->setChecked(choice_.is_ticked(report));
    }
    const bool any = choice_.is_any_ticked();
    for (QRadioButton* button : destinations_) button->setEnabled(any);
    produce_->setEnabled(any);
    produce_->setText(QString::fromUtf8(produce_caption(destination())));
    all_->setText(QString::fromUtf8(choice_.all_caption()));
}

void frmPrint::produce() {
    const std::vector<Report> reports = choice_.ticked();
    if (reports.empty()) return;
    ReportFileOutcome outcome;
    {
        const BusyPointer busy;
        outcome = write_report_file(session(), context().writable_folder(), reports, local_now());
    }
    if (outcome.problem) {
        session().dialogs.message(*outcome.problem);
        return;
    }
    if (destination() == ReportDestination::Printer)
        return print_report_file(context(), this, *outcome.file, true);
    view(std::move(*outcome.file),
         display_title(reports, reported_climate_step(session().basin, session().run)));
}

void frmPrint::view(ReportFile file, const std::string& title) {
    frmFileDisp display(context(), nullptr);
    display.show_report_file(std::move(file), title);
    display.show_modal();
}

}  // namespace nivora
