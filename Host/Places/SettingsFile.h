#pragma once

#include "Host/Places/RepositoryLayout.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quen {

/// What a `.quen` file says: lines of `name = value`, with the names `trunk`, `branches` and
/// `username`. A line that begins with `#` and an empty one say nothing. A location is a URL, or a
/// place below the repository's root written as `^/main`. What is not said is empty.
struct Settings {
    RepositoryLayout layout;
    std::string user;
};

/// nullopt for a text that says anything else; `problem` then names `file` and the line.
std::optional<Settings> parseSettings(std::string_view text, const std::string& file,
                                      std::string& problem);

/// The settings that count for a path: those of the first `.quen` file in the top directory of the
/// working copy that it lies in, or above; none where there is no such file, or no working copy.
/// nullopt where the file cannot be read or parsed, for `problem`.
std::optional<Settings> settingsFor(const std::filesystem::path& path, std::string& problem);

/// The top directory of the working copy that a path lies in; empty where it lies in none.
std::filesystem::path topDirectoryOf(const std::filesystem::path& path);

} // namespace quen
