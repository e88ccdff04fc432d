#pragma once

#include "Host/Places/RepositoryLayout.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

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

/// The settings that count for a path: those of the `.quen` file in the top directory of the
/// working copy that it lies in; none where there is no such file, or no working copy. nullopt,
/// with the reason in `problem`, where it is not a regular file, belongs to somebody else than the
/// person or the working copy's owner, or cannot be read or parsed. What it says comes from
/// outside: the problem can hold any of it.
std::optional<Settings> settingsFor(const std::filesystem::path& path, std::string& problem);

/// Whether a file of that owner counts for a person.
bool mayOwnSettings(uid_t owner, uid_t person, uid_t workingCopyOwner) noexcept;

/// The top directory of the working copy that a path lies in; empty where it lies in none.
std::filesystem::path topDirectoryOf(const std::filesystem::path& path);

} // namespace quen
