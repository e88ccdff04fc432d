#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace quen {

/// A fresh directory, mode 0700, that is removed with all that is in it. Links in it are removed,
/// not what they lead to.
class PrivateDirectory {
public:
    /// In the session's own directory (XDG_RUNTIME_DIR) where there is one, which no disk holds;
    /// else in `place`; else in `/tmp`: the first that takes one, with a path short enough for
    /// sockets in it. A place where other users could take the directory away is left out. Null,
    /// with errno, where none is left.
    static std::unique_ptr<PrivateDirectory> make(const std::string& place);

    PrivateDirectory(const PrivateDirectory&) = delete;
    PrivateDirectory& operator=(const PrivateDirectory&) = delete;
    ~PrivateDirectory();

    /// A path in the directory.
    std::string path(std::string_view name) const { return path_ + "/" + std::string(name); }

private:
    explicit PrivateDirectory(std::string path) : path_(std::move(path)) {}

    std::string path_;
};

} // namespace quen
