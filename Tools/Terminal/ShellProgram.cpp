#include "Tools/Terminal/ShellProgram.h"

#include <cerrno>
#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quen::tools {

namespace {

class SpawnSettings {
public:
    explicit SpawnSettings(int input) {
        sigset_t defaults;
        sigset_t none;
        sigemptyset(&none);
        sigemptyset(&defaults);
        for (const int number : {SIGINT, SIGQUIT, SIGPIPE}) {
            sigaddset(&defaults, number);
        }
        posix_spawnattr_init(&attributes_);
        posix_spawnattr_setsigdefault(&attributes_, &defaults);
        posix_spawnattr_setsigmask(&attributes_, &none);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
        posix_spawn_file_actions_init(&actions_);
        if (input >= 0) {
            posix_spawn_file_actions_adddup2(&actions_, input, STDIN_FILENO);
        }
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&actions_);
    }

    const posix_spawnattr_t* attributes() const noexcept { return &attributes_; }
    const posix_spawn_file_actions_t* actions() const noexcept { return &actions_; }

private:
    posix_spawnattr_t attributes_{};
    posix_spawn_file_actions_t actions_{};
};

} // namespace

pid_t startShellProgram(const ShellProgram& program) noexcept {
    const SpawnSettings settings(program.input);
    std::vector<std::string> words{"sh", "-c", program.script, "sh"};
    words.insert(words.end(), program.arguments.begin(), program.arguments.end());
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    pid_t child = -1;
    errno = posix_spawn(&child, "/bin/sh", settings.actions(), settings.attributes(),
                        arguments.data(), environ);
    return errno == 0 ? child : -1;
}

int waitForShellProgram(pid_t child) noexcept {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

} // namespace quen::tools
