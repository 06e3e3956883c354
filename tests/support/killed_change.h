// A basin file with the journal of a change that was killed half way.
#pragma once

#include "store/database.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace nivora {

/// Kills a child process in the middle of a statement that has written some of its pages to the file.
inline void kill_during_change(const std::filesystem::path& path, const std::string& statement) {
    const pid_t child = fork();
    if (child == 0) {
        BasinDatabase database{path, Access::ReadWrite};
        database.execute("PRAGMA cache_size = 1");
        database.execute("PRAGMA cache_spill = 1");
        database.execute("BEGIN IMMEDIATE");
        database.execute(statement);
        kill(getpid(), SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    ASSERT_TRUE(std::filesystem::exists(path.string() + "-journal"));
}

}  // namespace nivora
#endif
