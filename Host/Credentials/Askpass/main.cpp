// What the secure shell starts to ask a question: it passes the question on to the host that
// started the client, and the answer back. The host's socket is named by QUEN_ASKPASS_SOCKET; see
// Host/Credentials/SecureShellQuestions.h for what is said there. No library of the host is used,
// so that it starts fast.

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(descriptor, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

int connectionTo(std::string_view path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        return -1;
    }
    std::memcpy(address.sun_path, path.data(), path.size());
    const int connection = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool isConnected =
        connection >= 0 &&
        ::connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    return isConnected ? connection : -1;
}

/// Passes the answer on, and clears what it was read into. Whether there was one.
bool passAnswerOn(int connection) {
    std::array<char, 4096> piece{};
    bool isAnswer = false;
    bool isFirst = true;
    for (;;) {
        const ssize_t count = ::read(connection, piece.data(), piece.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        std::string_view text(piece.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
        if (isFirst && !text.empty()) {
            isAnswer = text.front() == '+';
            text.remove_prefix(1);
        }
        const bool goesOn = count > 0 && isAnswer && writeAll(STDOUT_FILENO, text);
        explicit_bzero(piece.data(), piece.size());
        if (!goesOn) {
            return isAnswer && count == 0 && writeAll(STDOUT_FILENO, "\n");
        }
        isFirst = false;
    }
}

} // namespace

int main(int argc, char** argv) {
    const rlimit none{};
    ::setrlimit(RLIMIT_CORE, &none);
    ::prctl(PR_SET_DUMPABLE, 0);
    const char* const path = std::getenv("QUEN_ASKPASS_SOCKET"); // NOLINT(concurrency-mt-unsafe)
    const int connection = path == nullptr ? -1 : connectionTo(path);
    if (connection < 0 || argc < 2) {
        return 1;
    }
    const std::string question = std::to_string(::getppid()) + "\n" + argv[1];
    const bool isAsked = writeAll(connection, question) && ::shutdown(connection, SHUT_WR) == 0;
    return isAsked && passAnswerOn(connection) ? 0 : 1;
}
