#include "Tests/System/StuckServer.h"

#include <array>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace quen::test {

namespace {

constexpr int patience = 20000; // milliseconds

bool waitUntilReadable(int descriptor) {
    pollfd source{descriptor, POLLIN, 0};
    return poll(&source, 1, patience) > 0;
}

} // namespace

StuckServer::StuckServer(const Sandbox& sandbox) : sandbox_(sandbox) {
    const std::string root = sandbox.root().string();
    // The stuck one keeps the pipe open for as long as it lives.
    sandbox.write(sandbox.root() / "server", "#!/bin/sh\n"
                                             "if [ -p '" +
                                                 root +
                                                 "/stuck' ]; then\n"
                                                 "    exec 9>'" +
                                                 root +
                                                 "/stuck'\n"
                                                 "    echo called >&9\n"
                                                 "    exec sleep 600\n"
                                                 "fi\n"
                                                 "exec svnserve -t -r '" +
                                                 root + "'\n");
    std::filesystem::permissions(sandbox.root() / "server", std::filesystem::perms::owner_all);
    sandbox.write(sandbox.root() / "home/.subversion/config",
                  "[tunnels]\nstuck = " + root + "/server\n");
}

std::string StuckServer::url(std::string_view path) const {
    return "svn+stuck://localhost/repository/" + std::string(path);
}

void StuckServer::stick() {
    const std::string path = (sandbox_.root() / "stuck").string();
    if (mkfifo(path.c_str(), S_IRUSR | S_IWUSR) != 0) {
        throw std::runtime_error("No pipe can be made at " + path + ".");
    }
    pipe_ = FileDescriptor(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
}

bool StuckServer::waitForClient() const {
    std::array<char, 16> word{};
    return waitUntilReadable(pipe_.number()) && read(pipe_.number(), word.data(), word.size()) > 0;
}

bool StuckServer::waitForEndOfAll() const {
    std::array<char, 16> word{};
    while (waitUntilReadable(pipe_.number())) {
        if (read(pipe_.number(), word.data(), word.size()) == 0) {
            return true;
        }
    }
    return false;
}

} // namespace quen::test
