// The dialog before a print: on which printer, or into which kind of file.
#pragma once

#include "widgets/printing.h"

#include <QDialog>
#include <QStringList>

class QComboBox;
class QPushButton;

namespace nivora {

/// The dialogs of the systems differ in what they do with a print to a file, and none has text files. So this
/// one comes first on every system, and leads to the system's for what a printer can do beyond.
class PrintDialog : public QDialog {
    Q_OBJECT

public:
    /// Offers the printer of the page set-up, or else the first one; a file if there is no printer.
    ///
    /// @param printers their names
    PrintDialog(const QStringList& printers, const PrintOffer& offer, QWidget* parent = nullptr);

    [[nodiscard]] PrintTarget target() const;
    /// The name of the chosen printer; empty for a file.
    [[nodiscard]] QString printer() const;

signals:
    /// The user wants to see all that the chosen printer can do.
    void options_wanted();

private:
    void target_chosen();

    QComboBox* target_;
    QPushButton* options_;
};

}  // namespace nivora
