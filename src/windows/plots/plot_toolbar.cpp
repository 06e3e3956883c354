#include "windows/plots/plot_toolbar.h"

#include "widgets/nivora_window.h"
#include "widgets/qt_text.h"
#include "widgets/readable_palette.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMouseEvent>
#include <QStandardItemModel>
#include <QToolButton>

namespace nivora {
namespace {

constexpr int k_first_button_help = 2;
constexpr int k_plots_help = 11;
constexpr int k_zones_help = 13;
constexpr int k_x_help = 15;
constexpr int k_y_help = 17;
constexpr int k_redraw_help = 19;
constexpr int k_help_help = 20;

constexpr int k_picture_points = 20;
/// The least width of the lists, in characters; with more room they grow.
constexpr int k_plot_characters = 8;
constexpr int k_zone_characters = 4;
constexpr int k_box_characters = 10;

constexpr const char* k_show_points = "Show data points";
constexpr const char* k_hide_points = "Hide data points";

void enable_entry(QComboBox& list, int index, bool enabled) {
    auto* model = qobject_cast<QStandardItemModel*>(list.model());
    QStandardItem* entry = model->item(index);
    entry->setFlags(enabled ? entry->flags() | Qt::ItemIsEnabled : entry->flags() & ~Qt::ItemIsEnabled);
}

void add_entry(QComboBox& list, const std::string& text, bool enabled) {
    list.addItem(to_qt(text));
    const int last = list.count() - 1;
    list.setItemData(last, to_qt(text), Qt::ToolTipRole);
    enable_entry(list, last, enabled);
}

}  // namespace

PlotToolbar::PlotToolbar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("Graphtools"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    int help = k_first_button_help;
    add_button(*row, ToolPicture::SaveAs, "SaveAs", "Save As", help++);
    add_button(*row, ToolPicture::Print, "Print", "Print", help++);
    add_button(*row, ToolPicture::Copy, "Copy", "Copy to Clipboard", help++);
    row->addSpacing(4);
    add_button(*row, ToolPicture::ZoomIn, "ZoomIn", "Zoom In", help++);
    add_button(*row, ToolPicture::ZoomOut, "ZoomOut", "Zoom Out", help++);
    row->addSpacing(4);
    add_button(*row, ToolPicture::LineAttributes, "LineAtt", "Line Attributes", help++);
    add_button(*row, ToolPicture::GridLines, "GridLn", "Grid Lines", help++);
    add_button(*row, ToolPicture::ShowData, "Showdata", k_show_points, help++);
    row->addSpacing(4);
    plots_ = add_list(*row, "PlotList", "Select a plot from those currently available.", k_plot_characters,
                      k_plots_help);
    plots_->setPlaceholderText(QStringLiteral("Choose a plot"));
    zones_ = add_list(*row, "ZoneList", "Zones to Plot", k_zone_characters, k_zones_help);
    row->setStretchFactor(plots_, 3);
    row->setStretchFactor(zones_, 1);
    row->addSpacing(4);
    x_maximum_ = add_box(*row, "bartext1", "X:", "Maximum X for this plot.  Change if rescaling is desired.",
                         k_x_help);
    y_maximum_ = add_box(*row, "bartext2", "Y:", "Maximum Y for this plot.  Change if rescaling is desired.",
                         k_y_help);
    QToolButton* redraw = add_button(*row, ToolPicture::Redraw, "Redraw", "Redraw", k_redraw_help);
    QSizePolicy kept = redraw->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    redraw->setSizePolicy(kept);
    redraw->hide();
    add_button(*row, ToolPicture::Help, "Help", "Help for Graphics WIndow", k_help_help);
    connect(plots_, &QComboBox::activated, this, [this](int index) { emit plot_chosen(index + 1); });
    connect(zones_, &QComboBox::activated, this, [this](int index) { emit zone_chosen(index + 1); });
    show_pictures();
    show_tools({});
}

QToolButton* PlotToolbar::add_button(QHBoxLayout& row, ToolPicture tool, const char* name, const char* tip,
                                     int help) {
    auto* button = new QToolButton(this);
    button->setObjectName(QString::fromUtf8(name));
    button->setToolTip(QString::fromUtf8(tip));
    button->setAccessibleName(QString::fromUtf8(tip));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setIconSize(QSize(k_picture_points, k_picture_points));
    NivoraWindow::set_help(button, help);
    connect(button, &QToolButton::clicked, this, [this, tool] { emit pressed(tool); });
    row.addWidget(button);
    buttons_[tool] = button;
    return button;
}

QComboBox* PlotToolbar::add_list(QHBoxLayout& row, const char* name, const char* tip, int characters,
                                 int help) {
    auto* list = new QComboBox(this);
    list->setObjectName(QString::fromUtf8(name));
    list->setToolTip(QString::fromUtf8(tip));
    list->setAccessibleName(QString::fromUtf8(tip));
    make_list_readable(*list);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(characters);
    list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    list->setMaxVisibleItems(k_last_plot);
    list->view()->viewport()->installEventFilter(this);
    NivoraWindow::set_help(list, help);
    list->installEventFilter(this);
    row.addWidget(list);
    return list;
}

QLineEdit* PlotToolbar::add_box(QHBoxLayout& row, const char* name, const char* caption, const char* tip,
                                int help) {
    auto* label = new QLabel(QString::fromUtf8(caption), this);
    NivoraWindow::set_help(label, help);
    row.addSpacing(4);
    row.addWidget(label);
    row.addSpacing(4);
    auto* box = new QLineEdit(this);
    box->setObjectName(QString::fromUtf8(name));
    box->setToolTip(QString::fromUtf8(tip));
    box->setAccessibleName(QString::fromUtf8(tip));
    box->setFixedWidth(box->fontMetrics().horizontalAdvance(QLatin1Char('0')) * k_box_characters + 8);
    NivoraWindow::set_help(box, help);
    connect(box, &QLineEdit::textEdited, this, [this] { show_redraw(true); });
    connect(box, &QLineEdit::returnPressed, this, [this] {
        if (is_edited()) emit pressed(ToolPicture::Redraw);
    });
    row.addWidget(box);
    return box;
}

/// A click on an entry that is off does nothing; an open list would take the entry that it last marked.
bool PlotToolbar::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::Wheel && (watched == plots_ || watched == zones_)) {
        // Over a closed list: a pick would end the zoom and drop what was typed.
        event->ignore();
        return true;
    }
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonRelease) return false;
    for (const QComboBox* list : {plots_, zones_}) {
        if (list->view()->viewport() != watched) continue;
        const QPoint at = static_cast<QMouseEvent*>(event)->position().toPoint();
        const QModelIndex entry = list->view()->indexAt(at);
        return entry.isValid() && !entry.flags().testFlag(Qt::ItemIsEnabled);
    }
    return false;
}

void PlotToolbar::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) show_pictures();
    QWidget::changeEvent(event);
}

void PlotToolbar::show_pictures() {
    for (const auto& [tool, button] : buttons_) {
        const bool hides = tool == ToolPicture::ShowData && data_points_;
        button->setIcon(tool_picture(hides ? ToolPicture::HideData : tool, palette()));
    }
}

void PlotToolbar::show_plots(const std::vector<PlotListEntry>& entries, std::optional<PlotNumber> picked) {
    const QSignalBlocker quiet(plots_);
    plots_->hidePopup();
    plots_->clear();
    for (const PlotListEntry& entry : entries) add_entry(*plots_, entry.text, entry.enabled && !entry.dashes);
    plots_->setCurrentIndex(picked ? number_of(*picked) - 1 : -1);
    plots_->view()->setMinimumWidth(plots_->view()->sizeHintForColumn(0) + 40);
}

void PlotToolbar::show_zones(const ZoneListState& zones, int zone) {
    const QSignalBlocker quiet(zones_);
    zones_->hidePopup();
    zones_->clear();
    auto* view = qobject_cast<QListView*>(zones_->view());
    for (const ZoneListEntry& entry : zones.entries) {
        add_entry(*zones_, entry.text, entry.enabled && entry.visible);
        if (view != nullptr) view->setRowHidden(zones_->count() - 1, !entry.visible);
    }
    zones_->setCurrentIndex(zone - 1);
    zones_->setEnabled(zones.enabled);
}

void PlotToolbar::show_tools(const PlotTools& tools) {
    for (const ToolPicture zoom : {ToolPicture::ZoomIn, ToolPicture::ZoomOut})
        buttons_.at(zoom)->setEnabled(tools.zoom);
    for (const ToolPicture output : {ToolPicture::SaveAs, ToolPicture::Print, ToolPicture::Copy})
        buttons_.at(output)->setEnabled(tools.output);
    x_maximum_->setEnabled(tools.x_maximum);
    y_maximum_->setEnabled(tools.y_maximum);
}

void PlotToolbar::show_boxes(const BoxTexts& texts) {
    x_maximum_->setText(to_qt(texts.x));
    y_maximum_->setText(to_qt(texts.y));
    show_redraw(false);
}

void PlotToolbar::show_redraw(bool shown) {
    edited_ = shown;
    buttons_.at(ToolPicture::Redraw)->setVisible(shown);
}

void PlotToolbar::show_data_points(bool shown) {
    data_points_ = shown;
    QToolButton* button = buttons_.at(ToolPicture::ShowData);
    const QString tip = QString::fromUtf8(shown ? k_hide_points : k_show_points);
    button->setToolTip(tip);
    button->setAccessibleName(tip);
    show_pictures();
}

BoxTexts PlotToolbar::boxes() const { return {from_qt(x_maximum_->text()), from_qt(y_maximum_->text())}; }

QLineEdit* PlotToolbar::box(BoxRefusal::Box which) const {
    return which == BoxRefusal::Box::X ? x_maximum_ : y_maximum_;
}

bool PlotToolbar::is_edited() const { return edited_; }

}  // namespace nivora
