// Another process that works on a basin while a test looks at the same file.
#pragma once

#ifndef _WIN32
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>

namespace nivora {

/// Runs work in a separate process until it holds the file, and keeps it there. The process is killed when
/// this object ends, unless finish() has let it complete.
class OtherProgram {
public:
    /// @param work calls the function that it gets once it holds the file; that call returns at finish()
    explicit OtherProgram(const std::function<void(const std::function<void()>& hold)>& work) {
        EXPECT_EQ(pipe(held_.data()), 0);
        EXPECT_EQ(pipe(go_on_.data()), 0);
        child_ = fork();
        if (child_ == 0) run(work);
        close(held_[1]);
        close(go_on_[0]);
        char byte = 0;
        EXPECT_EQ(read(held_[0], &byte, 1), 1) << "the other process failed before it held the file";
    }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    ~OtherProgram() {
        if (child_ > 0) {
            kill(child_, SIGKILL);
            waitpid(child_, nullptr, 0);
        }
        close(held_[0]);
        close(go_on_[1]);
    }

    /// Lets the work continue and waits for its end.
    void finish() {
        EXPECT_EQ(write(go_on_[1], "x", 1), 1);
        int status = -1;
        waitpid(child_, &status, 0);
        EXPECT_EQ(status, 0) << "the other process did not end its work";
        child_ = -1;
    }

private:
    [[noreturn]] void run(const std::function<void(const std::function<void()>&)>& work) const {
        try {
            work([this] {
                char byte = 'x';
                static_cast<void>(!write(held_[1], &byte, 1));
                if (read(go_on_[0], &byte, 1) != 1) _exit(2);
            });
        } catch (...) {
            _exit(1);
        }
        _exit(0);
    }

    std::array<int, 2> held_{};
    std::array<int, 2> go_on_{};
    pid_t child_ = -1;
};

}  // namespace nivora
#endif
