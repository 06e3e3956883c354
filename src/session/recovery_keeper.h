// Writes the recovery state in the background, so that typing does not wait for the disk.
#pragma once

#include "prep/daily_edits.h"
#include "session/recovery_state.h"

#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace nivora {

/// One recovery file. All calls come from the program's own thread; a second thread writes and flushes.
class RecoveryKeeper {
public:
    /// @param file in the folder of the working file
    explicit RecoveryKeeper(std::filesystem::path file);
    RecoveryKeeper(const RecoveryKeeper&) = delete;
    RecoveryKeeper& operator=(const RecoveryKeeper&) = delete;
    /// Writes what was handed over, and ends the second thread. The file stays.
    ~RecoveryKeeper();

    [[nodiscard]] const std::filesystem::path& file() const { return file_; }

    /// Hands a state over if it differs from the last one. Returns before it is written.
    void keep(const RecoveryState& state, const DailyEdits& edits);
    /// Removes the file: nothing is unsaved any more. Waits for a write that is under way.
    /// @return whether there is no file now
    [[nodiscard]] bool remove();
    /// Waits until what was handed over is on the disk, or could not be written.
    void finish();
    /// Why the last write failed; empty if it did not.
    [[nodiscard]] std::string fault();

private:
    struct Order {
        double time = 0.0;
        std::string lines;
        std::string table;
        std::string new_edits;  ///< to be added to those that the second thread has
        std::string typed;      ///< the edit that is not stored yet
        bool first_edits = false;
    };

    void start_thread();
    void work();
    /// @param lock held before and after, not while the state is written
    void write_waiting(std::unique_lock<std::mutex>& lock);
    void write(Order order);

    std::filesystem::path file_;

    // Of the program's thread: what was handed over last.
    std::string lines_;
    unsigned editing_ = 0;
    std::size_t edits_taken_ = 0;
    std::string typed_;
    bool forget_edits_ = true;  ///< the second thread has none of the present editor
    bool removed_ = false;

    // Of the second thread.
    std::string edits_;

    std::mutex mutex_;  ///< guards what follows
    std::condition_variable changed_;
    std::optional<Order> waiting_;
    bool writing_ = false;
    bool failed_ = false;
    std::string fault_;
    bool ends_ = false;
    std::thread thread_;  ///< not running before the first write
};

}  // namespace nivora
