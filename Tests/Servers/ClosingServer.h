#pragma once

#include "Tests/Servers/Loopback.h"

#include <string>
#include <thread>

namespace quen::test {

/// A server that hangs up in the middle: it says the same to everybody, whatever they want, ends
/// the connection and waits for the other side to do so.
class ClosingServer {
public:
    explicit ClosingServer(std::string words);
    ClosingServer(const ClosingServer&) = delete;
    ClosingServer& operator=(const ClosingServer&) = delete;
    ~ClosingServer();

    const Loopback& place() const { return place_; }

private:
    void serve() const;

    std::string words_;
    Loopback place_;
    FileDescriptor socket_;
    std::thread thread_;
};

} // namespace quen::test
