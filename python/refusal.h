// How a call is refused, and how it waits for another program.
#pragma once

#include "engine/batch_dialogs.h"
#include "store/basin_opening.h"
#include "store/store_error.h"

#include <pybind11/pybind11.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace nivora {

/// What the libraries said before they gave up, the last of it as the text.
class Refusal : public std::runtime_error {
public:
    explicit Refusal(const std::vector<ReportedMessage>& messages)
        : std::runtime_error(messages.empty() ? std::string{"The call was refused."}
                                              : messages.back().title + ": " + messages.back().text) {}
};

[[nodiscard]] inline std::chrono::milliseconds milliseconds(double seconds) {
    constexpr double k_per_second = 1000.0;
    return std::chrono::milliseconds{static_cast<std::int64_t>(seconds * k_per_second)};
}

/// Calls `work` with a short wait again and again until the other program has finished with the file: between
/// the calls Python answers Ctrl-C. To be called with the interpreter's lock.
///
/// @throws StoreError Busy when the time is over
template <typename Work>
auto patiently(const std::filesystem::path& file, double seconds, Work&& work) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds k_piece{200};
    const auto end = Clock::now() + milliseconds(seconds);
    while (true) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        try {
            const pybind11::gil_scoped_release released;
            return work(std::clamp(left, std::chrono::milliseconds{0}, k_piece));
        } catch (const StoreError& error) {
            if (error.fault() != StoreFault::Busy) throw;
            if (Clock::now() >= end) throw busy_basin(file, milliseconds(seconds));
        }
        if (PyErr_CheckSignals() != 0) throw pybind11::error_already_set();
    }
}

}  // namespace nivora
