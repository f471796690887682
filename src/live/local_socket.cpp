#include "live/local_socket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tarvo {

namespace {

constexpr int kWaitingConnections = 512;

[[noreturn]] void refuse(const std::string& what, int error_number = errno)
{
    throw std::system_error(error_number, std::generic_category(), what);
}

sockaddr_un address_of(const std::string& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) refuse(path, ENAMETOOLONG);
    std::memcpy(address.sun_path, path.data(), path.size());
    return address;
}

Descriptor new_socket(const std::string& path)
{
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket.is_open()) refuse(path);
    return socket;
}

bool somebody_listens(const std::string& path)
{
    try {
        connect_to(path);
        return true;
    } catch (const std::system_error& fault) {
        return fault.code() == std::errc::resource_unavailable_try_again; // so many wait there already
    }
}

// Why a folder is not the user's alone: whoever else could write to it, or turn a link to it elsewhere, could put up a
// pipe of his own. Empty: it is.
std::string danger_of(const struct stat& folder)
{
    constexpr uid_t kSystem = 0;
    if (S_ISLNK(folder.st_mode)) return "a link leads to the folder ";
    if (folder.st_uid != geteuid() && folder.st_uid != kSystem) return "another user owns the folder ";
    return (folder.st_mode & (S_IWGRP | S_IWOTH)) != 0 ? "others can write to the folder " : "";
}

struct stat status_of(const std::string& folder)
{
    struct stat found = {};
    if (lstat(folder.c_str(), &found) < 0) refuse(folder);
    return found;
}

void refuse_folder_of_others(const std::string& path)
{
    const std::filesystem::path parent = std::filesystem::path(path).parent_path();
    const std::string folder = parent.empty() ? "." : parent.string();
    const std::string danger = danger_of(status_of(folder));
    if (!danger.empty()) refuse(danger + folder, EACCES);
}

// Among everybody's temporary files the name could have been taken before, and nobody else is to see what is in it.
void make_private_folder(const std::string& folder)
{
    if (mkdir(folder.c_str(), 0700) < 0 && errno != EEXIST) refuse(folder);
    const struct stat found = status_of(folder);
    const std::string danger = danger_of(found);
    if (!danger.empty()) refuse(danger + folder, EACCES);
    if (!S_ISDIR(found.st_mode) || (found.st_mode & 077) != 0) refuse(folder, EACCES);
}

std::string runtime_folder()
{
    const char* const given = std::getenv("XDG_RUNTIME_DIR");
    if (given != nullptr && given[0] == '/' && access(given, W_OK | X_OK) == 0) return given;
    std::string folder = (std::filesystem::temp_directory_path() / "tarvo-").string() + std::to_string(geteuid());
    make_private_folder(folder);
    return folder;
}

} // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept
{
    if (this == &other) return *this;
    if (number_ >= 0) close(number_);
    number_ = other.release();
    return *this;
}

Descriptor::~Descriptor()
{
    if (number_ >= 0) close(number_);
}

int Descriptor::release()
{
    return std::exchange(number_, -1);
}

std::string pipe_path(const std::string& name)
{
    return name.find('/') != std::string::npos ? name : runtime_folder() + '/' + name;
}

ListeningSocket listen_at(const std::string& path)
{
    refuse_folder_of_others(path);
    ListeningSocket listening;
    const std::string lock_path = path + ".lock";
    listening.lock = Descriptor(open(lock_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!listening.lock.is_open()) refuse(lock_path);
    if (flock(listening.lock.number(), LOCK_EX | LOCK_NB) < 0) {
        refuse(path, errno == EWOULDBLOCK ? EADDRINUSE : errno);
    }
    if (somebody_listens(path)) refuse(path, EADDRINUSE);
    listening.socket = new_socket(path);
    const sockaddr_un address = address_of(path);
    unlink(path.c_str());
    const mode_t others = umask(0177); // no moment at which others could connect
    const int bound = bind(listening.socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    const int reason = errno;
    umask(others);
    if (bound < 0) refuse(path, reason);
    if (listen(listening.socket.number(), kWaitingConnections) < 0) refuse(path);
    struct stat made = {};
    if (lstat(path.c_str(), &made) < 0) refuse(path);
    listening.device = made.st_dev;
    listening.file = made.st_ino;
    return listening;
}

bool leads_to(const std::string& path, const ListeningSocket& listening)
{
    struct stat found = {};
    return lstat(path.c_str(), &found) == 0 && found.st_dev == listening.device && found.st_ino == listening.file;
}

std::uint32_t peer_user(const Descriptor& socket)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    if (getsockopt(socket.number(), SOL_SOCKET, SO_PEERCRED, &peer, &size) < 0) refuse("peer of a socket");
    return peer.uid;
}

Descriptor connect_to(const std::string& path)
{
    refuse_folder_of_others(path);
    Descriptor socket = new_socket(path);
    const sockaddr_un address = address_of(path);
    if (connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) < 0) refuse(path);
    return socket;
}

} // namespace tarvo
