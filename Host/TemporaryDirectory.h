#pragma once

#include "Foundation/String.h"
#include "Foundation/Value.h"

#include <memory>

namespace quen {

/// A fresh directory, mode 0700, removed with all that is in it when its last holder lets go.
/// From any thread.
class TemporaryDirectory {
public:
    /// Null where none can be made; `reason`, where given, then says where, and why not.
    static std::shared_ptr<TemporaryDirectory> make(Error* reason = nullptr);
    /// The living directory that `path` lies in; null for any other path. Not to be called after
    /// `main` has returned.
    static std::shared_ptr<TemporaryDirectory> holding(const String& path);

    /// Removes every living one from the disk, for a process that is about to end without letting
    /// go of them.
    static void removeAll() noexcept;

    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const String& path() const noexcept { return path_; }

private:
    struct Registry;
    TemporaryDirectory(String path, std::shared_ptr<Registry> registry);

    String path_;
    std::shared_ptr<Registry> registry_;
};

} // namespace quen
