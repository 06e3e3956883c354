// The fonts of prints, chosen among those of the system.
#pragma once

#include "reports/printed_page.h"

#include <QFont>
#include <QString>

namespace nivora {

/// The fixed-pitch family nearest to a wanted one. It has outlines, so that a PDF file can embed it; empty if
/// the system has none.
[[nodiscard]] QString fixed_pitch_family(const QString& wanted);

/// The system's font for a print, in points.
[[nodiscard]] QFont print_font(const PrintFont& font, bool bold);

}  // namespace nivora
