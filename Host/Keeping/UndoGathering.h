#pragma once

#include "Host/Keeping/UndoManifest.h"
#include "Host/Keeping/UndoStore.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace quen {

/// What one step keeps, gathered item by item.
class UndoGathering {
public:
    /// `directory` is where contents go, numbered like the manifest's items; `room` is how many
    /// bytes there may be of them.
    UndoGathering(std::string directory, const String& workingCopy, std::uint64_t room)
        : directory_(std::move(directory)), workingCopy_(workingCopy.str()), room_(room) {}

    /// What lies at a path, a directory with all that is in it. What cannot be kept is `refused`;
    /// where nothing lies nothing happens.
    void take(const String& path);

    UndoManifest manifest;
    std::vector<UndoRefusal> refused;

private:
    void takeOne(const std::filesystem::path& path);
    void takeBelow(const std::filesystem::path& path);
    void keepFile(const std::filesystem::path& path, const struct stat& facts);
    void keepLink(const std::filesystem::path& path, const struct stat& facts);
    ManifestItem& add(const std::filesystem::path& path, UndoItem::Kind kind,
                      const struct stat& facts);
    void refuse(const std::filesystem::path& path, std::string reason) {
        refused.push_back({String(path.string()), String(reason), {}});
    }

    const std::string directory_;
    const std::string workingCopy_;
    std::uint64_t room_;
};

} // namespace quen
