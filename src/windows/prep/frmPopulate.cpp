#include "windows/prep/frmPopulate.h"

#include "prep/daily_records.h"
#include "widgets/controls.h"
#include "widgets/qt_text.h"
#include "widgets/window_keys.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace nivora {
namespace {

constexpr int k_help_topic = 3;

}  // namespace

frmPopulate::frmPopulate(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmPopulate", WindowNumber::frmPopulate, parent) {
    setWindowTitle(QStringLiteral("Populate physical data table"));
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    auto* asking =
        make_label(QStringLiteral("Label2(2)"),
                   QStringLiteral("Enter the starting and ending dates for the period for which data are "
                                  "available in this basin"),
                   2, content);
    asking->setWordWrap(true);
    layout->addWidget(asking);
    layout->addWidget(make_dates());
    layout->addStretch(1);
    const ButtonRow row =
        make_button_row({"&Accept dates", "&Continue without populating", "&Help"}, 5, content);
    layout->addWidget(row.frame);
    set_content(content);
    connect(row.buttons[0], &QPushButton::clicked, this, &frmPopulate::accept);
    connect(row.buttons[1], &QPushButton::clicked, this, &QWidget::close);
    connect(row.buttons[2], &QPushButton::clicked, this,
            [this] { session().desktop.show_help_topic(k_help_topic); });
    add_key(*this, Qt::Key_F1, *row.buttons[2]);
    set_default_button(row.buttons[0]);
    close_on_escape();
    resize(520, 260);
}

QWidget* frmPopulate::make_dates() {
    auto* frame = new QWidget(this);
    auto* grid = new QGridLayout(frame);
    constexpr std::array<const char*, 2> k_labels{"Starting date (mm/dd/yyyy)", "Ending date (mm/dd/yyyy)"};
    constexpr std::array<const char*, 2> k_proposed{"01/01/1990", "12/31/1990"};
    for (int i = 0; i < 2; ++i) {
        const auto index = static_cast<std::size_t>(i);
        auto* box = make_date_box(QStringLiteral("MaskEdBox1(%1)").arg(i), 3 + i, frame);
        box->setText(QString::fromUtf8(k_proposed.at(index)));
        auto* label = make_label(QStringLiteral("Label2(%1)").arg(i), QString::fromUtf8(k_labels.at(index)),
                                 3 + i, frame);
        label->setBuddy(box);
        grid->addWidget(label, i, 0, Qt::AlignRight);
        grid->addWidget(box, i, 1);
        dates_.at(index) = box;
    }
    grid->setColumnStretch(2, 1);
    return frame;
}

void frmPopulate::accept() {
    std::array<std::optional<DayCount>, 2> dates;
    for (std::size_t i = 0; i < dates.size(); ++i) {
        dates.at(i) = read_date(from_qt(dates_.at(i)->text()));
        if (dates.at(i)) continue;
        refuse(dates_.at(i),
               {.text = "'" + from_qt(dates_.at(i)->text()) +
                        "' is not a date. Give month, day and year as mm/dd/yyyy, from 1900 to 2300.",
                .icon = Icon::Stop});
        dates_.at(i)->setFocus();
        return;
    }
    if (*dates[1] < *dates[0]) {
        refuse(dates_[1], {.text = "The ending date lies before the starting date.", .icon = Icon::Stop});
        dates_[1]->setFocus();
        return;
    }
    PrepState& prep = session().prep;
    prep.Data_View = DataView::PhysicalData;
    prep.Daily_Start = *dates[0];
    prep.Daily_End = *dates[1];
    try {
        BasinDatabase database{session().basin.Work_File, Access::ReadWrite};
        Build_Daily_Records({session().basin, prep, session().dialogs}, database);
        prep.record = Scan_Physical_Data(database);
    } catch (const StoreError& error) {
        session().dialogs.stop(error.what());
        return;
    }
    close();
}

}  // namespace nivora
