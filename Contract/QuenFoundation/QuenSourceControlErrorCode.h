#pragma once

#include <cstdint>

namespace quen {

/// What went wrong: the codes of `QuenSourceControlErrorDomain`. A provider makes no others there.
/// Each says which texts and facts the error carries besides.
enum QuenSourceControlErrorCode : std::int64_t {
    /// The revision does not hold the file (export, checkout). Also the error of an ignore or
    /// unignore of which some files failed: it has no text of its own, and
    /// `QuenSourceControlUnderlyingErrorsKey` holds the array of their errors.
    QuenSourceControlErrorRevisionNotFound = -1,
    QuenSourceControlErrorSeveral = -1,
    /// One file's ignore or unignore failed: a text, a recovery suggestion, and the error that
    /// caused it under `QuenSourceControlUnderlyingErrorsKey`. That error may have the same code
    /// and no facts: the name to unignore is not in the list.
    QuenSourceControlErrorNotIgnored = -11,
    /// A move of several files, or without one.
    QuenSourceControlErrorInvalidRequest = -12,
    /// The repository, or its host, could not be reached. Where the client found out,
    /// `QuenSourceControlAuthenticationErrorTypeKey` says so.
    QuenSourceControlErrorUnreachable = -20,
    /// The server let nobody in: `QuenSourceControlAuthenticationErrorTypeKey` says whether the
    /// connection or the name and password were at fault.
    QuenSourceControlErrorAuthentication = -21,
    /// The repository's record names no trunk or branches where they are needed.
    QuenSourceControlErrorLayoutMissing = -23,
    /// A move to a name that is taken.
    QuenSourceControlErrorNameTaken = -60,
    /// The file is not under version control.
    QuenSourceControlErrorNotVersioned = -71,
    /// The folder of branches is not there; has a recovery suggestion.
    QuenSourceControlErrorBranchesNotFound = -90,
};

} // namespace quen
