#include "Tests/Servers/ClosingServer.h"

#include <array>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace quen::test {

ClosingServer::ClosingServer(std::string words)
    : words_(std::move(words)), socket_(listenOnLoopback(place_)), thread_([this] { serve(); }) {}

ClosingServer::~ClosingServer() {
    shutdown(socket_.number(), SHUT_RDWR); // ends the waiting for callers
    thread_.join();
}

void ClosingServer::serve() const {
    for (;;) {
        const FileDescriptor caller(accept4(socket_.number(), nullptr, nullptr, SOCK_CLOEXEC));
        if (!caller.isOpen()) {
            return;
        }
        send(caller.number(), words_.data(), words_.size(), MSG_NOSIGNAL);
        shutdown(caller.number(), SHUT_WR);
        std::array<char, 4096> unheard{};
        while (read(caller.number(), unheard.data(), unheard.size()) > 0) {
        }
    }
}

} // namespace quen::test
