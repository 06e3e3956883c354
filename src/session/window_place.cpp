#include "session/window_place.h"

#include <algorithm>
#include <cstdint>

namespace nivora {
namespace {

/// Kept places come from a file that anybody can edit, so their sums may exceed an int.
using Wide = std::int64_t;

Wide common_length(Wide first, Wide length, Wide other_first, Wide other_length) {
    return std::max(Wide{0},
                    std::min(first + length, other_first + other_length) - std::max(first, other_first));
}

Wide common_area(const Placement& window, const ScreenArea& screen) {
    return common_length(window.left, window.width, screen.left, screen.width) *
           common_length(window.top, window.height, screen.top, screen.height);
}

/// The screen that shows most of a window.
const ScreenArea& screen_of(const Placement& window, const std::vector<ScreenArea>& screens) {
    return *std::max_element(screens.begin(), screens.end(), [&](const auto& one, const auto& other) {
        return common_area(window, one) < common_area(window, other);
    });
}

int size_within(std::optional<int> kept, int own, int room) {
    const int wanted = kept && *kept > 0 ? *kept : own;
    return std::max(1, std::min(wanted, room));
}

/// The start for a length so that all of it fits into the room, or at least its beginning.
int moved_in(int wanted, int length, int room_first, int room) {
    return std::max(room_first, static_cast<int>(std::min(Wide{wanted}, Wide{room_first} + room - length)));
}

}  // namespace

Placement place_window(const WindowPlace& kept, ContentSize own, const FrameWidths& frame,
                       const std::vector<ScreenArea>& screens) {
    const bool has_corner = kept.left && kept.top;
    const ScreenArea& screen = has_corner ? screen_of({*kept.left, *kept.top, kept.width.value_or(own.width),
                                                       kept.height.value_or(own.height)},
                                                      screens)
                                          : screens.front();
    const int sides = frame.left + frame.right;
    const int ends = frame.top + frame.bottom;
    Placement place;
    place.width = size_within(kept.width, own.width, screen.width - sides);
    place.height = size_within(kept.height, own.height, screen.height - ends);
    const int outer_width = place.width + sides;
    const int outer_height = place.height + ends;
    const int left = has_corner ? *kept.left : screen.left + (screen.width - outer_width) / 2;
    const int top = has_corner ? *kept.top : screen.top + (screen.height - outer_height) / 2;
    place.left = moved_in(left, outer_width, screen.left, screen.width);
    place.top = moved_in(top, outer_height, screen.top, screen.height);
    return place;
}

WindowPlace place_to_keep(int left, int top, ContentSize size, const Placement& asked,
                          const FrameWidths& frame) {
    const int right_by = left - asked.left;
    const int down_by = top - asked.top;
    const bool off_by_its_frame = (right_by == frame.left && down_by == frame.top) ||
                                  (right_by == -frame.left && down_by == -frame.top);
    return {.top = off_by_its_frame ? asked.top : top,
            .left = off_by_its_frame ? asked.left : left,
            .height = size.height,
            .width = size.width};
}

}  // namespace nivora
