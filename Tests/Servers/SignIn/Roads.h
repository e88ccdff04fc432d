#pragma once

#include "Tests/Servers/SignInFixture.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace quen::test {

/// How an operation comes to the client, and the question to a person.
enum class Way { commandLine, library, server };

std::ostream& operator<<(std::ostream& out, Way way);

/// What a person says when asked.
struct Replies {
    /// To each question for a password or passphrase, in order; then no.
    std::vector<std::string> secrets = {};
    /// To a certificate or a host's key: `yes`, `always`, `no`.
    std::string decision = "yes";
    /// Whether anybody may be asked at all.
    bool mayAsk = true;
};

/// One life of a program: a library's credentials, a server's process; of the command line, each
/// operation is a life of its own.
class Road {
public:
    Road() = default;
    Road(const Road&) = delete;
    Road& operator=(const Road&) = delete;
    virtual ~Road() = default;

    /// Makes a directory in the repository. `in`, or why not: the name of a TaskFailure, read from
    /// what a person is told.
    virtual std::string attempt(const std::string& url, const Replies& replies) = 0;

    /// Questions so far.
    int secretsAsked() const { return secretsAsked_; }
    int decisionsAsked() const { return decisionsAsked_; }
    /// Everything that was shown, logged and answered.
    const std::string& said() const { return said_; }

protected:
    int secretsAsked_ = 0;
    int decisionsAsked_ = 0;
    std::string said_;
};

/// `temporary` is where private directories are made.
std::unique_ptr<Road> makeRoad(Way way, SignInPlace& place, const std::filesystem::path& temporary);

/// The TaskFailure that a next step belongs to, with the server named; empty where it is none.
std::string failureToldBy(const std::string& text);

} // namespace quen::test
