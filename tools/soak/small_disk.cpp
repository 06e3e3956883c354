#include "tools/soak/small_disk.h"

#include "tests/program/killed_command.h"

#include <sched.h>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace nivora {
namespace {

enum Outcome : int { k_saved = 10, k_told = 11, k_wrong = 12, k_no_disk = 13 };

/// Mounts a small disk that only this process sees.
bool mount_small_disk(const std::filesystem::path& folder, std::uintmax_t bytes) {
    if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
    const std::string options = "size=" + std::to_string(bytes);
    return mount("tmpfs", folder.c_str(), "tmpfs", 0, options.c_str()) == 0;
}

/// In a child process: creates the disk, saves, and checks the files.
int save_once(KillGround& ground, std::uintmax_t free_bytes, bool mounted, int report) {
    if (mounted) {
        if (!mount_small_disk(ground.documents(), ground.size() + free_bytes)) return k_no_disk;
        ground.prepare_documents();
    } else {
        ground.prepare(FileCommand::Save);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{free_bytes, free_bytes};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    const bool told = ground.save_is_told_to_fail();
    std::string why;
    const Found found = ground.look(FileCommand::Save, why);
    const std::string leftovers = ground.leftovers();
    if (leftovers.empty() && found == Found::New && !told) return k_saved;
    if (leftovers.empty() && found == Found::Old && told) return k_told;
    const std::string text = "with " + std::to_string(free_bytes) + " bytes free: told " +
                             std::to_string(told) + ", found " + std::to_string(static_cast<int>(found)) +
                             " " + why + " " + leftovers;
    static_cast<void>(!write(report, text.data(), text.size()));
    return k_wrong;
}

}  // namespace

DiskFigures save_on_small_disks(std::uintmax_t about_bytes, int sizes) {
    DiskFigures figures;
    KillGround ground{about_bytes};
    bool mounted = true;
    for (int i = 0; i < sizes; ++i) {
        const std::uintmax_t free_bytes =
            ground.size() * 3 / 2 * static_cast<std::uintmax_t>(i) / static_cast<std::uintmax_t>(sizes);
        ground.prepare(FileCommand::Save);
        std::array<int, 2> report{};
        if (pipe(report.data()) != 0) return figures;
        const pid_t child = fork();
        if (child == 0) _exit(save_once(ground, free_bytes, mounted, report[1]));
        close(report[1]);
        std::array<char, 500> text{};
        const auto length = read(report[0], text.data(), text.size());
        close(report[0]);
        int status = 0;
        waitpid(child, &status, 0);
        const int outcome = WIFEXITED(status) ? WEXITSTATUS(status) : k_wrong;
        if (outcome == k_no_disk) {
            mounted = false;
            figures.stand_in = "no disk may be mounted here; a limit on the size of a file took its place";
            --i;
            continue;
        }
        ++figures.sizes;
        if (outcome == k_saved) ++figures.saved;
        if (outcome == k_told) ++figures.told;
        if (outcome != k_saved && outcome != k_told && figures.wrong++ == 0) {
            figures.first_wrong =
                length > 0 ? std::string(text.data(), static_cast<std::size_t>(length)) : "a crash";
        }
    }
    return figures;
}

}  // namespace nivora
