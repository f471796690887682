#pragma once

#include "intake/header.h"
#include "live/local_socket.h"
#include "text/line_reader.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarvo {

using SourceClock = std::chrono::steady_clock;

// Where a forwarder's data lines come from.
class LineSource {
public:
    virtual ~LineSource() = default;

    // The line that is next; it holds until drop_line(). nullopt: none is there, for now or for good.
    virtual std::optional<std::string_view> line() = 0;
    virtual void drop_line() = 0;
    virtual bool is_at_end() = 0;

    // For a source that lines arrive at by themselves: what to wait on, -1: nothing; and taking in what has come.
    virtual int descriptor() const { return -1; }
    virtual void collect() {}
    virtual std::optional<SourceClock::time_point> deadline() const { return std::nullopt; } // of the next collect()
    virtual std::int64_t lines_lost() const { return 0; }
    virtual std::int64_t lines_waiting() const { return 0; } // have come and were not dropped yet
};

// The data lines of a file, behind its header. A line too long to be read stands as an empty one, which a monitor
// refuses and counts as it would count the long one.
class FileLines : public LineSource {
public:
    explicit FileLines(std::unique_ptr<LineReader> reader) : reader_(std::move(reader)) {}

    std::optional<std::string_view> line() override;
    void drop_line() override { line_.reset(); }
    bool is_at_end() override { return !line(); }

private:
    std::unique_ptr<LineReader> reader_;
    std::optional<std::string_view> line_;
    bool at_end_ = false;
};

// Lines that come as UDP datagrams, each with one line or more. A sender that has ended a datagram with a line feed
// ends its lines so: what follows the last line feed of a datagram is joined to its next one, unless that takes over a
// second. While nobody takes the lines the newest are kept.
class UdpLines : public LineSource {
public:
    // IPv4; throws std::system_error or std::invalid_argument.
    UdpLines(const std::string& address, int port, std::function<SourceClock::time_point()> clock = SourceClock::now);

    std::optional<std::string_view> line() override;
    void drop_line() override;
    bool is_at_end() override { return false; }
    int descriptor() const override { return socket_.number(); }
    void collect() override;
    std::optional<SourceClock::time_point> deadline() const override;
    std::int64_t lines_lost() const override; // the system's buffer overflowed, too: a datagram is taken for a line
    std::int64_t lines_waiting() const override;

private:
    struct Sender {
        bool ends_lines = false;
        std::string unfinished; // line
        SourceClock::time_point since;
    };
    using SenderId = std::uint64_t; // address and port

    void take_datagram(SenderId id, std::string_view datagram);
    void add_lines(std::string_view text);
    void end_unfinished(Sender& sender);
    void end_old_lines();

    std::function<SourceClock::time_point()> clock_;
    Descriptor socket_;
    std::map<SenderId, Sender> senders_;
    std::deque<std::string> lines_;
    std::size_t bytes_waiting_ = 0; // in them
    std::int64_t lines_lost_ = 0;
};

} // namespace tarvo
