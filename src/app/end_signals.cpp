#include "app/end_signals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <system_error>

namespace tarvo {

namespace {

int heard_descriptor = -1; // of the signal handler, which is given nothing

void note_signal(int signal)
{
    const int kept_errno = errno;
    const auto number = static_cast<std::uint64_t>(signal);
    [[maybe_unused]] const ssize_t written = write(heard_descriptor, &number, sizeof number);
    errno = kept_errno;
}

int catch_signals()
{
    heard_descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (heard_descriptor < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction action = {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN) continue;
        action.sa_handler = note_signal;
        action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
        sigaction(signal, &action, nullptr);
    }
    return heard_descriptor;
}

} // namespace

EndSignals::EndSignals(std::function<void(int)> on_signal)
    : on_signal_(std::move(on_signal)), notifier_(catch_signals(), QSocketNotifier::Read)
{
    connect(&notifier_, &QSocketNotifier::activated, this, [this] { hear(); });
}

void EndSignals::hear()
{
    std::uint64_t number = 0;
    if (read(heard_descriptor, &number, sizeof number) != sizeof number) return;
    on_signal_(number <= SIGTERM ? static_cast<int>(number) : SIGTERM); // two at once come as their sum
}

} // namespace tarvo
