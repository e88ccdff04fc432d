#include "Tests/Servers/Server.h"

#include <filesystem>
#include <stdexcept>

namespace quen::test {

namespace {

constexpr std::chrono::seconds patience{20};

void waitUntilListening(const Loopback& place, RunningProgram& program, const std::string& name) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!connectTo(place).isOpen()) {
        if (program.endsWithin(std::chrono::milliseconds(5)) ||
            std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("The server does not start: " + name + ": " + program.end());
        }
    }
}

/// An entry of the client's own files.
std::string keptEntry(const std::string& key, const std::string& value) {
    return "K " + std::to_string(key.size()) + "\n" + key + "\nV " + std::to_string(value.size()) +
           "\n" + value + "\n";
}

} // namespace

std::string nameOf(ServerKind kind) {
    switch (kind) {
    case ServerKind::files: return "files";
    case ServerKind::svnserve: return "svnserve";
    case ServerKind::svnserveWithPassword: return "svnserveWithPassword";
    case ServerKind::svnserveWithSASL: return "svnserveWithSASL";
    case ServerKind::svnserveOpenToRead: return "svnserveOpenToRead";
    case ServerKind::httpd: return "httpd";
    case ServerKind::httpdWithDigest: return "httpdWithDigest";
    case ServerKind::httpdOpenToRead: return "httpdOpenToRead";
    case ServerKind::httpsd: return "httpsd";
    case ServerKind::sshd: return "sshd";
    }
    return "";
}

Server::Server(const Sandbox& sandbox, ServerKind kind)
    : sandbox_(sandbox), kind_(kind), place_(Loopback::free()),
      plan_(planServer(sandbox, kind, place_)) {
    if (!plan_.realm.empty()) {
        keepPassword(password);
    }
    if (!plan_.command.empty()) {
        program_ = std::make_unique<RunningProgram>(sandbox, plan_.command);
        waitUntilListening(place_, *program_, plan_.command.front());
    }
}

void Server::reachThrough(const Loopback& passage) {
    const std::string old = place_.text();
    for (std::string* const text : {&plan_.url, &plan_.realm}) {
        if (const std::size_t at = text->find(old); at != std::string::npos) {
            text->replace(at, old.size(), passage.text());
        }
    }
    if (!plan_.realm.empty()) {
        keepPassword(password);
    }
    if (kind_ == ServerKind::sshd) {
        plan_.variables.front() += " -p " + std::to_string(passage.port); // of SVN_SSH
    }
}

std::string Server::url(std::string_view path) const {
    return plan_.url + (path.empty() ? "" : "/") + std::string(path);
}

std::string Server::author() const {
    return kind_ == ServerKind::svnserve ? "" : user;
}

/// The client names such a file by the realm's MD5. It does not write passwords in the clear any
/// more, and still reads them.
std::string Server::keptPasswordFile() const {
    sandbox_.write(sandbox_.root() / "realm", plan_.realm);
    const Ran ran = sandbox_.run({"md5sum", "realm"}, sandbox_.root());
    return (sandbox_.root() / "home/.subversion/auth/svn.simple" /
            ran.out.substr(0, ran.out.find(' ')))
        .string();
}

void Server::keepPassword(const std::string& kept) const {
    sandbox_.write(keptPasswordFile(), keptEntry("passtype", "simple") +
                                           keptEntry("password", kept) +
                                           keptEntry("svn:realmstring", plan_.realm) +
                                           keptEntry("username", user) + "END\n");
}

void Server::changePassword(const std::string& old, const std::string& next) const {
    const auto run = [&](const std::string& script) {
        const Ran ran =
            sandbox_.run({"sh", "-e", "-c", script, "sh", user, old, next}, sandbox_.root());
        if (ran.status != 0) {
            throw std::runtime_error("The password cannot be changed: " + ran.err);
        }
    };
    switch (kind_) {
    case ServerKind::svnserveWithSASL:
        run(R"(printf %s "$3" | saslpasswd2 -p -u quen -f server/sasldb "$1")");
        break;
    case ServerKind::httpd:
    case ServerKind::httpsd:
        run(R"(hash=$(printf %s "$3" | openssl dgst -sha1 -binary | openssl base64)
               printf '%s:{SHA}%s\n' "$1" "$hash" >server/users)");
        break;
    case ServerKind::httpdWithDigest:
        run(R"(hash=$(printf '%s:quen:%s' "$1" "$3" | md5sum | cut -d' ' -f1)
               printf '%s:quen:%s\n' "$1" "$hash" >server/users)");
        break;
    case ServerKind::sshd: run(R"(ssh-keygen -q -p -P "$2" -N "$3" -f server/key)"); break;
    default:
        sandbox_.write(sandbox_.root() / "repository/conf/passwd",
                       std::string("[users]\n").append(user).append(" = ").append(next) + "\n");
    }
}

void Server::forgetPassword() const {
    std::filesystem::remove(keptPasswordFile());
}

} // namespace quen::test
