#include "Host/Credentials/AgentConversation.h"

#include "Foundation/PercentCoding.h"
#include "Host/Credentials/PersonsAgent.h"

#include <algorithm>

namespace quen {

namespace {

/// What the client reads in one piece, less the words around a password.
constexpr std::size_t longestPassword = 1000;

bool isPlain(char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
}

/// The word that begins at `at`.
std::string_view wordAt(std::string_view line, std::size_t at) {
    const std::string_view rest = line.substr(std::min(at, line.size()));
    return rest.substr(0, rest.find(' '));
}

/// `GET_PASSPHRASE --data --no-ask ENTRY X PROMPT DESCRIPTION`: the first word that is not an
/// option.
std::string entryOf(std::string_view line) {
    std::size_t at = line.find(' ');
    while (at != std::string_view::npos && wordAt(line, at + 1).starts_with("--")) {
        at = line.find(' ', at + 1);
    }
    return std::string(at == std::string_view::npos ? "" : wordAt(line, at + 1));
}

} // namespace

bool AgentQuestion::isAbout(std::string_view user) const {
    std::string words = "Password for '" + std::string(user) + "':";
    std::replace(words.begin(), words.end(), ' ', '+');
    return line.find(words) != std::string::npos;
}

Secret escapedForAgent(std::string_view text) {
    Secret escaped;
    for (const char character : text) {
        if (isPlain(character)) {
            escaped.append(character);
        } else {
            for (const char each : percentCode(character)) {
                escaped.append(each);
            }
        }
    }
    return escaped;
}

void AgentConversation::hold(int connection) const {
    try {
        bool goesOn = writeAll(connection, "OK\n");
        while (goesOn) {
            const std::optional<Secret> line = readSecretLine(connection);
            goesOn = line && !line->view().starts_with("BYE") &&
                     writeAll(connection, answerTo(line->view()).view());
        }
        writeAll(connection, "OK\n");
    } catch (const std::bad_alloc&) { // the client takes that for no answer
    }
}

Secret AgentConversation::answerTo(std::string_view line) const {
    if (line == "GETINFO socket_name") {
        return Secret("D " + socketPath_ + "\nOK\n");
    }
    if (line.starts_with("GET_PASSPHRASE ")) {
        return passwordFor({entryOf(line), std::string(line)});
    }
    return Secret("OK\n");
}

Secret AgentConversation::passwordFor(const AgentQuestion& question) const {
    const SecretPtr password = passwords_(question);
    if (password == nullptr) {
        return answerOfPersonsAgent(othersAgents_, question.entry, question.line);
    }
    const Secret escaped = escapedForAgent(password->view());
    if (escaped.view().size() > longestPassword) {
        return Secret("ERR 67108906 Too long\n");
    }
    Secret answer("D ");
    answer.append(escaped.view());
    answer.append("\nOK\n");
    return answer;
}

} // namespace quen
