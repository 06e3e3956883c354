#include "widgets/accessible_elements.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QHash>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <QVariant>
#include <QWidget>
#include <algorithm>
#include <limits>
#include <vector>

namespace nivora {
namespace {

constexpr const char* k_role = "accessibleRole";
constexpr int k_not_in_order = std::numeric_limits<int>::max();

/// A caption without the mark of its key.
QString without_mark(const QString& caption) {
    QString plain;
    for (qsizetype at = 0; at < caption.size(); ++at) {
        if (caption[at] == QLatin1Char('&') && at + 1 < caption.size()) ++at;
        plain += caption[at];
    }
    return plain;
}

/// The places of a window's elements in the order of Tab.
QHash<const QWidget*, int> tab_places(const QWidget& window) {
    QHash<const QWidget*, int> places;
    int place = 0;
    const QWidget* at = &window;
    do {
        if ((at->focusPolicy() & Qt::TabFocus) != 0) places.insert(at, place++);
        at = at->nextInFocusChain();
    } while (at != nullptr && at != &window);
    return places;
}

/// An element of a frame on its way to its place.
struct Part {
    QAccessibleInterface* element = nullptr;
    const QWidget* widget = nullptr;
    QRect place = {};  ///< on the screen
    int tab = k_not_in_order;
};

/// Menus, tools and the status bar stand around the content.
int band_of(const QWidget* widget) {
    if (qobject_cast<const QMenuBar*>(widget) != nullptr) return 0;
    if (qobject_cast<const QToolBar*>(widget) != nullptr) return 1;
    return qobject_cast<const QStatusBar*>(widget) != nullptr ? 3 : 2;
}

bool in_one_line(const QRect& one, const QRect& other) {
    return (one.top() <= other.center().y() && other.center().y() <= one.bottom()) ||
           (other.top() <= one.center().y() && one.center().y() <= other.bottom());
}

/// Whether a part is read before another, as text is: line by line.
bool stands_before(const Part& one, const Part& other) {
    if (in_one_line(one.place, other.place)) return one.place.left() < other.place.left();
    return one.place.top() < other.place.top();
}

/// The first place of an element and of all in it.
int first_tab(const QWidget& element, const QHash<const QWidget*, int>& places) {
    int first = places.value(&element, k_not_in_order);
    for (const QWidget* inside : element.findChildren<QWidget*>())
        first = std::min(first, places.value(inside, k_not_in_order));
    return first;
}

/// Parts that Tab reaches stay in its order; texts and pictures go where they are seen.
std::vector<QAccessibleInterface*> in_reading_order(const QWidget& frame, std::vector<Part> parts) {
    const auto places = tab_places(*frame.window());
    for (Part& part : parts) {
        if (part.widget != nullptr) part.tab = first_tab(*part.widget, places);
    }
    // Unseen parts have no place of their own.
    std::stable_sort(parts.begin(), parts.end(), [](const Part& one, const Part& other) {
        return one.place.top() != other.place.top() ? one.place.top() < other.place.top()
                                                    : one.place.left() < other.place.left();
    });
    std::vector<Part> order;
    for (const Part& part : parts) {
        if (part.tab != k_not_in_order) order.push_back(part);
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const Part& one, const Part& other) { return one.tab < other.tab; });
    for (const Part& part : parts) {
        if (part.tab != k_not_in_order) continue;
        const auto after = std::find_if(order.begin(), order.end(),
                                        [&](const Part& other) { return stands_before(part, other); });
        order.insert(after, part);
    }
    std::stable_sort(order.begin(), order.end(), [](const Part& one, const Part& other) {
        return band_of(one.widget) < band_of(other.widget);
    });
    std::vector<QAccessibleInterface*> elements;
    elements.reserve(order.size());
    for (const Part& part : order) elements.push_back(part.element);
    return elements;
}

/// A window, a dialog or a frame, whose parts come in reading order.
class AccessibleFrame : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    /// An element may be asked before it was given its role.
    [[nodiscard]] QAccessible::Role role() const override {
        const QVariant given = widget()->property(k_role);
        return given.isValid() ? static_cast<QAccessible::Role>(given.toInt()) : QAccessibleWidget::role();
    }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        const auto parts = ordered();
        return index >= 0 && index < static_cast<int>(parts.size())
                   ? parts.at(static_cast<std::size_t>(index))
                   : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        if (child == nullptr) return -1;
        const auto parts = ordered();
        const auto at = std::find_if(parts.begin(), parts.end(), [child](const QAccessibleInterface* part) {
            return part == child || (part != nullptr && part->object() == child->object());
        });
        return at == parts.end() ? -1 : static_cast<int>(at - parts.begin());
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        QString text = QAccessibleWidget::text(kind);
        const auto* box = qobject_cast<const QGroupBox*>(widget());
        if (kind == QAccessible::Name && text.isEmpty() && box != nullptr) text = without_mark(box->title());
        const auto* bar = qobject_cast<const QStatusBar*>(widget());
        if (kind == QAccessible::Name && text.isEmpty() && bar != nullptr) text = bar->currentMessage();
        return text;
    }

private:
    [[nodiscard]] std::vector<QAccessibleInterface*> ordered() const {
        std::vector<Part> parts;
        const int count = QAccessibleWidget::childCount();
        for (int index = 0; index < count; ++index) {
            Part part{.element = QAccessibleWidget::child(index)};
            if (part.element == nullptr) continue;
            part.widget = qobject_cast<const QWidget*>(part.element->object());
            part.place = part.element->rect();
            parts.push_back(part);
        }
        return in_reading_order(*widget(), std::move(parts));
    }
};

/// A list that shows one entry. Qt calls it by its entry, so that nobody would hear what is chosen.
class AccessibleList : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit AccessibleList(QComboBox* list) : QAccessibleWidget(list, QAccessible::ComboBox) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? list().currentText() : QAccessibleWidget::text(kind);
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = list().view()->isVisible();
        state.editable = list().isEditable();
        return state;
    }
    [[nodiscard]] QStringList actionNames() const override {
        return QAccessibleWidget::actionNames() << showMenuAction();
    }
    void doAction(const QString& action) override {
        if (action != showMenuAction()) return QAccessibleWidget::doAction(action);
        if (list().view()->isVisible()) {
            static_cast<QComboBox*>(widget())->hidePopup();
        } else if (list().isEnabled()) {
            static_cast<QComboBox*>(widget())->showPopup();
        }
    }
    [[nodiscard]] int childCount() const override { return 1; }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(list().view()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return child != nullptr && child->object() == list().view() ? 0 : -1;
    }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }

    // The entry as a text that is only read.

    [[nodiscard]] QString text(int start, int end) const override {
        return list().currentText().mid(start, end < 0 ? -1 : end - start);
    }
    [[nodiscard]] int characterCount() const override {
        return static_cast<int>(list().currentText().size());
    }
    void selection(int, int* start, int* end) const override { *start = *end = 0; }
    [[nodiscard]] int selectionCount() const override { return 0; }
    void addSelection(int, int) override {}
    void removeSelection(int) override {}
    void setSelection(int, int, int) override {}
    [[nodiscard]] int cursorPosition() const override { return 0; }
    void setCursorPosition(int) override {}
    [[nodiscard]] QRect characterRect(int) const override { return rect(); }
    [[nodiscard]] int offsetAtPoint(const QPoint&) const override { return 0; }
    void scrollToSubstring(int, int) override {}
    [[nodiscard]] QString attributes(int, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

private:
    [[nodiscard]] const QComboBox& list() const { return *static_cast<const QComboBox*>(widget()); }
};

/// Qt asks for an object's own class first, then for those above it, and here before it asks itself.
QAccessibleInterface* make_element(const QString& class_name, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (widget == nullptr) return nullptr;
    if (class_name == QLatin1String("QComboBox")) return new AccessibleList(static_cast<QComboBox*>(widget));
    if (class_name == QLatin1String("QGroupBox") && !static_cast<const QGroupBox*>(widget)->isCheckable())
        return new AccessibleFrame(widget, QAccessible::Grouping);
    if (class_name == QLatin1String("QDialogButtonBox"))
        return new AccessibleFrame(widget, QAccessible::Grouping);
    if (class_name == QLatin1String("QStatusBar")) return new AccessibleFrame(widget, QAccessible::StatusBar);
    if (class_name == QLatin1String("QMainWindow")) return new AccessibleFrame(widget, QAccessible::Window);
    if (class_name == QLatin1String("QDialog")) return new AccessibleFrame(widget, QAccessible::Dialog);
    if (class_name == QLatin1String("QSplitter")) return new AccessibleFrame(widget, QAccessible::Splitter);
    if (class_name != QLatin1String("QWidget")) return nullptr;
    return new AccessibleFrame(widget, QAccessible::Client);
}

}  // namespace

void install_accessible_elements() { QAccessible::installFactory(make_element); }

void set_accessible_role(QWidget& element, QAccessible::Role role) {
    element.setProperty(k_role, static_cast<int>(role));
}

}  // namespace nivora
