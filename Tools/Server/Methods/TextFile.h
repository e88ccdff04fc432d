#pragma once

#include "Host/TemporaryDirectory.h"

#include <memory>
#include <string>
#include <string_view>

namespace quen::tools::server {

/// A text that the client is to read from a file rather than take as an argument: in a private
/// directory, for as long as this lives.
class TextFile {
public:
    /// Throws ProtocolError where it cannot be written.
    explicit TextFile(std::string_view text);

    const std::string& path() const noexcept { return path_; }

private:
    std::shared_ptr<TemporaryDirectory> directory_;
    std::string path_;
};

} // namespace quen::tools::server
