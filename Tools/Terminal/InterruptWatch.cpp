#include "Tools/Terminal/InterruptWatch.h"

#include "Host/TemporaryDirectory.h"
#include "Tools/Terminal/ExitStatus.h"
#include "Tools/Terminal/StartedPrograms.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <poll.h>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace quen::tools {

namespace {

/// What the watch shares with those at work. It outlives every watch.
struct State {
    std::mutex mutex;
    std::function<void()> action;
    std::string lastWords;
    std::atomic<int> interrupts = 0;
    std::atomic<int> lentKeys = 0;
    /// Readable from the first interrupt on; -1 while there is no watch.
    std::atomic<int> interrupted = -1;
};

State& state() {
    static State shared;
    return shared;
}

bool isIgnored(int number) noexcept {
    struct sigaction action {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t interrupts() noexcept {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
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

[[noreturn]] void endAtOnce(std::string_view lastWords) {
    killStartedPrograms();
    TemporaryDirectory::removeAll();
    while (!lastWords.empty()) {
        const ssize_t written = write(STDERR_FILENO, lastWords.data(), lastWords.size());
        if (written < 0) {
            break;
        }
        lastWords.remove_prefix(static_cast<std::size_t>(written));
    }
    std::_Exit(ExitInterrupted);
}

bool isKey(std::uint32_t number) noexcept {
    return number == SIGINT || number == SIGQUIT;
}

} // namespace

InterruptWatch::InterruptWatch() {
    const sigset_t watched = interrupts();
    signals_ = opened(signalfd(-1, &watched, SFD_CLOEXEC | SFD_NONBLOCK));
    end_ = opened(eventfd(0, EFD_CLOEXEC));
    state().interrupts = 0;
    interrupted_ = opened(eventfd(0, EFD_CLOEXEC));
    state().interrupted = interrupted_.number();
    pthread_sigmask(SIG_BLOCK, &watched, &formerMask_);
    try {
        thread_ = std::thread([this] { watch(); });
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &formerMask_, nullptr);
        state().interrupted = -1;
        throw;
    }
}

InterruptWatch::~InterruptWatch() {
    eventfd_write(end_.number(), 1);
    thread_.join();
    pthread_sigmask(SIG_SETMASK, &formerMask_, nullptr);
    state().interrupted = -1;
}

bool InterruptWatch::wasInterrupted() noexcept {
    return state().interrupted.load() >= 0 && state().interrupts.load() > 0;
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
    if (read(signals_.number(), &signal, sizeof signal) != sizeof signal ||
        (isKey(signal.ssi_signo) && state().lentKeys.load() > 0)) {
        return;
    }
    const std::lock_guard lock(state().mutex);
    if (state().interrupts.fetch_add(1) > 0 || signal.ssi_signo == SIGQUIT) {
        endAtOnce(state().lastWords);
    }
    eventfd_write(state().interrupted.load(), 1);
    if (state().action) {
        state().action();
    }
}

InterruptWatch::Action::Action(std::function<void()> action) {
    const std::lock_guard lock(state().mutex);
    if (wasInterrupted()) {
        action();
    }
    state().action = std::move(action);
}

InterruptWatch::Action::~Action() {
    const std::lock_guard lock(state().mutex);
    state().action = nullptr;
}

InterruptWatch::LastWords::LastWords(std::string words) {
    const std::lock_guard lock(state().mutex);
    state().lastWords = std::move(words);
}

InterruptWatch::LastWords::~LastWords() {
    const std::lock_guard lock(state().mutex);
    state().lastWords.clear();
}

InterruptWatch::KeysLent::KeysLent() {
    ++state().lentKeys;
}

InterruptWatch::KeysLent::~KeysLent() {
    --state().lentKeys;
}

bool waitUntilReady(int descriptor, short events) noexcept {
    std::array<pollfd, 2> sources{pollfd{state().interrupted.load(), POLLIN, 0},
                                  pollfd{descriptor, events, 0}};
    while (poll(sources.data(), sources.size(), -1) < 0 && errno == EINTR) {
    }
    return sources[1].revents != 0;
}

} // namespace quen::tools
