#pragma once

#include "intake/header.h"
#include "live/local_socket.h"
#include "text/line_reader.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarvo {

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

// Lines that come as UDP datagrams, each with one line or more. While nobody takes them the newest are kept.
class UdpLines : public LineSource {
public:
    UdpLines(const std::string& address, int port); // IPv4; throws std::system_error or std::invalid_argument

    std::optional<std::string_view> line() override;
    void drop_line() override;
    bool is_at_end() override { return false; }
    int descriptor() const override { return socket_.number(); }
    void collect() override;
    std::int64_t lines_lost() const override { return lines_lost_; }
    std::int64_t lines_waiting() const override { return static_cast<std::int64_t>(lines_.size()); }

private:
    void add_lines(std::string_view datagram);

    Descriptor socket_;
    std::deque<std::string> lines_;
    std::size_t bytes_waiting_ = 0; // in them
    std::int64_t lines_lost_ = 0;
};

} // namespace tarvo
