#include "Host/Keeping/UndoDirectory.h"

#include "Host/Keeping/FileErrors.h"
#include "Host/Keeping/FileWriter.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace quen {

namespace {

constexpr std::string_view couldNotBeUsed = "could not be used to keep what is lost";
constexpr std::string_view manifestName = "/manifest";
constexpr std::string_view unfinishedName = "/unfinished-XXXXXX";

/// Every directory that is missing on the way, for this user alone.
int makeDirectories(const std::string& path) {
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        if (::mkdir(path.substr(0, end).c_str(), 0700) != 0 && errno != EEXIST) {
            return errno;
        }
        if (end == std::string::npos) {
            return 0;
        }
    }
}

/// Contents of files must not end in a place that another user has a hand in.
int checkPrivate(const std::string& path) {
    struct stat facts = {};
    if (::lstat(path.c_str(), &facts) != 0) {
        return errno;
    }
    if (!S_ISDIR(facts.st_mode)) {
        return ENOTDIR;
    }
    if (facts.st_uid != ::geteuid()) {
        return EPERM;
    }
    return ::chmod(path.c_str(), 0700) == 0 ? 0 : errno;
}

bool isId(const std::string& name) {
    return !name.empty() && name.find_first_not_of("0123456789-") == std::string::npos;
}

std::int64_t microsecondsNow() {
    return std::chrono::duration_cast<std::chrono::microseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

std::uint64_t sizeOf(const std::optional<UndoManifest>& manifest) {
    if (!manifest) {
        return 0;
    }
    return std::accumulate(
        manifest->items.begin(), manifest->items.end(), std::uint64_t{0},
        [](std::uint64_t sum, const ManifestItem& each) { return sum + each.item.size; });
}

} // namespace

UndoDirectory::UndoDirectory(const String& path) : path_(path.str()) {
    if (path.isEmpty()) {
        fail(ENOENT, "~");
        return;
    }
    int number = makeDirectories(path_);
    number = number == 0 ? checkPrivate(path_) : number;
    if (number != 0) {
        fail(number, path_);
        return;
    }
    const std::string lockPath = path_ + "/lock";
    lock_ =
        FileDescriptor(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    int locked = -1;
    do {
        locked = lock_.isOpen() ? ::flock(lock_.number(), LOCK_EX) : -1;
    } while (locked != 0 && lock_.isOpen() && errno == EINTR);
    if (locked != 0) {
        fail(errno, lockPath);
    }
}

Error UndoDirectory::fail(int number, const std::string& path) {
    error_ = fileError(number, path, couldNotBeUsed);
    return error_;
}

std::string UndoDirectory::makeUnfinished() {
    // What an earlier process left when it was killed; we are alone here.
    std::error_code ignored;
    for (const auto& each : std::filesystem::directory_iterator(path_, ignored)) {
        if (each.path().filename().string().starts_with("unfinished-")) {
            std::filesystem::remove_all(each.path(), ignored);
        }
    }
    std::string name = path_ + std::string(unfinishedName);
    if (::mkdtemp(name.data()) == nullptr) {
        fail(errno, path_);
        return {};
    }
    return name;
}

String UndoDirectory::finish(const std::string& unfinished) {
    // Later steps have larger ids, whatever the clock does.
    const std::vector<String> known = ids();
    std::int64_t number = microsecondsNow();
    if (!known.empty()) {
        number =
            std::max<std::int64_t>(number, std::strtoll(known.back().c_str(), nullptr, 10) + 1);
    }
    const std::string digits = std::to_string(number);
    constexpr std::size_t width = 20;
    const String id = std::string(width - std::min(width, digits.size()), '0') + digits;
    if (::rename(unfinished.c_str(), pathOf(id).c_str()) != 0) {
        fail(errno, pathOf(id));
        return {};
    }
    return id;
}

std::vector<String> UndoDirectory::ids() const {
    std::vector<String> ids;
    std::error_code ignored;
    for (const auto& each : std::filesystem::directory_iterator(path_, ignored)) {
        const std::string name = each.path().filename().string();
        if (isId(name)) {
            ids.emplace_back(name);
        }
    }
    std::sort(ids.begin(), ids.end(),
              [](const String& a, const String& b) { return a.view() < b.view(); });
    return ids;
}

std::optional<UndoManifest> UndoDirectory::manifest(const String& id) const {
    std::ifstream file(pathOf(id) + std::string(manifestName), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return UndoManifest::fromText(text);
}

Error UndoDirectory::setManifest(const std::string& directory, const UndoManifest& manifest) const {
    FileWriter::Options options;
    options.existing = FileWriter::Existing::replaced;
    options.mode = 0600;
    return writeFile(directory + std::string(manifestName), manifest.text(), options);
}

void UndoDirectory::remove(const String& id) const {
    std::error_code ignored;
    std::filesystem::remove_all(pathOf(id), ignored);
}

void UndoDirectory::trim(UndoStore::Limits limits, const String& newest) const {
    std::vector<String> left = ids();
    std::vector<std::uint64_t> sizes;
    std::transform(left.begin(), left.end(), std::back_inserter(sizes),
                   [this](const String& id) { return sizeOf(manifest(id)); });
    std::uint64_t sum = std::accumulate(sizes.begin(), sizes.end(), std::uint64_t{0});
    std::size_t count = left.size();
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (count <= limits.steps && sum <= limits.bytes) {
            return;
        }
        if (left[i] != newest) {
            remove(left[i]);
            sum -= sizes[i];
            --count;
        }
    }
}

} // namespace quen
