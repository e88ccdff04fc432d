#pragma once

#include "Host/HostSourceTrees.h"
#include "Host/TemporaryDirectory.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace quen::tools {

/// A throw-away place for the tour: a fresh repository, the tree that is imported into it, and room
/// for two working copies, all in one directory that goes when this does.
class TourProject {
public:
    /// Null when the place cannot be made; the reason is then in `problem`.
    static std::unique_ptr<TourProject> make(std::string& problem);

    std::filesystem::path directory() const { return directory_->path().str(); }
    /// The tree to import, and the two working copies.
    std::string seed() const { return place("seed"); }
    std::string workingCopy() const { return place("project"); }
    std::string secondWorkingCopy() const { return place("colleague"); }

    /// A URL below the repository's root: `url("trunk")`.
    std::string url(std::string_view path) const;
    QuenSourceControlRepositoryPtr repository() const;
    QuenSourceControlWorkingTreePtr workingTree(const std::string& location) const;

private:
    explicit TourProject(std::shared_ptr<TemporaryDirectory> directory)
        : directory_(std::move(directory)) {}
    std::string place(const char* name) const { return directory() / name; }
    /// Empty, or what went wrong.
    std::string createRepository() const;

    std::shared_ptr<TemporaryDirectory> directory_;
};

/// Writes a file of a person's work, with the directories above it. Throws
/// std::filesystem::filesystem_error.
void writeFile(const std::filesystem::path& path, std::string_view content);

} // namespace quen::tools
