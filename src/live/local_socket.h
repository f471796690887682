#pragma once

#include <cstdint>
#include <string>

namespace tarvo {

// A descriptor of the system, closed at the end of its life. -1: none.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor();

    int number() const { return number_; }
    bool is_open() const { return number_ >= 0; }
    void reset() { *this = Descriptor(); }
    int release();

private:
    int number_;
};

// Where the pipe of that name lies: in the user's runtime folder, or in one of the user's own among the temporary files
// where the session has none. A name with a "/" is a path already. Throws std::system_error when that folder cannot be
// made or is open to others.
std::string pipe_path(const std::string& name);

// A folder that is a link, another user's or one that others can write to is refused by both: they could put up a pipe
// of their own there.

// A socket that listens at the path, open to this user only. What a crashed run left there is replaced; while somebody
// listens the fault is EADDRINUSE. Throws std::system_error.
struct ListeningSocket {
    Descriptor lock; // held as long as the socket: of two programs that start at once, one gets it
    Descriptor socket;
    std::uint64_t device = 0; // of the socket's file, and its number there
    std::uint64_t file = 0;
};
ListeningSocket listen_at(const std::string& path);
bool leads_to(const std::string& path, const ListeningSocket& listening); // whoever connects there, connects to it

// A connection to whoever listens at the path. Throws std::system_error.
Descriptor connect_to(const std::string& path);

std::uint32_t peer_user(const Descriptor& socket); // user id of the other end. Throws std::system_error.

} // namespace tarvo
