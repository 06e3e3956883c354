#include "base/durable_file.h"

#include "base/output_file.h"

#include <fmt/format.h>

#include <charconv>
#include <chrono>
#include <cstring>
#include <fstream>
#include <optional>
#include <system_error>
#include <vector>

#ifdef _WIN32
#include <io.h>
#include <process.h>
#include <windows.h>
#else
#include <signal.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace nivora {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const fs::path& path, const std::string& what, const std::string& reason) {
    throw FileError(fmt::format("The file '{}' {}: {}.", path_text(path), what, reason));
}

void remove_quietly(const fs::path& path) {
    std::error_code ignored;  // a leftover file must not hide the original error
    fs::remove(path, ignored);
}

#ifdef _WIN32
long process_number() { return _getpid(); }
#else
long process_number() { return static_cast<long>(getpid()); }
#endif

#ifdef _WIN32
bool process_runs(long number) {
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(number));
    if (process == nullptr) return false;
    DWORD status = 0;
    const bool runs = GetExitCodeProcess(process, &status) != 0 && status == STILL_ACTIVE;
    CloseHandle(process);
    return runs;
}
#else
bool process_runs(long number) { return ::kill(static_cast<pid_t>(number), 0) == 0 || errno != ESRCH; }
#endif

constexpr std::string_view k_part_ending = ".part";

/// The process number in a name made by name_beside; nothing for any other name.
std::optional<long> writer_of(std::string_view name, std::string_view target) {
    constexpr std::string_view k_journal = "-journal";  // beside a database that was being written
    if (name.size() > k_journal.size() && name.substr(name.size() - k_journal.size()) == k_journal) {
        name.remove_suffix(k_journal.size());
    }
    if (name.size() <= target.size() + k_part_ending.size() || name.substr(0, target.size()) != target ||
        name[target.size()] != '.' || name.substr(name.size() - k_part_ending.size()) != k_part_ending) {
        return std::nullopt;
    }
    name.remove_prefix(target.size() + 1);
    name.remove_suffix(k_part_ending.size());
    if (name.find_first_not_of("0123456789-") != std::string_view::npos) return std::nullopt;
    const std::size_t dash = name.find('-');
    long number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + std::min(dash, name.size()), number);
    if (dash == std::string_view::npos || error != std::errc{} || end != name.data() + dash)
        return std::nullopt;
    return number;
}

#ifdef _WIN32
/// Flushes a file; an error names the file that it is written for.
void flush_for(const fs::path& path, const fs::path& reported) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) refuse(reported, "can't be opened to flush it", "the system refused");
    const bool flushed = FlushFileBuffers(file) != 0;
    CloseHandle(file);
    if (!flushed) refuse(reported, "can't be flushed to the disk", "the system refused");
}
#else
/// Flushes a file or folder; an error names the file that it is written for.
void flush_for(const fs::path& path, const fs::path& reported) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) refuse(reported, "can't be opened to flush it", std::strerror(errno));
    const int flushed = ::fsync(file);
    const int number = errno;
    ::close(file);
    // Some file systems can't flush a folder and say so with EINVAL.
    if (flushed != 0 && number != EINVAL)
        refuse(reported, "can't be flushed to the disk", std::strerror(number));
}
#endif

void flush_folder_of(const fs::path& path) {
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path{"."};
#ifndef _WIN32
    flush_for(folder, folder);
#else
    static_cast<void>(folder);  // the rename already writes through to the disk
#endif
}

}  // namespace

std::string path_text(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {reinterpret_cast<const char*>(text.data()), text.size()};
}

fs::path path_from_utf8(std::string_view text) {
    return fs::path{std::u8string_view{reinterpret_cast<const char8_t*>(text.data()), text.size()}};
}

fs::path name_beside(const fs::path& target) {
    fs::path beside = target;
    const auto moment = std::chrono::steady_clock::now().time_since_epoch().count();
    beside += fmt::format(".{}-{}.part", process_number(), moment);
    return beside;
}

void move_into_place(const fs::path& finished, const fs::path& target) {
    try {
        flush_for(finished, target);
        std::error_code error;
        fs::rename(finished, target, error);
        if (error) refuse(target, "can't be written", error.message());
        flush_folder_of(target);
    } catch (const FileError&) {
        remove_quietly(finished);
        throw;
    }
}

void move_to_new_name(const fs::path& finished, const fs::path& target) {
    try {
        flush_for(finished, target);
        std::error_code error;
        // A hard link fails if the name is taken, which a rename would not.
        fs::create_hard_link(finished, target, error);
        if (error == std::errc::file_exists) refuse(target, "was not written", "a file of that name exists");
        if (error) {
            std::error_code unknown;  // a name that can't even be looked up is refused by the rename
            if (fs::exists(target, unknown)) refuse(target, "was not written", "a file of that name exists");
            fs::rename(finished, target, error);
            if (error) refuse(target, "can't be written", error.message());
        } else {
            remove_quietly(finished);
        }
        flush_folder_of(target);
    } catch (const FileError&) {
        remove_quietly(finished);
        throw;
    }
}

void write_whole_file(const fs::path& named, std::string_view content, const std::vector<fs::path>& never) {
    OutputFile file{named, never};
    file.write(content);
    file.finish();
}

FileContent copy_file_checked(const fs::path& source, const fs::path& copy, const fs::path& reported) {
    constexpr std::size_t k_block = 1U << 18U;  // stays in the cache of a core
    std::ifstream in{source, std::ios::binary};
    if (!in) refuse(source, "can't be read", "it is missing, or you have no permission to read it");
    std::ofstream out{copy, std::ios::binary | std::ios::trunc};
    if (!out) refuse(reported, "can't be written", "its folder can't be written to, or does not exist");
    std::vector<char> block(k_block);
    ContentDigest digest;
    while (in && out) {
        in.read(block.data(), static_cast<std::streamsize>(block.size()));
        out.write(block.data(), in.gcount());
        digest.add({block.data(), static_cast<std::size_t>(in.gcount())});
    }
    out.close();
    const FileContent copied = digest.content();
    std::error_code error;
    const bool whole =
        in.eof() && !in.bad() && out.good() && fs::file_size(copy, error) == copied.size && !error;
    if (!whole) {
        remove_quietly(copy);
        refuse(reported, "can't be written", "the disk may be full");
    }
    return copied;
}

void remove_leftovers(const fs::path& target) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path{"."};
    const std::string name = path_text(target.filename());
    std::error_code error;
    for (fs::directory_iterator entry{folder, error}, end; !error && entry != end; entry.increment(error)) {
        const auto writer = writer_of(path_text(entry->path().filename()), name);
        if (writer && (*writer == process_number() || !process_runs(*writer))) remove_quietly(entry->path());
    }
}

std::string read_whole_file(const fs::path& path, std::uintmax_t limit) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) refuse(path, "can't be read", "there is no such file");
    if (fs::is_directory(status)) refuse(path, "can't be read", "it is a folder");
    if (!fs::is_regular_file(status)) refuse(path, "can't be read", "it is not a regular file");
    const std::uintmax_t size = fs::file_size(path, error);
    if (error) refuse(path, "can't be read", error.message());
    if (size > limit) refuse(path, "can't be read", fmt::format("it is larger than {} bytes", limit));
    std::ifstream file{path, std::ios::binary};
    if (!file) refuse(path, "can't be read", "you have no permission to read it");
    std::string content(static_cast<std::size_t>(size), '\0');
    file.read(content.data(), static_cast<std::streamsize>(size));
    content.resize(static_cast<std::size_t>(file.gcount()));
    if (file.bad()) refuse(path, "can't be read", "the disk reports an error");
    return content;
}

}  // namespace nivora
