#pragma once

#include "Tests/Servers/Loopback.h"
#include "Tests/Servers/RunningProgram.h"
#include "Tests/System/Sandbox.h"

#include <memory>
#include <ostream>
#include <string>
#include <string_view>

namespace quen::test {

/// How the client reaches a repository.
enum class ServerKind {
    files, ///< no server: the repository's own files
    svnserve,
    svnserveWithPassword,
    svnserveWithSASL,   ///< a password by way of DIGEST-MD5
    svnserveOpenToRead, ///< who changes something needs a password
    httpd,              ///< with a password
    httpdWithDigest,    ///< with a password that is never sent
    httpdOpenToRead,    ///< who changes something needs a password
    httpsd,             ///< with a password, and a certificate that nobody vouches for
    sshd,               ///< with a key, which has a svnserve started for it
};

std::string nameOf(ServerKind kind);
inline std::ostream& operator<<(std::ostream& out, ServerKind kind) {
    return out << nameOf(kind);
}

/// What one kind of server is, written down by ServerPlans.
struct ServerPlan {
    /// Empty where none is to be started.
    Sandbox::Words command;
    /// Of the repository's root.
    std::string url;
    /// What the client keeps a password under; empty where it is not asked for one.
    std::string realm;
    /// What the client needs in its environment.
    Sandbox::Words variables;
};

/// Writes the server's configuration, all of it its own, below the sandbox.
ServerPlan planServer(const Sandbox& sandbox, ServerKind kind, const Loopback& place);

/// A real server of the sandbox's repository, on a loopback address, with the sandbox's files as
/// its only configuration. It runs as whoever runs the test. There is one exception: httpd serves
/// nothing as root, so there it serves as nobody, to whom the repository then belongs.
///
/// Where there are passwords, the only user is `alice`, and the client's home holds the right one.
class Server {
public:
    static constexpr const char* user = "alice";
    static constexpr const char* password = "wonder land";

    /// Starts it and waits until it listens. Throws, with what it said, where it does not start.
    Server(const Sandbox& sandbox, ServerKind kind);

    std::string url(std::string_view path = {}) const;
    /// Where it listens.
    const Loopback& place() const { return place_; }
    /// Lets the client take another way from now on, which must lead here.
    void reachThrough(const Loopback& passage);

    /// What the client needs in its environment, beside the sandbox's.
    const Sandbox::Words& variables() const { return plan_.variables; }

    /// Whom a commit is then by; empty for nobody.
    std::string author() const;

    /// Puts a password into the client's home, or takes it out.
    void keepPassword(const std::string& kept) const;
    void forgetPassword() const;

    /// Gives the user another password; of sshd, the client's key another passphrase, where an
    /// empty one is none.
    void changePassword(const std::string& old, const std::string& next) const;

    void stop() { program_ = nullptr; }

private:
    std::string keptPasswordFile() const;

    const Sandbox& sandbox_;
    ServerKind kind_;
    Loopback place_;
    ServerPlan plan_;
    std::unique_ptr<RunningProgram> program_;
};

} // namespace quen::test
