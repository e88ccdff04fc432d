#include "Host/Process/Spawn.h"

#include "Host/Process/FileDescriptor.h"
#include "Host/Process/Process.h"
#include "Host/Process/TiedStart.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <spawn.h>
#include <string>
#include <system_error>
#include <unistd.h>

namespace quen {

namespace {

bool holdsZeroByte(const String& text) {
    return text.view().find('\0') != std::string_view::npos;
}

/// The system takes texts up to their first zero byte; cutting one there would run something else
/// than what was asked for. nil when there is nothing to object to.
String objectionTo(const ProcessInvocation& invocation) {
    if (!invocation.launchPath.hasPrefix("/")) {
        return "the launch path is not absolute";
    }
    if (holdsZeroByte(invocation.launchPath)) {
        return "the launch path holds a zero byte";
    }
    if (holdsZeroByte(invocation.workingDirectory)) {
        return "the working directory holds a zero byte";
    }
    for (std::size_t i = 0; i < invocation.arguments.size(); ++i) {
        if (holdsZeroByte(invocation.arguments[i])) {
            return "argument " + std::to_string(i + 1) + " holds a zero byte";
        }
    }
    for (const auto& [name, value] : invocation.environment) {
        if (name.isEmpty() || name.contains("=") || holdsZeroByte(name)) {
            return "an environment variable's name is empty, or holds '=' or a zero byte";
        }
        if (holdsZeroByte(value)) {
            return "the environment variable " + name.str() + " holds a zero byte";
        }
    }
    return nullptr;
}

/// posix_spawn takes, for history's sake, texts that it could change and never does.
char* forSpawn(const char* text) {
    return const_cast<char*>(text);
}

std::vector<char*> argumentVector(const ProcessInvocation& invocation) {
    std::vector<char*> vector = {forSpawn(invocation.launchPath.c_str())};
    for (const String& argument : invocation.arguments) {
        vector.push_back(forSpawn(argument.c_str()));
    }
    vector.push_back(nullptr);
    return vector;
}

class Environment {
public:
    explicit Environment(const ProcessInvocation& invocation) {
        for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
            if (!isReplaced(invocation, *entry)) {
                vector_.push_back(*entry);
            }
        }
        const EnvironmentChanges& changes = invocation.environment;
        for (auto change = changes.begin(); change != changes.end(); ++change) {
            const bool isLast =
                std::none_of(std::next(change), changes.end(),
                             [&](const auto& pair) { return pair.first == change->first; });
            if (isLast && !change->second.isNil()) {
                own_.push_back(change->first.str() + "=" + change->second.str());
            }
        }
        for (const std::string& entry : own_) {
            vector_.push_back(forSpawn(entry.c_str()));
        }
        vector_.push_back(nullptr);
    }

    char* const* vector() const { return vector_.data(); }

private:
    static bool isReplaced(const ProcessInvocation& invocation, std::string_view entry) {
        const std::string_view name = entry.substr(0, entry.find('='));
        return std::any_of(invocation.environment.begin(), invocation.environment.end(),
                           [name](const auto& pair) { return pair.first == name; });
    }

    std::vector<std::string> own_;
    std::vector<char*> vector_;
};

/// What the child does between its birth and the program's start. The first failure stays.
class SpawnSettings {
public:
    SpawnSettings() noexcept {
        keep(::posix_spawn_file_actions_init(&actions_));
        keep(::posix_spawnattr_init(&attributes_));
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        ::posix_spawnattr_destroy(&attributes_);
        ::posix_spawn_file_actions_destroy(&actions_);
    }

    void setDescriptors(const ChildDescriptors& descriptors) noexcept {
        keep(::posix_spawn_file_actions_adddup2(&actions_, descriptors.input, STDIN_FILENO));
        keep(::posix_spawn_file_actions_adddup2(&actions_, descriptors.output, STDOUT_FILENO));
        keep(::posix_spawn_file_actions_adddup2(&actions_, descriptors.errors, STDERR_FILENO));
        keep(::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
    }

    void setWorkingDirectory(const FileDescriptor& directory) noexcept {
        if (directory.isOpen()) {
            keep(::posix_spawn_file_actions_addfchdir_np(&actions_, directory.number()));
        }
    }

    void setSignalsAndSession(bool ownSession) noexcept {
        // sigfillset leaves out the two signals that the C library keeps for itself, and it would
        // start the child with these ignored.
        sigset_t all;
        std::memset(&all, 0xff, sizeof all);
        sigset_t none;
        sigemptyset(&none);
        keep(::posix_spawnattr_setsigdefault(&attributes_, &all));
        keep(::posix_spawnattr_setsigmask(&attributes_, &none));
        const int session = ownSession ? POSIX_SPAWN_SETSID : 0;
        keep(::posix_spawnattr_setflags(
            &attributes_,
            static_cast<short>(POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | session)));
    }

    int error() const noexcept { return error_; }
    const posix_spawn_file_actions_t* actions() const noexcept { return &actions_; }
    const posix_spawnattr_t* attributes() const noexcept { return &attributes_; }

private:
    void keep(int error) noexcept { error_ = error_ != 0 ? error_ : error; }

    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
    int error_ = 0;
};

/// None for nil. Opened ahead, so that a directory that cannot be entered is not taken for a
/// program that is not there.
FileDescriptor openDirectory(const String& path, SpawnResult& result) {
    if (path.isNil()) {
        return FileDescriptor();
    }
    FileDescriptor directory =
        aboveStandard(FileDescriptor(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)));
    if (!directory.isOpen() || ::access(path.c_str(), X_OK) != 0) {
        result.error = errno;
        result.reason = "its working directory \"" + path.str() +
                        "\" cannot be entered: " + std::generic_category().message(result.error);
    }
    return directory;
}

} // namespace

SpawnResult spawn(const ProcessInvocation& invocation, const ChildDescriptors& descriptors) {
    SpawnResult result;
    result.reason = objectionTo(invocation);
    if (!result.reason.isNil()) {
        result.error = EINVAL;
        return result;
    }
    const FileDescriptor directory = openDirectory(invocation.workingDirectory, result);
    if (result.error != 0) {
        return result;
    }
    const std::vector<char*> arguments = argumentVector(invocation);
    const Environment environment(invocation);
    if (invocation.endsWithHost) {
        result.pid = startTied({.path = invocation.launchPath.c_str(),
                                .arguments = arguments.data(),
                                .environment = environment.vector(),
                                .directory = directory.number(),
                                .input = descriptors.input,
                                .output = descriptors.output,
                                .errors = descriptors.errors,
                                .ownSession = invocation.ownSession});
        result.error = result.pid < 0 ? errno : 0;
        return result;
    }
    SpawnSettings settings;
    settings.setWorkingDirectory(directory);
    settings.setDescriptors(descriptors);
    settings.setSignalsAndSession(invocation.ownSession);
    result.error = settings.error();
    if (result.error == 0) {
        pid_t pid = -1;
        result.error = ::posix_spawn(&pid, invocation.launchPath.c_str(), settings.actions(),
                                     settings.attributes(), arguments.data(), environment.vector());
        result.pid = result.error == 0 ? pid : -1;
    }
    return result;
}

} // namespace quen
