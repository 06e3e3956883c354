#include "widgets/controls.h"

#include "widgets/nivora_window.h"
#include "widgets/qt_text.h"
#include "widgets/undo_keys.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace nivora {
namespace {

/// The line of a spin box can be named only from inside its class.
class ZoneBox : public QSpinBox {
public:
    explicit ZoneBox(QWidget* parent) : QSpinBox(parent) {
        setObjectName(QStringLiteral("UpDown1"));
        lineEdit()->setObjectName(QStringLiteral("Text1"));
        lineEdit()->setAccessibleName(QStringLiteral("Zone"));
    }

    /// The keys of undo are the window's, unless a number is being typed.
    bool event(QEvent* event) override {
        if (event->type() == QEvent::ShortcutOverride && UndoKeys::is_key(*static_cast<QKeyEvent*>(event)) &&
            lineEdit()->text() == textFromValue(value())) {
            event->ignore();
            return true;
        }
        return QSpinBox::event(event);
    }

protected:
    /// Enter accepts the typed number and presses no button.
    void keyPressEvent(QKeyEvent* event) override {
        QSpinBox::keyPressEvent(event);
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) event->accept();
    }
};

}  // namespace

ButtonRow make_button_row(std::initializer_list<const char*> captions, int first_help, QWidget* parent) {
    ButtonRow row;
    row.frame = new QWidget(parent);
    auto* layout = new QHBoxLayout(row.frame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch(1);
    int index = 0;
    for (const char* caption : captions) {
        auto* button = new QPushButton(QString::fromUtf8(caption), row.frame);
        button->setObjectName(QStringLiteral("Command1(%1)").arg(index));
        button->setAutoDefault(true);
        NivoraWindow::set_help(button, first_help + index);
        layout->addWidget(button);
        row.buttons.push_back(button);
        ++index;
    }
    return row;
}

QLabel* make_label(const QString& name, const QString& text, int help, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    NivoraWindow::set_help(label, help);
    return label;
}

QLineEdit* make_date_box(const QString& name, int help, QWidget* parent) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(name);
    box->setInputMask(QStringLiteral("99/99/9999;_"));
    NivoraWindow::set_help(box, help);
    return box;
}

QSpinBox* make_zone_box(int zones, int help, QWidget* parent) {
    auto* box = new ZoneBox(parent);
    box->setRange(1, zones);
    box->setKeyboardTracking(false);
    box->setAccessibleName(QStringLiteral("Zone"));
    NivoraWindow::set_help(box, help);
    return box;
}

}  // namespace nivora
