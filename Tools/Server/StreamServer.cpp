#include "Tools/Server/StreamServer.h"

#include "Host/Credentials/Secret.h"
#include "Host/Process/FileDescriptor.h"
#include "Tools/Server/Methods/Methods.h"
#include "Tools/Server/Server.h"
#include "Tools/Server/Wire/FrameReader.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace quen::tools::server {

namespace {

using std::chrono::milliseconds;

/// As long as clients may take that are asked to end, and a little more.
constexpr milliseconds endBound{8000};
constexpr milliseconds flushBound{2000};
/// Reading stands still while requests of more bytes wait for their answers.
constexpr std::size_t unansweredBytes = std::size_t{64} << 20U;

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(descriptor, text.data(), text.size());
        if (count < 0 && errno == EAGAIN) {
            pollfd room{descriptor, POLLOUT, 0};
            ::poll(&room, 1, -1);
        } else if (count < 0 && errno != EINTR) {
            return false;
        } else if (count > 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        }
    }
    return true;
}

/// Something that another thread can wait for with poll.
class Event {
public:
    Event() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    void set() const {
        const std::uint64_t one = 1;
        static_cast<void>(!::write(descriptor_.number(), &one, sizeof one));
    }
    int number() const noexcept { return descriptor_.number(); }

private:
    FileDescriptor descriptor_;
};

sigset_t endingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, number);
    }
    return signals;
}

/// Reads frames on a thread of its own until the conversation is over.
class Reader {
public:
    Reader(int input, Server& server)
        : input_(input), server_(server), thread_([this] { work(); }) {}
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { join(); }

    void join() {
        stop_.set();
        if (thread_.joinable()) {
            thread_.join();
        }
    }
    const Event& over() const noexcept { return over_; }
    /// The stream was no good, and no next message was found.
    bool hasLostTheStream() const noexcept { return isLost_; }

private:
    void work() {
        while (takeFrames() && readPiece()) {
        }
        over_.set();
    }

    /// False when the conversation is over.
    bool takeFrames() {
        while (auto frame = frames_.next()) {
            if (!frame->fault.empty()) {
                server_.tellFault(frame->fault);
                continue;
            }
            const Server::Received received = server_.receive(frame->body);
            if (received == Server::Received::notJson) {
                frames_.giveBack(frame->body);
            }
            clearText(frame->body); // it may have held a password
            if (received == Server::Received::exit) {
                return false;
            }
        }
        return true;
    }

    /// False at the input's end, and when the reading is to stop.
    bool readPiece() {
        const bool isFull = server_.dispatcher().bytesInFlight() > unansweredBytes;
        std::array<pollfd, 2> ready{{{stop_.number(), POLLIN, 0}, {input_, POLLIN, 0}}};
        ::poll(ready.data(), isFull ? 1 : 2, isFull ? 100 : -1);
        if (ready[0].revents != 0) {
            return false;
        }
        if (isFull || ready[1].revents == 0) {
            return true;
        }
        const ssize_t count = ::read(input_, piece_.data(), piece_.size());
        if (count > 0) {
            frames_.feed({piece_.data(), static_cast<std::size_t>(count)});
            ::explicit_bzero(piece_.data(), static_cast<std::size_t>(count));
            return true;
        }
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
            return true;
        }
        isLost_ = !frames_.isAtEdge();
        return false;
    }

    int input_;
    Server& server_;
    FrameReader frames_;
    std::array<char, std::size_t{64} * 1024> piece_{};
    Event stop_;
    Event over_;
    std::atomic<bool> isLost_ = false;
    std::thread thread_;
};

/// The process that the client named: its end ends the server.
class Parent {
public:
    explicit Parent(const Event& changed) : changed_(changed) {}

    void watch(std::int64_t number) {
        const long descriptor = ::syscall(SYS_pidfd_open, static_cast<pid_t>(number), 0U);
        isGone_ = descriptor < 0 && errno == ESRCH;
        descriptor_ = static_cast<int>(descriptor);
        changed_.set();
    }
    bool isGone() const noexcept { return isGone_; }
    /// -1 while there is none.
    int descriptor() const noexcept { return descriptor_; }

private:
    const Event& changed_;
    std::atomic<bool> isGone_ = false;
    std::atomic<int> descriptor_ = -1;
};

/// Waits until anything ends the conversation.
void waitForEnd(int signals, const Event& over, const Event& changed, const Parent& parent) {
    while (!parent.isGone()) {
        std::array<pollfd, 4> ready{{{signals, POLLIN, 0},
                                     {over.number(), POLLIN, 0},
                                     {parent.descriptor(), POLLIN, 0},
                                     {changed.number(), POLLIN, 0}}};
        ::poll(ready.data(), ready.size(), -1);
        if (ready[0].revents != 0 || ready[1].revents != 0 || ready[2].revents != 0) {
            return;
        }
        std::uint64_t count = 0;
        static_cast<void>(!::read(changed.number(), &count, sizeof count));
    }
}

} // namespace

int serveStreams(int input, int output, QuenSourceControlProtocolPtr provider,
                 const ServerOptions& options) {
    const sigset_t ending = endingSignals();
    ::pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    const FileDescriptor signals(::signalfd(-1, &ending, SFD_CLOEXEC));
    const Event changed;
    Parent parent(changed);
    int status = 1;
    bool isEnded = false;
    {
        Outbox outbox([&](std::string_view text) {
            const bool isWritten = writeAll(output, text);
            if (!isWritten) {
                ::kill(::getpid(), SIGTERM); // nobody reads the answers any more
            }
            return isWritten;
        });
        Server server(outbox);
        const MethodsPtr methods = addMethods(server, outbox, std::move(provider), options);
        server.onParent([&](std::int64_t number) { parent.watch(number); });
        Reader reader(input, server);
        waitForEnd(signals.number(), reader.over(), changed, parent);

        isEnded = server.end(endBound);
        outbox.flush(flushBound);
        outbox.breakOff();
        isEnded = isEnded || server.end(flushBound);
        status = server.exitStatus();
        if (!isEnded) {
            std::fputs("quen serve: a client could not be ended\n", stderr);
            std::_Exit(1);
        }
        reader.join();
        status = reader.hasLostTheStream() ? 1 : status;
    }
    return status;
}

} // namespace quen::tools::server
