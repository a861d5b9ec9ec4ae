// What a test does in a process of its own.
#pragma once

#include <csignal>
#include <functional>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// Runs in a process of its own, which ends by itself; true when that was by this signal, or with 0 for 0.
inline bool endsBy(int signal, const std::function<void()>& run)
{
    const pid_t child = ::fork();
    if (child == 0) {
        run();
        ::_exit(testing::Test::HasFailure());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return signal == 0 ? status == 0 : WIFSIGNALED(status) && WTERMSIG(status) == signal;
}

/// As if the disk were full: no file of this process grows beyond this.
inline void limitFiles(rlim_t size)
{
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit room{size, RLIM_INFINITY};
    ::setrlimit(RLIMIT_FSIZE, &room);
}
