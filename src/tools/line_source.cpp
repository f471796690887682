#include "tools/line_source.h"

#include <arpa/inet.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace tarvo {

namespace {

constexpr std::size_t kMostWaitingLines = 200'000;
constexpr std::size_t kMostWaitingBytes = std::size_t{64} << 20;
constexpr int kSocketBuffer = 8 << 20; // bytes, as far as the system allows
constexpr std::size_t kLargestDatagram = 65536;
constexpr int kMostDatagramsAtOnce = 1000; // then the replies are looked at again
constexpr auto kLongestUnfinished = std::chrono::seconds(1);
constexpr std::size_t kMostUnfinishedBytes = std::size_t{1} << 17; // more than any request holds
constexpr std::size_t kMostSenders = 1000;

// Datagrams that found no room in the system's buffer.
std::int64_t datagrams_dropped(int socket)
{
    std::array<std::uint32_t, SK_MEMINFO_VARS> numbers = {};
    socklen_t size = sizeof numbers;
    if (getsockopt(socket, SOL_SOCKET, SO_MEMINFO, numbers.data(), &size) < 0) return 0;
    return numbers[SK_MEMINFO_DROPS];
}

} // namespace

std::optional<std::string_view> FileLines::line()
{
    if (line_ || at_end_) return line_;
    std::string_view text;
    at_end_ = reader_->next_line(text) == LineReader::Outcome::end;
    if (!at_end_) line_ = text;
    return line_;
}

UdpLines::UdpLines(const std::string& address, int port, std::function<SourceClock::time_point()> clock)
    : clock_(std::move(clock)), socket_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
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
        sockaddr_in from = {};
        socklen_t size = sizeof from;
        const ssize_t count =
            recvfrom(socket_.number(), bytes.data(), bytes.size(), 0, reinterpret_cast<sockaddr*>(&from), &size);
        if (count < 0) break;
        const SenderId id = (SenderId{from.sin_addr.s_addr} << 16) | from.sin_port;
        take_datagram(id, {bytes.data(), static_cast<std::size_t>(count)});
    }
    end_old_lines();
    for (; lines_.size() > kMostWaitingLines || bytes_waiting_ > kMostWaitingBytes; ++lines_lost_) drop_line();
}

void UdpLines::take_datagram(SenderId id, std::string_view datagram)
{
    if (senders_.size() >= kMostSenders && !senders_.contains(id)) {
        end_unfinished(senders_.begin()->second);
        senders_.erase(senders_.begin());
    }
    Sender& sender = senders_[id];
    const SourceClock::time_point now = clock_();
    if (now - sender.since >= kLongestUnfinished) end_unfinished(sender);
    if (datagram.ends_with('\n')) sender.ends_lines = true;
    if (!sender.ends_lines) return add_lines(datagram);

    if (sender.unfinished.empty()) sender.since = now;
    sender.unfinished += datagram;
    const std::size_t whole = sender.unfinished.rfind('\n') + 1; // 0: no line feed
    add_lines(std::string_view(sender.unfinished).substr(0, whole));
    sender.unfinished.erase(0, whole);
    if (whole > 0) sender.since = now;
    if (sender.unfinished.size() > kMostUnfinishedBytes) end_unfinished(sender);
}

void UdpLines::add_lines(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        lines_.emplace_back(line);
        bytes_waiting_ += line.size();
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

void UdpLines::end_unfinished(Sender& sender)
{
    add_lines(sender.unfinished);
    sender.unfinished.clear();
}

void UdpLines::end_old_lines()
{
    const SourceClock::time_point now = clock_();
    for (auto& [id, sender] : senders_) {
        if (now - sender.since >= kLongestUnfinished) end_unfinished(sender);
    }
}

std::optional<SourceClock::time_point> UdpLines::deadline() const
{
    std::optional<SourceClock::time_point> next;
    for (const auto& [id, sender] : senders_) {
        const SourceClock::time_point end = sender.since + kLongestUnfinished;
        if (!sender.unfinished.empty() && (!next || end < *next)) next = end;
    }
    return next;
}

std::int64_t UdpLines::lines_lost() const
{
    return lines_lost_ + datagrams_dropped(socket_.number());
}

std::int64_t UdpLines::lines_waiting() const
{
    std::int64_t lines = static_cast<std::int64_t>(lines_.size());
    for (const auto& [id, sender] : senders_) lines += sender.unfinished.empty() ? 0 : 1;
    return lines;
}

} // namespace tarvo
