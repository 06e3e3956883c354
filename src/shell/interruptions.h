// What makes an event in the main window no work of its user.
#pragma once

namespace nivora {

/// The panels of the main window share it: while a message about one of them shows, the focus that moves
/// leaves no box or cell of the other.
struct Interruptions {
    bool filling = false;  ///< boxes and grids are being filled
    bool telling = false;  ///< a message about a box or cell is shown
    bool leaving = false;  ///< the program asks whether it may end
};

}  // namespace nivora
