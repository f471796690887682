#pragma once

#include "live/live_requests.h"
#include "live/local_socket.h"
#include "live/request_buffer.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>

namespace tarvo {

// The endpoint of the pipe. It never waits for a client: one that is slow, silent or gone holds nobody up, and one that
// does not take its reply is not heard until it does. Memory per client is bounded.
class PipeServer : public PipeEndpoint {
public:
    using Handler = std::function<std::string(std::span<const std::byte> request)>;

    explicit PipeServer(Handler handler); // throws std::system_error
    PipeServer(const PipeServer&) = delete;
    PipeServer& operator=(const PipeServer&) = delete;
    ~PipeServer() override { close_all(); }

    std::optional<PipeFault> listen(const std::string& name) override;
    void close() override { close_all(); }
    int client_count() const override { return static_cast<int>(clients_.size()); }

    // Readable when serve() has something to do; the same from beginning to end.
    int descriptor() const { return events_.number(); }

    // Does what can be done without waiting, until the time is used up. True: requests are left. From within the
    // handler it does nothing and returns true: the request at hand comes first.
    bool serve(std::chrono::milliseconds time);
    bool is_serving() const { return serving_; }

private:
    using ClientId = std::uint64_t;
    static constexpr ClientId kListener = 0;

    struct Client {
        Descriptor socket;
        RequestBuffer requests;
        std::string unsent;          // of the last reply
        std::uint32_t watched = 0;   // events
        bool takes_replies = true;   // false: it is gone, but what it sent counts
        bool is_refused = false;     // to be closed when its reply is sent
        bool stands_in_line = false; // has a request and is in turns_
    };

    void close_all();
    void wait_for_events();
    void accept_clients();
    bool turn_away_client();
    void watch_listener(bool wanted);
    void receive(Client& client);
    void refuse_if_too_long(Client& client);
    void answer_next(ClientId id);
    void send_reply(Client& client);
    void settle(ClientId id);
    void watch(ClientId id, Client& client);

    Handler handler_;
    Descriptor events_;  // epoll
    Descriptor reserve_; // for the time when no other is left
    ListeningSocket listening_;
    std::string path_; // of the socket; empty: not listening
    bool listener_watched_ = false;
    std::map<ClientId, Client> clients_;
    ClientId newest_client_ = kListener;
    std::deque<ClientId> turns_; // clients with a request, the next to be served first
    bool serving_ = false;
};

} // namespace tarvo
