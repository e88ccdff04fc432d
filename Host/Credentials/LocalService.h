#pragma once

#include "Host/Process/FileDescriptor.h"

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace quen {

/// Serves programs of the same user on sockets of its own, for as long as it lives. Each caller has
/// a thread of its own.
class LocalService {
public:
    /// What is said to one caller. Returns when all has been said; the connection is then closed.
    /// Must not throw.
    using Conversation = std::function<void(int connection)>;

    struct Endpoint {
        /// In a directory that only its owner may enter. At most 107 bytes.
        std::string path;
        Conversation conversation;
    };

    /// Null, with errno, where a socket cannot be had.
    static std::unique_ptr<LocalService> start(std::vector<Endpoint> endpoints);
    LocalService(const LocalService&) = delete;
    LocalService& operator=(const LocalService&) = delete;
    /// Hangs up on everybody and waits until the conversations have ended.
    ~LocalService();

private:
    struct Caller {
        FileDescriptor connection;
        std::thread thread;
    };
    struct Listener {
        FileDescriptor socket;
        Conversation conversation;
    };

    LocalService() = default;
    bool listenAt(Endpoint endpoint);
    void serve();
    void letIn(const Listener& listener);

    std::vector<Listener> listeners_;
    FileDescriptor wake_;
    std::list<Caller> callers_;
    std::thread thread_;
};

} // namespace quen
