#include "Benchmarks/Runs/Timing.h"

#include "Host/RunContext.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace quen::benchmarks {

namespace {

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double processorTime() {
    double seconds = 0;
    for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        ::getrusage(who, &usage);
        seconds += secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
    }
    return seconds;
}

/// Standard input and output of a child; the rest is this process's own.
class Plumbing {
public:
    Plumbing() { ::posix_spawn_file_actions_init(&actions_); }
    Plumbing(const Plumbing&) = delete;
    Plumbing& operator=(const Plumbing&) = delete;
    ~Plumbing() { ::posix_spawn_file_actions_destroy(&actions_); }

    void open(int number, const std::string& path, int flags) {
        ::posix_spawn_file_actions_addopen(&actions_, number, path.c_str(), flags, 0600);
    }
    void duplicate(int from, int to) { ::posix_spawn_file_actions_adddup2(&actions_, from, to); }
    void close(int number) { ::posix_spawn_file_actions_addclose(&actions_, number); }

    pid_t start(const std::string& program, const std::vector<std::string>& arguments) const {
        std::vector<char*> words{const_cast<char*>(program.c_str())};
        for (const std::string& argument : arguments) {
            words.push_back(const_cast<char*>(argument.c_str()));
        }
        words.push_back(nullptr);
        pid_t child = 0;
        if (::posix_spawn(&child, program.c_str(), &actions_, nullptr, words.data(), environ) !=
            0) {
            throw std::runtime_error(program + " cannot be started.");
        }
        return child;
    }

private:
    posix_spawn_file_actions_t actions_{};
};

void waitFor(pid_t child, const std::string& program) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(program + " failed.");
    }
}

} // namespace

Cost costOf(const std::function<void()>& work) {
    const double processorsBefore = processorTime();
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    return {wall.count(), processorTime() - processorsBefore};
}

void runBare(const std::string& program, const std::vector<std::string>& arguments) {
    Plumbing plumbing;
    plumbing.open(STDIN_FILENO, "/dev/null", O_RDONLY);
    plumbing.open(STDOUT_FILENO, "/dev/null", O_WRONLY);
    waitFor(plumbing.start(program, arguments), program);
}

void runIntoPipe(const std::string& program, const std::vector<std::string>& arguments,
                 const std::string& inputFile,
                 const std::function<void(std::string_view)>& reader) {
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0) {
        throw std::runtime_error("There is no pipe to be had.");
    }
    Plumbing plumbing;
    plumbing.open(STDIN_FILENO, inputFile, O_RDONLY);
    plumbing.duplicate(pipe[1], STDOUT_FILENO);
    plumbing.close(pipe[0]);
    plumbing.close(pipe[1]);
    const pid_t child = plumbing.start(program, arguments);
    ::close(pipe[1]);
    std::array<char, 65536> piece{};
    ssize_t count = 0;
    while ((count = ::read(pipe[0], piece.data(), piece.size())) > 0) {
        reader({piece.data(), static_cast<std::size_t>(count)});
    }
    ::close(pipe[0]);
    waitFor(child, program);
}

std::string outputOf(const std::string& program, const std::vector<std::string>& arguments,
                     const std::string& inputFile) {
    std::string output;
    runIntoPipe(program, arguments, inputFile, [&](std::string_view piece) { output += piece; });
    return output;
}

std::string toolPath(const std::string& tool) {
    return RunContext::current().toolsDirectory().str() + "/" + tool;
}

} // namespace quen::benchmarks
