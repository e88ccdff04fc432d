#pragma once

#include "Host/Process/FileDescriptor.h"

#include <csignal>
#include <functional>
#include <string>
#include <thread>

namespace quen::tools {

/// As long as it lives, an interrupt (SIGINT, SIGTERM or SIGHUP) does not end the program: it is
/// remembered, calls the action of that time on a thread of its own, and ends the waits of
/// `waitUntilReady`, so that whoever is at work can stop in an orderly way. A second one, and
/// SIGQUIT at once, kills every program that this one has started, removes its temporary
/// directories, writes the last words and ends it, with the status of an interrupt: whoever asks
/// twice does not want to wait.
///
/// A signal that the program was started to ignore, as `nohup` does, stays ignored.
///
/// Threads: one at a time in a process, to be made and destroyed by the program's first thread
/// while it has no others, because those would still take the signals themselves. Threads started
/// meanwhile do not.
class InterruptWatch {
public:
    /// Throws std::system_error where the system has no descriptor or thread left.
    InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;
    ~InterruptWatch();

    /// Since the watch began; false without one. From any thread.
    static bool wasInterrupted() noexcept;

    /// What an interrupt does as long as this lives: at once where there was one before. One at a
    /// time; without a watch it never does anything.
    class Action {
    public:
        explicit Action(std::function<void()> action);
        Action(const Action&) = delete;
        Action& operator=(const Action&) = delete;
        ~Action();
    };

    /// As long as it lives, the keys of the terminal that end programs are another program's, such
    /// as an editor's, and do nothing here.
    class KeysLent {
    public:
        KeysLent();
        KeysLent(const KeysLent&) = delete;
        KeysLent& operator=(const KeysLent&) = delete;
        ~KeysLent();
    };

    /// What is written to standard error where the program is ended at once while this lives: a
    /// line with its line feed, safe to show. One at a time.
    class LastWords {
    public:
        explicit LastWords(std::string words);
        LastWords(const LastWords&) = delete;
        LastWords& operator=(const LastWords&) = delete;
        ~LastWords();
    };

private:
    void watch();
    void takeSignal();

    sigset_t formerMask_{};
    FileDescriptor signals_;
    FileDescriptor end_;
    FileDescriptor interrupted_;
    std::thread thread_;
};

/// Waits until a descriptor can be read from (POLLIN) or written to (POLLOUT), or has come to its
/// end. False when it is not ready and there was an interrupt, before or meanwhile.
bool waitUntilReady(int descriptor, short events) noexcept;

} // namespace quen::tools
