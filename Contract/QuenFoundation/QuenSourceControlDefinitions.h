#pragma once

/// Definitions of what a host defines and has no choice about: the names, and the request, which
/// answers what was set. A host includes this in one of its sources, and no other file does.

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlRequest.h"

#include <utility>

// NOLINTBEGIN(misc-definitions-in-headers): that is what it is for
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

struct QuenSourceControlRequest::State {
    std::int32_t type = 0;
    QuenSourceControlSourceTreePtr sourceTree;
    String destination;
    std::optional<StringArray> files;
    Dictionary options;
    String startingRevision;
    String endingRevision;
    QuenSourceControlRepositoryPtr repositoryToAuthenticate;
};

QuenSourceControlRequest::QuenSourceControlRequest() : state_(std::make_unique<State>()) {}

QuenSourceControlRequest::~QuenSourceControlRequest() = default;

void QuenSourceControlRequest::initWithType(std::int32_t type,
                                            QuenSourceControlSourceTreePtr sourceTree,
                                            String destination, std::optional<StringArray> files,
                                            Dictionary options) {
    *state_ = State{};
    state_->type = type;
    state_->sourceTree = std::move(sourceTree);
    state_->destination = std::move(destination);
    state_->files = std::move(files);
    state_->options = std::move(options);
}

void QuenSourceControlRequest::initWithType(std::int32_t type,
                                            QuenSourceControlSourceTreePtr sourceTree,
                                            std::optional<StringArray> files, Dictionary options) {
    initWithType(type, std::move(sourceTree), String(), std::move(files), std::move(options));
}

std::int32_t QuenSourceControlRequest::type() const {
    return state_->type;
}

void QuenSourceControlRequest::setType(std::int32_t type) {
    state_->type = type;
}

QuenSourceControlSourceTreePtr QuenSourceControlRequest::sourceTree() const {
    return state_->sourceTree;
}

void QuenSourceControlRequest::setSourceTree(QuenSourceControlSourceTreePtr sourceTree) {
    state_->sourceTree = std::move(sourceTree);
}

String QuenSourceControlRequest::destination() const {
    return state_->destination;
}

void QuenSourceControlRequest::setDestination(String destination) {
    state_->destination = std::move(destination);
}

const std::optional<StringArray>& QuenSourceControlRequest::files() const {
    return state_->files;
}

void QuenSourceControlRequest::setFiles(std::optional<StringArray> files) {
    state_->files = std::move(files);
}

const Dictionary& QuenSourceControlRequest::options() const {
    return state_->options;
}

void QuenSourceControlRequest::setOptions(Dictionary options) {
    state_->options = std::move(options);
}

String QuenSourceControlRequest::startingRevision() const {
    return state_->startingRevision;
}

void QuenSourceControlRequest::setStartingRevision(String revision) {
    state_->startingRevision = std::move(revision);
}

String QuenSourceControlRequest::endingRevision() const {
    return state_->endingRevision;
}

void QuenSourceControlRequest::setEndingRevision(String revision) {
    state_->endingRevision = std::move(revision);
}

QuenSourceControlRepositoryPtr QuenSourceControlRequest::repositoryToAuthenticate() const {
    return state_->repositoryToAuthenticate;
}

void QuenSourceControlRequest::setRepositoryToAuthenticate(
    QuenSourceControlRepositoryPtr repository) {
    state_->repositoryToAuthenticate = std::move(repository);
}

} // namespace quen
// NOLINTEND(misc-definitions-in-headers)
