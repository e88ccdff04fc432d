#include "Host/Credentials/ClientTerminal.h"

#include "Host/Credentials/Secret.h"
#include "Host/Process/Spawn.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace quen {

namespace {

/// Readable from the moment on when a stop is requested.
class StopDescriptor {
public:
    explicit StopDescriptor(const std::stop_token& stop)
        : event_(aboveStandard(FileDescriptor(::eventfd(0, EFD_CLOEXEC)))),
          callback_(stop, Writer{event_.number()}) {}

    int number() const { return event_.number(); }

private:
    struct Writer {
        int number;
        void operator()() const noexcept { ::eventfd_write(number, 1); }
    };

    FileDescriptor event_;
    std::stop_callback<Writer> callback_;
};

enum class Waited { ready, stopped, tooLong };

Waited waitFor(int descriptor, std::chrono::milliseconds patience, const std::stop_token& stop) {
    const StopDescriptor stopping(stop);
    std::array<pollfd, 2> sources{{{descriptor, POLLIN, 0}, {stopping.number(), POLLIN, 0}}};
    int count = 0;
    do {
        count = ::poll(sources.data(), sources.size(), static_cast<int>(patience.count()));
    } while (count < 0 && errno == EINTR);
    if (count <= 0) {
        return Waited::tooLong;
    }
    return sources[1].revents != 0 ? Waited::stopped : Waited::ready;
}

struct TerminalEnds {
    FileDescriptor persons;
    FileDescriptor programs;
};

/// Not the controlling terminal of anybody: the client asks on its standard streams then, and no
/// key sends a signal. What is typed is not shown, and lines end as they were written.
TerminalEnds makeTerminal() {
    TerminalEnds ends;
    ends.persons = aboveStandard(FileDescriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)));
    std::array<char, 64> name{};
    const int number = ends.persons.number();
    if (!ends.persons.isOpen() || ::grantpt(number) != 0 || ::unlockpt(number) != 0 ||
        ::ptsname_r(number, name.data(), name.size()) != 0) {
        return {};
    }
    ends.programs =
        aboveStandard(FileDescriptor(::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC)));
    termios settings{};
    if (!ends.programs.isOpen() || ::tcgetattr(ends.programs.number(), &settings) != 0) {
        return {};
    }
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
    settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    return ::tcsetattr(ends.programs.number(), TCSANOW, &settings) == 0 ? std::move(ends)
                                                                        : TerminalEnds();
}

} // namespace

std::unique_ptr<ClientTerminal> ClientTerminal::start(const ProcessInvocation& invocation) {
    TerminalEnds ends = makeTerminal();
    if (!ends.programs.isOpen()) {
        return nullptr;
    }
    const int number = ends.programs.number();
    const SpawnResult result = spawn(invocation, {number, number, number});
    if (result.pid < 0) {
        return nullptr;
    }
    return std::unique_ptr<ClientTerminal>(new ClientTerminal(std::move(ends.persons), result.pid));
}

ClientTerminal::ClientTerminal(FileDescriptor terminal, pid_t pid)
    : terminal_(std::move(terminal)), child_(pid, true) {}

ClientTerminal::~ClientTerminal() = default;

bool ClientTerminal::readMore(std::chrono::milliseconds patience, const std::stop_token& stop) {
    // No question is so long, but what a server puts into one may be.
    constexpr std::size_t longest = std::size_t{1} << 20U;
    if (shown_.size() > longest || waitFor(terminal_.number(), patience, stop) != Waited::ready) {
        return false;
    }
    std::array<char, 4096> piece{};
    const ssize_t count = ::read(terminal_.number(), piece.data(), piece.size());
    shown_.append(piece.data(), static_cast<std::size_t>(count > 0 ? count : 0));
    return count > 0;
}

void ClientTerminal::writeKeys(std::string_view keys) const {
    writeAll(terminal_.number(), keys);
}

int runWithInput(const ProcessInvocation& invocation, std::string_view input,
                 std::chrono::milliseconds patience, const std::stop_token& stop) {
    std::array<int, 2> ends = {-1, -1};
    // A socket rather than a pipe: writing to a reader that has gone raises no signal.
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return -1;
    }
    FileDescriptor reading = aboveStandard(FileDescriptor(ends[0]));
    FileDescriptor writing = aboveStandard(FileDescriptor(ends[1]));
    const FileDescriptor nothing =
        aboveStandard(FileDescriptor(::open("/dev/null", O_WRONLY | O_CLOEXEC)));
    const SpawnResult result =
        spawn(invocation, {reading.number(), nothing.number(), nothing.number()});
    if (result.pid < 0) {
        return -1;
    }
    reading.close();
    ChildProcess child(result.pid, true);
    writeAll(writing.number(), input); // less than it holds
    writing.close();
    if (child.endDescriptor() >= 0 &&
        waitFor(child.endDescriptor(), patience, stop) != Waited::ready) {
        return -1;
    }
    child.waitForEnd();
    return child.exitStatus().value_or(-1);
}

} // namespace quen
