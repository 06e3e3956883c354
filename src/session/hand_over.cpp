#include "session/hand_over.h"

#include <fmt/format.h>
#include <poll.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using Milliseconds = std::chrono::milliseconds;

/// An offer is this line, the path, and a zero byte. Another number means another form.
constexpr std::string_view k_offer = "nivora-open 1\n";
constexpr std::string_view k_taken = "taken\n";
constexpr std::string_view k_busy = "busy\n";
/// Twice the longest path that the system takes.
constexpr std::size_t k_longest_offer = 8192;
/// An offer is sent in one piece right after the connection, so that a sender who needs longer does not mean
/// it.
constexpr Milliseconds k_patience_with_sender{200};
constexpr int k_waiting_offers = 16;

/// A file descriptor that is closed with its scope.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }
    [[nodiscard]] int number() const { return number_; }
    int release() { return std::exchange(number_, -1); }

private:
    int number_;
};

int open_folder(const fs::path& folder) { return ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); }

/// The address of a socket in an open folder. The path of the folder may be longer than an address can be.
std::optional<sockaddr_un> address_in(int folder, const fs::path& name) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const std::string path = fmt::format("/proc/self/fd/{}/{}", folder, name.string());
    if (path.size() >= sizeof(address.sun_path)) return std::nullopt;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

const sockaddr* plain(const sockaddr_un& address) { return reinterpret_cast<const sockaddr*>(&address); }

/// Whether the program at the other end is of the same user.
bool is_of_same_user(int socket) {
    ucred other = {};
    socklen_t size = sizeof(other);
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &other, &size) == 0 && other.uid == ::geteuid();
}

/// Waits until something can be read, or the other end is gone.
bool wait_for(int socket, short event, Milliseconds at_most) {
    pollfd waiting{.fd = socket, .events = event, .revents = 0};
    return ::poll(&waiting, 1, static_cast<int>(at_most.count())) > 0;
}

/// Reads up to an end mark, which is left out; nothing if it does not come in time.
std::optional<std::string> read_up_to(int socket, char end, Milliseconds patience) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    std::string text;
    std::array<char, 1024> piece{};
    while (text.size() < k_longest_offer) {
        const auto left =
            std::chrono::duration_cast<Milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() < 0 || !wait_for(socket, POLLIN, left)) return std::nullopt;
        const ssize_t length = ::recv(socket, piece.data(), piece.size(), MSG_DONTWAIT);
        if (length <= 0) return std::nullopt;
        text.append(piece.data(), static_cast<std::size_t>(length));
        if (const auto at = text.find(end); at != std::string::npos) return text.substr(0, at);
    }
    return std::nullopt;
}

bool send_all(int socket, std::string_view text) {
    return ::send(socket, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT) ==
           static_cast<ssize_t>(text.size());
}

/// Whether the other end still waits for an answer; one that gave up has told its user so.
bool still_waits(int socket) {
    char next = 0;
    return ::recv(socket, &next, 1, MSG_PEEK | MSG_DONTWAIT) < 0 && (errno == EAGAIN || errno == EWOULDBLOCK);
}

/// The file of an offer; nothing if it is in another form.
std::optional<fs::path> offered_file(const std::optional<std::string>& offer) {
    if (!offer || offer->rfind(k_offer, 0) != 0) return std::nullopt;
    fs::path file{offer->substr(k_offer.size())};
    if (!file.is_absolute()) return std::nullopt;
    return file;
}

bool is_of_user_alone(const fs::path& folder) {
    struct stat found = {};
    return folder.is_absolute() && ::stat(folder.c_str(), &found) == 0 && S_ISDIR(found.st_mode) &&
           found.st_uid == ::geteuid() && (found.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// Makes the socket that is listened to; -1 if it can't be made.
int make_listener(int folder, const fs::path& name) {
    struct stat found = {};
    if (::fstatat(folder, name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0) {
        // A killed program leaves its socket. The lock says that none runs.
        if (!S_ISSOCK(found.st_mode) || ::unlinkat(folder, name.c_str(), 0) != 0) return -1;
    }
    const auto address = address_in(folder, name);
    Descriptor socket{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)};
    if (!address || socket.number() < 0) return -1;
    const mode_t before = ::umask(S_IRWXG | S_IRWXO);
    const int bound = ::bind(socket.number(), plain(*address), sizeof(*address));
    ::umask(before);
    if (bound != 0 || ::listen(socket.number(), k_waiting_offers) != 0) return -1;
    return socket.release();
}

}  // namespace

MeetingPlace meeting_place(const fs::path& work_folder, const std::optional<fs::path>& runtime_folder) {
    struct stat found = {};
    if (runtime_folder && is_of_user_alone(*runtime_folder) && ::stat(work_folder.c_str(), &found) == 0) {
        // The same folder has one number, whatever path leads to it.
        return {*runtime_folder, fmt::format("nivora-{:x}-{:x}.socket", found.st_dev, found.st_ino)};
    }
    return {work_folder, "nivora.socket"};
}

HandOver hand_over(const MeetingPlace& place, const fs::path& file, Milliseconds patience) {
    const Descriptor folder{open_folder(place.folder)};
    const auto address = folder.number() < 0 ? std::nullopt : address_in(folder.number(), place.name);
    const Descriptor socket{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)};
    if (!address || socket.number() < 0) return HandOver::NobodyThere;
    if (::connect(socket.number(), plain(*address), sizeof(*address)) != 0) {
        // A queue that is full belongs to a program that has not answered for long.
        return errno == EAGAIN ? HandOver::NoAnswer : HandOver::NobodyThere;
    }
    if (!is_of_same_user(socket.number())) return HandOver::NobodyThere;
    std::string offer{k_offer};
    offer += file.string();
    offer += '\0';
    if (offer.size() > k_longest_offer || !send_all(socket.number(), offer)) return HandOver::NoAnswer;
    const auto answer = read_up_to(socket.number(), '\n', patience);
    if (!answer) return HandOver::NoAnswer;
    if (*answer == k_taken.substr(0, k_taken.size() - 1)) return HandOver::Taken;
    return *answer == k_busy.substr(0, k_busy.size() - 1) ? HandOver::Busy : HandOver::NoAnswer;
}

HandOverListener::HandOverListener(const MeetingPlace& place)
    : folder_(open_folder(place.folder)),
      listener_(folder_ < 0 ? -1 : make_listener(folder_, place.name)),
      name_(place.name) {}

HandOverListener::~HandOverListener() {
    if (listener_ >= 0) {
        ::unlinkat(folder_, name_.c_str(), 0);
        ::close(listener_);
    }
    if (folder_ >= 0) ::close(folder_);
}

std::vector<fs::path> HandOverListener::take(const std::function<bool()>& may_open) const {
    std::vector<fs::path> files;
    for (int count = 0; count < k_waiting_offers; ++count) {
        const Descriptor socket{::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK)};
        if (socket.number() < 0) break;
        if (!is_of_same_user(socket.number())) continue;
        const auto file = offered_file(read_up_to(socket.number(), '\0', k_patience_with_sender));
        if (!file || !still_waits(socket.number())) continue;
        // One file at a time: the first one is about to ask about unsaved work.
        const bool opens = files.empty() && may_open();
        if (send_all(socket.number(), opens ? k_taken : k_busy) && opens) files.push_back(*file);
    }
    return files;
}

}  // namespace nivora
