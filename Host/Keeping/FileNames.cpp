#include "Host/Keeping/FileNames.h"

#include "Foundation/PathComponents.h"
#include "Host/Process/FileDescriptor.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace quen {

std::string directoryOfFile(const std::string& path) {
    const std::string_view parent = deletingLastPathComponent(path);
    return parent.empty() ? "." : std::string(parent);
}

std::string randomFileName() {
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789";
    thread_local std::random_device device;
    std::uniform_int_distribution<std::size_t> choice(0, letters.size() - 1);
    std::string name = ".quen-";
    for (int i = 0; i < 12; ++i) {
        name += letters[choice(device)];
    }
    return name;
}

std::string destinationOfLink(const std::string& path) {
    std::error_code error;
    const auto resolved = std::filesystem::weakly_canonical(path, error);
    if (!error && !std::filesystem::is_symlink(resolved, error)) {
        return resolved.string();
    }
    std::filesystem::path at = path;
    for (int i = 0; i < 40 && std::filesystem::is_symlink(at, error); ++i) {
        at = at.parent_path() / std::filesystem::read_symlink(at, error);
    }
    return at.string();
}

int renameToNew(const char* from, const char* to) noexcept {
    // Not every file system knows how; a second name does the same.
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return -1;
    }
    if (::link(from, to) != 0) {
        return -1;
    }
    ::unlink(from);
    return 0;
}

void syncDirectory(const std::string& path) noexcept {
    const FileDescriptor directory(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.number() >= 0) {
        ::fsync(directory.number());
    }
}

} // namespace quen
