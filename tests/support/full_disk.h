// A disk without room, for tests of what is written to it.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace nivora {

/// Acts like a full disk: no file of this process can grow beyond a size.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) : signal_before_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &limit_before_);
        const rlimit limit{bytes, limit_before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &limit_before_);
        std::signal(SIGXFSZ, signal_before_);
    }

private:
    void (*signal_before_)(int);
    rlimit limit_before_{};
};

}  // namespace nivora
