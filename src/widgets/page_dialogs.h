// The page and font dialogs.
#pragma once

#include "reports/page_setup.h"

#include <QFont>
#include <QLocale>
#include <QPageLayout>
#include <QString>

class QWidget;

namespace nivora {

/// The page that the set-up describes: margins in inches, where 0 stands for 1 inch. Paper and unit are
/// those of the locale until the user chose others.
[[nodiscard]] QPageLayout page_of(const PageSetup& setup, const QLocale& locale = QLocale::system());

/// Puts a page's paper, unit, margins and orientation back into the set-up.
void keep_page(PageSetup& setup, const QPageLayout& page);

/// Shows the page dialog. A cancel, or a system without printing, keeps the old values.
void Page_Setup(PageSetup& setup, QWidget* parent);

/// The font dialog, with one record that lasts from call to call.
class FontChooser {
public:
    /// A font as the caller gets it.
    struct Choice {
        QString text;  ///< face, size, weight and italic joined; empty after a cancel
        int size = 0;  ///< points, rounded
        bool bold = false;
        bool italic = false;
    };

    /// @param first the font that the first call begins with
    [[nodiscard]] Choice Choose_Font(const QFont& first, QWidget* parent);

    /// The choice that a font stands for.
    [[nodiscard]] static Choice choice_of(const QFont& font);
    [[nodiscard]] const QFont& font() const { return record_; }

private:
    QFont record_;
    bool used_ = false;
};

}  // namespace nivora
