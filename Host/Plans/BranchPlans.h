#pragma once

#include "Host/ClientCommand.h"
#include "Host/Facts/ReportFacts.h"

#include <string>
#include <string_view>

namespace quen {

// What is to be known before a branch is made or deleted. Both ask the repository.

/// Why a branch of that name could not be reached afterwards, for a sentence that begins with the
/// name; empty for a name that can. Nothing is asked.
std::string problemOfNewBranchName(std::string_view name);

/// A place in a repository.
struct RepositoryPlace {
    bool exists = false;
    /// Where it last changed.
    CommitFacts commit;
    /// The repository could not be asked.
    Error error;
};
/// `url` is not closed.
RepositoryPlace lookAt(const String& url, const QueryRunner& run = runHere);

/// Where a branch is to be made, and the directory above it. Likewise not closed. Asks once.
struct NewBranchPlaces {
    RepositoryPlace branch;
    RepositoryPlace parent;
};
NewBranchPlaces lookForNewBranch(const String& url, const String& parentURL,
                                 const QueryRunner& run = runHere);

/// Whether a working copy's path lies on the branch with that URL, at its top or deeper. False for
/// what lies in no working copy.
bool isOnBranch(const String& path, const String& branchURL, const QueryRunner& run = runHere);

} // namespace quen
