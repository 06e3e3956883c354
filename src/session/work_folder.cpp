#include "session/work_folder.h"

#include "base/durable_file.h"

#include <fmt/format.h>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr const char* k_folder_name = "nivora";
constexpr const char* k_template_name = "null.mdb";
/// A template is some hundred kilobytes long.
constexpr std::uintmax_t k_largest_template = 64U << 20U;

/// Whether an error says that this user may not write to a folder at all.
bool forbids_writing(int error) { return error == EACCES || error == EPERM || error == EROFS; }

bool is_usable(const std::optional<fs::path>& path) { return path && path->is_absolute(); }

std::optional<std::string> variable(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0') return std::nullopt;
    return value;
}

std::optional<fs::path> as_path(const std::optional<std::string>& text) {
    if (!text || text->empty()) return std::nullopt;
    return fs::path{*text};
}

/// Whether the path, or the nearest folder above it that exists, belongs to a user.
bool belongs_to(const fs::path& path, unsigned user) {
    for (fs::path at = path; !at.empty(); at = at.parent_path()) {
        struct stat found = {};
        if (::stat(at.c_str(), &found) == 0) return found.st_uid == user;
        if (at == at.parent_path()) break;
    }
    return false;
}

[[noreturn]] void refuse(const fs::path& folder, const std::string& reason) {
    throw FileError(fmt::format("The folder '{}', in which Nivora keeps its working file, can't be used: {}.",
                                path_text(folder), reason));
}

/// Makes a folder and those above it, each for its user alone, as the standard of the data home asks.
void make_folders(const fs::path& folder) {
    fs::path at;
    for (const fs::path& part : folder) {
        at /= part;
        if (::mkdir(at.c_str(), S_IRWXU) == 0 || errno == EEXIST) continue;
        const int error = errno;
        struct stat found = {};
        // A folder above that exists may refuse a new entry before it says that the name is taken.
        if (::stat(at.c_str(), &found) == 0 && S_ISDIR(found.st_mode)) continue;
        refuse(folder, std::strerror(error));
    }
}

void require_own(const fs::path& folder) {
    struct stat found = {};
    if (::stat(folder.c_str(), &found) != 0) refuse(folder, std::strerror(errno));
    if (!S_ISDIR(found.st_mode)) refuse(folder, "it is not a folder");
    if (found.st_uid != ::geteuid()) refuse(folder, "it belongs to another user");
    if ((found.st_mode & (S_IWGRP | S_IWOTH)) == 0) return;
    if (::chmod(folder.c_str(), found.st_mode & S_IRWXU) != 0) refuse(folder, std::strerror(errno));
}

std::optional<std::string> content_of(const fs::path& file) {
    try {
        return read_whole_file(file, k_largest_template);
    } catch (const FileError&) {
        return std::nullopt;  // missing or unreadable: it is not the same as the other one
    }
}

}  // namespace

WorkFolder choose_work_folder(const FolderFacts& facts) {
    if (!facts.installed && facts.write_error == 0) return {.path = facts.program_folder};
    if (!facts.installed && !forbids_writing(facts.write_error)) return {.error = facts.write_error};
    if (is_usable(facts.data_home)) return {.path = *facts.data_home / k_folder_name, .is_own = true};
    if (is_usable(facts.home))
        return {.path = *facts.home / ".local" / "share" / k_folder_name, .is_own = true};
    return {.error = facts.write_error == 0 ? ENOENT : facts.write_error};
}

int write_test(const fs::path& folder) {
    const fs::path path = folder / "test";
    errno = 0;
    {
        std::ofstream file{path};
        if (!file) return errno == 0 ? EACCES : errno;
    }
    std::error_code ignored;  // a test file that can't be removed does not prevent the start
    fs::remove(path, ignored);
    return 0;
}

UserPlaces user_places() {
    UserPlaces places{.user = ::geteuid(), .data_home = variable("XDG_DATA_HOME"), .home = variable("HOME")};
    const passwd* entry = ::getpwuid(::geteuid());
    if (entry != nullptr && entry->pw_dir != nullptr) places.registered_home = entry->pw_dir;
    return places;
}

FolderFacts folder_facts(const fs::path& program_folder, const UserPlaces& places) {
    FolderFacts facts{.program_folder = program_folder};
    std::error_code unknown;  // without the mark the folder counts as one that its user copied
    facts.installed = fs::exists(program_folder / k_installed_mark, unknown);
    if (!facts.installed) facts.write_error = write_test(program_folder);
    facts.data_home = as_path(places.data_home);
    facts.home = as_path(places.home);
    if (places.user == 0) {
        if (facts.data_home && !belongs_to(*facts.data_home, places.user)) facts.data_home.reset();
        if (facts.home && !belongs_to(*facts.home, places.user)) facts.home.reset();
    }
    if (!facts.home) facts.home = as_path(places.registered_home);
    return facts;
}

void prepare_own_folder(const fs::path& folder, const fs::path& program_folder) {
    make_folders(folder);
    require_own(folder);
    if (const int error = write_test(folder); error != 0) refuse(folder, std::strerror(error));
    const auto shipped = content_of(program_folder / k_template_name);
    // Without a shipped template the start says what it misses.
    if (!shipped || content_of(folder / k_template_name) == shipped) return;
    remove_leftovers(folder / k_template_name);
    write_whole_file(folder / k_template_name, *shipped);
}

}  // namespace nivora
