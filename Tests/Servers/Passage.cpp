#include "Tests/Servers/Passage.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace quen::test {

namespace {

bool sendAll(int to, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t count = send(to, bytes, size, MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        if (count > 0) {
            bytes += count;
            size -= static_cast<std::size_t>(count);
        }
    }
    return true;
}

/// Passes on what one side has just said. How much that was; nothing once it has hung up, or the
/// other side has.
std::size_t passPiece(const FileDescriptor& from, const FileDescriptor& to) {
    std::array<char, 16384> piece{};
    const ssize_t count = read(from.number(), piece.data(), piece.size());
    const auto size = static_cast<std::size_t>(count > 0 ? count : 0);
    return size > 0 && sendAll(to.number(), piece.data(), size) ? size : 0;
}

} // namespace

Passage::Passage(Loopback server, std::size_t bytes, std::function<void()> middle)
    : server_(std::move(server)), bytes_(bytes), middle_(std::move(middle)),
      socket_(listenOnLoopback(place_)), thread_([this] { serve(); }) {}

Passage::~Passage() {
    shutdown(socket_.number(), SHUT_RDWR); // ends the waiting for callers
    thread_.join();
}

void Passage::serve() {
    for (bool isOpen = true; isOpen && !isClosed();) {
        std::vector<pollfd> speakers{{socket_.number(), POLLIN, 0}};
        for (const Connection& connection : connections_) {
            speakers.push_back({connection.client.number(), POLLIN, 0});
            speakers.push_back({connection.server.number(), POLLIN, 0});
        }
        poll(speakers.data(), speakers.size(), -1);
        for (std::size_t n = connections_.size(); n-- > 0;) {
            if (!passOn(connections_[n], speakers[2 * n + 1].revents != 0,
                        speakers[2 * n + 2].revents != 0)) {
                connections_.erase(connections_.begin() + static_cast<std::ptrdiff_t>(n));
            }
        }
        isOpen = speakers[0].revents == 0 || letIn();
    }
    shutdown(socket_.number(), SHUT_RDWR);
    if (isClosed()) {
        middle_();
    }
    connections_.clear();
}

/// False when there is nobody to wait for any more.
bool Passage::letIn() {
    FileDescriptor client(accept4(socket_.number(), nullptr, nullptr, SOCK_CLOEXEC));
    if (!client.isOpen()) {
        return false;
    }
    FileDescriptor server = connectTo(server_);
    if (server.isOpen()) {
        connections_.push_back({std::move(client), std::move(server)});
    }
    return true;
}

/// False when one side has hung up.
bool Passage::passOn(const Connection& connection, bool clientSpeaks, bool serverSpeaks) {
    if (clientSpeaks && passPiece(connection.client, connection.server) == 0) {
        return false;
    }
    if (!serverSpeaks) {
        return true;
    }
    const std::size_t size = passPiece(connection.server, connection.client);
    said_ += size;
    return size > 0;
}

} // namespace quen::test
