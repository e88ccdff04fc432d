#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"

/// The names that a host and a provider share. Every constant is defined by the host; any distinct
/// texts serve. They live as long as the program and may be read from any thread.
///
/// A provider compares a name by content, with one exception: whether a request is meant for the
/// local BASE revision is decided by the identity of `QuenSourceControlBASERevisionName` (a host
/// that wants no authentication for an export puts that very object into the request).
namespace quen {

// Request options: keys of `QuenSourceControlRequest::options`.

/// String: the log message of a change that goes to the repository at once.
QUEN_EXPORT extern const String QuenSourceControlRequestOptionMessage;
/// String: a URL; what a remote copy copies, or where an import goes.
QUEN_EXPORT extern const String QuenSourceControlRequestOptionSourceLocation;
/// Any value: commit although nothing changed. This provider cannot, and asserts its absence.
QUEN_EXPORT extern const String QuenSourceControlRequestOptionAllowEmptyCommit;
/// String: the property that an ignore request edits.
QUEN_EXPORT extern const String QuenSourceControlRequestOptionIgnoreItem;
/// Boolean: a log also names the paths that each revision changed.
QUEN_EXPORT extern const String QuenSourceControlRequestOptionLogOutputFilesChanged;
/// Integer or string: the greatest number of log records.
QUEN_EXPORT extern const String QuenSourceControlRequestOptionLogOutputLimit;
/// Boolean: a log ends where the item was copied from another place.
QUEN_EXPORT extern const String QuenSourceControlRequestOptionLogStopOnBranching;
/// Boolean: revisions are peg revisions of the location (`location@revision`).
QUEN_EXPORT extern const String QuenSourceControlRequestOptionSupplyDirectRevision;

// Result keys: keys of the records in `QuenSourceControlOperation::result`.

/// String.
QUEN_EXPORT extern const String QuenSourceControlOperationAuthorKey;
/// String: a whole text, such as a difference.
QUEN_EXPORT extern const String QuenSourceControlOperationContentKey;
/// Date.
QUEN_EXPORT extern const String QuenSourceControlOperationDateKey;
/// Dictionary from changed path to status value (integer).
QUEN_EXPORT extern const String QuenSourceControlOperationFilesKey;
/// Boolean: false for a directory.
QUEN_EXPORT extern const String QuenSourceControlOperationIsLeafKey;
/// String: a line number, from 1.
QUEN_EXPORT extern const String QuenSourceControlOperationLineNumberKey;
/// String: a log message.
QUEN_EXPORT extern const String QuenSourceControlOperationMessageKey;
/// String: a bare name.
QUEN_EXPORT extern const String QuenSourceControlOperationNameKey;
/// String, or file path for what an operation wrote to disk.
QUEN_EXPORT extern const String QuenSourceControlOperationPathKey;
/// String: the URL of an item.
QUEN_EXPORT extern const String QuenSourceControlOperationRemoteOriginKey;
/// String: the URL of the repository root.
QUEN_EXPORT extern const String QuenSourceControlOperationRepositoryRootKey;
/// Integer: status flags of the item in the repository, QuenSourceControlStatus.
QUEN_EXPORT extern const String QuenSourceControlOperationRepositoryStatusKey;
/// String: a revision number.
QUEN_EXPORT extern const String QuenSourceControlOperationRevisionKey;
/// Integer: status flags of the item in the working copy, QuenSourceControlStatus.
QUEN_EXPORT extern const String QuenSourceControlOperationWCStatusKey;

// Revision and branch names.

/// The youngest revision in the repository.
QUEN_EXPORT extern const String QuenSourceControlHEADRevisionName;
/// The revision that a working copy's item was last updated to.
QUEN_EXPORT extern const String QuenSourceControlBASERevisionName;
/// What the trunk is called where a branch name is asked for.
QUEN_EXPORT extern const String QuenSourceControlTrunkBranchName;

// Errors.

/// The domain of every error that the provider itself makes; its codes are
/// QuenSourceControlErrorCode.
QUEN_EXPORT extern const String QuenSourceControlErrorDomain;
/// User info: why authentication failed; one of the two values below.
QUEN_EXPORT extern const String QuenSourceControlAuthenticationErrorTypeKey;
/// The server could not be reached over secure shell.
QUEN_EXPORT extern const String QuenSourceControlSSHConnectionErrorKey;
/// The name or the password was not accepted: asking again may help.
QUEN_EXPORT extern const String QuenSourceControlAuthenticationCredentialsIncorrect;
/// User info: the error, or the array of errors, that caused this one.
QUEN_EXPORT extern const String QuenSourceControlUnderlyingErrorsKey;

} // namespace quen
