// Two pieces of work that take turns, so that a machine that slows down slows both.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The seconds of ours and of what it is measured beside, turn by turn.
struct Turns {
    std::vector<double> ours;
    std::vector<double> floor;
};

/// @param ours, floor work that returns its seconds
template <typename Ours, typename Floor>
[[nodiscard]] Turns take_turns(int turns, Ours ours, Floor floor) {
    Turns taken;
    for (int turn = 0; turn < turns; ++turn) {
        taken.ours.push_back(ours());
        taken.floor.push_back(floor());
    }
    return taken;
}

/// The seconds that a call takes.
template <typename Work>
[[nodiscard]] double seconds_of(Work work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// Prints least and median of both in ms, their ratios and the goal for the ratio, if there is one. Adds the
/// line to the file that the variable NIVORA_BENCH_TABLE names, if it names one.
void tell_turns(const std::string& what, const Turns& turns, std::optional<double> goal);

}  // namespace nivora
