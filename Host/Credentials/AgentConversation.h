#pragma once

#include "Host/Credentials/Secret.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quen {

/// What the client asks of its agent.
struct AgentQuestion {
    /// The realm's entry, see `entryNameOf`.
    std::string entry;
    /// Whether the client says that it is about this user.
    bool isAbout(std::string_view user) const;

    /// The client's whole line.
    std::string line;
};

/// Talks with one client as the agent that it knows, in its words: a greeting, then an answer to
/// each line.
class AgentConversation {
public:
    /// Null where there is no password for the question.
    using Passwords = std::function<SecretPtr(const AgentQuestion&)>;

    /// `othersAgents` are sockets of the person's own agent, tried in order for what `passwords`
    /// does not know. That one is told never to ask.
    AgentConversation(std::string socketPath, Passwords passwords,
                      std::vector<std::string> othersAgents)
        : socketPath_(std::move(socketPath)), passwords_(std::move(passwords)),
          othersAgents_(std::move(othersAgents)) {}

    /// Until the client has said goodbye or hung up.
    void hold(int connection) const;

private:
    Secret answerTo(std::string_view line) const;
    Secret passwordFor(const AgentQuestion& question) const;

    std::string socketPath_;
    Passwords passwords_;
    std::vector<std::string> othersAgents_;
};

/// The text as an agent's answer holds it: bytes that are not letters or digits as `%` and two
/// hexadecimal digits.
Secret escapedForAgent(std::string_view text);

} // namespace quen
