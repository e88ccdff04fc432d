#pragma once

#include "Foundation/Export.h"
#include "MarlFoundation/MarlFilePath.h"

#include <memory>

namespace quen {

/// Where tools are looked for.
class QUEN_EXPORT MarlSearchPath {
public:
    MarlSearchPath() = default;
    MarlSearchPath(const MarlSearchPath&) = delete;
    MarlSearchPath& operator=(const MarlSearchPath&) = delete;
    virtual ~MarlSearchPath() = default;

    /// The directory to take a tool from; never null.
    virtual MarlFilePathPtr preferredDirectoryPath() const = 0;
};

/// The places of the developer tools. Implemented by the host. From any thread.
class QUEN_EXPORT MarlDeveloperPaths {
public:
    MarlDeveloperPaths() = default;
    MarlDeveloperPaths(const MarlDeveloperPaths&) = delete;
    MarlDeveloperPaths& operator=(const MarlDeveloperPaths&) = delete;
    virtual ~MarlDeveloperPaths() = default;

    /// The shared object; never null.
    static std::shared_ptr<MarlDeveloperPaths> defaultPaths();

    /// The search path for a platform, 0 for none in particular; never null.
    virtual std::shared_ptr<MarlSearchPath> binSearchPathForPlatform(int platform) const = 0;
};

} // namespace quen
