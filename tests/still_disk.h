#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace tarvo {

inline std::atomic<bool> disk_stands_still = false;

} // namespace tarvo

// Stands before the system's own: a disk that takes as long as a test wants. For one file of a test program.
extern "C" int fsync(int)
{
    while (tarvo::disk_stands_still) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return 0;
}
