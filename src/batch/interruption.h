// Ctrl-C in a long command: it ends at the next piece of work, with what was done so far.
#pragma once

namespace nivora {

/// The exit status of a command that the user stopped.
inline constexpr int k_stopped = 130;

/// Catches Ctrl-C and a request to terminate while it lives. A second one ends the program at once.
class Interruption {
public:
    Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption();

    [[nodiscard]] bool asked() const;
};

}  // namespace nivora
