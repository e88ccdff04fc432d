#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"

#include <memory>

namespace quen {

class MarlFilePath;
using MarlFilePathPtr = std::shared_ptr<const MarlFilePath>;

/// A path in the file system. Implemented by the host. Immutable; from any thread.
class QUEN_EXPORT MarlFilePath {
public:
    MarlFilePath() = default;
    MarlFilePath(const MarlFilePath&) = delete;
    MarlFilePath& operator=(const MarlFilePath&) = delete;
    virtual ~MarlFilePath() = default;

    /// The object for a path text, which is kept as given; null for nil.
    static MarlFilePathPtr filePathForPathString(const String& path);

    /// Whether something is there now; a symbolic link is, wherever it leads.
    virtual bool existsInFileSystem() const = 0;
    /// The last path component.
    virtual String fileName() const = 0;
    virtual String pathString() const = 0;
};

} // namespace quen
