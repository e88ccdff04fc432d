#pragma once

#include "Tools/Server/Methods/Services.h"

#include <optional>
#include <stop_token>
#include <string>

namespace quen::tools::server {

/// A file's bytes as they were in a revision.
struct FileContent {
    /// Absent where they are not to be had; `ran` says why.
    std::optional<std::string> bytes;
    Ran ran;
};

/// `location` is a path or URL, `revision` `BASE`, `HEAD` or a number. Of a symbolic link `link`
/// and where it leads, as the client itself keeps it. Throws InputError for a directory.
FileContent readContent(const Services& services, const std::stop_token& stop,
                        const std::string& location, const std::string& revision);

/// The bytes in base64, with padding.
std::string base64Of(std::string_view bytes);

} // namespace quen::tools::server
