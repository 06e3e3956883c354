// Calls that compute for a long time.
#pragma once

#include "search/calibration.h"

#include <pybind11/pybind11.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <future>

namespace nivora {

/// Computes in a thread of its own, while this one lets other threads of Python run, answers Ctrl-C, and
/// tells the progress. An exception of those ends the work and is thrown.
///
/// @param progress None, or called with the number of pieces that are done, a few times a second
/// @param work     called with a watch that it has to ask and to tell
template <typename Work>
auto long_call(const pybind11::object& progress, Work&& work) {
    constexpr std::chrono::milliseconds k_turn{50};
    std::atomic<bool> stop{false};
    std::atomic<std::size_t> done{0};
    std::size_t told = 0;
    const SearchWatch watch{.stops = [&] { return stop.load(); },
                            .progress = [&](std::size_t count) { done = count; }};
    auto task = std::async(std::launch::async, [&] { return work(watch); });
    const auto tell = [&] {
        const std::size_t count = done;
        if (progress.is_none() || count == told) return;
        told = count;
        progress(count);
    };
    try {
        while (true) {
            {
                const pybind11::gil_scoped_release released;
                if (task.wait_for(k_turn) == std::future_status::ready) break;
            }
            if (PyErr_CheckSignals() != 0) throw pybind11::error_already_set();
            tell();
        }
        tell();
    } catch (...) {
        stop = true;
        const pybind11::gil_scoped_release released;
        task.wait();
        throw;
    }
    return task.get();
}

}  // namespace nivora
