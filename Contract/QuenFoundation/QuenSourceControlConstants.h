#pragma once

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
extern const String QuenSourceControlRequestOptionMessage;
/// String: a URL; what a remote copy copies, or where an import goes.
extern const String QuenSourceControlRequestOptionSourceLocation;
/// Any value: commit although nothing changed. This provider cannot, and asserts its absence.
extern const String QuenSourceControlRequestOptionAllowEmptyCommit;
/// String: the property that an ignore request edits.
extern const String QuenSourceControlRequestOptionIgnoreItem;
/// Boolean: a log also names the paths that each revision changed.
extern const String QuenSourceControlRequestOptionLogOutputFilesChanged;
/// Integer or string: the greatest number of log records.
extern const String QuenSourceControlRequestOptionLogOutputLimit;
/// Boolean: a log ends where the item was copied from another place.
extern const String QuenSourceControlRequestOptionLogStopOnBranching;
/// Boolean: revisions are peg revisions of the location (`location@revision`).
extern const String QuenSourceControlRequestOptionSupplyDirectRevision;

// Result keys: keys of the records in `QuenSourceControlOperation::result`.

/// String.
extern const String QuenSourceControlOperationAuthorKey;
/// String: a whole text, such as a difference.
extern const String QuenSourceControlOperationContentKey;
/// Date.
extern const String QuenSourceControlOperationDateKey;
/// Dictionary from changed path to status value (integer).
extern const String QuenSourceControlOperationFilesKey;
/// Boolean: false for a directory.
extern const String QuenSourceControlOperationIsLeafKey;
/// String: a line number, from 1.
extern const String QuenSourceControlOperationLineNumberKey;
/// String: a log message.
extern const String QuenSourceControlOperationMessageKey;
/// String: a bare name.
extern const String QuenSourceControlOperationNameKey;
/// String, or file path for what an operation wrote to disk.
extern const String QuenSourceControlOperationPathKey;
/// String: the URL of an item.
extern const String QuenSourceControlOperationRemoteOriginKey;
/// String: the URL of the repository root.
extern const String QuenSourceControlOperationRepositoryRootKey;
/// Integer: status flags of the item in the repository, QuenSourceControlStatus.
extern const String QuenSourceControlOperationRepositoryStatusKey;
/// String: a revision number.
extern const String QuenSourceControlOperationRevisionKey;
/// Integer: status flags of the item in the working copy, QuenSourceControlStatus.
extern const String QuenSourceControlOperationWCStatusKey;

// Revision and branch names.

/// The youngest revision in the repository.
extern const String QuenSourceControlHEADRevisionName;
/// The revision that a working copy's item was last updated to.
extern const String QuenSourceControlBASERevisionName;
/// What the trunk is called where a branch name is asked for.
extern const String QuenSourceControlTrunkBranchName;

// Errors.

/// The domain of every error that the provider itself makes.
extern const String QuenSourceControlErrorDomain;
/// User info: why authentication failed; one of the two values below.
extern const String QuenSourceControlAuthenticationErrorTypeKey;
/// The server could not be reached over secure shell.
extern const String QuenSourceControlSSHConnectionErrorKey;
/// The name or the password was not accepted: asking again may help.
extern const String QuenSourceControlAuthenticationCredentialsIncorrect;
/// User info: the error, or the array of errors, that caused this one.
extern const String QuenSourceControlUnderlyingErrorsKey;

} // namespace quen
