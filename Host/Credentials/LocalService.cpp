#include "Host/Credentials/LocalService.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace quen {

namespace {

FileDescriptor boundSocket(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return {};
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    FileDescriptor socket =
        aboveStandard(FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)));
    const bool isReady =
        socket.isOpen() &&
        ::bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        ::chmod(path.c_str(), S_IRUSR | S_IWUSR) == 0 && ::listen(socket.number(), 64) == 0;
    return isReady ? std::move(socket) : FileDescriptor();
}

bool isOfThisUser(int connection) {
    ucred caller{};
    socklen_t size = sizeof caller;
    return ::getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &caller, &size) == 0 &&
           caller.uid == ::geteuid();
}

} // namespace

std::unique_ptr<LocalService> LocalService::start(std::vector<Endpoint> endpoints) {
    std::unique_ptr<LocalService> service(new LocalService);
    service->wake_ = aboveStandard(FileDescriptor(::eventfd(0, EFD_CLOEXEC)));
    if (!service->wake_.isOpen()) {
        return nullptr;
    }
    for (Endpoint& endpoint : endpoints) {
        if (!service->listenAt(std::move(endpoint))) {
            return nullptr;
        }
    }
    try {
        service->thread_ = std::thread([self = service.get()] { self->serve(); });
    } catch (const std::system_error& error) {
        errno = error.code().value();
        return nullptr;
    }
    return service;
}

bool LocalService::listenAt(Endpoint endpoint) {
    listeners_.push_back({boundSocket(endpoint.path), std::move(endpoint.conversation)});
    return listeners_.back().socket.isOpen();
}

LocalService::~LocalService() {
    if (!thread_.joinable()) {
        return;
    }
    ::eventfd_write(wake_.number(), 1);
    thread_.join();
    // Nobody is let in any more, so the list stays as it is.
    for (const Caller& caller : callers_) {
        ::shutdown(caller.connection.number(), SHUT_RDWR);
    }
    for (Caller& caller : callers_) {
        caller.thread.join();
    }
}

void LocalService::serve() {
    std::vector<pollfd> sources{{wake_.number(), POLLIN, 0}};
    for (const Listener& listener : listeners_) {
        sources.push_back({listener.socket.number(), POLLIN, 0});
    }
    for (;;) {
        if (::poll(sources.data(), sources.size(), -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            return;
        }
        if (sources.front().revents != 0) {
            return;
        }
        for (std::size_t i = 0; i < listeners_.size(); ++i) {
            if (sources[i + 1].revents != 0) {
                letIn(listeners_[i]);
            }
        }
    }
}

void LocalService::letIn(const Listener& listener) {
    FileDescriptor connection = aboveStandard(
        FileDescriptor(::accept4(listener.socket.number(), nullptr, nullptr, SOCK_CLOEXEC)));
    if (!connection.isOpen() || !isOfThisUser(connection.number())) {
        return;
    }
    Caller& caller = callers_.emplace_back(Caller{std::move(connection), {}});
    try {
        caller.thread = std::thread(
            [&conversation = listener.conversation, number = caller.connection.number()] {
                conversation(number);
                ::shutdown(number, SHUT_RDWR);
            });
    } catch (const std::system_error&) { // no threads are left: the caller is hung up on
        callers_.pop_back();
    }
}

} // namespace quen
