#include "Tests/Faults/FaultyClient.h"

#include "Host/Process/ChildProcess.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quen::test {

namespace {

constexpr std::chrono::seconds bound{20};

FileDescriptor makePipeWithName(const String& path) {
    if (::mkfifo(path.c_str(), 0600) != 0) {
        throw std::runtime_error("A pipe cannot be made at " + path.str() + ".");
    }
    // Open for writing too, so that a child's end does not end the stream.
    return FileDescriptor(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
}

bool endsSoon(pid_t number) {
    const FileDescriptor process = openProcess(number);
    pollfd end{process.number(), POLLIN, 0};
    return !process.isOpen() || ::poll(&end, 1, 10'000) == 1;
}

/// The program's name as it was started; empty for a process that is gone by now.
std::string nameOfProcess(const std::string& number) {
    const FileDescriptor file(
        ::open(("/proc/" + number + "/cmdline").c_str(), O_RDONLY | O_CLOEXEC));
    std::array<char, 4096> start{};
    const ssize_t count = ::read(file.number(), start.data(), start.size());
    const std::string_view words(start.data(),
                                 static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return std::string(words.substr(0, words.find('\0')));
}

} // namespace

FaultyClient::FaultyClient() : told_(makePipeWithName(tools_.pathOf("svn.told"))) {
    putBack();
    RunContext::setProcessDefault(
        former_.withToolsDirectory(tools_.path()).withTemporaryDirectory(temporary_.path()));
}

FaultyClient::~FaultyClient() {
    endLeftProcesses();
    RunContext::setProcessDefault(former_);
}

void FaultyClient::misbehave(std::string_view lines) const {
    tools_.write("svn.fault", lines);
}

void FaultyClient::prepare(const std::string& ending, std::string_view text) const {
    tools_.write("svn" + ending, text);
}

void FaultyClient::takeAway() const {
    std::filesystem::remove_all(path().str());
}

void FaultyClient::takeRightToRun() const {
    takeAway();
    ::chmod(tools_.write("svn", "#!/bin/sh\n").c_str(), 0600);
}

void FaultyClient::replaceByDirectory() const {
    takeAway();
    std::filesystem::create_directory(path().str());
}

void FaultyClient::replaceByText() const {
    takeAway();
    ::chmod(tools_.write("svn", "no program at all\n").c_str(), 0700);
}

void FaultyClient::replaceByDeadLink() const {
    takeAway();
    std::filesystem::create_symlink(tools_.pathOf("nowhere").str(), path().str());
}

void FaultyClient::putBack() const {
    takeAway();
    std::filesystem::create_symlink(QUEN_FAULT_CHILD, path().str());
}

bool FaultyClient::waitUntilTold(std::size_t children) {
    const auto lines = [this] {
        return static_cast<std::size_t>(std::count(heard_.begin(), heard_.end(), '\n'));
    };
    const auto deadline = std::chrono::steady_clock::now() + bound;
    while (lines() < children && std::chrono::steady_clock::now() < deadline) {
        pollfd told{told_.number(), POLLIN, 0};
        ::poll(&told, 1, 100);
        std::array<char, 4096> piece{};
        const ssize_t count = ::read(told_.number(), piece.data(), piece.size());
        heard_.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    const bool isEnough = lines() >= children;
    heard_.clear();
    return isEnough;
}

std::vector<pid_t> FaultyClient::leftProcesses() const {
    std::vector<pid_t> numbers;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") == std::string::npos &&
            nameOfProcess(name) == path().str()) {
            numbers.push_back(std::stoi(name));
        }
    }
    return numbers;
}

bool FaultyClient::leavesNoProcess() const {
    const std::vector<pid_t> left = leftProcesses();
    return std::all_of(left.begin(), left.end(), endsSoon) && leftProcesses().empty();
}

void FaultyClient::endLeftProcesses() const {
    for (const pid_t number : leftProcesses()) {
        // By its descriptor: the number may be a stranger's by now.
        const FileDescriptor process = openProcess(number);
        if (nameOfProcess(std::to_string(number)) == path().str()) {
            ::syscall(SYS_pidfd_send_signal, process.number(), SIGKILL, nullptr, 0);
            endsSoon(number);
        }
    }
}

} // namespace quen::test
