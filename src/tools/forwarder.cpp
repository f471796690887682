#include "tools/forwarder.h"

#include "live/definition_requests.h"

#include <poll.h>

#include <algorithm>
#include <array>

namespace tarvo {

namespace {

constexpr auto kRetryInterval = std::chrono::milliseconds(500);
constexpr auto kPatienceWhenStopped = std::chrono::seconds(2); // for the replies still to come
constexpr auto kMostCatchingUp = std::chrono::seconds(1);      // of the rate, after the monitor was busy

constexpr const char* kWaiting = "Waiting for the monitor: press \"Listen for UDP\" in its window";

} // namespace

Forwarder::Forwarder(std::string pipe_name, std::vector<std::string> definitions, LineSource& lines,
                     std::optional<double> rate, int stop_descriptor, std::function<void(const std::string&)> say)
    : pipe_(std::move(pipe_name)), definitions_(std::move(definitions)), lines_(lines), rate_(rate),
      stop_descriptor_(stop_descriptor), say_(std::move(say))
{
}

ForwardEnd Forwarder::run()
{
    while (connect_when_possible()) {
        Outcome outcome = send_definitions();
        if (outcome == Outcome::refused) return end_run(ForwardEnd::definitions_refused);
        tell_of_losses();
        if (outcome == Outcome::done) outcome = send_lines();
        if (outcome == Outcome::done) return end_run(stopped_ ? ForwardEnd::stopped : ForwardEnd::complete);
        if (!stopped_) say_("The monitor has hung up");
        if (!was_answered_) pause_before_retry(); // another user's monitor does so at once
    }
    return end_run(ForwardEnd::stopped);
}

// False when the run was stopped first.
bool Forwarder::connect_when_possible()
{
    std::string said;
    while (!stopped_) {
        if (pipe_.connect()) {
            was_answered_ = false;
            say_("Connected to the monitor");
            return true;
        }
        const std::string waiting = kWaiting + (" (" + pipe_.fault() + ')');
        if (waiting != said) say_(waiting);
        said = waiting;
        pause_before_retry();
    }
    return false;
}

void Forwarder::tell_of_losses()
{
    const std::int64_t lost = lines_.lines_lost() - losses_told_;
    if (lost == 0) return;
    losses_told_ += lost;
    say_(std::to_string(lost) + " lines were lost: they came in while nobody took them");
}

void Forwarder::pause_before_retry()
{
    const Clock::time_point end = Clock::now() + kRetryInterval;
    while (!stopped_ && Clock::now() < end) wait_until(end);
}

Forwarder::Outcome Forwarder::send_definitions()
{
    for (const std::string& request : definitions_) {
        const std::optional<std::string> reply = exchange(request);
        if (!reply) return Outcome::hung_up;
        if (*reply == "OK") continue;
        say_("The monitor refuses the definitions: " + *reply);
        return Outcome::refused;
    }
    return Outcome::done;
}

Forwarder::Outcome Forwarder::send_lines()
{
    next_turn_ = Clock::now();
    while (!stopped_) {
        if (!pipe_.is_connected()) return Outcome::hung_up;
        const std::optional<std::string_view> line = lines_.line();
        if (line) {
            wait_for_turn();
            if (stopped_) break;
            if (!forward_line(*line)) return Outcome::hung_up;
        } else if (lines_.is_at_end()) {
            break;
        } else {
            wait_until(Clock::time_point::max());
        }
    }
    return Outcome::done;
}

// False when the line is still to be sent: the monitor has gone without an answer.
bool Forwarder::forward_line(std::string_view line)
{
    std::string request = request_text(kDataLine, line);
    const bool fits = request.size() <= kLongestRequest;
    if (!fits) request = request_text(kDataLine, ""); // refused too, and counted as the line would be
    const std::optional<std::string> reply = exchange(request);
    if (!reply) return false;
    ++(fits && *reply == "OK" ? counts_.sent : counts_.refused);
    lines_.drop_line();
    counts_.lost = lines_.lines_lost();
    if (on_line) on_line(counts_);
    return true;
}

void Forwarder::wait_for_turn()
{
    if (!rate_) return;
    while (!stopped_ && pipe_.is_connected() && Clock::now() < next_turn_) wait_until(next_turn_);
    next_turn_ = std::max(next_turn_, Clock::now() - kMostCatchingUp) +
                 std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1.0 / *rate_));
}

// The reply; nullopt when the monitor hung up, or kept a run that is to end waiting too long.
std::optional<std::string> Forwarder::exchange(std::string_view request)
{
    if (!pipe_.is_connected()) return std::nullopt;
    pipe_.begin_request(request);
    std::optional<Clock::time_point> deadline;
    for (;;) {
        if (std::optional<std::string> reply = pipe_.take_reply()) {
            was_answered_ = true;
            return reply;
        }
        if (!pipe_.is_connected()) return std::nullopt;
        if (stopped_ && !deadline) deadline = Clock::now() + kPatienceWhenStopped;
        if (deadline && Clock::now() >= *deadline) return std::nullopt;
        wait_until(deadline.value_or(Clock::time_point::max()));
    }
}

// Returns when something has happened, or at the time at the latest.
void Forwarder::wait_until(Clock::time_point time)
{
    const std::optional<Clock::time_point> collecting = lines_.deadline();
    if (collecting) time = std::min(time, *collecting);
    int timeout = -1;
    if (time != Clock::time_point::max()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now()).count();
        timeout = static_cast<int>(std::max<decltype(left)>(left, 0));
    }
    std::array<pollfd, 3> watched = {{{pipe_.descriptor(), pipe_.wanted_events(), 0},
                                      {lines_.descriptor(), POLLIN, 0},
                                      {stopped_ ? -1 : stop_descriptor_, POLLIN, 0}}};
    if (poll(watched.data(), watched.size(), timeout) < 0) return; // interrupted
    if (watched[1].revents != 0 || (collecting && Clock::now() >= *collecting)) lines_.collect();
    if (watched[2].revents != 0) stopped_ = true;
    if (watched[0].revents != 0) pipe_.work();
}

ForwardEnd Forwarder::end_run(ForwardEnd how)
{
    if (how != ForwardEnd::definitions_refused) exchange(request_text(kEndOfLiveData, ""));
    lines_.collect();
    counts_.lost = lines_.lines_lost() + lines_.lines_waiting();
    pipe_.hang_up();
    return how;
}

} // namespace tarvo
