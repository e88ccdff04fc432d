#pragma once

#include "Host/Keeping/UndoManifest.h"
#include "Host/Process/FileDescriptor.h"

#include <optional>
#include <string>
#include <vector>

namespace quen {

/// The directory of an UndoStore on the disk, held alone while this lives. Private to `UndoStore`.
class UndoDirectory {
public:
    /// Makes it where need be, and waits for its turn. Check `error` before anything else.
    explicit UndoDirectory(const String& path);

    const Error& error() const noexcept { return error_; }

    /// An empty directory for a step that is not complete; empty text, with `error`, on failure.
    std::string makeUnfinished();
    /// Makes it one of the steps. Answers its id; nil, with `error`, on failure.
    String finish(const std::string& unfinished);
    /// The ids of all steps, the oldest first.
    std::vector<String> ids() const;

    std::string pathOf(const String& id) const { return path_ + "/" + id.str(); }
    std::string contentOf(const String& id, std::size_t item) const {
        return pathOf(id) + "/" + std::to_string(item);
    }
    /// nullopt for a step whose manifest cannot be read.
    std::optional<UndoManifest> manifest(const String& id) const;
    Error setManifest(const std::string& directory, const UndoManifest& manifest) const;
    void remove(const String& id) const;
    /// Lets the oldest go until the rest keeps the limits; `newest` stays whatever it takes.
    void trim(UndoStore::Limits limits, const String& newest) const;

private:
    Error fail(int number, const std::string& path);

    std::string path_;
    FileDescriptor lock_;
    Error error_;
};

} // namespace quen
