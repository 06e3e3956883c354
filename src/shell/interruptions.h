// The states in which an event in the main window is caused by the program and not by its user.
#pragma once

namespace nivora {

/// Shared by the panels of the main window: while a message about one of them is shown, a change of the focus
/// does not count as leaving a box or cell of the other.
struct Interruptions {
    bool filling = false;  ///< boxes and grids are being filled
    bool telling = false;  ///< a message about a box or cell is shown
    bool leaving = false;  ///< the program asks whether it may end
};

}  // namespace nivora
