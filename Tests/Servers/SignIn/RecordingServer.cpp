#include "Tests/Servers/SignIn/RecordingServer.h"

#include <array>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace quen::test {

RecordingServer::RecordingServer(Reply reply)
    : reply_(std::move(reply)), socket_(listenOnLoopback(place_)), thread_([this] { serve(); }) {}

RecordingServer::~RecordingServer() {
    shutdown(socket_.number(), SHUT_RDWR); // ends the waiting for callers
    thread_.join();
}

std::string RecordingServer::heard() const {
    const std::lock_guard lock(mutex_);
    return heard_;
}

void RecordingServer::serve() {
    for (;;) {
        const FileDescriptor caller(accept4(socket_.number(), nullptr, nullptr, SOCK_CLOEXEC));
        if (!caller.isOpen()) {
            return;
        }
        answer(caller);
    }
}

void RecordingServer::answer(const FileDescriptor& caller) {
    std::string request;
    std::array<char, 4096> piece{};
    ssize_t count = 1;
    while (count > 0 && request.find("\r\n\r\n") == std::string::npos) {
        count = read(caller.number(), piece.data(), piece.size());
        request.append(piece.data(), static_cast<std::size_t>(count > 0 ? count : 0));
    }
    const std::string reply = reply_(request);
    send(caller.number(), reply.data(), reply.size(), MSG_NOSIGNAL);
    shutdown(caller.number(), SHUT_WR);
    while ((count = read(caller.number(), piece.data(), piece.size())) > 0) {
        request.append(piece.data(), static_cast<std::size_t>(count));
    }
    const std::lock_guard lock(mutex_);
    heard_ += request + "\n";
}

std::string wantsPassword(const std::string& realm) {
    return "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"" + realm +
           "\"\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
}

std::string movedTo(const std::string& url) {
    return "HTTP/1.1 301 Moved Permanently\r\nLocation: " + url +
           "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
}

} // namespace quen::test
