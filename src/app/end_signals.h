#pragma once

#include <QSocketNotifier>

#include <functional>

namespace tarvo {

// Hears the signals that end a program (TERM, INT, HUP) from within the event loop, where anything may be done; a
// second one of a kind ends the program at once. One that is ignored from the start, as under nohup, stays so. One
// object a program.
class EndSignals : public QObject {
public:
    explicit EndSignals(std::function<void(int signal)> on_signal); // throws std::system_error

private:
    void hear();

    std::function<void(int)> on_signal_;
    QSocketNotifier notifier_;
};

} // namespace tarvo
