#include "live/pipe_server.h"

#include "ports/busy_flag.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <thread>
#include <utility>

namespace tarvo {

namespace {

constexpr std::size_t kMostClients = 500;                      // those above wait for a place
constexpr std::size_t kMostBytesAtOnce = std::size_t{1} << 16; // of one client in one turn

bool is_this_user(const Descriptor& socket)
{
    try {
        return peer_user(socket) == geteuid();
    } catch (const std::system_error&) {
        return false;
    }
}

Descriptor reserve_descriptor()
{
    return Descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

} // namespace

PipeServer::PipeServer(Handler handler, Consent may_reply)
    : handler_(std::move(handler)), may_reply_(std::move(may_reply)), events_(epoll_create1(EPOLL_CLOEXEC)),
      reserve_(reserve_descriptor())
{
    if (!events_.is_open()) throw std::system_error(errno, std::generic_category(), "epoll");
}

std::optional<PipeFault> PipeServer::listen(const std::string& name)
{
    try {
        const std::string path = pipe_path(name);
        listening_ = ListeningSocket(); // of before, its lock
        listener_watched_ = false;
        listening_ = listen_at(path);
        path_ = path;
        watch_listener(true);
        return std::nullopt;
    } catch (const std::system_error& fault) {
        return PipeFault{fault.code().value(), fault.what()};
    }
}

void PipeServer::close_all()
{
    clients_.clear();
    turns_.clear();
    with_held_reply_.clear();
    listener_watched_ = false;
    listening_.socket.reset();
    if (!path_.empty() && is_in_place()) unlink(path_.c_str());
    path_.clear();
    listening_.lock.reset();
}

bool PipeServer::serve(std::chrono::milliseconds time)
{
    if (serving_) return true;
    const BusyFlag busy(serving_);
    const auto deadline = std::chrono::steady_clock::now() + time;
    do {
        if (!release_replies()) return true;
        wait_for_events();
        answer_those_in_line(deadline);
    } while (!with_held_reply_.empty() && std::chrono::steady_clock::now() < deadline);
    return !release_replies() || !turns_.empty();
}

bool PipeServer::is_in_place() const
{
    return path_.empty() || leads_to(path_, listening_);
}

void PipeServer::wait_for_events()
{
    std::array<epoll_event, kMostClients + 1> events; // all at once: whoever asked first is first in line
    const int count = epoll_wait(events_.number(), events.data(), static_cast<int>(events.size()), 0);
    for (int event = 0; event < count; ++event) {
        const epoll_event& found = events[static_cast<std::size_t>(event)];
        const ClientId id = found.data.u64;
        if (id == kListener) {
            accept_clients();
            continue;
        }
        Client& client = clients_.at(id);
        if (!client.unsent.empty()) send_reply(client);
        if ((found.events & ~std::uint32_t{EPOLLOUT}) != 0) receive(id, client);
        settle(id);
    }
}

void PipeServer::accept_clients()
{
    while (clients_.size() < kMostClients) {
        Descriptor socket(accept4(listening_.socket.number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (!socket.is_open()) {
            if ((errno != EMFILE && errno != ENFILE) || !turn_away_client()) return;
            continue;
        }
        if (!is_this_user(socket)) continue;
        const ClientId id = ++newest_client_;
        Client& client = clients_[id];
        client.socket = std::move(socket);
        watch(id, client);
    }
    watch_listener(false);
}

// Out of descriptors, one in reserve takes the client in and lets it go: it may come back, and nobody waits for ever.
bool PipeServer::turn_away_client()
{
    reserve_.reset();
    Descriptor client(accept4(listening_.socket.number(), nullptr, nullptr, SOCK_CLOEXEC));
    const bool was_there = client.is_open();
    client.reset();
    reserve_ = reserve_descriptor();
    if (!was_there) std::this_thread::sleep_for(std::chrono::milliseconds(10)); // the client asks again without end
    return was_there;
}

void PipeServer::watch_listener(bool wanted)
{
    if (wanted == listener_watched_ || !listening_.socket.is_open()) return;
    epoll_event event = {};
    event.events = EPOLLIN;
    event.data.u64 = kListener;
    epoll_ctl(events_.number(), wanted ? EPOLL_CTL_ADD : EPOLL_CTL_DEL, listening_.socket.number(), &event);
    listener_watched_ = wanted;
}

void PipeServer::receive(ClientId id, Client& client)
{
    if (client.stands_in_line || client.requests.is_ended() || client.is_refused) return;
    std::array<char, kMostBytesAtOnce> bytes;
    const ssize_t count = recv(client.socket.number(), bytes.data(), bytes.size(), 0);
    if (count > 0) {
        client.requests.append({bytes.data(), static_cast<std::size_t>(count)});
    } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
        client.requests.end();
    }
    refuse_if_too_long(id, client);
}

void PipeServer::refuse_if_too_long(ClientId id, Client& client)
{
    if (client.is_refused || !client.requests.is_too_long()) return;
    client.is_refused = true;
    hold_reply(id, client, "Invalid Request\n");
}

void PipeServer::answer_those_in_line(std::chrono::steady_clock::time_point deadline)
{
    while (!turns_.empty()) {
        const ClientId next = turns_.front();
        turns_.pop_front();
        answer_next(next);
        if (std::chrono::steady_clock::now() >= deadline) return;
    }
}

// The handler may close the pipe, or listen anew: afterwards the client is looked for again.
void PipeServer::answer_next(ClientId id)
{
    const auto found = clients_.find(id);
    if (found == clients_.end()) return;
    found->second.stands_in_line = false;
    const std::optional<RequestBuffer::Request> request = found->second.requests.next();
    if (!request) return;
    const std::string text(request->text);
    const bool by_line_feed = request->end == RequestBuffer::End::line_feed;
    std::string reply = handler_(std::as_bytes(std::span(text)));

    const auto still_there = clients_.find(id);
    if (still_there == clients_.end()) return;
    Client& client = still_there->second;
    if (by_line_feed) reply += '\n';
    hold_reply(id, client, reply);
    refuse_if_too_long(id, client);
    settle(id);
}

void PipeServer::hold_reply(ClientId id, Client& client, std::string_view reply)
{
    client.held += reply;
    with_held_reply_.push_back(id);
}

// False: they have to wait.
bool PipeServer::release_replies()
{
    if (with_held_reply_.empty()) return true;
    if (may_reply_ && !may_reply_()) return false;
    for (const ClientId id : std::exchange(with_held_reply_, {})) {
        const auto found = clients_.find(id);
        if (found == clients_.end() || found->second.held.empty()) continue;
        Client& client = found->second;
        client.unsent += std::exchange(client.held, {});
        send_reply(client);
        settle(id);
    }
    return true;
}

void PipeServer::send_reply(Client& client)
{
    if (!client.takes_replies) client.unsent.clear();
    while (!client.unsent.empty()) {
        const ssize_t sent =
            send(client.socket.number(), client.unsent.data(), client.unsent.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent > 0) {
            client.unsent.erase(0, static_cast<std::size_t>(sent));
        } else if (errno == EAGAIN) {
            return;
        } else if (errno != EINTR) {
            client.takes_replies = false;
            client.unsent.clear();
        }
    }
}

// Lets a client go, puts it in line, or waits for what it is to do next.
void PipeServer::settle(ClientId id)
{
    Client& client = clients_.at(id);
    const bool has_request = !client.is_refused && client.requests.has_request();
    const bool is_done = client.is_refused || (client.requests.is_ended() && !has_request);
    if (is_done && client.unsent.empty() && client.held.empty()) {
        clients_.erase(id);
        watch_listener(true);
        return;
    }
    if (has_request && client.unsent.empty() && !client.stands_in_line) {
        client.stands_in_line = true;
        turns_.push_back(id);
    }
    watch(id, client);
}

void PipeServer::watch(ClientId id, Client& client)
{
    const bool listens = !client.requests.is_ended() && !client.is_refused && client.unsent.empty();
    const std::uint32_t wanted =
        (listens ? std::uint32_t{EPOLLIN} : 0U) | (client.unsent.empty() ? 0U : std::uint32_t{EPOLLOUT});
    if (wanted == client.watched) return;
    epoll_event event = {};
    event.events = wanted;
    event.data.u64 = id;
    // A client that is not waited for is taken out altogether: its hanging up would be reported without end.
    const int operation = wanted == 0 ? EPOLL_CTL_DEL : client.watched == 0 ? EPOLL_CTL_ADD : EPOLL_CTL_MOD;
    epoll_ctl(events_.number(), operation, client.socket.number(), &event);
    client.watched = wanted;
}

} // namespace tarvo
