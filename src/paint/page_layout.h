// The page set-up of the user as a QPageLayout.
#pragma once

#include "reports/page_setup.h"

#include <QLocale>
#include <QPageLayout>

namespace nivora {

inline constexpr std::int32_t k_portrait = 1;
inline constexpr std::int32_t k_landscape = 2;

/// The margin if none was set, inches.
inline constexpr double k_default_margin = 1.0;

/// The page of a set-up. A margin of 0 means 1 inch. Without a choice, paper and unit are those of the
/// country of the locale, and the orientation is portrait.
[[nodiscard]] QPageLayout page_of(const PageSetup& setup, const QLocale& locale = QLocale::system());

/// Stores paper, unit, margins and orientation of a page in the set-up. A margin that the page has as page_of
/// gave it keeps its stored value, which the unit of the page may have rounded; 0 becomes 1 inch.
void keep_page(PageSetup& setup, const QPageLayout& page);

}  // namespace nivora
