#include "Host/TemporaryDirectory.h"

#include "Foundation/Format.h"
#include "Foundation/PathComponents.h"
#include "Host/RunContext.h"
#include "Host/TaskFailure.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>

namespace quen {

/// The living directories by path, so that a path object made from a text alone can hold on to the
/// directory that its file lies in. Each directory owns a share: one in a global of the host's may
/// live on when this library's own globals are gone.
struct TemporaryDirectory::Registry {
    std::mutex mutex;
    std::map<String, std::weak_ptr<TemporaryDirectory>> directories;

    static std::shared_ptr<Registry> shared() {
        static const auto registry = std::make_shared<Registry>();
        return registry;
    }
};

namespace {

Error cannotMakeIn(const String& parent, int number) {
    return {QuenSourceControlTaskErrorDomain,
            TaskErrorFailed,
            {{NSLocalizedDescriptionKey,
              formatText("There is no place for a temporary file in \"%@\": %@.",
                         {parent, String(strerrordesc_np(number))})},
             {NSLocalizedRecoverySuggestionErrorKey,
              "Make the directory usable, or name another one in TMPDIR, and try again."}}};
}

} // namespace

TemporaryDirectory::TemporaryDirectory(String path, std::shared_ptr<Registry> registry)
    : path_(std::move(path)), registry_(std::move(registry)) {}

std::shared_ptr<TemporaryDirectory> TemporaryDirectory::make(Error* reason) {
    const String parent = RunContext::current().temporaryDirectory();
    std::string path = appendingPathComponent(parent.view(), "quen-XXXXXX").str();
    if (mkdtemp(path.data()) == nullptr) {
        const int number = errno;
        if (reason != nullptr) {
            *reason = cannotMakeIn(parent, number);
        }
        return nullptr;
    }
    struct Maker : TemporaryDirectory {
        Maker(String path, std::shared_ptr<Registry> registry)
            : TemporaryDirectory(std::move(path), std::move(registry)) {}
    };
    const std::shared_ptr<Registry> registry = Registry::shared();
    const auto directory = std::make_shared<Maker>(path, registry);
    const std::lock_guard lock(registry->mutex);
    registry->directories[directory->path()] = directory;
    return directory;
}

std::shared_ptr<TemporaryDirectory> TemporaryDirectory::holding(const String& path) {
    const std::shared_ptr<Registry> registry = Registry::shared();
    const std::lock_guard lock(registry->mutex);
    const auto found = registry->directories.find(String(deletingLastPathComponent(path.view())));
    return found == registry->directories.end() ? nullptr : found->second.lock();
}

void TemporaryDirectory::removeAll() noexcept {
    try {
        const std::shared_ptr<Registry> registry = Registry::shared();
        const std::lock_guard lock(registry->mutex);
        for (const auto& [path, directory] : registry->directories) {
            std::error_code ignored;
            std::filesystem::remove_all(path.str(), ignored);
        }
    } catch (...) { // NOLINT(bugprone-empty-catch): the process is about to end
    }
}

TemporaryDirectory::~TemporaryDirectory() {
    {
        const std::lock_guard lock(registry_->mutex);
        registry_->directories.erase(path_);
    }
    std::error_code ignored;
    std::filesystem::remove_all(path_.str(), ignored);
}

} // namespace quen
