#include "Tests/System/Terminal.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace quen::test {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds patience{30000};

/// In the child of a program with one thread, where everything may be called.
[[noreturn]] void become(const ProcessInvocation& invocation) {
    for (const auto& [name, value] : invocation.environment) {
        if (value.isNil()) {
            unsetenv(name.c_str());
        } else {
            setenv(name.c_str(), value.c_str(), 1);
        }
    }
    setenv("TERM", "xterm", 1);
    std::vector<std::string> words{invocation.launchPath.str()};
    for (const String& argument : invocation.arguments) {
        words.push_back(argument.str());
    }
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    execv(arguments.front(), arguments.data());
    _exit(127);
}

} // namespace

Terminal::Terminal(const ProcessInvocation& invocation) {
    winsize size{};
    size.ws_row = 24;
    size.ws_col = 60;
    int keyboard = -1;
    child_ = forkpty(&keyboard, nullptr, nullptr, &size);
    if (child_ < 0) {
        throw std::runtime_error("No terminal can be made.");
    }
    if (child_ == 0) {
        become(invocation);
    }
    keyboard_ = FileDescriptor(keyboard);
}

Terminal::~Terminal() {
    if (child_ > 0) {
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
    }
}

/// False at the end, and when nothing comes in time.
bool Terminal::read(Clock::time_point deadline) {
    pollfd source{keyboard_.number(), POLLIN, 0};
    const auto rest =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (rest <= 0 || poll(&source, 1, static_cast<int>(rest)) <= 0) {
        return false;
    }
    std::array<char, 4096> piece{};
    const ssize_t count = ::read(keyboard_.number(), piece.data(), piece.size());
    shown_.append(piece.data(), static_cast<std::size_t>(count > 0 ? count : 0));
    return count > 0;
}

bool Terminal::waitFor(std::string_view text) {
    const auto deadline = Clock::now() + patience;
    while (shown_.find(text) == std::string::npos) {
        if (!read(deadline)) {
            return false;
        }
    }
    return true;
}

std::optional<std::size_t> Terminal::waitForNext(std::initializer_list<std::string_view> texts) {
    const auto deadline = Clock::now() + patience;
    for (;;) {
        std::size_t first = std::string::npos;
        std::size_t which = 0;
        for (const std::string_view& text : texts) {
            const std::size_t at = shown_.find(text, found_);
            if (at != std::string::npos && (first == std::string::npos || at < first)) {
                first = at;
                which = static_cast<std::size_t>(&text - texts.begin());
            }
        }
        if (first != std::string::npos) {
            found_ = first + 1;
            return which;
        }
        if (!read(deadline)) {
            return std::nullopt;
        }
    }
}

void Terminal::type(std::string_view keys) const {
    if (write(keyboard_.number(), keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
        throw std::runtime_error("The terminal takes no keys.");
    }
}

int Terminal::waitForEnd() {
    const auto deadline = Clock::now() + patience;
    while (read(deadline)) {
    }
    int status = 0;
    if (Clock::now() >= deadline || waitpid(child_, &status, 0) != child_) {
        return -1;
    }
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace quen::test
