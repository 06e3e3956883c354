// The drawings of the plot window's tools, as SVG on a grid of 24 by 24.
#pragma once

#include "windows/plots/tool_pictures.h"

#include <string_view>

namespace nivora {

/// Words in the drawings that stand for a colour.
constexpr std::string_view k_ink = "@ink";
constexpr std::string_view k_accent = "@accent";

/// The elements of a picture. They are stroked with the ink, 2 wide with round ends, and not filled, if they
/// don't say otherwise. Straight lines stand on whole numbers, so that they are sharp at 24 pixels and its
/// multiples.
[[nodiscard]] constexpr std::string_view tool_drawing(ToolPicture which) {
    switch (which) {
        case ToolPicture::SaveAs:  // a disk with its shutter and its label
            return R"(<path d="M7 21v-8h10v8" stroke="@accent"/>
                      <path d="M4 3h13l4 4v14H3V4a1 1 0 0 1 1-1z"/>
                      <path d="M8 3v5h8V3"/>)";
        case ToolPicture::Print:
            return R"(<path d="M7 8V3h10v5"/>
                      <path d="M7 17H4a1 1 0 0 1-1-1V9a1 1 0 0 1 1-1h16a1 1 0 0 1 1 1v7a1 1 0 0 1-1 1h-3"/>
                      <path d="M7 13h10v8H7z" stroke="@accent"/>)";
        case ToolPicture::Copy:  // two sheets
            return R"(<path d="M15 7V3H3v14h5"/>
                      <path d="M9 8h12v13H9z" stroke="@accent"/>
                      <path d="M13 13h4M13 17h4" stroke="@accent"/>)";
        case ToolPicture::ZoomIn:
            return R"(<circle cx="10" cy="10" r="7"/>
                      <path d="M15.5 15.5L21 21" stroke-width="3"/>
                      <path d="M10 7v6M7 10h6" stroke="@accent"/>)";
        case ToolPicture::ZoomOut:
            return R"(<circle cx="10" cy="10" r="7"/>
                      <path d="M15.5 15.5L21 21" stroke-width="3"/>
                      <path d="M7 10h6" stroke="@accent"/>)";
        case ToolPicture::LineAttributes:  // a thick, a dashed and a dotted line
            return R"(<path d="M3 5.5h18" stroke-width="3" stroke-linecap="butt"/>
                      <path d="M3 12h5M11 12h4M18 12h3" stroke="@accent" stroke-linecap="butt"/>
                      <path d="M4 19h.01M9 19h.01M14 19h.01M19 19h.01" stroke-width="2.5"/>)";
        case ToolPicture::GridLines:  // a frame with lines
            return R"(<path d="M9 3v18M15 3v18M3 9h18M3 15h18" stroke="@accent" stroke-width="1.5"/>
                      <path d="M3 3h18v18H3z"/>)";
        case ToolPicture::ShowData:  // a curve with its points
            return R"(<path d="M4 18L9 9l6 5 5-9"/>
                      <g fill="@accent" stroke="none">
                      <circle cx="4" cy="18" r="3"/><circle cx="9" cy="9" r="3"/>
                      <circle cx="15" cy="14" r="3"/><circle cx="20" cy="5" r="3"/></g>)";
        case ToolPicture::HideData:  // the same curve without them, and one of them crossed out
            return R"(<path d="M4 18L9 9l6 5 5-9"/>
                      <path d="M16 17l5 5M21 17l-5 5" stroke="@accent"/>)";
        case ToolPicture::Redraw:  // an arrow around a circle
            return R"(<path d="M19.5 8.5A8.3 8.3 0 1 0 20.3 13"/>
                      <path d="M20 3v6h-6" stroke="@accent"/>)";
        case ToolPicture::Help:
            return R"(<circle cx="12" cy="12" r="9"/>
                      <path d="M9 10a3 3 0 1 1 4.6 2.5Q12 13.4 12 14.5" stroke="@accent"/>
                      <circle cx="12" cy="17.6" r="1.3" fill="@accent" stroke="none"/>)";
    }
    return {};
}

/// The pointer on a grid of 32 by 32: a magnifier twice, in wide strokes of the accent under narrow ones of
/// the ink. Its cross is centred on the pixel of the hot spot, and leaves it free to show what lies there.
constexpr int k_zoom_grid = 32;
constexpr int k_zoom_hot_spot = 12;
constexpr std::string_view k_zoom_pointer_drawing =
    R"(<g stroke="@accent" stroke-width="4.5"><circle cx="12.5" cy="12.5" r="9"/>
       <path d="M19.5 19.5L28 28" stroke-width="6.5"/>
       <path d="M12.5 7v2.7M12.5 15.3V18M7 12.5h2.7M15.3 12.5H18" stroke-width="3.5"/></g>
       <g stroke-width="1.5"><circle cx="12.5" cy="12.5" r="9"/>
       <path d="M19.5 19.5L28 28" stroke-width="3.5"/>
       <path d="M12.5 7v2.7M12.5 15.3V18M7 12.5h2.7M15.3 12.5H18" stroke-width="1" stroke-linecap="butt"/></g>)";

}  // namespace nivora
