#include "Tools/Terminal/SecretPrompt.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace quen::tools {

namespace {

/// Keeps what is typed from being shown, until it goes.
class SilentTyping {
public:
    explicit SilentTyping(int terminal) : terminal_(terminal) {
        isKnown_ = tcgetattr(terminal_, &former_) == 0;
        termios silent = former_;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        silent.c_lflag |= ECHONL;
        if (isKnown_) {
            tcsetattr(terminal_, TCSAFLUSH, &silent);
        }
    }
    SilentTyping(const SilentTyping&) = delete;
    SilentTyping& operator=(const SilentTyping&) = delete;
    ~SilentTyping() {
        if (isKnown_) {
            tcsetattr(terminal_, TCSAFLUSH, &former_);
        }
    }

private:
    int terminal_;
    bool isKnown_;
    termios former_{};
};

struct WakeUp {
    int event;
    void operator()() const noexcept { eventfd_write(event, 1); }
};

} // namespace

PersonAtTerminal::PersonAtTerminal()
    : terminal_(aboveStandard(FileDescriptor(open("/dev/tty", O_RDWR | O_CLOEXEC)))) {}

void PersonAtTerminal::show(const std::string& text) const {
    writeAll(terminal_.number(), text);
}

/// A terminal hands over whole lines, so that one byte ready means the rest is.
std::optional<Secret> PersonAtTerminal::readLine(const std::stop_token& stop) const {
    const FileDescriptor event(eventfd(0, EFD_CLOEXEC));
    const std::stop_callback wake(stop, WakeUp{event.number()});
    std::array<pollfd, 2> sources{{{terminal_.number(), POLLIN, 0}, {event.number(), POLLIN, 0}}};
    int count = 0;
    do {
        count = poll(sources.data(), sources.size(), -1);
    } while (count < 0 && errno == EINTR);
    return count < 0 || sources[1].revents != 0 ? std::nullopt : readSecretLine(terminal_.number());
}

std::optional<std::string> PersonAtTerminal::askLine(const std::string& question,
                                                     std::stop_token stop) const {
    show(question);
    const auto line = readLine(stop);
    if (!line) {
        show("\n");
        return std::nullopt;
    }
    return std::string(line->view());
}

std::optional<Secret> PersonAtTerminal::askSecret(const std::string& question,
                                                  std::stop_token stop) const {
    const SilentTyping silent(terminal_.number());
    show(question);
    auto line = readLine(stop);
    if (!line) {
        show("\n");
    }
    return line;
}

} // namespace quen::tools
