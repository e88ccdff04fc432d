#include "Tools/Terminal/InterruptWatch.h"

#include "Tools/Terminal/ExitStatus.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace quen::tools {

namespace {

bool isIgnored(int number) noexcept {
    struct sigaction action {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t interrupts() noexcept {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        if (!isIgnored(number)) {
            sigaddset(&signals, number);
        }
    }
    return signals;
}

FileDescriptor opened(int number) {
    if (number < 0) {
        throw std::system_error(errno, std::generic_category(), "Interrupts cannot be watched");
    }
    return FileDescriptor(number);
}

} // namespace

InterruptWatch::InterruptWatch(std::function<void()> onInterrupt)
    : onInterrupt_(std::move(onInterrupt)) {
    const sigset_t watched = interrupts();
    signals_ = opened(signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK));
    end_ = opened(eventfd(0, EFD_CLOEXEC));
    pthread_sigmask(SIG_BLOCK, &watched, &formerMask_);
    try {
        thread_ = std::thread([this] { watch(); });
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &formerMask_, nullptr);
        throw;
    }
}

InterruptWatch::~InterruptWatch() {
    eventfd_write(end_.number(), 1);
    thread_.join();
    pthread_sigmask(SIG_SETMASK, &formerMask_, nullptr);
}

void InterruptWatch::watch() {
    std::array<pollfd, 2> sources{pollfd{signals_.number(), POLLIN, 0},
                                  pollfd{end_.number(), POLLIN, 0}};
    while (sources[1].revents == 0) {
        if (poll(sources.data(), sources.size(), -1) > 0 && sources[0].revents != 0) {
            takeSignal();
        }
    }
}

void InterruptWatch::takeSignal() {
    signalfd_siginfo signal{};
    if (read(signals_.number(), &signal, sizeof signal) != sizeof signal) {
        return;
    }
    if (interrupts_.fetch_add(1) == 0) {
        onInterrupt_();
    } else {
        std::_Exit(ExitInterrupted);
    }
}

} // namespace quen::tools
