#pragma once

#include "live/local_socket.h"

#include <optional>
#include <string>
#include <string_view>

namespace tarvo {

// The sender's end of the pipe: one request at a time, none of the calls waits.
class PipeClient {
public:
    explicit PipeClient(std::string pipe_name) : pipe_name_(std::move(pipe_name)) {}

    bool connect();                                     // false: nobody takes it, see fault()
    const std::string& fault() const { return fault_; } // of the last attempt, which names the pipe's path
    void hang_up();
    bool is_connected() const { return socket_.is_open(); }

    int descriptor() const { return socket_.number(); } // to be waited on for `wanted_events`
    short wanted_events() const;                        // of poll()

    // A request as one line. The carriage return keeps one that the text itself may end with.
    void begin_request(std::string_view text);
    // Sends and receives what can be; hangs up when the other end has.
    void work();
    std::optional<std::string> take_reply();

private:
    std::string pipe_name_;
    std::string fault_;
    Descriptor socket_;
    std::string unsent_;
    std::string received_;
};

} // namespace tarvo
