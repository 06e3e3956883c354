#include "base/program_lock.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace nivora {

#ifdef _WIN32
ProgramLock::ProgramLock(const std::filesystem::path& file)
    : file_(
          CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)),
      held_(file_ != INVALID_HANDLE_VALUE || GetLastError() != ERROR_SHARING_VIOLATION) {}

ProgramLock::~ProgramLock() {
    if (file_ != INVALID_HANDLE_VALUE) CloseHandle(file_);
}
#else
ProgramLock::ProgramLock(const std::filesystem::path& file)
    : file_(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)), held_(true) {
    // Another user's file may be readable only; that is enough to lock it.
    if (file_ < 0) file_ = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (file_ >= 0) held_ = ::flock(file_, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

ProgramLock::~ProgramLock() {
    if (file_ >= 0) ::close(file_);
}
#endif

}  // namespace nivora
