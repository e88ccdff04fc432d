#pragma once

#include "Tests/Servers/Loopback.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <thread>
#include <vector>

namespace quen::test {

/// A place on the way to a server, where a server's end can be timed: what client and server say
/// to each other is passed on, until the server has said so much. Then `middle` is called, once, on
/// a thread of the passage, everybody is hung up on, and nobody else is let in.
class Passage {
public:
    Passage(Loopback server, std::size_t bytes, std::function<void()> middle);
    Passage(const Passage&) = delete;
    Passage& operator=(const Passage&) = delete;
    ~Passage();

    const Loopback& place() const { return place_; }
    /// Whether the server has said enough for `middle`.
    bool isClosed() const { return said_ >= bytes_; }

private:
    struct Connection {
        FileDescriptor client;
        FileDescriptor server;
    };

    void serve();
    bool letIn();
    bool passOn(const Connection& connection, bool clientSpeaks, bool serverSpeaks);

    const Loopback server_;
    const std::size_t bytes_;
    const std::function<void()> middle_;
    Loopback place_;
    FileDescriptor socket_;
    std::vector<Connection> connections_;
    std::atomic<std::size_t> said_ = 0;
    std::thread thread_;
};

} // namespace quen::test
