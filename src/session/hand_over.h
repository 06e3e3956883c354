// Hands a file that a second start names to the program that runs already.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace nivora {

/// Where the running program listens: a socket in the user's own folder.
struct MeetingPlace {
    std::filesystem::path folder = {};
    std::filesystem::path name = {};  ///< of the socket in that folder
};

/// The place for the program that works in a folder. It is in the runtime folder of the user's session, which
/// is on a local disk and belongs to the user alone; a name for each work folder keeps copies of the program
/// apart. Without such a folder it is in the work folder itself.
///
/// @param runtime_folder XDG_RUNTIME_DIR; not used if it is not the user's alone
[[nodiscard]] MeetingPlace meeting_place(const std::filesystem::path& work_folder,
                                         const std::optional<std::filesystem::path>& runtime_folder);

/// What became of a file that was offered.
enum class HandOver {
    NobodyThere,  ///< no program of this user listens
    Taken,        ///< the running program opens it
    Busy,         ///< the running program can't open a file at present: a window of it waits for an answer
    NoAnswer      ///< it runs, but did not answer in time; it does not open the file later
};

/// Offers a file to the running program.
///
/// @param file     absolute
/// @param patience how long to wait for the answer
[[nodiscard]] HandOver hand_over(const MeetingPlace& place, const std::filesystem::path& file,
                                 std::chrono::milliseconds patience);

/// Listens for files as long as it lives. Only for the program that holds the lock of its work folder.
/// Offers of other users, and offers that are not complete, are dropped without an answer.
class HandOverListener {
public:
    /// Where the socket can't be made, for example on a file system without sockets, nobody listens, and a
    /// second start is refused.
    explicit HandOverListener(const MeetingPlace& place);
    HandOverListener(const HandOverListener&) = delete;
    HandOverListener& operator=(const HandOverListener&) = delete;
    ~HandOverListener();

    /// Readable when an offer waits; -1 if nobody listens.
    [[nodiscard]] int descriptor() const { return listener_; }

    /// Answers the offers that wait. @param may_open whether a file can be opened now
    /// @return the files that were taken, in the order of their offers
    [[nodiscard]] std::vector<std::filesystem::path> take(const std::function<bool()>& may_open) const;

private:
    int folder_ = -1;
    int listener_ = -1;
    std::filesystem::path name_;
};

}  // namespace nivora
