// Where windows stand on the desktop. All lengths are in the screen's logical units.
#pragma once

#include <optional>
#include <vector>

namespace nivora {

/// Where a window stood: the top left corner of its frame, and the size of what the frame surrounds.
struct WindowPlace {
    std::optional<int> top;
    std::optional<int> left;
    std::optional<int> height;
    std::optional<int> width;
};

/// What the window manager draws around a window.
struct FrameWidths {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool operator==(const FrameWidths&) const = default;
};

/// The part of a screen that windows can use.
struct ScreenArea {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

struct ContentSize {
    int width = 0;
    int height = 0;
};

/// Where a window goes: the corner of its frame, the size of what the frame surrounds.
struct Placement {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Placement&) const = default;
};

/// Finds the place of a window that is about to be shown. The window gets the size that was kept, otherwise
/// its own, and no more than fits a screen with its frame. It goes where it was kept, moved in where its
/// frame would stick out of the screen that shows most of it; without a kept corner it is centred.
///
/// @param screens the first is the one for a window that was not kept, or that no screen would show
[[nodiscard]] Placement place_window(const WindowPlace& kept, ContentSize own, const FrameWidths& frame,
                                     const std::vector<ScreenArea>& screens);

/// The place to keep for a window that stands with its frame's corner at `left`, `top`. Some window managers
/// take the place that a program asks for as that of the content, others as that of the frame: a window that
/// stands off by exactly its frame was not moved by its user, and keeps the place that was asked for.
/// Otherwise it would creep by its frame from one opening to the next.
[[nodiscard]] WindowPlace place_to_keep(int left, int top, ContentSize size, const Placement& asked,
                                        const FrameWidths& frame);

}  // namespace nivora
