#include "tools/line_source.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace tarvo {

namespace {

constexpr std::size_t kMostWaitingLines = 200'000;
constexpr std::size_t kMostWaitingBytes = std::size_t{64} << 20;
constexpr int kSocketBuffer = 8 << 20; // bytes, as far as the system allows
constexpr std::size_t kLargestDatagram = 65536;
constexpr int kMostDatagramsAtOnce = 1000; // then the replies are looked at again

} // namespace

std::optional<std::string_view> FileLines::line()
{
    if (line_ || at_end_) return line_;
    std::string_view text;
    at_end_ = reader_->next_line(text) == LineReader::Outcome::end;
    if (!at_end_) line_ = text;
    return line_;
}

UdpLines::UdpLines(const std::string& address, int port)
    : socket_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
{
    const std::string place = address + ':' + std::to_string(port);
    sockaddr_in local = {};
    local.sin_family = AF_INET;
    local.sin_port = htons(static_cast<std::uint16_t>(port));
    if (inet_pton(AF_INET, address.c_str(), &local.sin_addr) != 1) {
        throw std::invalid_argument("--bind: an IPv4 address was expected, found \"" + address + '"');
    }
    setsockopt(socket_.number(), SOL_SOCKET, SO_RCVBUF, &kSocketBuffer, sizeof kSocketBuffer);
    if (bind(socket_.number(), reinterpret_cast<const sockaddr*>(&local), sizeof local) < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot receive on " + place);
    }
}

std::optional<std::string_view> UdpLines::line()
{
    if (lines_.empty()) return std::nullopt;
    return lines_.front();
}

void UdpLines::drop_line()
{
    bytes_waiting_ -= lines_.front().size();
    lines_.pop_front();
}

void UdpLines::collect()
{
    std::array<char, kLargestDatagram> bytes;
    for (int datagram = 0; datagram < kMostDatagramsAtOnce; ++datagram) {
        const ssize_t count = recv(socket_.number(), bytes.data(), bytes.size(), 0);
        if (count < 0) return;
        add_lines({bytes.data(), static_cast<std::size_t>(count)});
    }
}

void UdpLines::add_lines(std::string_view datagram)
{
    while (!datagram.empty()) {
        const std::size_t end = datagram.find('\n');
        std::string_view line = datagram.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        lines_.emplace_back(line);
        bytes_waiting_ += line.size();
        datagram.remove_prefix(end == std::string_view::npos ? datagram.size() : end + 1);
    }
    for (; lines_.size() > kMostWaitingLines || bytes_waiting_ > kMostWaitingBytes; ++lines_lost_) drop_line();
}

} // namespace tarvo
