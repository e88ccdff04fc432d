#include "Host/Places/SettingsFile.h"

#include "Foundation/Lines.h"
#include "Host/Process/FileDescriptor.h"
#include "Host/WorkingCopyCleanup.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quen {

namespace {

std::string* memberNamed(Settings& settings, std::string_view name) {
    if (name == "trunk") {
        return &settings.layout.trunk;
    }
    if (name == "branches") {
        return &settings.layout.branches;
    }
    return name == "username" ? &settings.user : nullptr;
}

/// Takes one line in; what is wrong with it, or the empty text.
std::string readLine(std::string_view line, Settings& settings) {
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) {
        return "expected `name = value`, as in `trunk = ^/trunk`.";
    }
    const std::string name(trimmed(line.substr(0, equals)));
    std::string* const member = memberNamed(settings, name);
    if (member == nullptr) {
        return "\"" + name + "\" is not a setting; there are trunk, branches and username.";
    }
    *member = trimmed(line.substr(equals + 1));
    return member->empty() ? "\"" + name + "\" is given no value." : "";
}

/// Why an opened file does not count; empty where it does.
std::string problemOfSettingsFile(const FileDescriptor& file, const std::filesystem::path& top) {
    struct stat facts {};
    if (!file.isOpen() || fstat(file.number(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
        return " cannot be read; make it a readable file, or take it away.";
    }
    struct stat workingCopy {};
    const std::string administration = (top / ".svn").string();
    if (stat(administration.c_str(), &workingCopy) != 0 ||
        !mayOwnSettings(facts.st_uid, geteuid(), workingCopy.st_uid)) {
        return " belongs to somebody else, so it is not obeyed; make it yours, or take it away.";
    }
    return {};
}

/// nullopt for more than any settings take.
std::optional<std::string> contentOf(const FileDescriptor& file) {
    constexpr std::size_t longest = 64 * 1024;
    std::string text(longest + 1, '\0');
    std::size_t size = 0;
    for (ssize_t count = 1; count > 0 && size < text.size();) {
        count = read(file.number(), text.data() + size, text.size() - size);
        size += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    text.resize(size);
    return size > longest ? std::nullopt : std::optional(std::move(text));
}

} // namespace

std::optional<Settings> parseSettings(std::string_view text, const std::string& file,
                                      std::string& problem) {
    Settings settings;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = trimmed(takeLine(text));
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (const std::string fault = readLine(line, settings); !fault.empty()) {
            problem = file + ":" + std::to_string(number) + ": " + fault;
            return std::nullopt;
        }
    }
    return settings;
}

bool mayOwnSettings(uid_t owner, uid_t person, uid_t workingCopyOwner) noexcept {
    return owner == person || owner == workingCopyOwner;
}

std::optional<Settings> settingsFor(const std::filesystem::path& path, std::string& problem) {
    const std::filesystem::path top = topDirectoryOf(path);
    if (top.empty()) {
        return Settings();
    }
    const std::string file = (top / ".quen").string();
    // A link would lead elsewhere, and a pipe would be waited for.
    const FileDescriptor opened(open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!opened.isOpen() && errno == ENOENT) {
        return Settings();
    }
    problem = problemOfSettingsFile(opened, top);
    const auto text = problem.empty() ? contentOf(opened) : std::nullopt;
    if (!text) {
        problem = file + (problem.empty() ? " is too large for a settings file." : problem);
        return std::nullopt;
    }
    return parseSettings(*text, file, problem);
}

std::filesystem::path topDirectoryOf(const std::filesystem::path& path) {
    const String top = topOfWorkingCopy(path.string());
    return top.isNil() ? std::filesystem::path() : std::filesystem::path(top.str());
}

} // namespace quen
