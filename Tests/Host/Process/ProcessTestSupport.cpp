#include "Tests/Host/Process/ProcessTestSupport.h"

#include "Host/Process/ChildProcess.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quen::test {

namespace {

constexpr std::chrono::seconds bound{20};

std::string_view nameOf(const ProcessOutcome& outcome) {
    switch (outcome.end) {
    case RunEnd::ended: return outcome.exitStatus ? "exited" : "signalled";
    case RunEnd::statusUnknown: return "status unknown";
    case RunEnd::cancelled: return "cancelled";
    case RunEnd::timedOut: return "timed out";
    case RunEnd::idleTimedOut: return "idle timed out";
    case RunEnd::outputLost: return "output lost";
    case RunEnd::couldNotStart: return "could not start";
    }
    return "?";
}

} // namespace

ProcessInvocation program(String path, std::vector<String> arguments) {
    ProcessInvocation invocation;
    invocation.launchPath = std::move(path);
    invocation.arguments = std::move(arguments);
    return invocation;
}

ProcessInvocation faultChild(String mode, const std::vector<String>& arguments) {
    std::vector<String> all = {std::move(mode)};
    all.insert(all.end(), arguments.begin(), arguments.end());
    ProcessInvocation invocation = program(QUEN_FAULT_CHILD, std::move(all));
    invocation.limits.total = bound;
    return invocation;
}

ProcessOutcome run(const ProcessInvocation& invocation) {
    const std::stop_source stop;
    return runProcess(invocation, stop.get_token());
}

std::string described(const ProcessOutcome& outcome) {
    std::string text(nameOf(outcome));
    if (outcome.exitStatus) {
        text += " " + std::to_string(*outcome.exitStatus);
    }
    if (outcome.signal) {
        text += " by signal " + std::to_string(*outcome.signal);
    }
    if (!outcome.reason.isNil()) {
        text += ": " + outcome.reason.str();
    }
    return text;
}

std::string_view outputOf(const ProcessOutcome& outcome) {
    return outcome.output->bytes();
}

std::string_view errorsOf(const ProcessOutcome& outcome) {
    return outcome.errors->bytes();
}

bool isPattern(std::string_view bytes, std::size_t size) {
    constexpr std::size_t period = 251;
    if (bytes.size() != size) {
        return false;
    }
    for (std::size_t n = 0; n < std::min(period, size); ++n) {
        if (static_cast<unsigned char>(bytes[n]) != n) {
            return false;
        }
    }
    // The rest repeats what came a period before.
    return size <= period || std::memcmp(bytes.data(), bytes.data() + period, size - period) == 0;
}

std::vector<int> openDescriptors() {
    // Collected first, asked after: the directory's own descriptor is closed by then.
    std::vector<int> numbers;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        numbers.push_back(std::stoi(entry.path().filename()));
    }
    std::erase_if(numbers, [](int number) { return ::fcntl(number, F_GETFD) < 0; });
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

Grandchild::Grandchild(std::string_view said)
    : pid_(std::stoi(std::string(said))), descriptor_(openProcess(pid_)) {}

bool Grandchild::endsWithin(int milliseconds) const {
    pollfd end{descriptor_.number(), POLLIN, 0};
    return ::poll(&end, 1, milliseconds) == 1;
}

void Grandchild::kill() const {
    if (descriptor_.isOpen() && !endsWithin(0)) {
        ::kill(pid_, SIGKILL);
    }
}

std::string inForkedHost(const std::function<std::string()>& body) {
    std::optional<Pipe> answer = makePipe();
    if (!answer) {
        return "no pipe";
    }
    const pid_t host = ::fork();
    if (host == 0) {
        ::alarm(30);
        const std::string text = body();
        const bool said = ::write(answer->writeEnd.number(), text.data(), text.size()) ==
                          static_cast<ssize_t>(text.size());
        ::_exit(said ? 0 : 1);
    }
    answer->writeEnd.close();
    int status = -1;
    if (::waitpid(host, &status, 0) != host || status != 0) {
        return "the forked host ended with the raw status " + std::to_string(status);
    }
    std::string text(64 * 1024, '\0');
    const ssize_t count = ::read(answer->readEnd.number(), text.data(), text.size());
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return text;
}

void ProcessTest::TearDown() {
    EXPECT_EQ(openDescriptors(), descriptors_);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child was left";
    EXPECT_EQ(errno, ECHILD);
}

} // namespace quen::test
