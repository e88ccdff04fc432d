#include "Host/Credentials/PrivateDirectory.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <sys/un.h>
#include <system_error>

namespace quen {

namespace {

constexpr std::string_view pattern = "/quen-XXXXXX";
/// For a socket's own name in the directory.
constexpr std::size_t roomForNames = 16;

bool isShortEnough(const std::string& place) {
    return place.size() + pattern.size() + roomForNames < sizeof(sockaddr_un::sun_path);
}

std::string valueOf(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? "" : value;
}

} // namespace

std::unique_ptr<PrivateDirectory> PrivateDirectory::make(const std::string& place) {
    const std::array<std::string, 3> places{valueOf("XDG_RUNTIME_DIR"), place, "/tmp"};
    for (const std::string& each : places) {
        if (!each.starts_with('/') || !isShortEnough(each)) {
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
