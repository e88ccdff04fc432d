#pragma once

#include "Tests/Servers/Loopback.h"

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quen::test {

/// A server that keeps everything that it is sent. It speaks as much HTTP as is needed to ask for a
/// password or to send a client on: one request, one reply, and it hangs up.
class RecordingServer {
public:
    /// The whole reply to a request's head.
    using Reply = std::function<std::string(const std::string& request)>;

    explicit RecordingServer(Reply reply);
    RecordingServer(const RecordingServer&) = delete;
    RecordingServer& operator=(const RecordingServer&) = delete;
    ~RecordingServer();

    const Loopback& place() const { return place_; }
    std::string url() const { return "http://" + place_.text() + "/repository"; }
    /// Everything that it was sent so far.
    std::string heard() const;

private:
    void serve();
    void answer(const FileDescriptor& caller);

    Reply reply_;
    Loopback place_;
    FileDescriptor socket_;
    mutable std::mutex mutex_;
    std::string heard_;
    std::thread thread_;
};

/// A reply that asks for a password, the realm's name as it is.
std::string wantsPassword(const std::string& realm);
/// A reply that sends a client on.
std::string movedTo(const std::string& url);

} // namespace quen::test
