#pragma once

#include <csignal>
#include <functional>

#include <sys/wait.h>
#include <unistd.h>

/// Runs `work` in a process of its own. True when that was killed, false when it came to its end.
inline bool diesDoing(const std::function<void()> &work)
{
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}
