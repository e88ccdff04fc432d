#include "QuenFoundation/QuenSourceControlConstants.h"

namespace quen {

// A constant's value is its own name: a log or a record that shows one can be read as it is. The
// two revision names are the client's own words, so that every path that hands one over is right.

const String QuenSourceControlRequestOptionMessage =
    String::constant("QuenSourceControlRequestOptionMessage");
const String QuenSourceControlRequestOptionSourceLocation =
    String::constant("QuenSourceControlRequestOptionSourceLocation");
const String QuenSourceControlRequestOptionAllowEmptyCommit =
    String::constant("QuenSourceControlRequestOptionAllowEmptyCommit");
const String QuenSourceControlRequestOptionIgnoreItem =
    String::constant("QuenSourceControlRequestOptionIgnoreItem");
const String QuenSourceControlRequestOptionLogOutputFilesChanged =
    String::constant("QuenSourceControlRequestOptionLogOutputFilesChanged");
const String QuenSourceControlRequestOptionLogOutputLimit =
    String::constant("QuenSourceControlRequestOptionLogOutputLimit");
const String QuenSourceControlRequestOptionLogStopOnBranching =
    String::constant("QuenSourceControlRequestOptionLogStopOnBranching");
const String QuenSourceControlRequestOptionSupplyDirectRevision =
    String::constant("QuenSourceControlRequestOptionSupplyDirectRevision");
const String QuenSourceControlOperationAuthorKey =
    String::constant("QuenSourceControlOperationAuthorKey");
const String QuenSourceControlOperationContentKey =
    String::constant("QuenSourceControlOperationContentKey");
const String QuenSourceControlOperationDateKey =
    String::constant("QuenSourceControlOperationDateKey");
const String QuenSourceControlOperationFilesKey =
    String::constant("QuenSourceControlOperationFilesKey");
const String QuenSourceControlOperationIsLeafKey =
    String::constant("QuenSourceControlOperationIsLeafKey");
const String QuenSourceControlOperationLineNumberKey =
    String::constant("QuenSourceControlOperationLineNumberKey");
const String QuenSourceControlOperationMessageKey =
    String::constant("QuenSourceControlOperationMessageKey");
const String QuenSourceControlOperationNameKey =
    String::constant("QuenSourceControlOperationNameKey");
const String QuenSourceControlOperationPathKey =
    String::constant("QuenSourceControlOperationPathKey");
const String QuenSourceControlOperationRemoteOriginKey =
    String::constant("QuenSourceControlOperationRemoteOriginKey");
const String QuenSourceControlOperationRepositoryRootKey =
    String::constant("QuenSourceControlOperationRepositoryRootKey");
const String QuenSourceControlOperationRepositoryStatusKey =
    String::constant("QuenSourceControlOperationRepositoryStatusKey");
const String QuenSourceControlOperationRevisionKey =
    String::constant("QuenSourceControlOperationRevisionKey");
const String QuenSourceControlOperationWCStatusKey =
    String::constant("QuenSourceControlOperationWCStatusKey");
const String QuenSourceControlHEADRevisionName = String::constant("HEAD");
const String QuenSourceControlBASERevisionName = String::constant("BASE");
const String QuenSourceControlTrunkBranchName =
    String::constant("QuenSourceControlTrunkBranchName");
const String QuenSourceControlErrorDomain = String::constant("QuenSourceControlErrorDomain");
const String QuenSourceControlAuthenticationErrorTypeKey =
    String::constant("QuenSourceControlAuthenticationErrorTypeKey");
const String QuenSourceControlSSHConnectionErrorKey =
    String::constant("QuenSourceControlSSHConnectionErrorKey");
const String QuenSourceControlAuthenticationCredentialsIncorrect =
    String::constant("QuenSourceControlAuthenticationCredentialsIncorrect");
const String QuenSourceControlUnderlyingErrorsKey =
    String::constant("QuenSourceControlUnderlyingErrorsKey");

} // namespace quen
