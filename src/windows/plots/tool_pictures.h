// The pictures of the plot window: those on its toolbar, and the pointer that drags a zoom.
#pragma once

#include <QCursor>
#include <QIcon>
#include <QPalette>

namespace nivora {

/// A picture of the toolbar. `ShowData` stands on the button while the data points are hidden, `HideData`
/// while they show: each says what a press does.
enum class ToolPicture {
    SaveAs,
    Print,
    Copy,
    ZoomIn,
    ZoomOut,
    LineAttributes,
    GridLines,
    ShowData,
    HideData,
    Redraw,
    Help,
};

/// An icon that is drawn at the size and the device pixel ratio it is asked for, so that it is sharp at any
/// scaling.
///
/// @param palette  gives the colours: lines in that of a button's text, its disabled text where the button is
/// off, and
///                 the accent in one that stands out against the button; ask again when the palette changes
[[nodiscard]] QIcon tool_picture(ToolPicture which, const QPalette& palette);

/// A magnifier whose hot spot is the centre of its lens, marked by a cross; black lines with a white edge, to
/// be seen on any ground. As large on the screen at any scaling.
[[nodiscard]] QCursor zoom_pointer();

/// What a platform counts the size and the hot spot of a pointer in.
enum class PointerUnits {
    Pixels,  ///< whatever the ratio that the picture carries: X11
    Points,  ///< of the windows, by the ratio that the picture carries
};

/// @param ratio device pixels to a point
[[nodiscard]] QCursor zoom_pointer(double ratio, PointerUnits units);

}  // namespace nivora
