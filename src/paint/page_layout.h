// The page that the user has set up, as Qt holds it.
#pragma once

#include "reports/page_setup.h"

#include <QLocale>
#include <QPageLayout>

namespace nivora {

inline constexpr std::int32_t k_portrait = 1;
inline constexpr std::int32_t k_landscape = 2;

/// The margin that holds where none was set, inches.
inline constexpr double k_default_margin = 1.0;

/// The page that the set-up describes: margins in inches, where 0 means 1 inch. Paper and unit are those of
/// the locale's country if none was chosen; without an orientation the page is upright.
[[nodiscard]] QPageLayout page_of(const PageSetup& setup, const QLocale& locale = QLocale::system());

/// Stores a page's paper, unit, margins and orientation in the set-up.
void keep_page(PageSetup& setup, const QPageLayout& page);

}  // namespace nivora
