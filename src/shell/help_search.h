// The bar of the help window in which a text is searched for.
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;

namespace nivora {

/// A box for the text, with what came of the search beside it. Enter or F3 goes to the next place, with Shift
/// to the one before; Escape hides the bar. Hidden until it is opened.
class HelpSearch : public QWidget {
    Q_OBJECT

public:
    explicit HelpSearch(QWidget* parent);

    /// Shows the bar and lets the user type.
    void open();
    [[nodiscard]] QString wanted() const;
    void show_outcome(const QString& text);

signals:
    void asked(bool backward);
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLineEdit* box_;
    QLabel* outcome_;
};

}  // namespace nivora
