// The page and font dialogs.
#pragma once

#include "paint/page_layout.h"

#include <QFont>
#include <QString>
#include <QStringList>

class QWidget;

namespace nivora {

/// The printer for which the page is set up: the one that was chosen last, or an empty name, which stands for
/// the standard printer, if none was chosen or the system has it no more.
///
/// @param printers the names of the system's printers
[[nodiscard]] QString page_printer(const QStringList& printers, const PageSetup& setup);

/// Shows the page dialog for that printer. After a cancel the old values stay.
void Page_Setup(PageSetup& setup, QWidget* parent);

/// The font dialog, which remembers its choice between calls.
class FontChooser {
public:
    /// A chosen font.
    struct Choice {
        QString text;  ///< face, size, weight and italic joined; empty after a cancel
        int size = 0;  ///< points, rounded
        bool bold = false;
        bool italic = false;
    };

    /// @param first the font that the dialog shows at the first call
    [[nodiscard]] Choice Choose_Font(const QFont& first, QWidget* parent);

    /// A font as a choice.
    [[nodiscard]] static Choice choice_of(const QFont& font);
    [[nodiscard]] const QFont& font() const { return record_; }

private:
    QFont record_;
    bool used_ = false;
};

}  // namespace nivora
