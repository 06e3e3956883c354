#include "base/output_file.h"

#include "base/durable_file.h"

#include <fmt/format.h>

#include <algorithm>

namespace nivora {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuse(const fs::path& path, const char* reason) {
    throw FileError(fmt::format("The file '{}' can't be written: {}.", path_text(path), reason));
}

void refuse_protected(const fs::path& named, const std::vector<fs::path>& never) {
    const auto hit = std::find_if(never.begin(), never.end(),
                                  [&](const fs::path& file) { return same_file(named, file); });
    if (hit == never.end()) return;
    throw FileError(fmt::format(
        "The file '{}' can't be written: it is the file '{}', which the command works on. Give another name.",
        path_text(named), path_text(*hit)));
}

}  // namespace

bool same_file(const fs::path& a, const fs::path& b) {
    std::error_code error;
    if (fs::equivalent(a, b, error) && !error) return true;
    if (fs::exists(a, error) && fs::exists(b, error)) return false;
    const fs::path real_a = fs::weakly_canonical(a, error);
    if (error) return false;
    const fs::path real_b = fs::weakly_canonical(b, error);
    return !error && real_a == real_b;
}

bool may_be_written(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    constexpr auto k_any_write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    if (!fs::is_regular_file(status) || (status.permissions() & k_any_write) == fs::perms::none) return false;
    const std::fstream probe{file, std::ios::binary | std::ios::in | std::ios::out};
    return static_cast<bool>(probe);
}

void refuse_unwritable(const fs::path& file) {
    std::error_code unknown;  // a name that can't even be looked up is refused when the file is opened
    if (fs::exists(file, unknown) && !may_be_written(file))
        refuse(file, "it is marked read-only, or you have no permission to write to it");
}

fs::path output_target(const fs::path& named, const std::vector<fs::path>& never) {
    std::error_code unknown;  // a name that can't even be looked up is refused when the file is opened
    if (fs::is_directory(named, unknown)) refuse(named, "it is a folder");
    const bool exists = fs::exists(named, unknown);
    // A finished file replaces its target; a device or a pipe would be lost to every other program.
    if (exists && !fs::is_regular_file(named, unknown)) refuse(named, "it is not a regular file");
    refuse_protected(named, never);
    refuse_unwritable(named);
    return exists ? fs::canonical(named) : named;
}

OutputFile::OutputFile(const fs::path& named, const std::vector<fs::path>& never)
    : never_(never), target_(output_target(named, never)), beside_(name_beside(target_)) {
    remove_leftovers(target_);
    file_.open(beside_, std::ios::binary | std::ios::trunc);
    if (!file_) refuse(target_, "its folder can't be written to, or does not exist");
}

OutputFile::~OutputFile() {
    if (beside_.empty()) return;
    file_.close();
    std::error_code ignored;  // a leftover file must not hide the original error
    fs::remove(beside_, ignored);
}

void OutputFile::refuse_full() const { refuse(target_, "the disk may be full"); }

void OutputFile::write(std::string_view piece) {
    file_.write(piece.data(), static_cast<std::streamsize>(piece.size()));
    if (!file_) refuse_full();
    written_ += piece.size();
}

void OutputFile::complete() {
    if (file_.is_open()) file_.close();
    std::error_code error;
    if (!file_ || fs::file_size(beside_, error) != written_ || error) refuse_full();
}

void OutputFile::finish() {
    complete();
    // The name may have been given to another file while this one was written.
    refuse_protected(target_, never_);
    refuse_unwritable(target_);
    std::error_code error;
    const fs::file_status replaced = fs::status(target_, error);
    if (fs::is_regular_file(replaced)) fs::permissions(beside_, replaced.permissions(), error);
    move_into_place(beside_, target_);
    beside_.clear();
}

}  // namespace nivora
