// The fonts that prints are set in, out of those that the system has.
#pragma once

#include "reports/printed_page.h"

#include <QFont>
#include <QString>

namespace nivora {

/// The fixed-pitch family nearest to a wanted one, of outlines, so that its texts can be embedded; empty
/// where the system has none.
[[nodiscard]] QString fixed_pitch_family(const QString& wanted);

/// The system's font for a print, in points.
[[nodiscard]] QFont print_font(const PrintFont& font, bool bold);

}  // namespace nivora
