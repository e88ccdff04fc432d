#include "Tests/Servers/SignIn/CommitMoment.h"

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quen::test {

namespace {

/// Open at both ends, so that nobody waits for the other side.
FileDescriptor makePipe(const std::filesystem::path& path) {
    // The server may be another user, and the mask of this process is its own.
    if (mkfifo(path.c_str(), 0666) != 0 || chmod(path.c_str(), 0666) != 0) {
        throw std::runtime_error("No pipe can be made at " + path.string());
    }
    return FileDescriptor(open(path.c_str(), O_RDWR | O_CLOEXEC));
}

} // namespace

CommitMoment::CommitMoment(const Sandbox& sandbox, std::function<void()> during)
    : during_(std::move(during)), end_(eventfd(0, EFD_CLOEXEC)) {
    const auto hooks = sandbox.root() / "repository/hooks";
    reached_ = makePipe(hooks / "reached");
    go_ = makePipe(hooks / "go");
    const auto hook = hooks / "start-commit";
    sandbox.write(hook, "#!/bin/sh\necho >'" + (hooks / "reached").string() + "'\nread line <'" +
                            (hooks / "go").string() + "'\n");
    std::filesystem::permissions(hook, std::filesystem::perms(0755));
    thread_ = std::thread([this] { watch(); });
}

CommitMoment::~CommitMoment() {
    eventfd_write(end_.number(), 1);
    thread_.join();
}

void CommitMoment::watch() {
    for (;;) {
        std::array<pollfd, 2> sources{{{reached_.number(), POLLIN, 0}, {end_.number(), POLLIN, 0}}};
        poll(sources.data(), sources.size(), -1);
        if (sources[1].revents != 0) {
            return;
        }
        char line = 0;
        static_cast<void>(!read(reached_.number(), &line, 1));
        ++count_;
        during_();
        static_cast<void>(!write(go_.number(), "\n", 1));
    }
}

} // namespace quen::test
