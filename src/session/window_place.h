// Positions of windows on the desktop. All lengths are in logical pixels.
#pragma once

#include <optional>
#include <vector>

namespace nivora {

/// The kept place of a window: the top left corner of its frame, and its size without the frame.
struct WindowPlace {
    std::optional<int> top;
    std::optional<int> left;
    std::optional<int> height;
    std::optional<int> width;
};

/// The widths of the frame that the window manager draws around a window.
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

/// The place for a window: the corner of its frame, and its size without the frame.
struct Placement {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Placement&) const = default;
};

/// Computes the place of a window before it is shown. The window gets its kept size, otherwise its own, but
/// at most the size of the screen without its frame. It goes to its kept corner and is moved if its frame
/// would cross the edge of the screen that shows most of it; without a kept corner it is centred.
///
/// @param screens the first is for windows without a kept place, or whose place is on no screen
[[nodiscard]] Placement place_window(const WindowPlace& kept, ContentSize own, const FrameWidths& frame,
                                     const std::vector<ScreenArea>& screens);

/// The place to keep for a window whose frame has its corner at `left`, `top`. Some window managers interpret
/// the requested position as that of the content, others as that of the frame. A window that is off by
/// exactly its frame was not moved by the user, and keeps the requested place; otherwise it would move by its
/// frame with each opening.
[[nodiscard]] WindowPlace place_to_keep(int left, int top, ContentSize size, const Placement& asked,
                                        const FrameWidths& frame);

}  // namespace nivora
