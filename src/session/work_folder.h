// The folder in which the program keeps what it writes for itself: working file, reports, lock, recovery
// state.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace nivora {

/// A file of this name beside the programs says that a package put them there. Such a folder belongs to the
/// package: the program writes nothing into it, not even where an administrator starts it.
inline constexpr const char* k_installed_mark = "nivora.installed";

/// What the choice of the folder depends on.
struct FolderFacts {
    std::filesystem::path program_folder = {};
    bool installed = false;  ///< the program folder bears the mark of a package
    int write_error = 0;     ///< the number of the error of a test file beside the program; 0 if it was made
    std::optional<std::filesystem::path> data_home = std::nullopt;  ///< XDG_DATA_HOME
    std::optional<std::filesystem::path> home = std::nullopt;       ///< the user's home folder
};

/// The chosen folder.
struct WorkFolder {
    std::filesystem::path path = {};  ///< empty if there is none
    bool is_own = false;              ///< the user's own, which may have to be made; else the program's
    int error = 0;                    ///< if there is none: the number of the error that says why
};

/// The program's own folder where it can be written to, as on a memory stick or in a home folder. The folder
/// `nivora` among the user's data for an installed program and for one on a read-only medium. Any other error
/// of the test, such as a full quota, leaves no folder: a working file in another place would hide the
/// unsaved work of the last start from its user.
///
/// A relative data home counts as not given, as its standard says.
[[nodiscard]] WorkFolder choose_work_folder(const FolderFacts& facts);

/// Whether files can be created in a folder: 0, or the number of the error. The test file is named `test`.
[[nodiscard]] int write_test(const std::filesystem::path& folder);

/// Who asks, and for what, as far as the choice needs it; tests give values of their own.
struct UserPlaces {
    unsigned user = 0;  ///< the effective number of the user
    std::optional<std::string> data_home = std::nullopt;
    std::optional<std::string> home = std::nullopt;
    std::optional<std::string> registered_home = std::nullopt;  ///< as the system's list of users has it
};

/// The places of this process: its environment and the system's list of users.
[[nodiscard]] UserPlaces user_places();

/// Looks at the program's folder, and at the places. An administrator who still has the environment of
/// another user gets the own home folder: a folder made in that of the other user would lock its owner out.
[[nodiscard]] FolderFacts folder_facts(const std::filesystem::path& program_folder, const UserPlaces& places);

/// Makes the user's own folder, readable by its user only, and copies the template of the installed program
/// into it where it has none or another one, as after an update. The copy is complete or not there at all.
///
/// @throws FileError with the reason, also if the folder belongs to somebody else
void prepare_own_folder(const std::filesystem::path& folder, const std::filesystem::path& program_folder);

}  // namespace nivora
