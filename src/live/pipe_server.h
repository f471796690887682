#pragma once

#include "live/live_requests.h"
#include "live/local_socket.h"
#include "live/request_buffer.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string_view>
#include <vector>

namespace tarvo {

// The endpoint of the pipe. It never waits for a client: one that is slow, silent or gone holds nobody up, and one that
// does not take its reply is not heard until it does. Memory per client is bounded.
class PipeServer : public PipeEndpoint {
public:
    using Handler = std::function<std::string(std::span<const std::byte> request)>;
    using Consent = std::function<bool()>;

    // may_reply: asked once for all requests that were handled in a pass, before their replies are sent. False: they
    // wait, and serve() asks again. Throws std::system_error.
    explicit PipeServer(Handler handler, Consent may_reply = {});
    PipeServer(const PipeServer&) = delete;
    PipeServer& operator=(const PipeServer&) = delete;
    ~PipeServer() override { close_all(); }

    std::optional<PipeFault> listen(const std::string& name) override;
    void close() override { close_all(); }
    int client_count() const override { return static_cast<int>(clients_.size()); }
    bool is_in_place() const override;

    // Readable when serve() has something to do; the same from beginning to end.
    int descriptor() const { return events_.number(); }

    // Does what can be done without waiting, until the time is used up. True: requests or replies are left. From within
    // the handler it does nothing and returns true: the request at hand comes first.
    bool serve(std::chrono::milliseconds time);
    bool is_serving() const { return serving_; }

private:
    using ClientId = std::uint64_t;
    static constexpr ClientId kListener = 0;

    struct Client {
        Descriptor socket;
        RequestBuffer requests;
        std::string held;            // replies that may not be sent yet
        std::string unsent;          // of the last replies
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
    void receive(ClientId id, Client& client);
    void refuse_if_too_long(ClientId id, Client& client);
    void answer_those_in_line(std::chrono::steady_clock::time_point deadline);
    void answer_next(ClientId id);
    void hold_reply(ClientId id, Client& client, std::string_view reply);
    bool release_replies();
    void send_reply(Client& client);
    void settle(ClientId id);
    void watch(ClientId id, Client& client);

    Handler handler_;
    Consent may_reply_;
    Descriptor events_;  // epoll
    Descriptor reserve_; // for the time when no other is left
    ListeningSocket listening_;
    std::string path_; // of the socket; empty: not listening
    bool listener_watched_ = false;
    std::map<ClientId, Client> clients_;
    ClientId newest_client_ = kListener;
    std::deque<ClientId> turns_;            // clients with a request, the next to be served first
    std::vector<ClientId> with_held_reply_; // the same one may stand there twice
    bool serving_ = false;
};

} // namespace tarvo
