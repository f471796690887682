#include "live/pipe_client.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace tarvo {

namespace {

bool may_come_later(int error_number)
{
    return error_number == EAGAIN || error_number == EINTR;
}

} // namespace

bool PipeClient::connect()
{
    hang_up();
    try {
        Descriptor socket = connect_to(pipe_path(pipe_name_));
        const std::uint32_t monitor = peer_user(socket);
        if (monitor != geteuid()) {
            fault_ = "the monitor runs as user " + std::to_string(monitor) + ", this program as user " +
                     std::to_string(geteuid()) + ": lines are sent to a monitor of the same user only";
            return false;
        }
        socket_ = std::move(socket);
        return true;
    } catch (const std::system_error& fault) {
        fault_ = fault.what();
        return false;
    }
}

void PipeClient::hang_up()
{
    socket_.reset();
    unsent_.clear();
    received_.clear();
}

short PipeClient::wanted_events() const
{
    return static_cast<short>(unsent_.empty() ? POLLIN : POLLIN | POLLOUT);
}

void PipeClient::begin_request(std::string_view text)
{
    unsent_.append(text).append("\r\n");
    work();
}

void PipeClient::work()
{
    if (!unsent_.empty()) {
        const ssize_t sent = send(socket_.number(), unsent_.data(), unsent_.size(), MSG_NOSIGNAL);
        if (sent > 0) unsent_.erase(0, static_cast<std::size_t>(sent));
        if (sent < 0 && !may_come_later(errno)) return hang_up();
    }
    std::array<char, 256> bytes;
    const ssize_t count = recv(socket_.number(), bytes.data(), bytes.size(), 0);
    if (count > 0) received_.append(bytes.data(), static_cast<std::size_t>(count));
    if (count == 0 || (count < 0 && !may_come_later(errno))) hang_up();
}

std::optional<std::string> PipeClient::take_reply()
{
    const std::size_t end = received_.find('\n');
    if (end == std::string::npos) return std::nullopt;
    std::string reply = received_.substr(0, end);
    received_.erase(0, end + 1);
    return reply;
}

} // namespace tarvo
