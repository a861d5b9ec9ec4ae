#include "Process.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

namespace
{

double secondsOf(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

pid_t start(const Command& command)
{
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    const int error = ::posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("can not run " + command[0]);
    return process;
}

/// Adds what the process took; false when it failed.
bool finish(pid_t process, Usage& usage)
{
    constexpr double kilobyte = 1024;
    int status = 0;
    rusage taken{};
    ::wait4(process, &status, 0, &taken);
    usage.cpu += secondsOf(taken.ru_utime) + secondsOf(taken.ru_stime);
    usage.memory += static_cast<double>(taken.ru_maxrss) * kilobyte;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

Usage run(const std::vector<Command>& commands)
{
    const auto begin = std::chrono::steady_clock::now();
    std::vector<pid_t> processes;
    for (const Command& command : commands)
        processes.push_back(start(command));
    Usage usage;
    bool good = true;
    for (const pid_t process : processes)
        good = finish(process, usage) && good;
    usage.time = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    if (!good)
        throw std::runtime_error(commands[0][0] + " fails");
    return usage;
}
