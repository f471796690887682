#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <ctime>

namespace tarvo {

// Of this process: what other work on the machine takes does not count.
inline double seconds_used()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// The longest time between two turns of the event loop: an event that comes right after one waits for the next.
class LongestWait {
public:
    explicit LongestWait(QObject* parent)
    {
        auto* const timer = new QTimer(parent);
        QObject::connect(timer, &QTimer::timeout, parent, [this] { note(); });
        timer->start(0);
        restart();
    }
    void restart()
    {
        longest_ = longest_used_ = 0;
        clock_.start();
        used_ = seconds_used();
    }
    void note()
    {
        longest_ = std::max(longest_, 1e-6 * static_cast<double>(clock_.nsecsElapsed()));
        longest_used_ = std::max(longest_used_, 1e3 * (seconds_used() - used_));
        clock_.start();
        used_ = seconds_used();
    }
    double milliseconds() const { return longest_; }
    double milliseconds_used() const { return longest_used_; }

private:
    QElapsedTimer clock_;
    double used_ = 0;
    double longest_ = 0;
    double longest_used_ = 0;
};

} // namespace tarvo
