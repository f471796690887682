#pragma once

#include <csignal>
#include <cstdlib>
#include <functional>
#include <random>

#include <sys/wait.h>
#include <unistd.h>

namespace tarvo {

// How often a program is killed while it saves; the environment's TARVO_KILLS asks for more than the usual.
inline int number_of_kills(int usual)
{
    const char* const wanted = std::getenv("TARVO_KILLS");
    return wanted != nullptr ? std::atoi(wanted) : usual;
}

// A process that saves without end, killed at some moment. False: a save failed before.
inline bool killed_while_saving(const std::function<bool(int save)>& save, std::mt19937& random)
{
    const pid_t writer = fork();
    if (writer == 0) {
        for (int number = 0; save(number); ++number) {}
        _exit(1);
    }
    usleep(static_cast<useconds_t>(random() % 20'000));
    kill(writer, SIGKILL);
    int ended = 0;
    waitpid(writer, &ended, 0);
    return WIFSIGNALED(ended);
}

} // namespace tarvo
