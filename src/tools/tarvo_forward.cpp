#include "text/terminal_text.h"
#include "tools/common/version.h"
#include "tools/forward_survey.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <iostream>

namespace {

int stop_descriptor = -1; // of the signal handler, which is given nothing

void request_stop(int)
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(stop_descriptor, &one, sizeof one);
}

// Ctrl-C ends the run in good order; pressed once more it ends the program.
void catch_stop_signals()
{
    stop_descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    struct sigaction action = {};
    action.sa_handler = request_stop;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

} // namespace

int main(int argc, char** argv)
{
    using namespace tarvo;
    try {
        const ForwardOptions options = read_forward_options({argv + 1, static_cast<std::size_t>(argc - 1)});
        if (options.help) {
            std::cout << kForwardUsage;
            return kDone;
        }
        if (options.version) {
            std::cout << "tarvo-forward " << version_and_build() << '\n';
            return kDone;
        }
        catch_stop_signals();
        return forward_survey(options, stop_descriptor);
    } catch (const UsageError& fault) {
        std::cerr << "tarvo-forward: " << terminal_text(fault.what()) << "\nTry: tarvo-forward --help\n";
        return kWrongUsage;
    } catch (const std::exception& fault) {
        std::cerr << "tarvo-forward: " << terminal_text(fault.what()) << '\n';
        return kFailed;
    }
}
