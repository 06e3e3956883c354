// The dialog before a print: on which printer, or into which kind of file.
#pragma once

#include "widgets/printing.h"

#include <QDialog>
#include <QStringList>

class QComboBox;
class QDialogButtonBox;
class QPushButton;

namespace nivora {

/// The print dialogs of the systems differ in how they print to a file, and none offers text files. So this
/// dialog comes first on every system; its button Options opens that of the system.
class PrintDialog : public QDialog {
    Q_OBJECT

public:
    /// Selects the target that was used last. For a printer, that of the page set-up or else the first one;
    /// PDF if there is no printer, or if a text file was used last and is not offered.
    ///
    /// @param printers the names of the system's printers
    PrintDialog(const QStringList& printers, const PrintOffer& offer, QWidget* parent = nullptr);

    [[nodiscard]] PrintTarget target() const;
    /// The name of the chosen printer; empty for a file.
    [[nodiscard]] QString printer() const;

signals:
    /// The user asks for all options of the chosen printer.
    void options_wanted();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void target_chosen();

    QComboBox* target_;
    QPushButton* options_;
    QDialogButtonBox* buttons_;
};

}  // namespace nivora
