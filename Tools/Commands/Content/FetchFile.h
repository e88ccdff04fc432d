#pragma once

#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/Session.h"

#include <filesystem>
#include <optional>
#include <string>

namespace quen::tools {

/// Which file, and which revision of it.
struct FileToFetch {
    std::string location;
    /// As a person writes it; empty for what the working copy holds, or the youngest of a URL.
    std::string revision;
    /// The location names what was there in that revision.
    bool pegs = false;
};

/// A file from the working copy or the repository in a temporary place, which is there as long as
/// the operation lives.
struct FetchedFile {
    QuenSourceControlOperationPtr operation;
    std::filesystem::path path;
};

/// Explained where the file cannot be fetched.
Outcome<FetchedFile> fetchFile(Session& session, const SourceTree& source, const FileToFetch& file);

/// What a fetched file holds; of a symbolic link `link` and where it leads, as the client itself
/// shows it, for the link is the repository's and not to be followed here. nullopt for a directory
/// and for what cannot be read.
std::optional<std::string> contentOf(const FetchedFile& file);

} // namespace quen::tools
