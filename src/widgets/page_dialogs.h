// The page and font dialogs.
#pragma once

#include "paint/page_layout.h"

#include <QFont>
#include <QString>

class QWidget;

namespace nivora {

/// Shows the page dialog for the printer that was chosen last, or else for the standard printer. After a
/// cancel, or on a system without printing, the old values stay.
void Page_Setup(PageSetup& setup, QWidget* parent);

/// The font dialog; it remembers its choice between calls.
class FontChooser {
public:
    /// A font as the caller gets it.
    struct Choice {
        QString text;  ///< face, size, weight and italic joined; empty after a cancel
        int size = 0;  ///< points, rounded
        bool bold = false;
        bool italic = false;
    };

    /// @param first the initial font of the first call
    [[nodiscard]] Choice Choose_Font(const QFont& first, QWidget* parent);

    /// The choice for a font.
    [[nodiscard]] static Choice choice_of(const QFont& font);
    [[nodiscard]] const QFont& font() const { return record_; }

private:
    QFont record_;
    bool used_ = false;
};

}  // namespace nivora
