#include "Host/Credentials/PersonsAgent.h"

#include "Host/Process/FileDescriptor.h"

#include <cstring>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <utility>

namespace quen {

namespace {

/// The agent answers from its memory or not at all.
constexpr timeval patience{5, 0};

FileDescriptor connectionTo(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        return {};
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    FileDescriptor socket =
        aboveStandard(FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)));
    if (!socket.isOpen() || ::connect(socket.number(), reinterpret_cast<const sockaddr*>(&address),
                                      sizeof address) != 0) {
        return {};
    }
    ::setsockopt(socket.number(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    return socket;
}

/// Its lines up to the one that ends an answer; nothing where it hangs up before.
std::optional<Secret> readAnswer(int connection) {
    Secret answer;
    for (;;) {
        const std::optional<Secret> line = readSecretLine(connection);
        if (!line) {
            return std::nullopt;
        }
        answer.append(line->view());
        answer.append('\n');
        if (line->view().starts_with("OK") || line->view().starts_with("ERR")) {
            return answer;
        }
    }
}

std::optional<Secret> answerFrom(const std::string& socket, std::string_view question) {
    const FileDescriptor connection = connectionTo(socket);
    if (!connection.isOpen() || !readAnswer(connection.number())) { // its greeting
        return std::nullopt;
    }
    return writeAll(connection.number(), question) ? readAnswer(connection.number()) : std::nullopt;
}

} // namespace

std::vector<std::string> socketsOfPersonsAgent(const char* agentInfo, const char* home,
                                               const char* runtimeDirectory) {
    std::vector<std::string> sockets;
    if (agentInfo != nullptr && *agentInfo != '\0') {
        const std::string_view info = agentInfo;
        sockets.emplace_back(info.substr(0, info.find(':')));
        return sockets;
    }
    if (runtimeDirectory != nullptr && *runtimeDirectory != '\0') {
        sockets.push_back(std::string(runtimeDirectory) + "/gnupg/S.gpg-agent");
    }
    if (home != nullptr && *home != '\0') {
        sockets.push_back(std::string(home) + "/.gnupg/S.gpg-agent");
    }
    return sockets;
}

Secret answerOfPersonsAgent(const std::vector<std::string>& sockets, std::string_view entry,
                            std::string_view question) {
    const std::size_t rest = question.find(entry);
    if (!entry.empty() && rest != std::string_view::npos) {
        const std::string line =
            "GET_PASSPHRASE --data --no-ask " + std::string(question.substr(rest)) + "\n";
        for (const std::string& socket : sockets) {
            if (auto answer = answerFrom(socket, line)) {
                return std::move(*answer);
            }
        }
    }
    return Secret("ERR 67108922 No data\n");
}

} // namespace quen
