#include "Host/Credentials/PrivateDirectory.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace quen {

namespace {

constexpr std::string_view pattern = "/quen-XXXXXX";
/// For a socket's own name in the directory.
constexpr std::size_t roomForNames = 16;

bool isShortEnough(const std::string& place) {
    return place.size() + pattern.size() + roomForNames < sizeof(sockaddr_un::sun_path);
}

/// Whether nobody else can take away or replace what is made there.
bool isSafe(const std::string& place) {
    struct stat status {};
    if (::stat(place.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
        return false;
    }
    const bool isOurs = status.st_uid == ::geteuid() || status.st_uid == 0;
    const bool isOpenToOthers = (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
    return isOurs && (!isOpenToOthers || (status.st_mode & S_ISVTX) != 0);
}

std::string valueOf(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? "" : value;
}

} // namespace

std::unique_ptr<PrivateDirectory> PrivateDirectory::make(const std::string& place) {
    const std::array<std::string, 3> places{valueOf("XDG_RUNTIME_DIR"), place, "/tmp"};
    errno = EACCES;
    for (const std::string& each : places) {
        if (!each.starts_with('/') || !isShortEnough(each) || !isSafe(each)) {
            continue;
        }
        std::string path = each + std::string(pattern);
        if (mkdtemp(path.data()) != nullptr) {
            return std::unique_ptr<PrivateDirectory>(new PrivateDirectory(std::move(path)));
        }
    }
    return nullptr;
}

PrivateDirectory::~PrivateDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace quen
