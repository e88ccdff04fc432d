#include "Tools/Server/WorkingCopies/Discovery.h"

#include "Host/WorkingCopyCleanup.h"

#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace quen::tools::server {

namespace fs = std::filesystem;

namespace {

bool isRoot(const fs::path& directory) {
    std::error_code ignored;
    return fs::exists(directory / ".svn" / "wc.db", ignored);
}

struct Search {
    std::vector<std::string> found;
    std::size_t entriesLeft;

    void look(const fs::path& directory, int depth) {
        if (isRoot(directory)) {
            found.push_back(directory.string());
            return;
        }
        std::error_code error;
        for (auto entry = fs::directory_iterator(
                 directory, fs::directory_options::skip_permission_denied, error);
             !error && depth > 0 && entriesLeft > 0 && entry != fs::directory_iterator();
             entry.increment(error)) {
            --entriesLeft;
            std::error_code ignored;
            if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) {
                look(entry->path(), depth - 1);
            }
        }
    }
};

} // namespace

std::string realPathOf(const std::string& path) {
    std::error_code error;
    const fs::path real = fs::canonical(path, error);
    return error ? std::string() : real.string();
}

std::string rootAbove(const std::string& path) {
    // What is missing from the disk still lies in its working copy.
    fs::path existing = fs::path(path).lexically_normal();
    std::string real = realPathOf(existing.string());
    while (real.empty() && existing != existing.parent_path()) {
        existing = existing.parent_path();
        real = realPathOf(existing.string());
    }
    const String top = real.empty() ? String() : topOfWorkingCopy(real);
    return top.isNil() ? std::string() : realPathOf(top.str());
}

std::vector<std::string> rootsBelow(const std::string& directory, int depth, std::size_t entries) {
    Search search{{}, entries};
    const std::string real = realPathOf(directory);
    if (!real.empty()) {
        search.look(real, depth);
    }
    return search.found;
}

std::string databaseStampOf(const std::string& root) {
    struct stat facts {};
    if (::stat((root + "/.svn/wc.db").c_str(), &facts) != 0) {
        return {};
    }
    return std::to_string(facts.st_size) + "." + std::to_string(facts.st_mtim.tv_sec) + "." +
           std::to_string(facts.st_mtim.tv_nsec) + "." + std::to_string(facts.st_ino);
}

} // namespace quen::tools::server
